// A device whose policy maps are translated, with the names that its tests use.
#pragma once

#include <gtest/gtest.h>

#include <string>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/PolicyDevice.h"

namespace support::policyMapCases {

using namespace QosOc;

inline constexpr auto edge = "__yang_[IPV4__edge-in]";
inline constexpr auto edge6 = "__yang_[IPV6__edge-in6]";
inline constexpr auto both = "__yang_[IPV4__edge-in][IPV6__edge-in6]";
inline constexpr auto voice = "__yang_[edge-in]_[voice]";
inline constexpr auto video = "__yang_[edge-in]_[video]";
inline constexpr auto voice6 = "__yang_[edge-in6]_[voice]";
inline constexpr auto foreign = "__yang_[core-in]_[voice]";
inline constexpr auto otherKind = Qos::ActionType{9};
inline constexpr auto otherType = Qos::MapType{7};

inline const auto v4 = Classifier::classifierTypeIpv4;
inline const auto v6 = Classifier::classifierTypeIpv6;

inline ActionModel edgeVoice(const std::string& action) {
  return {{"edge-in/v4", {{"voice", action}}}};
}

inline Config::TermConditions voiceConditions() {
  Config::TermConditions conditions;
  conditions.ipv4.dscp = 46;
  return conditions;
}

struct PolicyMapEvents : testing::Test, PolicyDevice {
  PolicyMapEvents() : PolicyDevice(Names()) { start(); }
};

}  // namespace support::policyMapCases
