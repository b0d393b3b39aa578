// Random days of tx queues and their comments, beside plain maps.
#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <map>
#include <optional>
#include <random>
#include <string>
#include <utility>

#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "tests/support/QueueDevice.h"
#include "tests/support/QueueFixture.h"
#include "tests/support/Refusals.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::queueOracleTest {
namespace {

using support::outOfRange;
using support::QueueDevice;
using support::QueueModel;
using support::QueueSettings;
using support::WalkOrder;

using namespace support::queueCases;

// ===== Oracles

// Random days told again by plain maps: who comes first matters, so the records are kept, and each
// event does to them what it does to its own queue.
class QueueDay {
 public:
  enum Comment { missing, empty, note, namesProfile, namesPolicy, namesBoth, comments };
  using Key = std::pair<std::string, Qos::TxQueue>;

  explicit QueueDay(std::uint32_t seed) : random_(seed) {
    device_.earlier("voice", 1);
    device_.start();
  }

  void step() {
    const Key key{"Ethernet" + std::to_string(random_() % 3),
                  {static_cast<unsigned char>(random_() % 3), Qos::QueueType(random_() % 2)}};
    switch (random_() % 12) {
      case 0:
        return arriveOrGo(key);
      case 1:
        return arriveOutOfRange(key);
      case 2:
        return interfaceGoesAndComes(key.first);
      case 3:
        return restart();
      case 4:
        return outOfRange(key);
      case 5:
      case 6:
      case 7:
        return comment(key, static_cast<Comment>(random_() % comments));
      default:
        return settings(key);
    }
  }

  QueueModel model() const { return device_.model(); }
  QueueModel expected() const {
    QueueModel result{{"voice", "named 1% ecn 0-0/0 0% 0"}};
    if (nameless_) result[""] = "blank";
    for (const auto& [key, queue] : queues_) {
      if (queue.record) result[nameOf(key)] = queue.record->text();
    }
    return result;
  }

 private:
  struct Record {
    bool named = false;
    bool strict = false;
    unsigned bandwidth = 101;
    std::optional<unsigned> drop;

    std::string text() const {
      std::string result;
      if (named) result += " named";
      if (strict) result += " strict";
      if (bandwidth != 101) result += " " + std::to_string(bandwidth) + "%";
      if (drop) result += " ecn 100-200/3 " + std::to_string(*drop) + "% 7";
      return result.empty() ? "blank" : result.substr(1);
    }
  };
  struct Queue {
    bool isThere = false;
    unsigned priority = 2;
    unsigned bandwidth = 101;
    std::optional<unsigned> drop;
    Comment comment = missing;
    std::optional<Record> record;
  };
  struct OutOfRange {};

  static std::string nameOf(const Key& key) {
    return key.first + (key.second.type == Qos::unicast ? "-unicast-" : "-multicast-") +
           std::to_string(key.second.id.value);
  }
  static bool hasProfile(const Queue& queue) {
    return queue.comment == namesProfile || queue.comment == namesBoth;
  }
  static bool hasPolicy(const Queue& queue) {
    return queue.comment == namesPolicy || queue.comment == namesBoth;
  }

  // ---- what the events do to the records
  static void ecnRule(Queue& queue) {
    if (hasProfile(queue)) return;
    if (queue.drop && *queue.drop > 100) throw OutOfRange();
    Record next = queue.record.value_or(Record());
    next.drop = queue.drop;
    if (next.drop) next.named = true;
    queue.record = next;
  }
  void configRule(Queue& queue) {
    if (hasPolicy(queue)) return;
    if (queue.priority != 2 || queue.bandwidth != 101) {
      if (queue.bandwidth > 101) throw OutOfRange();
      const auto drop = queue.record ? queue.record->drop : std::nullopt;
      queue.record = Record{true, queue.priority == 0, queue.bandwidth, drop};
    } else if (queue.record) {
      queue.record = Record{queue.record->drop.has_value(), false, 101, queue.record->drop};
    } else {
      nameless_ = true;
    }
  }
  void bothRules(Queue& queue) {
    ecnRule(queue);
    configRule(queue);
  }
  void commentRule(Queue& queue) {
    if (!hasProfile(queue) && !hasPolicy(queue)) return bothRules(queue);
    if (!queue.record) return;
    if (hasProfile(queue)) queue.record->drop.reset();
    if (hasPolicy(queue)) queue.record = Record{false, false, 101, queue.record->drop};
  }
  // Does the same natively and to the records; both are refused, or none.
  void refusedAlike(const std::function<void()>& write, const std::function<void()>& rule) {
    bool expected = false;
    try {
      rule();
    } catch (const OutOfRange&) {
      expected = true;
    }
    EXPECT_EQ(outOfRangeText(write), expected ? percentText : "");
  }
  static std::string outOfRangeText(const std::function<void()>& write) {
    return support::outOfRange(write);
  }

  // ---- the events
  QueueSettings random(Queue& queue) {
    queue.priority = random_() % 3;
    queue.bandwidth = std::array{0u, 40u, 100u, 101u, 101u}[random_() % 5];
    queue.drop = std::array<std::optional<unsigned>, 4>{0, 50, 100, std::nullopt}[random_() % 4];
    return native(queue);
  }
  static QueueSettings native(const Queue& queue) {
    return {priorityOf(queue.priority), static_cast<unsigned char>(queue.bandwidth),
            queue.drop ? ecnOf(*queue.drop) : nullptr};
  }
  static Rok::Ptr<Qos::EcnWredConfig const> ecnOf(unsigned drop) {
    return QueueDevice::ecn(100, 200, static_cast<unsigned char>(drop));
  }
  Qos::TxQueueConfig& nativeOf(const Key& key) {
    return **device_.interface(key.first)->txQueueConfig().find(key.second);
  }

  void arriveOrGo(const Key& key) {
    Queue& queue = queues_[key];
    queue.isThere = !queue.isThere;
    if (queue.isThere) {
      device_.add(key.first, key.second, random(queue));
      bothRules(queue);
    } else {
      device_.remove(key.first, key.second);
      queue.record.reset();
    }
  }
  // There is no machine then, and no machine removes the entry that it may have left.
  void arriveOutOfRange(const Key& key) {
    Queue& queue = queues_[key];
    if (queue.isThere) return;
    random(queue);
    if (random_() % 2 == 0) {
      queue.bandwidth = 102;
    } else {
      queue.drop = 101;
    }
    refusedAlike([&] { device_.add(key.first, key.second, native(queue)); },
                 [&] { bothRules(queue); });
    const bool isBuilt = device_.machine(key.first, key.second) != nullptr;
    device_.remove(key.first, key.second);
    if (isBuilt) queue.record.reset();
  }
  void interfaceGoesAndComes(const std::string& name) {
    device_.remove(name);
    const auto made = Rok::make<Qos::IntfConfig>(QueueDevice::id(name));
    for (auto& [key, queue] : queues_) {
      if (key.first != name) continue;
      if (std::exchange(queue.isThere, random_() % 2 == 0)) queue.record.reset();
      if (!queue.isThere) continue;
      made->txQueueConfigIs(key.second, QueueDevice::txQueueConfig(key.second, random(queue)));
      bothRules(queue);
    }
    device_.config->intfConfigIs(QueueDevice::id(name), made);
  }
  void restart() {
    device_.restart();
    for (auto& [key, queue] : queues_) {
      if (queue.isThere) bothRules(queue);
    }
  }
  // A value out of range that is set right again.
  void outOfRange(const Key& key) {
    Queue& queue = queues_[key];
    if (!queue.isThere) return;
    Qos::TxQueueConfig& config = nativeOf(key);
    const bool isEcn = random_() % 2 == 0;
    const Queue before = queue;
    (isEcn ? queue.drop.emplace() : queue.bandwidth) = isEcn ? 101 : 102;
    const auto write = [&] {
      isEcn ? config.ecnConfigIs(native(queue).ecn) : config.bandwidthIs(native(queue).bandwidth);
    };
    const auto rule = [&] { isEcn ? ecnRule(queue) : configRule(queue); };
    refusedAlike(write, rule);
    queue.drop = before.drop;
    queue.bandwidth = before.bandwidth;
    refusedAlike(write, rule);
  }
  void comment(const Key& key, Comment to) {
    Queue& queue = queues_[key];
    if (std::exchange(queue.comment, to) == to) return;
    constexpr std::array<const char*, comments> texts{"", "", foreign, profile, policy, both};
    if (to == missing) {
      device_.commentDel(key.first, key.second);
    } else {
      device_.comment(key.first, key.second, texts[to]);
    }
    if (queue.isThere) commentRule(queue);
  }
  void settings(const Key& key) {
    Queue& queue = queues_[key];
    if (!queue.isThere) return;
    Qos::TxQueueConfig& config = nativeOf(key);
    const Queue before = queue;
    const QueueSettings wanted = random(queue);
    const Queue after = std::exchange(queue, before);
    switch (random_() % 3) {
      case 0:
        config.priorityIs(wanted.priority);
        if (std::exchange(queue.priority, after.priority) != after.priority) configRule(queue);
        break;
      case 1:
        config.bandwidthIs(wanted.bandwidth);
        if (std::exchange(queue.bandwidth, after.bandwidth) != after.bandwidth) configRule(queue);
        break;
      default:
        config.ecnConfigIs(wanted.ecn);
        if (std::exchange(queue.drop, after.drop) || after.drop) ecnRule(queue);
    }
  }

  std::mt19937 random_;
  QueueDevice device_;
  std::map<Key, Queue> queues_;
  bool nameless_ = false;
};

TEST(QueueOracle, RandomDaysAgreeWithPlainMapsInAnyWalkOrder) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    const WalkOrder walk(seed % 2 == 0 ? seed : 0);
    QueueDay day(seed);
    for (int step = 0; step < 200; ++step) {
      day.step();
      ASSERT_EQ(day.model(), day.expected()) << "seed " << seed << ", step " << step;
    }
  }
}

TEST(QueueOracle, AStartIsTheSameInAnyWalkOrder) {
  std::optional<QueueModel> first;
  for (std::uint32_t seed = 0; seed < 10; ++seed) {
    const WalkOrder walk(seed);
    QueueDevice device;
    for (unsigned number = 0; number < 60; ++number) {
      const std::string name = "Ethernet" + std::to_string(number % 7);
      const Qos::TxQueue txQueue{static_cast<unsigned char>(number), Qos::QueueType(number % 2)};
      constexpr std::array texts{foreign, profile, policy, both};
      if (number % 5 != 4) device.comment(name, txQueue, texts[number % 5]);
      device.add(name, txQueue, settingsOf(number / 5 % 4));
    }
    device.start();
    if (!first) first = device.model();
    EXPECT_EQ(device.model(), *first);
  }
}

}  // namespace
}  // namespace QosOc::queueOracleTest
