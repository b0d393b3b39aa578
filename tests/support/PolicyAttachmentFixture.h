// A device whose scheduler policies are attached to interfaces, with the tx queues of its tests.
#pragma once

#include <gtest/gtest.h>

#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "tests/support/SchedulerDevice.h"

namespace support::attachmentCases {

using namespace QosOc;

inline const auto unicast3 = SchedulerDevice::unicast(3);
inline const auto unicast4 = SchedulerDevice::unicast(4);

struct PolicyAttachments : testing::Test, SchedulerDevice {
  PolicyAttachments() { start(); }
};

}  // namespace support::attachmentCases
