// A device whose service policies are translated, with the names that its tests use.
#pragma once

#include <gtest/gtest.h>

#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "tests/support/ServicePolicyDevice.h"

namespace support::servicePolicyCases {

using namespace QosOc;

inline constexpr auto mapA = "__yang_[IPV4__a]";
inline constexpr auto mapB = "__yang_[IPV6__b]";
inline constexpr auto mapAB = "__yang_[IPV4__a][IPV6__b]";

struct ServicePolicyEvents : testing::Test, ServicePolicyDevice {
  ServicePolicyEvents() { start(); }
};

}  // namespace support::servicePolicyCases
