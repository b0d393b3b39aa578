// Tx queues, which interfaces and QoS profiles hold alike.
//
// "<tx queue>": {"priority": ..., "bandwidth": n, "shape": n, "ecn": {...}, "wred": {...}}
#pragma once

#include "host/sections/Forms.h"
#include "host/sections/Plain.h"
#include "models/native/TxQueue.h"

namespace host {

// "uc-3", "mc-3"
template <>
struct KeyForm<Qos::TxQueue> : ParsedKeyForm<Qos::TxQueue> {
  static constexpr const char* expected = "a tx queue: uc-N or mc-N, N from 0 to 255";

  static std::string pattern() { return "^[um]c-(?:" + decimalPattern(255) + ")$(?!\\n)"; }
  static std::optional<Qos::TxQueue> parse(std::string_view text) {
    const bool isMulticast = text.starts_with("mc-");
    if (!isMulticast && !text.starts_with("uc-")) return std::nullopt;
    const auto id = numberIn<unsigned char>(text.substr(3));
    if (!id) return std::nullopt;
    return Qos::TxQueue{*id, isMulticast ? Qos::multicast : Qos::unicast};
  }
  static std::string text(const Qos::TxQueue& txQueue) {
    return (txQueue.type == Qos::unicast ? "uc-" : "mc-") + std::to_string(txQueue.id.value);
  }
};

inline constexpr Setting<Plain<Qos::EcnWredConfig::Settings>> ecnWredSettings[] = {
    field<&Qos::EcnWredConfig::Settings::minThreshold>("min-threshold"),
    field<&Qos::EcnWredConfig::Settings::maxThreshold>("max-threshold"),
    field<&Qos::EcnWredConfig::Settings::thresholdUnit>("threshold-unit"),
    field<&Qos::EcnWredConfig::Settings::maxDropPercent>("max-drop-percent"),
    field<&Qos::EcnWredConfig::Settings::weight>("weight"),
};

inline constexpr Setting<Qos::TxQueueConfig> txQueueSettings[] = {
    attribute<&Qos::TxQueueConfig::priority, &Qos::TxQueueConfig::priorityIs>("priority"),
    attribute<&Qos::TxQueueConfig::bandwidth, &Qos::TxQueueConfig::bandwidthIs>("bandwidth"),
    attribute<&Qos::TxQueueConfig::shape, &Qos::TxQueueConfig::shapeIs>("shape"),
    block<&Qos::TxQueueConfig::ecnConfig, &Qos::TxQueueConfig::ecnConfigIs, ecnWredSettings>("ecn"),
    block<&Qos::TxQueueConfig::wredConfig, &Qos::TxQueueConfig::wredConfigIs, ecnWredSettings>(
        "wred"),
};

// Of an interface or of a profile's body.
template <class Owner>
using TxQueues = Objects<all(&Owner::txQueueConfig), &Owner::txQueueConfigIs,
                         &Owner::txQueueConfigDel, Record<txQueueSettings>>;

}  // namespace host
