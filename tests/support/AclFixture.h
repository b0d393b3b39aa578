// A device whose ACLs are translated, with the names that its tests use.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/AclDevice.h"

namespace support::aclCases {

using namespace QosOc;

inline constexpr const char* voiceName = "__yang_[edge-in]_[voice]";
inline constexpr auto unknownType = Acl::AclType{7};

inline Config::Term termOf(const Rok::String& id,
                           Rok::Optional<Config::TermConditions> conditions = {},
                           Rok::Optional<Config::TermActions> actions = {}) {
  Config::Term term(id);
  term.configId = id;
  term.conditions = std::move(conditions);
  term.actions = std::move(actions);
  return term;
}
inline Config::TermConditions ipv4Conditions(unsigned char value) {
  Config::TermConditions conditions;
  conditions.ipv4.dscp = value;
  return conditions;
}
inline Config::TermConditions ipv6Conditions(unsigned char value) {
  Config::TermConditions conditions;
  conditions.ipv6.dscp = value;
  return conditions;
}
inline const Config::TermActions expedited{{"expedited"}};

// A started device.
struct AclTranslation : testing::Test, AclDevice {
  AclTranslation() { start(); }
  std::string voice() const { return conditionsText(term("edge-in", "voice")); }
};

}  // namespace support::aclCases
