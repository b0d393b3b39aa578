// Tx queues, which interfaces and QoS profiles hold alike.
#pragma once

#include "host/Schema.h"
#include "host/sections/Parts.h"
#include "models/native/TxQueue.h"

namespace host {

inline constexpr const char* txQueuesMember = "tx-queues";

// A collection of tx queues.
Schema txQueuesSchema();

// Keys: "uc-3", "mc-3".
Qos::TxQueue txQueueOf(const std::string& key);
std::string keyOf(const Qos::TxQueue& txQueue);

Rok::Ptr<Qos::TxQueueConfig> newTxQueue(const std::string& key, const Value& value);
std::unique_ptr<Place> txQueuePlace(const Rok::Ptr<Qos::TxQueueConfig>& txQueue);

// The tx queues of an interface or of a profile's body.
template <class Owner>
class TxQueuesPlace final : public Place {
 public:
  explicit TxQueuesPlace(Rok::Ptr<Owner> owner) : owner_(std::move(owner)) {}

  std::vector<std::string> keys() const override {
    return sortedKeys(owner_->txQueueConfig(), keyOf);
  }
  std::unique_ptr<Place> at(const std::string& key) const override {
    const auto* found = owner_->txQueueConfig().find(txQueueOf(key));
    return found != nullptr ? txQueuePlace(*found) : nullptr;
  }
  void put(const std::string& key, const Value& value, Writes& writes) override {
    const auto txQueue = newTxQueue(key, value);
    writes([&] { owner_->txQueueConfigIs(txQueue->txQueue(), txQueue); });
  }
  void erase(const std::string& key, Writes& writes) override {
    writes([&] { owner_->txQueueConfigDel(txQueueOf(key)); });
  }

 private:
  Rok::Ptr<Owner> owner_;
};

}  // namespace host
