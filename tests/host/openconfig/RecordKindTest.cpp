// The tables of leaves: what holds for all of them, and how records are walked and found.
#include "host/openconfig/RecordKind.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::recordKindTest {
namespace {

using support::HostModel;
using support::HostRendered;
using testing::ElementsAre;

void collect(std::span<const RecordKind* const> kinds, std::vector<const RecordKind*>& all) {
  for (const RecordKind* kind : kinds) {
    all.push_back(kind);
    collect(kind->children, all);
  }
}
std::vector<const RecordKind*> allKinds() {
  std::vector<const RecordKind*> all;
  collect(outermostKinds(), all);
  return all;
}

std::vector<std::string> keysOf(const RecordKind& kind, const void* holder) {
  std::vector<std::string> keys;
  kind.each(holder,
            [&](std::string_view key, auto /*misfit*/, const void*) { keys.emplace_back(key); });
  return keys;
}

LeafValue leafAt(const RecordKind& kind, const void* entry, std::string_view path,
                 const Keys& keys) {
  for (std::size_t i = 0; i < kind.leaves.size(); ++i) {
    if (kind.leaves[i].path == path) return kind.read(kind.record(entry), i, keys, {});
  }
  ADD_FAILURE() << "there is no leaf " << path;
  return {};
}

// ===== All kinds

TEST(RecordKinds, AreFifteenAndKnowTheirParents) {
  EXPECT_EQ(allKinds().size(), 15u);
  for (const RecordKind* kind : outermostKinds()) EXPECT_EQ(kind->parent, nullptr) << kind->path;
  for (const RecordKind* kind : allKinds()) {
    for (const RecordKind* child : kind->children) EXPECT_EQ(child->parent, kind) << child->path;
  }
}

TEST(RecordKinds, StandInTheOrderOfTheirPaths) {
  const auto less = [](const RecordKind* a, const RecordKind* b) {
    return pathLess(a->path, b->path);
  };
  EXPECT_TRUE(std::is_sorted(outermostKinds().begin(), outermostKinds().end(), less));
  for (const RecordKind* kind : allKinds()) {
    EXPECT_TRUE(std::is_sorted(kind->children.begin(), kind->children.end(), less)) << kind->path;
  }
}

TEST(RecordKinds, EveryEntryOfAListHasItsKeyTwice) {
  for (const RecordKind* kind : allKinds()) {
    if (!kind->isList()) continue;
    std::vector<std::string_view> paths;
    for (const auto& row : kind->leaves) paths.push_back(row.path);
    EXPECT_THAT(paths, testing::Contains(kind->key));
    EXPECT_THAT(paths, testing::Contains("config/" + std::string(kind->key)));
  }
}

TEST(RecordKinds, APathIsBeforeAnotherContainerByContainer) {
  EXPECT_TRUE(pathLess("input/classifiers", "input-type"));
  EXPECT_TRUE(pathLess("config/type", "interface-id"));
  EXPECT_TRUE(pathLess("config", "config/name"));
  EXPECT_FALSE(pathLess("output/queues", "output/queues"));
}

// ===== Entries

TEST(RecordKinds, AreWalkedInTheOrderOfTheirKeys) {
  const HostModel built;
  for (const char* name : {"Ethernet2", "Ethernet10", "Ethernet1"}) built.interface(name);
  EXPECT_THAT(keysOf(kinds::interface, &built.model),
              ElementsAre("Ethernet1", "Ethernet10", "Ethernet2"));
  const auto policy = built.model.schedulerPolicies->schedulerPolicyIs("wan");
  for (const unsigned sequence : {10u, 9u, 100u}) policy->schedulersIs()->schedulerIs(sequence);
  EXPECT_THAT(keysOf(kinds::scheduler, policy.get()), ElementsAre("9", "10", "100"))
      << "numbers in the order of numbers";
}

TEST(RecordKinds, AnEntryWithoutAKeyIsNotWalked) {
  const HostModel built;
  built.queueIs("");
  built.queueIs("q");
  EXPECT_THAT(keysOf(kinds::queue, &built.model), ElementsAre("q"));
}

TEST(RecordKinds, BelowWhatIsNotThereThereIsNothing) {
  const HostModel built;
  const auto classifier = built.classifier("edge");
  EXPECT_THAT(keysOf(kinds::term, classifier.get()), ElementsAre());
  EXPECT_EQ(kinds::term.find(classifier.get(), "voice"), nullptr);
  const auto interface = built.interface("e");
  EXPECT_EQ(kinds::outputPfc.find(interface.get(), ""), nullptr);
  interface->outputIs();
  EXPECT_NE(kinds::outputPfc.find(interface.get(), ""), nullptr);
  EXPECT_EQ(kinds::outputSchedulerPolicy.find(interface.get(), ""), nullptr);
}

TEST(RecordKinds, EntriesAreFoundByTheKeysOfTheDocument) {
  const HostModel built;
  built.termIs(built.term("voice"));
  const void* classifier = kinds::classifier.find(&built.model, "c");
  EXPECT_NE(kinds::term.find(classifier, "voice"), nullptr);
  EXPECT_EQ(kinds::term.find(classifier, "video"), nullptr);

  built.inputClassifierIs(1, "edge");
  const void* interface = kinds::interface.find(&built.model, "e");
  EXPECT_NE(kinds::inputClassifier.find(interface, "IPV6"), nullptr);
  EXPECT_EQ(kinds::inputClassifier.find(interface, "IPV4"), nullptr);
  EXPECT_EQ(kinds::inputClassifier.find(interface, "1"), nullptr) << "a key of the model";

  const auto policy = built.model.schedulerPolicies->schedulerPolicyIs("wan");
  policy->schedulersIs()->schedulerIs(7);
  EXPECT_NE(kinds::scheduler.find(policy.get(), "7"), nullptr);
  for (const char* other : {"8", "07", "seven", "4294967303"}) {
    EXPECT_EQ(kinds::scheduler.find(policy.get(), other), nullptr) << other;
  }
}

TEST(RecordKinds, WhatTheDocumentDoesNotHoldIsNotFound) {
  const HostModel built;
  built.queueIs("");
  built.queueIs("\x01");
  EXPECT_EQ(kinds::queue.find(&built.model, ""), nullptr);
  EXPECT_EQ(kinds::queue.find(&built.model, "\x01"), nullptr);
}

TEST(RecordKinds, ARecordThatIsBookkeepingAloneIsNone) {
  const HostModel built;
  built.outputQueueIs("blank", "", "");
  built.outputQueueIs("voice", "voice", "red");
  const void* interface = kinds::interface.find(&built.model, "e");
  EXPECT_EQ(kinds::outputQueue.record(kinds::outputQueue.find(interface, "blank")), nullptr);
  EXPECT_NE(kinds::outputQueue.record(kinds::outputQueue.find(interface, "voice")), nullptr);
}

// ===== Leaves

TEST(RecordKinds, LeavesAreReadWithoutKnowingTheRecord) {
  const HostModel built;
  auto term = built.term("voice");
  term.conditions = QosOc::Config::TermConditions();
  term.conditions->ipv6.dscp = static_cast<unsigned char>(46);
  built.termIs(term);
  Keys keys;
  keys.push_back("c");
  keys.push_back("voice");
  const void* entry = kinds::term.find(kinds::classifier.find(&built.model, "c"), "voice");
  EXPECT_EQ(leafAt(kinds::term, entry, "conditions/ipv6/config/dscp", keys),
            LeafValue(std::uint64_t{46}));
  EXPECT_TRUE(isAbsent(leafAt(kinds::term, entry, "conditions/ipv4/config/dscp", keys)));
  EXPECT_EQ(leafAt(kinds::term, entry, "config/id", keys), LeafValue(std::string_view("voice")));
}

TEST(RecordKinds, WhoDoesNotListenToFaultsGetsNone) {
  const HostModel built;
  auto term = built.term("voice");
  term.conditions = QosOc::Config::TermConditions();
  term.conditions->ipv4.dscp = static_cast<unsigned char>(64);
  built.termIs(term);
  const void* entry = kinds::term.find(kinds::classifier.find(&built.model, "c"), "voice");
  Keys keys;
  keys.push_back("c");
  keys.push_back("voice");
  EXPECT_TRUE(isAbsent(leafAt(kinds::term, entry, "conditions/ipv4/config/dscp", keys)));
}

TEST(YangStrings, AFaultTellsThePathTheReasonAndTheNativeObject) {
  const HostModel built;
  built.queueIs("\x01");
  built.forwardingGroupIs("gold", "\x02");
  const HostRendered rendered(built);
  EXPECT_THAT(
      rendered.warnings,
      ElementsAre(
          "/openconfig-qos:qos/forwarding-groups/forwarding-group[name='gold']/config/"
          "output-queue: \"\\u0002\" is a name that YANG strings can't hold: left out (from "
          "the queue name \"\\u0002\")",
          "/openconfig-qos:qos/queues/queue[name='\\u0001']: a name that YANG strings can't "
          "hold: left out (from the queue name \"\\u0001\")"));
}

}  // namespace
}  // namespace host::recordKindTest
