#include "host/openconfig/RecordKind.h"

#include "host/Sorted.h"
#include "host/openconfig/KeyText.h"
#include "host/openconfig/LeafTable.h"

namespace host {

std::span<const RecordKind* const> outermostKinds() {
  static constexpr const RecordKind* all[] = {
      &kinds::classifier,      &kinds::forwardingGroup,        &kinds::interface,
      &kinds::pfcWatchdog,     &kinds::queueManagementProfile, &kinds::queue,
      &kinds::schedulerPolicy,
  };
  return all;
}

std::string_view classifierTypeName(QosOc::Classifier::Type type) {
  switch (type) {
    case QosOc::Classifier::classifierTypeIpv4:
      return "IPV4";
    case QosOc::Classifier::classifierTypeIpv6:
      return "IPV6";
  }
  return {};
}

// ===== Keys

std::string KeyText::text(Type key) {
  const std::string_view name = classifierTypeName(key);
  return name.empty() ? keyText(key) : std::string(name);
}

std::optional<std::uint32_t> KeyText::key(std::string_view text, const std::uint32_t* /*of*/) {
  const auto number = decimal(text, 0xffffffffu);
  return number ? std::optional(static_cast<std::uint32_t>(*number)) : std::nullopt;
}

std::optional<KeyText::Type> KeyText::key(std::string_view text, const Type* /*of*/) {
  for (const Type type : {Type::classifierTypeIpv4, Type::classifierTypeIpv6}) {
    if (text == classifierTypeName(type)) return type;
  }
  return std::nullopt;
}

bool KeyText::isHeld(const Rok::String& key) { return !key.empty() && isYangString(key); }

std::string KeyText::misfit(const Rok::String& key, std::string_view leaf) {
  if (isYangString(key)) return {};
  return (leaf.front() == 'i' ? "an " : "a ") + std::string(leaf) + " that YANG strings can't hold";
}

std::string KeyText::misfit(Type key, std::string_view /*leaf*/) {
  if (!classifierTypeName(key).empty()) return {};
  return keyText(key) + " is no type of a classifier";
}

}  // namespace host
