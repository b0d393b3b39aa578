// /qos/classifiers
#include <bitset>

#include "host/Text.h"
#include "host/openconfig/MakeKind.h"

namespace host {

using namespace QosOc::Config;

namespace {

constexpr unsigned highestDscp = 63;

// ===== Native objects: those that a term's values come from all bear its derived name

std::string derived(const char* kind, std::string_view classifier, std::string_view term) {
  const std::string name = "__yang_[" + std::string(classifier) + "]_[" + std::string(term) + ']';
  return std::string("the ") + kind + ' ' + quoted(name);
}
std::string accessList(const Term& /*term*/, const Keys& keys) {
  return derived("access list", keys[0], keys[1]);
}
std::string policyMapClass(const Term& /*term*/, const Keys& keys) {
  return derived("policy-map class", keys[0], keys[1]);
}

// ===== Readers

LeafValue type(const ClassifierConfig& config, const Keys& /*keys*/, const Faults& faults) {
  if (!config.type) return {};
  const std::string_view name = classifierTypeName(*config.type);
  if (name.empty()) {
    faults.leftOut([&] { return keyText(*config.type) + " is no type of a classifier"; });
  }
  return name;
}

bool isDscp(unsigned value, const Faults& faults) {
  if (value <= highestDscp) return true;
  faults.leftOut([&] { return std::to_string(value) + " is above 63"; });
  return false;
}

template <auto family>
LeafValue dscp(const Term& term, const Keys& /*keys*/, const Faults& faults) {
  const auto* value = follow<&Term::conditions, family, &TermConditionsIpConfig::dscp>(term);
  if (value == nullptr || !isDscp(*value, faults)) return {};
  return std::uint64_t{*value};
}

template <auto family>
LeafValue dscpSet(const Term& term, const Keys& /*keys*/, const Faults& faults) {
  const auto* bytes = follow<&Term::conditions, family, &TermConditionsIpConfig::dscpSet>(term);
  if (bytes == nullptr || bytes->empty()) return {};
  std::vector<unsigned> set;
  std::bitset<highestDscp + 1> seen;
  for (const unsigned value : *bytes) {
    if (!isDscp(value, faults)) continue;
    if (seen[value]) {
      faults.leftOut([&] { return std::to_string(value) + " is there twice"; });
      continue;
    }
    seen.set(value);
    set.push_back(value);
  }
  if (set.empty()) return {};
  return set;
}

}  // namespace

// ===== Tables

template <>
struct Table<ClassifierConfig> {
  static std::string native(const Keys& keys) { return derived("class map", keys[0], ""); }
  static constexpr Leaf<ClassifierConfig> leaves[] = {
      {"config/name", entryKey},
      {"config/type", {LeafType::enumeration, type, {.names = classifierTypes}}},
      {"name", entryKey},
  };
};

// A blanked action and conditions without a DSCP have no leaves.
template <>
struct Table<Term> {
  static std::string native(const Keys& keys) { return derived("class map", keys[0], keys[1]); }
  static constexpr Leaf<Term> leaves[] = {
      {"actions/config/target-group",
       at<&Term::actions, &TermActions::config, &TermActionsConfig::targetGroup>, policyMapClass},
      {"conditions/ipv4/config/dscp",
       {LeafType::uint8, dscp<&TermConditions::ipv4>, {.most = highestDscp}},
       accessList},
      {"conditions/ipv4/config/dscp-set",
       {LeafType::uint8List, dscpSet<&TermConditions::ipv4>, {.most = highestDscp}},
       accessList},
      {"conditions/ipv6/config/dscp",
       {LeafType::uint8, dscp<&TermConditions::ipv6>, {.most = highestDscp}},
       accessList},
      {"conditions/ipv6/config/dscp-set",
       {LeafType::uint8List, dscpSet<&TermConditions::ipv6>, {.most = highestDscp}},
       accessList},
      {"config/id", entryKey},
      {"id", entryKey},
  };
};

namespace kinds {

constexpr const RecordKind* belowClassifier[] = {&term};
constinit const RecordKind classifier = listKind<ClassifierConfig, &Model::classifiers>(
    "classifiers/classifier", "name", nullptr, belowClassifier);
constinit const RecordKind term =
    listKind<Term, &Classifier::terms>("terms/term", "id", &classifier);

}  // namespace kinds
}  // namespace host
