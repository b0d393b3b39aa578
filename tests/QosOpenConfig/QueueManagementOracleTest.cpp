// Random days of queue-management profiles and their attachments, beside plain maps.
#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "tests/support/QueueManagementDevice.h"
#include "tests/support/TraceCapture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::queueManagementOracleTest {
namespace {

using support::AttachmentModel;
using support::EcnWred;
using support::multicast;
using support::ProfileModel;
using support::QueueManagementDevice;
using support::settings;
using support::TraceCapture;
using support::unicast;
using support::WalkOrder;

// ===== Oracles

// What the attachments should be, by plain maps. Where several tx queues write one entry in one
// event, the last of an unspecified order decides, so every one of them is a candidate.
struct ExpectedAttachments {
  std::map<std::string, std::set<Qos::TxQueue>> interfaces;
  std::map<std::string, std::string> comments;  // the profile that each key's comment names
  std::map<std::string, unsigned> names;        // the native map
  std::map<unsigned, std::string> nameOf;       // what the root made of it
  AttachmentModel model;
  std::map<std::string, std::set<std::string>> candidates;

  static std::string key(const std::string& intf, const Qos::TxQueue& queue) {
    return std::string(std::string_view(QueueManagementDevice::key(intf, queue)));
  }
  std::optional<std::string> label(const std::string& intf, const Qos::TxQueue& queue) const {
    const auto name = nameOf.find(queue.id.value);
    if (name == nameOf.end()) return {};
    return intf + " " + name->second;
  }
  void write(const std::string& intf, const Qos::TxQueue& queue) {
    const auto comment = comments.find(key(intf, queue));
    const auto entry = label(intf, queue);
    if (comment == comments.end() || comment->second.empty() || !entry) return;
    candidates[*entry].insert(comment->second);
  }
  template <class Which>
  void writeEach(const Which& which) {
    for (const auto& [intf, queues] : interfaces) {
      for (const auto& queue : queues) {
        if (which(intf, queue)) write(intf, queue);
      }
    }
  }
  void blank(const std::string& intf, const Qos::TxQueue& queue) {
    const auto entry = label(intf, queue);
    if (entry && model.contains(*entry)) model[*entry] = "blank";
  }
  // Takes a name from the first id of several: which one that is, only the root knows.
  void forget(const std::string& name, const QueueManagementProfileKivToOcSm& root) {
    unsigned lost = 0;
    for (auto i = nameOf.begin(); i != nameOf.end();) {
      const bool gone = i->second == name &&
                        root.txQueueIdToQueueNameMap(static_cast<unsigned char>(i->first)).empty();
      lost += gone ? 1 : 0;
      i = gone ? nameOf.erase(i) : std::next(i);
    }
    EXPECT_LE(lost, 1u);
    for (const auto& [id, held] : nameOf) EXPECT_TRUE(lost == 1 || held != name);
  }
  void start() {
    nameOf.clear();
    for (const auto& [name, id] : names) nameOf[id] = name;
    writeEach([](const auto&, const auto&) { return true; });
  }
  // Takes over which candidates won.
  void settle(const AttachmentModel& actual) {
    for (const auto& [entry, profiles] : candidates) {
      const auto won = actual.find(entry);
      model[entry] =
          won != actual.end() && profiles.contains(won->second) ? won->second : *profiles.begin();
    }
    candidates.clear();
  }
};

struct ExpectedProfiles {
  struct Profile {
    Rok::Ptr<Qos::TxQueueConfig> queue;  // null while tx queue 0 is away
  };
  std::map<std::string, Profile> profiles;
  ProfileModel model;

  void write(const std::string& name) {
    const auto& queue = profiles[name].queue;
    if (!queue) return;
    const EcnWred& source = queue->ecnConfig() ? queue->ecnConfig() : queue->wredConfig();
    std::string text = "0-0 100%";
    if (source) {
      text = std::to_string(source->minThreshold()) + "-" + std::to_string(source->maxThreshold()) +
             " " + std::to_string(unsigned{source->maxDropPercent().value}) + "%";
    }
    if (queue->ecnConfig()) text += " ecn";
    if (queue->wredConfig()) text += " drop";
    model[name] = text;
  }
};

struct Day : QueueManagementDevice {
  explicit Day(std::uint32_t seed) : random(seed) { start(); }

  std::mt19937 random;
  ExpectedAttachments attachments;
  ExpectedProfiles expectedProfiles;
  unsigned sharedComments = 0;  // those that reached several entries

  unsigned roll(unsigned sides) { return static_cast<unsigned>(random() % sides); }
  std::string anIntf() {
    const char* names[] = {"Ethernet1", "Etna1", "Vlan2"};
    return names[roll(3)];
  }
  Qos::TxQueue aQueue() {
    const unsigned char ids[] = {0, 1, 16};
    return {ids[roll(3)], roll(2) == 0 ? Qos::unicast : Qos::multicast};
  }
  EcnWred someSettings() {
    return roll(3) == 0 ? nullptr
                        : settings(roll(9), roll(9), static_cast<unsigned char>(roll(101)));
  }

  void toggleInterface() {
    const std::string name = anIntf();
    const auto found = attachments.interfaces.find(name);
    if (found != attachments.interfaces.end()) {
      removeIntf(name);
      for (const auto& queue : found->second) attachments.blank(name, queue);
      attachments.interfaces.erase(found);
      return;
    }
    const auto made = Rok::make<Qos::IntfConfig>(id(name));
    auto& queues = attachments.interfaces[name];
    for (unsigned n = roll(4); n > 0; --n) queues.insert(aQueue());
    for (const auto& queue : queues) {
      made->txQueueConfigIs(queue, txQueue(queue));
      attachments.write(name, queue);
    }
    config->intfConfigIs(id(name), made);
  }
  void toggleQueue() {
    const std::string name = anIntf();
    const Qos::TxQueue queueKey = aQueue();
    if (!attachments.interfaces.contains(name)) return;
    auto& queues = attachments.interfaces[name];
    if (queues.erase(queueKey) != 0) {
      removeQueue(name, queueKey);
      attachments.blank(name, queueKey);
    } else {
      queues.insert(queueKey);
      attachments.write(name, queueKey);
      queue(name, queueKey);
    }
  }
  // Any, but rather one that the tx queues of two interfaces share.
  std::string aCommentKey() {
    std::vector<std::string> keys = {ExpectedAttachments::key(anIntf(), aQueue())};
    std::set<std::string> seen;
    for (const auto& [intf, queues] : attachments.interfaces) {
      for (const auto& queue : queues) {
        const std::string key = ExpectedAttachments::key(intf, queue);
        if (!seen.insert(key).second) keys.push_back(key);
      }
    }
    return keys[roll(static_cast<unsigned>(keys.size()))];
  }
  void changeComment() {
    const std::string changed = aCommentKey();
    const unsigned what = roll(6);
    if (what == 0) {
      cli->commentDel(changed);
      attachments.comments.erase(changed);
      return;
    }
    const std::string profile = what == 1 ? "" : "p" + std::to_string(roll(3));
    const auto old = attachments.comments.find(changed);
    if (old != attachments.comments.end() && old->second == profile) return;
    attachments.comments[changed] = profile;
    attachments.writeEach([&](const std::string& intf, const Qos::TxQueue& queue) {
      return ExpectedAttachments::key(intf, queue) == changed;
    });
    sharedComments += attachments.candidates.size() > 1 ? 1 : 0;
    cli->commentIs(changed, profile.empty() ? Rok::String("note") : naming(profile));
  }
  void changeName() {
    const std::string changed(1, "abc"[roll(3)]);
    const unsigned char ids[] = {0, 1, 16};
    const unsigned newId = ids[roll(3)];
    const auto old = attachments.names.find(changed);
    if (old != attachments.names.end() && (old->second == newId || roll(3) == 0)) {
      nameDel(changed);
      attachments.names.erase(old);
      return attachments.forget(changed, *root);
    }
    attachments.names[changed] = newId;
    if (newId == 16) {
      name(changed, 16);
      return attachments.forget(changed, *root);
    }
    attachments.nameOf[newId] = changed;
    attachments.writeEach(
        [&](const std::string&, const Qos::TxQueue& queue) { return queue.id.value == newId; });
    name(changed, static_cast<unsigned char>(newId));
  }
  void replaceNames() {
    queueNames = Rok::make<Qos::QueueNameToTxQueueIdMap>();
    attachments.names.clear();
    if (roll(2) == 0) {
      queueNames->queueNameToTxQueueIdIs("c", 1);
      attachments.names["c"] = 1;
    }
    config->queueNameToTxQueueIdMapIs(queueNames);
  }
  void changeSettings() {
    for (const auto& [intfName, queues] : attachments.interfaces) {
      if (queues.empty()) continue;
      const Qos::TxQueue queueKey = *queues.begin();
      attachments.write(intfName, queueKey);
      (*intf(intfName)->txQueueConfig().find(queueKey))->ecnConfigIs(settings(1, 2, 3));
      return;
    }
  }
  void changeProfile() {
    const std::string name = "p" + std::to_string(roll(3));
    const auto found = expectedProfiles.profiles.find(name);
    const unsigned what = roll(8);
    if (found == expectedProfiles.profiles.end()) {
      const auto ecn = someSettings();
      expectedProfiles.profiles[name].queue = profile(name, ecn, someSettings());
    } else if (what == 0) {
      removeProfile(name);
      expectedProfiles.profiles.erase(found);
      expectedProfiles.model.erase(name);
      return;
    } else if (!found->second.queue) {
      found->second.queue = txQueue(unicast(0), someSettings());
      bodyOf(name)->txQueueConfigIs(unicast(0), found->second.queue);
    } else if (what == 1) {
      bodyOf(name)->txQueueConfigDel(unicast(0));
      found->second.queue = nullptr;
    } else if (what < 5) {
      found->second.queue->ecnConfigIs(someSettings());
    } else {
      found->second.queue->wredConfigIs(someSettings());
    }
    expectedProfiles.write(name);
  }
  void restartAll() {
    stop();
    if (roll(2) == 0) earlierProfile("stale");
    attachments.start();
    start();
  }

  void step() {
    const unsigned what = roll(20);
    if (what < 3) return toggleInterface();
    if (what < 7) return toggleQueue();
    if (what < 11) return changeComment();
    if (what < 14) return changeName();
    if (what < 15) return changeSettings();
    if (what < 18) return changeProfile();
    if (what < 19) return replaceNames();
    restartAll();
  }
};

// Where keys are traced, a comment's tx queues are found by another way, with the same outcome.
TEST(QueueManagementOracle, RandomDaysAgreeWithPlainMapsInAnyWalkOrder) {
  unsigned attached = 0;
  unsigned sharedWhileTraced = 0;
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    const WalkOrder walk(seed % 3 == 0 ? 0 : seed);
    std::optional<TraceCapture> trace;
    if (seed % 2 == 0) trace.emplace(std::initializer_list<unsigned>{9});
    Day day(seed);
    for (int step = 0; step < 250; ++step) {
      if (trace) trace->clear();
      day.step();
      const auto actual = day.attachmentModel();
      day.attachments.settle(actual);
      ASSERT_EQ(actual, day.attachments.model) << "seed " << seed << ", step " << step;
      ASSERT_EQ(day.profileModel(), day.expectedProfiles.model)
          << "seed " << seed << ", step " << step;
      attached += static_cast<unsigned>(actual.size());
    }
    if (trace) sharedWhileTraced += day.sharedComments;
  }
  EXPECT_GT(attached, 10000u) << "the days must be busy ones";
  EXPECT_GT(sharedWhileTraced, 5u) << "comments must reach several tx queues";
}

// Where each entry has one writer and each name one id, nothing depends on the walk's order: a day
// comes out the same in every order, and a start over its output changes nothing.
TEST(QueueManagementOracle, ADayWithoutSharedEntriesIsTheSameInEveryWalkOrder) {
  for (std::uint32_t day = 1; day <= 10; ++day) {
    std::vector<std::pair<AttachmentModel, ProfileModel>> outcomes;
    for (const std::uint32_t order : {0u, 7u, 99u, 12345u}) {
      const WalkOrder walk(order);
      std::mt19937 random(day);
      QueueManagementDevice device;
      device.start();
      for (int step = 0; step < 150; ++step) {
        const auto number = static_cast<unsigned char>(random() % 5);
        const std::string digit = std::to_string(number);
        const std::string profile = "p" + std::to_string(random() % 3);
        const Rok::String intf("Ethernet" + std::to_string(random() % 3));
        switch (random() % 6) {
          case 0:
            device.name("q" + digit, number);
            break;
          case 1:
            if (device.intf(intf)->txQueueConfig().find(unicast(number)) == nullptr) {
              device.queue(intf, unicast(number));
            }
            break;
          case 2:
          case 3:
            device.comment(intf, unicast(number), profile);
            break;
          case 4:
            device.removeQueue(intf, unicast(number));
            break;
          default:
            device.removeProfile(profile);
            device.profile(profile, settings(number, 9, 3));
        }
      }
      outcomes.emplace_back(device.attachmentModel(), device.profileModel());
      EXPECT_EQ(outcomes.back(), outcomes.front()) << "day " << day << ", order " << order;
      device.restart();
      EXPECT_EQ(outcomes.back(), std::pair(device.attachmentModel(), device.profileModel()));
    }
  }
}

}  // namespace
}  // namespace QosOc::queueManagementOracleTest
