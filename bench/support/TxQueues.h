// The tx queues of the devices, by number: ten make an interface.
#pragma once

#include <cstddef>
#include <string>

#include "models/native/TxQueue.h"

namespace Bench {

inline constexpr std::size_t txQueuesOfInterface = 10;
inline constexpr unsigned char bandwidths[] = {40, 41};

inline std::size_t interfaceOf(std::size_t number) { return number / txQueuesOfInterface; }
inline Nerit::IntfId interfaceId(std::size_t interface) {
  return Nerit::IntfId("Ethernet" + std::to_string(interface));
}
inline Qos::TxQueue txQueueOf(std::size_t number) {
  return {static_cast<unsigned char>(number % txQueuesOfInterface), Qos::unicast};
}

// The tx queue gets the other one of the two bandwidths.
inline void changeBandwidth(Qos::TxQueueConfig& txQueue) {
  txQueue.bandwidthIs(bandwidths[txQueue.bandwidth() == bandwidths[0] ? 1 : 0]);
}

}  // namespace Bench
