// A device whose queues are translated, with the comments and the settings that its tests use.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "tests/support/QueueDevice.h"

namespace support::queueCases {

using namespace QosOc;

inline constexpr const char* intf = "Ethernet1";
inline const Qos::TxQueue uc3 = QueueDevice::unicast(3);
inline constexpr const char* queue3 = "Ethernet1-unicast-3";

// Comments: one that names nothing, and those that name a profile, a policy, and both.
inline constexpr const char* foreign = "note";
inline constexpr const char* profile =
    R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":"qmp-wred"}}})";
inline constexpr const char* policy =
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"}}})";
inline constexpr const char* both =
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"},)"
    R"("queue-management-profile":{"name":"qmp-wred"}}})";

inline const std::string percentText =
    "QosOc::PercentType::value < QosOc::PercentType::min or > QosOc::PercentType::max not allowed";
inline constexpr std::uint32_t allOnes = 4294967295u;

inline Qos::TxQueuePriority priorityOf(unsigned value) {
  return static_cast<Qos::TxQueuePriority>(value);
}
inline QueueSettings bandwidth(unsigned char percent) { return {.bandwidth = percent}; }
inline QueueSettings ecnAlone() { return {.ecn = QueueDevice::ecn()}; }
inline QueueSettings all() {
  return {Qos::strictPriority, static_cast<unsigned char>(40), QueueDevice::ecn()};
}

struct Queues : testing::Test, QueueDevice {
  Queues() { start(); }
};

inline constexpr const char* ecnShown = "named ecn 100-200/3 50% 7";
inline constexpr const char* allShown = "named strict 40% ecn 100-200/3 50% 7";

inline QueueSettings settingsOf(std::size_t number) {
  if (number == 0) return {};
  if (number == 1) return {Qos::strictPriority, static_cast<unsigned char>(40), nullptr};
  return number == 2 ? ecnAlone() : all();
}

}  // namespace support::queueCases
