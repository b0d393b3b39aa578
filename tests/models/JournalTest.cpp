// What the output model marks in its journal: each record that is handed out for writing, comes or
// goes.
#include "models/openconfig/Journal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cassert>
#include <functional>
#include <string>
#include <vector>

#include "models/openconfig/Classifier.h"
#include "models/openconfig/ForwardingGroup.h"
#include "models/openconfig/Interface.h"
#include "models/openconfig/Pfc.h"
#include "models/openconfig/Queue.h"
#include "models/openconfig/SchedulerPolicy.h"
#include "tests/support/HeaderExample.h"

namespace QosOc::Config::journalTest {
namespace {

using QosOc::Classifier::classifierTypeIpv4;
using QosOc::Classifier::classifierTypeIpv6;
using testing::ElementsAre;
using testing::IsEmpty;
using Texts = std::vector<std::string>;

const char* nameOf(RecordId record) {
  constexpr const char* names[] = {"classifier",       "term",    "group",        "interface",
                                   "input-classifier", "pfc",     "output-queue", "output-policy",
                                   "watchdog",         "profile", "queue",        "policy",
                                   "scheduler",        "input",   "rate"};
  return names[static_cast<unsigned>(record)];
}

// "term edge-in 0 voice"; a "+" behind the name stands for all below it.
Texts shown(const std::vector<Journal::Mark>& marks) {
  Texts texts;
  for (const Journal::Mark& mark : marks) {
    std::string text = nameOf(mark.record);
    if (mark.withAllBelow) text += '+';
    text += ' ' + std::string(mark.keys.outer) + ' ' + std::to_string(mark.keys.number);
    if (!mark.keys.below.empty()) text += ' ' + std::string(mark.keys.below);
    texts.push_back(text);
  }
  return texts;
}

struct Directories {
  Rok::Ptr<ClassifiersDir> classifiers = Rok::make<ClassifiersDir>();
  Rok::Ptr<ForwardingGroupsDir> groups = Rok::make<ForwardingGroupsDir>();
  Rok::Ptr<InterfacesDir> interfaces = Rok::make<InterfacesDir>();
  Rok::Ptr<Pfc> pfc = Rok::make<Pfc>();
  Rok::Ptr<QueueManagementProfilesDir> profiles = Rok::make<QueueManagementProfilesDir>();
  Rok::Ptr<QueuesDir> queues = Rok::make<QueuesDir>();
  Rok::Ptr<SchedulerPoliciesDir> policies = Rok::make<SchedulerPoliciesDir>();

  void journalIs(Journal* journal) const {
    classifiers->journalIs(journal);
    groups->journalIs(journal);
    interfaces->journalIs(journal);
    pfc->journalIs(journal);
    profiles->journalIs(journal);
    queues->journalIs(journal);
    policies->journalIs(journal);
  }
  Terms& terms() const { return *classifiers->classifierIs("edge-in")->termsIs(); }
  Interface& port() const { return *interfaces->interfaceIs("Ethernet1"); }
  Scheduler& scheduler() const {
    return *policies->schedulerPolicyIs("wan")->schedulersIs()->schedulerIs(7);
  }

  // One of each record.
  void fill() const {
    classifiers->classifierIs("edge-in")->typeIs(classifierTypeIpv4);
    terms().termMade("voice");
    groups->forwardingGroupIs("gold")->configIs({"gold", "q1"});
    port().configIs({"Ethernet1"});
    port().inputIs()->classifiersIs()->classifierIs(InterfaceInputClassifier(classifierTypeIpv6));
    port().outputIs()->queuesIs("")->qIs(InterfaceOutputQueue("q1"));
    profiles->queueManagementProfileIs(QueueManagementProfile("red"));
    queues->qIs(Queue("q1"));
    scheduler().inputsIs()->inputIs(SchedulerInput("in"));
  }
};

// The marks of what `act` does to a model that holds one of each record.
Texts marksOf(const std::function<void(const Directories&)>& act) {
  Directories model;
  model.fill();
  Journal journal;
  model.journalIs(&journal);
  act(model);
  Texts marks = shown(journal.taken());
  model.journalIs(nullptr);
  return marks;
}

TEST(Journal, ReadingMarksNothing) {
  const Texts marks = marksOf([](const Directories& model) {
    model.classifiers->classifierIs("edge-in");  // it is there
    model.classifiers->classifier("edge-in")->typeIs(classifierTypeIpv4);
    model.terms().term("voice");
    model.port().outputIs()->queuesIs("")->q("q1");
    model.queues->q("none");
    model.scheduler().inputsIs();
  });
  EXPECT_THAT(marks, IsEmpty());
}

TEST(Journal, ATermIsMarkedWhenItIsMadeWrittenReplacedAndRemoved) {
  EXPECT_THAT(marksOf([](const Directories& m) { m.terms().termMade("web"); }),
              ElementsAre("term edge-in 0 web"));
  EXPECT_THAT(marksOf([](const Directories& m) {
                m.terms().termContent(*m.terms().term().find("voice")).actions.reset();
              }),
              ElementsAre("term edge-in 0 voice"));
  EXPECT_THAT(marksOf([](const Directories& m) { m.terms().termIs(Term("web")); }),
              ElementsAre("term edge-in 0 web"));
  EXPECT_THAT(marksOf([](const Directories& m) { m.terms().termDel("voice"); }),
              ElementsAre("term edge-in 0 voice"));
}

TEST(Journal, AClassifierIsMarkedWhenItComesIsWrittenAndGoesWithItsTerms) {
  EXPECT_THAT(marksOf([](const Directories& m) { m.classifiers->classifierIs("core"); }),
              ElementsAre("classifier core 0"));
  EXPECT_THAT(marksOf([](const Directories& m) {
                m.classifiers->classifier("edge-in")->typeIs(classifierTypeIpv6);
              }),
              ElementsAre("classifier edge-in 0"));
  EXPECT_THAT(
      marksOf([](const Directories& m) { m.classifiers->classifier("edge-in")->configIs({}); }),
      ElementsAre("classifier edge-in 0"));
  EXPECT_THAT(marksOf([](const Directories& m) { m.classifiers->classifierDel("edge-in"); }),
              ElementsAre("classifier+ edge-in 0"));
  EXPECT_THAT(
      marksOf([](const Directories& m) { m.classifiers->classifier("edge-in")->termsDel(); }),
      ElementsAre("classifier+ edge-in 0"));
}

TEST(Journal, AForwardingGroupIsMarkedWhenItComesIsWrittenAndGoes) {
  EXPECT_THAT(
      marksOf([](const Directories& m) { m.groups->forwardingGroupIs("bulk")->configIs({}); }),
      ElementsAre("group bulk 0"));
  EXPECT_THAT(
      marksOf([](const Directories& m) { m.groups->forwardingGroup("gold")->configIs({}); }),
      ElementsAre("group gold 0"));
  EXPECT_THAT(marksOf([](const Directories& m) { m.groups->forwardingGroupDel("gold"); }),
              ElementsAre("group+ gold 0"));
}

TEST(Journal, TheRecordsOfAnInterfaceAreMarkedByItsName) {
  EXPECT_THAT(marksOf([](const Directories& m) {
                m.interfaces->interfaceIs("Ethernet2")->configIs({"Ethernet2"});
              }),
              ElementsAre("interface Ethernet2 0"));
  EXPECT_THAT(marksOf([](const Directories& m) {
                const auto classifiers = m.port().input()->classifiers();
                classifiers->classifierIs(InterfaceInputClassifier(classifierTypeIpv4));
                classifiers->classifierDel(classifierTypeIpv6);
              }),
              ElementsAre("input-classifier Ethernet1 0", "input-classifier Ethernet1 1"));
  EXPECT_THAT(marksOf([](const Directories& m) {
                const auto queues = m.port().output()->queues();
                queues->qContent(*queues->q().find("q1")).config = {};
                queues->qContentIs("q2");
                queues->qIs(InterfaceOutputQueue("q3"));
              }),
              ElementsAre("output-queue Ethernet1 0 q1", "output-queue Ethernet1 0 q2",
                          "output-queue Ethernet1 0 q3"));
  EXPECT_THAT(marksOf([](const Directories& m) {
                m.port().output()->schedulerPolicyIs(InterfaceOutputSchedulerPolicy{{"wan"}});
                m.port().output()->pfcIs({"f"});
              }),
              ElementsAre("output-policy Ethernet1 0", "pfc Ethernet1 0"));
}

TEST(Journal, AnInterfaceThatLosesItsInputOrOutputIsMarkedWithAllBelow) {
  for (const auto& lose : {&Interface::inputDel, &Interface::outputDel}) {
    EXPECT_THAT(marksOf([&](const Directories& m) { (m.port().*lose)(); }),
                ElementsAre("interface+ Ethernet1 0"));
  }
}

TEST(Journal, QueuesAndProfilesAreMarkedWhenTheyAreWrittenAndGo) {
  EXPECT_THAT(marksOf([](const Directories& m) {
                m.queues->qContent(*m.queues->q().find("q1")).config = {};
                m.queues->qContentIs("q2");
                m.queues->qIs(Queue("q3"));
                m.queues->qDel("q4");
              }),
              ElementsAre("queue q1 0", "queue q2 0", "queue q3 0", "queue q4 0"));
  EXPECT_THAT(marksOf([](const Directories& m) {
                m.profiles->queueManagementProfileContentIs("a");
                m.profiles->queueManagementProfileIs(QueueManagementProfile("b"));
                m.profiles->queueManagementProfileDel("red");
              }),
              ElementsAre("profile a 0", "profile b 0", "profile red 0"));
}

TEST(Journal, TheRecordsOfASchedulerPolicyAreMarkedByNameSequenceAndInput) {
  EXPECT_THAT(marksOf([](const Directories& m) {
                m.policies->schedulerPolicyIs("lan")->configIs({"lan"});
                m.policies->schedulerPolicy("wan")->schedulersIs()->schedulerIs(8);
              }),
              ElementsAre("policy lan 0", "scheduler wan 8"));
  EXPECT_THAT(marksOf([](const Directories& m) {
                m.scheduler().configIs({});
                m.scheduler().oneRateTwoColorIs(OneRateTwoColor());
                m.scheduler().inputs()->inputIs(SchedulerInput("in"));
              }),
              ElementsAre("scheduler wan 7", "rate wan 7", "input wan 7 in"));
  EXPECT_THAT(marksOf([](const Directories& m) { m.policies->schedulerPolicyDel("wan"); }),
              ElementsAre("policy+ wan 0"));
}

TEST(Journal, TheWatchdogHasNoKey) {
  EXPECT_THAT(marksOf([](const Directories& m) { m.pfc->watchdogIs({}); }),
              ElementsAre("watchdog  0"));
}

TEST(Journal, WhatIsMadeWhileItListensMarksAtAnyDepth) {
  Directories model;
  Journal journal;
  model.journalIs(&journal);
  model.fill();
  journal.taken();
  model.terms().termMade("web");
  model.port().input()->classifiers()->classifierDel(classifierTypeIpv6);
  model.port().output()->queues()->qContentIs("q2");
  model.scheduler().inputs()->inputIs(SchedulerInput("b"));
  EXPECT_THAT(shown(journal.taken()),
              ElementsAre("term edge-in 0 web", "input-classifier Ethernet1 1",
                          "output-queue Ethernet1 0 q2", "input wan 7 b"));
  model.journalIs(nullptr);
}

TEST(Journal, ARecordIsMarkedOnceUntilTheMarksAreTaken) {
  Directories model;
  Journal journal;
  model.journalIs(&journal);
  for (int i = 0; i < 3; ++i) {
    model.queues->qContentIs("q1");
    model.queues->qContentIs("q2");
  }
  EXPECT_THAT(shown(journal.taken()), ElementsAre("queue q1 0", "queue q2 0"));
  EXPECT_THAT(journal.taken(), IsEmpty());
  model.queues->qContentIs("q2");
  EXPECT_THAT(shown(journal.taken()), ElementsAre("queue q2 0"));
  model.journalIs(nullptr);
}

TEST(Journal, RecordsOfTheSameKeysAndAnotherKindAreApart) {
  Journal journal;
  const RecordKeys keys{"a", 1, "b"};
  journal.mark(RecordId::term, keys);
  journal.mark(RecordId::schedulerInput, keys);
  journal.mark(RecordId::term, {"a", 2, "b"});
  journal.mark(RecordId::term, {"b", 1, "a"});
  journal.mark(RecordId::term, keys);
  EXPECT_THAT(shown(journal.taken()),
              ElementsAre("term a 1 b", "input a 1 b", "term a 2 b", "term b 1 a"));
}

TEST(Journal, AMarkWithAllBelowStaysOne) {
  Journal journal;
  journal.mark(RecordId::classifier, {"a", 0, {}});
  journal.mark(RecordId::classifier, {"a", 0, {}}, true);
  journal.mark(RecordId::classifier, {"a", 0, {}});
  EXPECT_THAT(shown(journal.taken()), ElementsAre("classifier+ a 0"));
}

TEST(Journal, KeepsApartAsManyMarksAsThereAre) {
  Journal journal;
  constexpr std::size_t many = 10000;
  for (int round = 0; round < 2; ++round) {
    for (std::size_t i = 0; i < many; ++i) {
      journal.mark(RecordId::queue, {std::to_string(i), 0, {}});
      journal.mark(RecordId::queue, {std::to_string(i), 0, {}});
    }
    const auto marks = journal.taken();
    ASSERT_EQ(marks.size(), many);
    EXPECT_EQ(marks.front().keys.outer, "0");
    EXPECT_EQ(marks.back().keys.outer, std::to_string(many - 1));
  }
}

TEST(Journal, AMarkOfTheSameRecordRightAfterItsOwnWidensIt) {
  Journal journal;
  const RecordKeys keys{"a", 0, "x"};
  journal.mark(RecordId::term, keys);
  journal.mark(RecordId::term, keys, true);
  journal.mark(RecordId::term, keys);
  EXPECT_THAT(shown(journal.taken()), ElementsAre("term+ a 0 x"));
}

TEST(Journal, HasARecordOnceHoweverOftenSeveralAreMarkedInTurn) {
  Journal journal;
  journal.mark(RecordId::classifier, {"a", 0, {}});
  journal.mark(RecordId::term, {"a", 0, "x"}, true);
  for (int i = 0; i < 10000; ++i) {
    journal.mark(RecordId::queue, {"q", 0, {}}, i == 5000);
    journal.mark(RecordId::term, {"a", 0, "x"});
    journal.mark(RecordId::classifier, {"a", 0, {}});
  }
  EXPECT_THAT(shown(journal.taken()), ElementsAre("classifier a 0", "term+ a 0 x", "queue+ q 0"));
}

TEST(Journal, ADetachedModelMarksNothing) {
  Directories model;
  model.fill();
  Journal journal;
  model.journalIs(&journal);
  model.journalIs(nullptr);
  model.fill();
  EXPECT_THAT(journal.taken(), IsEmpty());
}

// Another holder may keep the object for longer than the journal lives.
TEST(Journal, AnObjectThatWasRemovedMarksNoMore) {
  Directories model;
  model.fill();
  const auto classifier = model.classifiers->classifier("edge-in");
  const auto terms = classifier->terms();
  const auto output = model.port().output();
  const auto queues = output->queues();
  const auto inputs = model.scheduler().inputs();
  {
    Journal journal;
    model.journalIs(&journal);
    model.classifiers->classifierDel("edge-in");
    model.port().outputDel();
    model.policies->schedulerPolicyDel("wan");
    journal.taken();
    classifier->typeIs(classifierTypeIpv6);
    terms->termMade("web");
    output->pfcIs({"f"});
    queues->qContentIs("q9");
    inputs->inputIs(SchedulerInput("b"));
    EXPECT_THAT(journal.taken(), IsEmpty());
    model.journalIs(nullptr);
  }
  terms->termMade("mail");
  queues->qContentIs("q8");
}

TEST(JournalExample, Runs) {
  QosOc::Config::Journal journal;
  const auto queues = Rok::make<QosOc::Config::QueuesDir>();
  queues->journalIs(&journal);
  queues->qContentIs("voice").config.strictPriority = true;
  const auto marks = journal.taken();
  assert(marks.size() == 1 && marks[0].keys.outer == "voice");
  queues->journalIs(nullptr);
}

TEST(JournalExample, IsTheOneOfTheHeader) {
  support::expectExample("models/openconfig/Journal.h", "tests/models/JournalTest.cpp");
}

// A writer can't get at a record but through what marks it.
template <class T>
constexpr bool isReadOnly = std::is_const_v<std::remove_reference_t<T>>;
static_assert(isReadOnly<decltype(std::declval<Terms&>().term())>);
static_assert(isReadOnly<decltype(std::declval<Terms&>().termMade(""))>);
static_assert(isReadOnly<decltype(std::declval<Classifier&>().config())>);
static_assert(isReadOnly<decltype(std::declval<ForwardingGroup&>().config())>);
static_assert(isReadOnly<decltype(std::declval<Interface&>().config())>);
static_assert(isReadOnly<decltype(std::declval<InterfaceInputClassifiers&>().classifier())>);
static_assert(isReadOnly<decltype(std::declval<InterfaceOutput&>().pfc())>);
static_assert(isReadOnly<decltype(std::declval<InterfaceOutput&>().schedulerPolicy())>);
static_assert(isReadOnly<decltype(std::declval<InterfaceOutputQueues&>().q())>);
static_assert(isReadOnly<decltype(std::declval<Pfc&>().watchdog())>);
static_assert(isReadOnly<decltype(std::declval<QueuesDir&>().q())>);
static_assert(
    isReadOnly<decltype(std::declval<QueueManagementProfilesDir&>().queueManagementProfile())>);
static_assert(isReadOnly<decltype(std::declval<Scheduler&>().config())>);
static_assert(isReadOnly<decltype(std::declval<Scheduler&>().oneRateTwoColor())>);
static_assert(isReadOnly<decltype(std::declval<SchedulerInputs&>().input())>);
static_assert(isReadOnly<decltype(std::declval<SchedulerPolicy&>().config())>);

}  // namespace
}  // namespace QosOc::Config::journalTest
