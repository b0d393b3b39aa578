// What a commit says of changed records, leaf by leaf.
#include "host/feed/LeafDiffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "host/Roots.h"
#include "tests/support/HostDevice.h"
#include "tests/support/HostFeed.h"

namespace host::leafChangesTest {
namespace {

using support::HostFollowed;
using support::HostLines;
using support::hostOneOfEach;
using testing::ElementsAre;
using testing::IsEmpty;
using namespace QosOc::Config;

// What is said of a change of a model that has one of each.
HostLines said(const std::function<void(const HostFollowed&)>& change,
               const LeafRequest& request = {}) {
  HostFollowed built(hostOneOfEach, request);
  change(built);
  return built.commit();
}

// ===== Records that come

TEST(LeafChanges, HaveAllLeavesOfAClassifierAndATermThatCome) {
  HostFollowed built;
  built.classifier("a");
  EXPECT_THAT(built.commit(),
              ElementsAre("+ /qos/classifiers/classifier[name=a]/config/name \"a\"",
                          "+ /qos/classifiers/classifier[name=a]/config/type \"IPV4\"",
                          "+ /qos/classifiers/classifier[name=a]/name \"a\""));
  Term term("t");
  term.actions = TermActions{{"f"}};
  built.model.classifiers->classifier("a")->termsIs()->termIs(term);
  EXPECT_THAT(
      built.commit(),
      ElementsAre(
          "+ /qos/classifiers/classifier[name=a]/terms/term[id=t]/actions/config/target-group "
          "\"f\"",
          "+ /qos/classifiers/classifier[name=a]/terms/term[id=t]/config/id \"t\"",
          "+ /qos/classifiers/classifier[name=a]/terms/term[id=t]/id \"t\""));
}

TEST(LeafChanges, HaveAllLeavesOfAForwardingGroupThatComes) {
  HostFollowed built;
  built.forwardingGroupIs("f", "q");
  EXPECT_THAT(
      built.commit(),
      ElementsAre("+ /qos/forwarding-groups/forwarding-group[name=f]/config/name \"f\"",
                  "+ /qos/forwarding-groups/forwarding-group[name=f]/config/output-queue \"q\"",
                  "+ /qos/forwarding-groups/forwarding-group[name=f]/name \"f\""));
}

TEST(LeafChanges, HaveAllLeavesOfAnInterfaceAndWhatComesWithIt) {
  HostFollowed built;
  built.inputClassifierIs(1, "c");
  built.schedulerPolicyIs("s");
  const std::string e = "+ /qos/interfaces/interface[interface-id=e]/";
  EXPECT_THAT(
      built.commit(),
      ElementsAre(e + "config/interface-id \"e\"",
                  e + "input/classifiers/classifier[type=IPV6]/config/name \"c\"",
                  e + "input/classifiers/classifier[type=IPV6]/config/type \"IPV6\"",
                  e + "input/classifiers/classifier[type=IPV6]/type \"IPV6\"",
                  e + "interface-id \"e\"", e + "output/scheduler-policy/config/name \"s\""));
}

TEST(LeafChanges, HaveAllLeavesOfTheOutputQueueAndPfcThatCome) {
  HostFollowed built;
  built.interface("e");
  built.commit();
  built.outputQueueIs("q", "q", "p");
  built.output().pfcIs({"a0"});
  const std::string output = "+ /qos/interfaces/interface[interface-id=e]/output/";
  EXPECT_THAT(built.commit(),
              ElementsAre(output + "qosoc-augments:pfc/config/priorities \"a0\"",
                          output + "queues/queue[name=q]/config/name \"q\"",
                          output + "queues/queue[name=q]/config/queue-management-profile \"p\"",
                          output + "queues/queue[name=q]/name \"q\""));
}

TEST(LeafChanges, HaveAllLeavesOfTheWatchdogThatComes) {
  HostFollowed built;
  PfcWatchdog watchdog;
  watchdog.timeA = 0.5;
  built.model.pfc->watchdogIs(watchdog);
  const std::string pfc = "+ /qos/qosoc-augments:pfc/watchdog/config/";
  EXPECT_THAT(built.commit(), ElementsAre(pfc + "action 1", pfc + "time-a \"0.5\"",
                                          pfc + "time-b \"0.0\"", pfc + "time-c \"0.0\""));
}

TEST(LeafChanges, HaveAllLeavesOfAQueueManagementProfileThatComes) {
  HostFollowed built;
  built.model.queueManagementProfiles->queueManagementProfileIs(QueueManagementProfile("p"));
  const std::string p = "+ /qos/queue-management-profiles/queue-management-profile[name=p]/";
  const std::string wred = p + "wred/uniform/config/";
  EXPECT_THAT(
      built.commit(),
      ElementsAre(p + "config/name \"p\"", p + "name \"p\"", wred + "drop false",
                  wred + "enable-ecn false", wred + "max-drop-probability-percent 100",
                  wred + "max-threshold \"0\"", wred + "min-threshold \"0\"", wred + "weight 0"));
}

TEST(LeafChanges, HaveAllLeavesOfASchedulerPolicyWithWhatIsBelow) {
  HostFollowed built;
  built.scheduler().inputsIs()->inputIs(SchedulerInput("i"));
  built.scheduler().oneRateTwoColorIs(OneRateTwoColor{1000u, {}});
  const std::string s = "+ /qos/scheduler-policies/scheduler-policy[name=s]/";
  const std::string first = s + "schedulers/scheduler[sequence=1]/";
  EXPECT_THAT(built.commit(),
              ElementsAre(s + "config/name \"s\"", s + "name \"s\"", first + "config/sequence 1",
                          first + "config/type \"openconfig-qos-types:ONE_RATE_TWO_COLOR\"",
                          first + "inputs/input[id=i]/config/id \"i\"",
                          first + "inputs/input[id=i]/config/input-type \"QUEUE\"",
                          first + "inputs/input[id=i]/id \"i\"",
                          first + "one-rate-two-color/config/cir \"1000\"", first + "sequence 1"));
}

// ===== Records that change

TEST(LeafChanges, HaveTheLeafThatChangedAlone) {
  const auto one = [](const auto& change) { return said(change); };
  const std::string c = "+ /qos/classifiers/classifier[name=c]/";
  const std::string e = "+ /qos/interfaces/interface[interface-id=e]/";
  const std::string s =
      "+ /qos/scheduler-policies/scheduler-policy[name=s]/schedulers/"
      "scheduler[sequence=1]/";
  EXPECT_THAT(one([](const HostFollowed& m) {
                m.model.classifiers->classifier("c")->typeIs(support::HostModel::Type{1});
              }),
              ElementsAre(c + "config/type \"IPV6\""));
  EXPECT_THAT(one([](const HostFollowed& m) {
                m.terms().termContent(*m.terms().term().find("t")).conditions->ipv4.dscp = 47;
              }),
              ElementsAre(c + "terms/term[id=t]/conditions/ipv4/config/dscp 47"));
  EXPECT_THAT(one([](const HostFollowed& m) { m.forwardingGroupIs("f", "q2"); }),
              ElementsAre("+ /qos/forwarding-groups/forwarding-group[name=f]/config/output-queue "
                          "\"q2\""));
  EXPECT_THAT(one([](const HostFollowed& m) { m.inputClassifierIs(0, "d"); }),
              ElementsAre(e + "input/classifiers/classifier[type=IPV4]/config/name \"d\""));
  EXPECT_THAT(one([](const HostFollowed& m) { m.output().pfcIs({"8"}); }),
              ElementsAre(e + "output/qosoc-augments:pfc/config/priorities \"8\""));
  EXPECT_THAT(one([](const HostFollowed& m) { m.outputQueueIs("q", "q", "p2"); }),
              ElementsAre(e + "output/queues/queue[name=q]/config/queue-management-profile "
                              "\"p2\""));
  EXPECT_THAT(one([](const HostFollowed& m) { m.schedulerPolicyIs("s2"); }),
              ElementsAre(e + "output/scheduler-policy/config/name \"s2\""));
  EXPECT_THAT(one([](const HostFollowed& m) {
                m.scheduler().inputs()->inputIs([] {
                  SchedulerInput input("i");
                  input.config.queue = "q";
                  input.config.weight = 8u;
                  return input;
                }());
              }),
              ElementsAre(s + "inputs/input[id=i]/config/weight \"8\""));
  EXPECT_THAT(one([](const HostFollowed& m) {
                m.scheduler().oneRateTwoColorIs(OneRateTwoColor{2000u, QosOc::PercentType(20)});
              }),
              ElementsAre(s + "one-rate-two-color/config/cir \"2000\""));
}

TEST(LeafChanges, HaveTheChangedSettingsOfQueuesProfilesAndTheWatchdogAlone) {
  EXPECT_THAT(said([](const HostFollowed& m) {
                m.model.queues->qContentIs("q").config.bandwidth = QosOc::PercentType(50);
              }),
              ElementsAre("+ /qos/queues/queue[name=q]/config/qosoc-augments:bandwidth 50"));
  EXPECT_THAT(
      said([](const HostFollowed& m) {
        m.model.queueManagementProfiles->queueManagementProfileContentIs("p").wredUniform.weight =
            3;
      }),
      ElementsAre("+ /qos/queue-management-profiles/queue-management-profile[name=p]/"
                  "wred/uniform/config/weight 3"));
  EXPECT_THAT(said([](const HostFollowed& m) {
                PfcWatchdog watchdog = m.model.pfc->watchdog();
                watchdog.action = 2;
                m.model.pfc->watchdogIs(watchdog);
              }),
              ElementsAre("+ /qos/qosoc-augments:pfc/watchdog/config/action 2"));
}

TEST(LeafChanges, SayNothingOfARecordThatWasWrittenAsItWas) {
  EXPECT_THAT(said([](const HostFollowed& m) { support::writeAsItIs(m); }), IsEmpty());
}

TEST(LeafChanges, HaveTheDifferenceOfWhatWasRemovedAndMadeAnew) {
  EXPECT_THAT(said([](const HostFollowed& m) {
                m.model.queues->qDel("q");
                readModelText(R"({"queues": {"q": {"config": {"name": "q", "bandwidth": 41,
                    "strict-priority": true}, "ecn-config": {}}}})",
                              m.model);
              }),
              ElementsAre("+ /qos/queues/queue[name=q]/config/qosoc-augments:bandwidth 41"));
}

TEST(LeafChanges, HaveTheDifferenceBelowAnObjectThatWasRemovedAndMadeAnew) {
  const std::string c = "/qos/classifiers/classifier[name=c]/";
  EXPECT_THAT(said([](const HostFollowed& m) {
                m.model.classifiers->classifierDel("c");
                Term term("t");
                term.actions = TermActions{{"f"}};
                m.termIs(term);
              }),
              ElementsAre("- " + c + "terms/term[id=t]/conditions"));
  const std::string s = "/qos/scheduler-policies/scheduler-policy[name=s]/";
  EXPECT_THAT(said([](const HostFollowed& m) {
                m.model.schedulerPolicies->schedulerPolicyDel("s");
                m.scheduler().oneRateTwoColorIs(OneRateTwoColor{1000u, {}});
              }),
              ElementsAre("- " + s + "schedulers/scheduler[sequence=1]/config/priority",
                          "- " + s + "schedulers/scheduler[sequence=1]/inputs",
                          "- " + s +
                              "schedulers/scheduler[sequence=1]/one-rate-two-color/config/"
                              "cir-pct"));
}

// ===== Records that go: the highest node that is not there any more

TEST(LeafChanges, NameTheEntryOfAnOutermostListAlsoWhenItWasTheLast) {
  EXPECT_THAT(said([](const HostFollowed& m) { m.model.classifiers->classifierDel("c"); }),
              ElementsAre("- /qos/classifiers/classifier[name=c]"));
  EXPECT_THAT(
      said([](const HostFollowed& m) { m.model.forwardingGroups->forwardingGroupDel("f"); }),
      ElementsAre("- /qos/forwarding-groups/forwarding-group[name=f]"));
  EXPECT_THAT(said([](const HostFollowed& m) { m.model.queues->qDel("q"); }),
              ElementsAre("- /qos/queues/queue[name=q]"));
  EXPECT_THAT(said([](const HostFollowed& m) {
                m.model.queueManagementProfiles->queueManagementProfileDel("p");
              }),
              ElementsAre("- /qos/queue-management-profiles/queue-management-profile[name=p]"));
  EXPECT_THAT(
      said([](const HostFollowed& m) { m.model.schedulerPolicies->schedulerPolicyDel("s"); }),
      ElementsAre("- /qos/scheduler-policies/scheduler-policy[name=s]"));
}

TEST(LeafChanges, NameATermThatWentWhileOthersStay) {
  HostFollowed built(hostOneOfEach);
  built.terms().termMade("u");
  built.commit();
  built.terms().termDel("t");
  EXPECT_THAT(built.commit(),
              ElementsAre("- /qos/classifiers/classifier[name=c]/terms/term[id=t]"));
}

TEST(LeafChanges, NameTheContainerOfTheLastTerm) {
  const auto expected = ElementsAre("- /qos/classifiers/classifier[name=c]/terms");
  EXPECT_THAT(said([](const HostFollowed& m) { m.terms().termDel("t"); }), expected);
  EXPECT_THAT(said([](const HostFollowed& m) { m.model.classifiers->classifier("c")->termsDel(); }),
              expected);
}

TEST(LeafChanges, NameTheContainerOnceWhenAllTermsGo) {
  HostFollowed built(hostOneOfEach);
  built.terms().termMade("u");
  built.commit();
  built.terms().termDel("u");
  built.terms().termDel("t");
  EXPECT_THAT(built.commit(), ElementsAre("- /qos/classifiers/classifier[name=c]/terms"));
}

TEST(LeafChanges, NameTheLeafThatWentFromAmongOthers) {
  EXPECT_THAT(
      said([](const HostFollowed& m) { m.model.queues->qContentIs("q").config.bandwidth.reset(); }),
      ElementsAre("- /qos/queues/queue[name=q]/config/qosoc-augments:bandwidth"));
  EXPECT_THAT(said([](const HostFollowed& m) { m.forwardingGroupIs("f", ""); }),
              ElementsAre("- /qos/forwarding-groups/forwarding-group[name=f]/config/output-queue"));
}

TEST(LeafChanges, NameTheHighestContainerThatLostAllItsLeaves) {
  const std::string t = "- /qos/classifiers/classifier[name=c]/terms/term[id=t]/";
  EXPECT_THAT(said([](const HostFollowed& m) {
                m.terms().termContent(*m.terms().term().find("t")).conditions->ipv4.dscp.reset();
              }),
              ElementsAre(t + "conditions/ipv4"));
  EXPECT_THAT(said([](const HostFollowed& m) {
                m.terms().termContent(*m.terms().term().find("t")).conditions.reset();
              }),
              ElementsAre(t + "conditions"));
  EXPECT_THAT(
      said([](const HostFollowed& m) { m.model.queues->qContentIs("q").ecnConfig.reset(); }),
      ElementsAre("- /qos/queues/queue[name=q]/qosoc-augments:ecn"));
}

const std::string output = "- /qos/interfaces/interface[interface-id=e]/output";

TEST(LeafChanges, NameThePartOfAnOutputThatWentWhileOthersStay) {
  EXPECT_THAT(said([](const HostFollowed& m) { m.outputQueueIs("q", "", ""); }),
              ElementsAre(output + "/queues"));
  EXPECT_THAT(said([](const HostFollowed& m) { m.output().schedulerPolicyIs({}); }),
              ElementsAre(output + "/scheduler-policy"));
  EXPECT_THAT(said([](const HostFollowed& m) { m.output().pfcIs({}); }),
              ElementsAre(output + "/qosoc-augments:pfc"));
}

TEST(LeafChanges, NameTheOutputWhenItsLastPartGoes) {
  const std::function<void(const HostFollowed&)> parts[] = {
      [](const HostFollowed& m) { m.outputQueueIs("q", "", ""); },
      [](const HostFollowed& m) { m.output().schedulerPolicyIs({}); },
      [](const HostFollowed& m) { m.output().pfcIs({}); }};
  for (std::size_t last = 0; last < std::size(parts); ++last) {
    HostFollowed built(hostOneOfEach);
    for (std::size_t i = 0; i < std::size(parts); ++i) {
      if (i != last) parts[i](built);
    }
    built.commit();
    parts[last](built);
    EXPECT_THAT(built.commit(), ElementsAre(output)) << last;
  }
}

TEST(LeafChanges, NameTheOutputOnceWhenAllItsPartsGo) {
  EXPECT_THAT(said([](const HostFollowed& m) { m.interface("e")->outputDel(); }),
              ElementsAre(output));
}

TEST(LeafChanges, NameTheInputWhenItsLastClassifierGoes) {
  EXPECT_THAT(
      said([](const HostFollowed& m) {
        m.interface("e")->input()->classifiers()->classifierDel(support::HostModel::Type{0});
      }),
      ElementsAre("- /qos/interfaces/interface[interface-id=e]/input"));
}

TEST(LeafChanges, NameAPartOfASchedulerThatWent) {
  const std::string first =
      "- /qos/scheduler-policies/scheduler-policy[name=s]/schedulers/scheduler[sequence=1]/";
  EXPECT_THAT(said([](const HostFollowed& m) { m.scheduler().oneRateTwoColorIs({}); }),
              ElementsAre(first + "one-rate-two-color"));
  EXPECT_THAT(said([](const HostFollowed& m) {
                m.scheduler().configIs({1, {}, {}});
              }),
              ElementsAre(first + "config/priority"));
}

TEST(LeafChanges, NameNoNodeAboveAChildOfTheRootWhereThereIsNoList) {
  HostFollowed built(R"({"pfc": {"watchdog": {"action": 5}}})");
  built.model.pfc->watchdogIs({});
  EXPECT_THAT(built.commit(), ElementsAre("- /qos/qosoc-augments:pfc"));
}

TEST(LeafChanges, CoverWhatWasBelowAndWasChangedBefore) {
  EXPECT_THAT(said([](const HostFollowed& m) {
                m.terms().termMade("u");
                m.terms().termDel("t");
                m.model.classifiers->classifierDel("c");
              }),
              ElementsAre("- /qos/classifiers/classifier[name=c]"));
}

// ===== Bookkeeping

TEST(LeafChanges, SayNothingOfARecordThatTheDocumentLeavesOut) {
  EXPECT_THAT(said([](const HostFollowed& m) {
                m.queueIs("");
                m.classifier("");
                m.outputQueueIs("blank", "", "");
                m.forwardingGroupIs("", "q");
              }),
              IsEmpty());
}

TEST(LeafChanges, SayThatABlankedAttachmentIsGone) {
  HostFollowed built(hostOneOfEach);
  built.outputQueueIs("r", "r", "p");
  built.commit();
  built.outputQueueIs("r", "", "");
  EXPECT_THAT(built.commit(), ElementsAre(output + "/queues/queue[name=r]"));
}

TEST(LeafChanges, SayThatTheTargetOfABlankedActionIsGone) {
  EXPECT_THAT(said([](const HostFollowed& m) {
                m.terms().termContent(*m.terms().term().find("t")).actions = TermActions();
              }),
              ElementsAre("- /qos/classifiers/classifier[name=c]/terms/term[id=t]/actions"));
}

// ===== Paths and order

TEST(LeafChanges, EscapeBracketsAndBackslashesInKeys) {
  HostFollowed built;
  built.queueIs("a]\\[/=");
  EXPECT_THAT(built.commit(),
              ElementsAre("+ /qos/queues/queue[name=a\\]\\\\[/=]/config/name \"a]\\\\[/=\"",
                          "+ /qos/queues/queue[name=a\\]\\\\[/=]/name \"a]\\\\[/=\""));
  built.model.queues->qDel("a]\\[/=");
  EXPECT_THAT(built.commit(), ElementsAre("- /qos/queues/queue[name=a\\]\\\\[/=]"));
}

TEST(LeafChanges, NameNestedNodesBelowKeysThatAreEscaped) {
  HostFollowed built(hostOneOfEach);
  const auto classifier = built.classifier("x]/y");
  classifier->termsIs()->termMade("a\\");
  classifier->termsIs()->termMade("b");
  built.commit();
  classifier->terms()->termDel("a\\");
  EXPECT_THAT(built.commit(),
              ElementsAre("- /qos/classifiers/classifier[name=x\\]/y]/terms/term[id=a\\\\]"));
}

TEST(LeafChanges, StandInTheOrderOfBytes) {
  HostFollowed built;
  for (const char* name : {"b", "B", "a-", "a", "\xc3\xa4"}) built.queueIs(name);
  const HostLines came = built.commit();
  EXPECT_EQ(came.size(), 10u);
  EXPECT_TRUE(std::is_sorted(came.begin(), came.end()));
  for (const char* name : {"b", "B", "a-", "a", "\xc3\xa4"}) built.model.queues->qDel(name);
  const HostLines went = built.commit();
  EXPECT_EQ(went.size(), 5u);
  EXPECT_TRUE(std::is_sorted(went.begin(), went.end()));
}

// ===== Through a root

TEST(LeafChanges, OfASchedulerPolicyWhoseCommentIsRewrittenAreThoseThatDiffer) {
  support::HostDevice device(
      R"({"qos-profiles": {"__YANG_SP_[fair]": {}}, "comments": {"qos-profile-__YANG_SP_[fair]": )"
      R"("{\"MetaData-OpenConfig\":{\"1\":{\"one-rate-two-color\":{\"cir-pct\":40},)"
      R"(\"inputs\":{\"i\":{\"queue\":\"gold\"}}}}}"}})");
  const Model model;
  const auto root = rootNamed("scheduler-policy")->factory(device.native, model);
  Feed feed(model);
  support::HostConsumer consumer(feed);
  feed.commit();
  EXPECT_FALSE(consumer.lines().empty());
  device.line(support::hostLine(
      "replace", "/comments/qos-profile-__YANG_SP_[fair]",
      R"("{\"MetaData-OpenConfig\":{\"1\":{\"one-rate-two-color\":{\"cir-pct\":40},)"
      R"(\"inputs\":{\"i\":{\"queue\":\"gold\"},\"j\":{}}}}}")"));
  EXPECT_THAT(device.reports, IsEmpty());
  feed.commit();
  const std::string first =
      "/qos/scheduler-policies/scheduler-policy[name=fair]/schedulers/scheduler[sequence=1]/";
  EXPECT_THAT(consumer.lines(),
              ElementsAre("+ " + first + "inputs/input[id=j]/config/id \"j\"",
                          "+ " + first + "inputs/input[id=j]/config/input-type \"QUEUE\"",
                          "+ " + first + "inputs/input[id=j]/id \"j\""));
}

}  // namespace
}  // namespace host::leafChangesTest
