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
Qos::TxQueue txQueueOf(std::string_view key);
std::string keyOf(const Qos::TxQueue& txQueue);

Rok::Ptr<Qos::TxQueueConfig> newTxQueue(std::string_view key, const Value& value);
std::unique_ptr<Place> txQueuePlace(const Rok::Ptr<Qos::TxQueueConfig>& txQueue);

// The tx queues of an interface or of a profile's body.
template <class Owner>
class TxQueuesPlace final : public Place {
 public:
  explicit TxQueuesPlace(Rok::Ptr<Owner> owner) : owner_(std::move(owner)) {}

  std::vector<Rok::String> keys() const override {
    return sortedKeys(owner_->txQueueConfig(), keyOf);
  }
  std::unique_ptr<Place> at(const Rok::String& key) const override {
    const auto* found = owner_->txQueueConfig().find(txQueueOf(key));
    return found != nullptr ? txQueuePlace(*found) : nullptr;
  }
  void put(const Rok::String& key, const Value& value, Writes& writes) override {
    const auto txQueue = newTxQueue(key, value);
    writes([&] { owner_->txQueueConfigIs(txQueue->txQueue(), txQueue); });
  }
  void erase(const Rok::String& key, Writes& writes) override {
    writes([&] { owner_->txQueueConfigDel(txQueueOf(key)); });
  }

 private:
  Rok::Ptr<Owner> owner_;
};

}  // namespace host
