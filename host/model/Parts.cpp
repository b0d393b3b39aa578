#include "host/model/Parts.h"

#include "host/model/Codec.h"

namespace host {
namespace {

// The object or directory that hangs on a member of the model.
template <auto place>
using PartCodec = Codec<std::remove_cvref_t<decltype(*(std::declval<const Model&>().*place))>>;

template <auto place>
constexpr ModelPart part(std::string_view name) {
  using Whole = PartCodec<place>;
  ModelPart part{name, Whole::schema,
                 [](const Model& model, const Rok::String& /*key*/, const Value& value) {
                   Whole::read(*(model.*place), value);
                 },
                 [](JsonWriter& out, const Model& model) { Whole::write(out, *(model.*place)); },
                 nullptr};
  if constexpr (requires { Whole::entries; }) {
    part.entryIs = [](const Model& model, const Rok::String& key, const Value& value) {
      Whole::entryIs(*(model.*place), key, value);
    };
    part.has = [](const Model& model, const Rok::String& key) {
      return Whole::has(*(model.*place), key);
    };
  }
  return part;
}

constexpr ModelPart parts[] = {
    part<&Model::classifiers>("classifiers"),
    part<&Model::forwardingGroups>("forwarding-groups"),
    part<&Model::interfaces>("interfaces"),
    part<&Model::pfc>("pfc"),
    part<&Model::queueManagementProfiles>("queue-management-profiles"),
    part<&Model::queues>("queues"),
    part<&Model::schedulerPolicies>("scheduler-policies"),
};

}  // namespace

std::span<const ModelPart> modelParts() { return parts; }

// "oneRateTwoColor" is "one-rate-two-color".
std::string fields::memberName(std::string_view field) {
  std::string name;
  for (const char c : field) {
    const bool isUpper = c >= 'A' && c <= 'Z';
    if (isUpper) name += '-';
    name += isUpper ? static_cast<char>(c - 'A' + 'a') : c;
  }
  return name;
}

}  // namespace host
