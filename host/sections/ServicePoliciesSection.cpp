// "service-policies": {"<key tag>:<policy map>": {"interfaces": {"<interface>": true}}}
#include "host/sections/Forms.h"

namespace host {

template <>
struct KeyForm<Qos::ServicePolicyKey> : ParsedKeyForm<Qos::ServicePolicyKey> {
  static constexpr const char* expected =
      "a service policy: a tag from 0 to 65535, a colon and the name of a policy map";

  static std::string pattern() { return "^(?:" + decimalPattern(65535) + "):"; }
  // The first colon ends the tag: a policy map's name may hold colons, and may be empty.
  static std::optional<Qos::ServicePolicyKey> parse(std::string_view text) {
    const std::size_t colon = text.find(':');
    const auto tag = numberIn<std::uint16_t>(text.substr(0, colon));
    if (colon == text.npos || !tag) return std::nullopt;
    return Qos::ServicePolicyKey{*tag, text.substr(colon + 1)};
  }
  static Rok::String text(const Qos::ServicePolicyKey& key) {
    return key.pmapName.addLeft(std::to_string(key.keyTag) + ':');
  }
};

namespace {

using Qos::ServicePolicyConfig;
using Qos::Input::Config;

using BoundInterfaces = Values<all(&ServicePolicyConfig::intfIds), &ServicePolicyConfig::intfIdsIs,
                               &ServicePolicyConfig::intfIdsDel>;

constexpr Setting<ServicePolicyConfig> servicePolicySettings[] = {
    part<BoundInterfaces>("interfaces")};

using ServicePolicies = Objects<all(&Config::servicePolicyConfig), &Config::servicePolicyConfigIs,
                                &Config::servicePolicyConfigDel, Record<servicePolicySettings>>;

}  // namespace

Section servicePoliciesSection() {
  return section(&Native::qosConfig, part<ServicePolicies>("service-policies"));
}

}  // namespace host
