// What the rows of the table ask about the native side.
#pragma once

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "tests/days/Facts.h"

namespace days {

inline host::Tokens below(host::Tokens place, const std::string& key) {
  place.push_back(key);
  return place;
}

// The queue name of an id as a start at that step reads it: the last of those that hold it. Empty
// without one.
std::string queueName(const Facts& facts, const std::string& id, std::size_t step);

// A tx queue of an interface: "uc-3".
class TxQueue {
 public:
  TxQueue(const Facts& facts, std::string interface, std::string key)
      : facts_(&facts), interface_(std::move(interface)), key_(std::move(key)) {}
  // That of an entry of `queues`, "Ethernet1-unicast-3". Nothing for another name.
  static std::optional<TxQueue> named(const Facts& facts, const std::string& queueName);
  // All that an interface has, or had at any time.
  static std::vector<TxQueue> of(const Facts& facts, const std::string& interface,
                                 std::size_t step);
  static std::vector<TxQueue> everOf(const Facts& facts, const std::string& interface);

  std::string id() const { return key_.substr(3); }
  host::Tokens place() const { return {"interfaces", interface_, "tx-queues", key_}; }
  host::Tokens commentPlace() const;

  // Whether a priority or a bandwidth is set. Requires: it is there.
  bool isConfigured() const;
  // What its comment names after a step; empty when it names none.
  std::string policy(std::size_t step) const;
  std::string profile(std::size_t step) const;
  std::string policy() const { return policy(facts_->now()); }
  std::string profile() const { return profile(facts_->now()); }
  // Whether a start would attach its profile.
  bool isAttached() const {
    return !profile().empty() && !queueName(*facts_, id(), facts_->now()).empty();
  }
  bool everNamedPolicy() const;
  bool everNamedProfile() const;

 private:
  std::string comment(std::size_t step) const;

  const Facts* facts_;
  std::string interface_;
  std::string key_;
};

// The classifiers in the name of a policy map; both empty for a name of another form.
struct PolicyMapName {
  explicit PolicyMapName(const std::string& name);
  bool isDerived() const { return !ipv4.empty() || !ipv6.empty(); }
  std::string ipv4;
  std::string ipv6;
};

}  // namespace days
