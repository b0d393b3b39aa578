// What of a change each consumer gets: by its view, its subtree and its warnings.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostFeed.h"

namespace host::leafRequestTest {
namespace {

using support::HostConsumer;
using support::HostFollowed;
using support::HostLines;
using support::HostModel;
using support::hostOneOfEach;
using testing::ElementsAre;
using testing::IsEmpty;

HostLines said(const LeafRequest& request, const std::function<void(const HostFollowed&)>& change) {
  HostFollowed built(hostOneOfEach, request);
  change(built);
  return built.commit();
}

// ===== Views

TEST(LeafRequest, WithoutAugmentsHasNoMemberOfThem) {
  const LeafRequest request{.view = {.augments = false}};
  EXPECT_THAT(said(request,
                   [](const HostFollowed& m) {
                     m.model.queues->qContentIs("q").config = {};
                     m.output().pfcIs({"8"});
                     m.model.pfc->watchdogIs({});
                   }),
              IsEmpty());
}

// The augmenting leaves of an output don't keep it for a consumer without them.
TEST(LeafRequest, WithoutAugmentsNamesTheHighestNodeAsItSeesIt) {
  const LeafRequest request{.view = {.augments = false}};
  EXPECT_THAT(said(request,
                   [](const HostFollowed& m) {
                     m.outputQueueIs("q", "", "");
                     m.output().schedulerPolicyIs({});
                   }),
              ElementsAre("- /qos/interfaces/interface[interface-id=e]/output"));
}

TEST(LeafRequest, WithStateHasEachChangedLeafOfAConfigTwice) {
  const LeafRequest request{.view = {.state = true}};
  EXPECT_THAT(said(request, [](const HostFollowed& m) { m.forwardingGroupIs("f", "q2"); }),
              ElementsAre("+ /qos/forwarding-groups/forwarding-group[name=f]/config/output-queue "
                          "\"q2\"",
                          "+ /qos/forwarding-groups/forwarding-group[name=f]/state/output-queue "
                          "\"q2\""));
  EXPECT_THAT(said(request, [](const HostFollowed& m) { m.forwardingGroupIs("f", ""); }),
              ElementsAre("- /qos/forwarding-groups/forwarding-group[name=f]/config/output-queue",
                          "- /qos/forwarding-groups/forwarding-group[name=f]/state/output-queue"));
}

TEST(LeafRequest, WithInterfaceRefHasAnInterfaceThatComesInBothTrees) {
  HostFollowed built("{}", {.view = {.interfaceRef = true}});
  built.interface("e");
  const std::string qos = "+ /qos/interfaces/interface[interface-id=e]/";
  const std::string interfaces = "+ /interfaces/interface[name=e]/";
  EXPECT_THAT(built.commit(),
              ElementsAre(interfaces + "config/name \"e\"",
                          interfaces + "config/type \"iana-if-type:ethernetCsmacd\"",
                          interfaces + "name \"e\"", interfaces + "state/admin-status \"UP\"",
                          interfaces + "state/oper-status \"UNKNOWN\"",
                          interfaces + "state/type \"iana-if-type:ethernetCsmacd\"",
                          qos + "config/interface-id \"e\"", qos + "interface-id \"e\"",
                          qos + "interface-ref/config/interface \"e\""));
}

TEST(LeafRequest, WithInterfaceRefHasNoChangeOfAnInterfaceInTheOtherTree) {
  EXPECT_THAT(said({.view = {.interfaceRef = true}},
                   [](const HostFollowed& m) {
                     m.interface("e")->configIs({"other"});
                     m.output().pfcIs({"8"});
                   }),
              ElementsAre("+ /qos/interfaces/interface[interface-id=e]/output/qosoc-augments:pfc/"
                          "config/priorities \"8\""));
}

// ===== Subtrees

const std::string terms = "/qos/classifiers/classifier[name=c]/terms";

LeafRequest only(const std::string& path) { return {.only = Subtree(path)}; }

void changeHereAndThere(const HostFollowed& m) {
  m.queueIs("a");
  m.terms().termMade("u");
  m.classifier("d")->termsIs()->termMade("u");
}

TEST(LeafRequest, OfASubtreeHasItsLeavesAlone) {
  const auto expected = ElementsAre("+ " + terms + "/term[id=u]/config/id \"u\"",
                                    "+ " + terms + "/term[id=u]/id \"u\"");
  EXPECT_THAT(said(only(terms), changeHereAndThere), expected);
  EXPECT_THAT(said(only(terms + "/term"), changeHereAndThere), expected);
  EXPECT_THAT(said(only(terms + "/term[id=u]"), changeHereAndThere), expected);
  EXPECT_THAT(said(only(terms + "/term[id=u]/id"), changeHereAndThere),
              ElementsAre("+ " + terms + "/term[id=u]/id \"u\""));
}

TEST(LeafRequest, OfAllEntriesOfAListHasThoseThatComeAndGo) {
  EXPECT_THAT(
      said(only("/qos/queues/queue"),
           [](const HostFollowed& m) {
             m.queueIs("a");
             m.model.queues->qDel("q");
             m.model.classifiers->classifierDel("c");
           }),
      ElementsAre("- /qos/queues/queue[name=q]", "+ /qos/queues/queue[name=a]/config/name \"a\"",
                  "+ /qos/queues/queue[name=a]/name \"a\""));
}

TEST(LeafRequest, OfASubtreeNamesItsTopWhenItGoesWithWhatIsAround) {
  const auto remove = [](const HostFollowed& m) { m.model.classifiers->classifierDel("c"); };
  for (const std::string& top : {terms, terms + "/term[id=t]", terms + "/term[id=t]/id",
                                 terms + "/term[id=t]/conditions/ipv4/config"}) {
    EXPECT_THAT(said(only(top), remove), ElementsAre("- " + top));
  }
}

TEST(LeafRequest, OfASubtreeNamesItsTopWhenItsListLosesTheLastEntry) {
  EXPECT_THAT(said(only(terms + "/term[id=t]/config"),
                   [](const HostFollowed& m) { m.terms().termDel("t"); }),
              ElementsAre("- " + terms + "/term[id=t]/config"));
}

// A list is no node: its entries are.
TEST(LeafRequest, OfAllEntriesOfAListNamesEachThatGoesWithWhatIsAround) {
  HostFollowed built(hostOneOfEach, only(terms + "/term"));
  built.terms().termMade("a]");
  built.terms().termMade("v");
  built.commit();
  built.terms().termDel("v");
  EXPECT_THAT(built.commit(), ElementsAre("- " + terms + "/term[id=v]"));
  built.model.classifiers->classifierDel("c");
  EXPECT_THAT(built.commit(),
              ElementsAre("- " + terms + "/term[id=a\\]]", "- " + terms + "/term[id=t]"));
  built.terms().termMade("t");
  built.commit();
  built.terms().termDel("t");
  EXPECT_THAT(built.commit(), ElementsAre("- " + terms + "/term[id=t]"));
}

TEST(LeafRequest, OfASubtreeThatWasNotThereSaysNothingWhenWhatIsAroundGoes) {
  const auto remove = [](const HostFollowed& m) { m.model.classifiers->classifierDel("c"); };
  EXPECT_THAT(said(only(terms + "/term[id=u]"), remove), IsEmpty());
  EXPECT_THAT(said(only(terms + "/term[id=t]/conditions/ipv6/config/dscp"), remove), IsEmpty());
  EXPECT_THAT(said(only("/qos/classifiers/classifier[name=d]"), remove), IsEmpty());
}

TEST(LeafRequest, OfASubtreeThatCameLaterNamesItWhenItGoes) {
  HostFollowed built(hostOneOfEach, only(terms + "/term[id=u]"));
  built.terms().termMade("u");
  EXPECT_EQ(built.commit().size(), 2u);
  built.model.classifiers->classifierDel("c");
  EXPECT_THAT(built.commit(), ElementsAre("- " + terms + "/term[id=u]"));
  built.terms().termMade("t");
  EXPECT_THAT(built.commit(), IsEmpty());
}

TEST(LeafRequest, OfALeafHasItsDeletion) {
  EXPECT_THAT(said(only("/qos/queues/queue[name=q]/config/qosoc-augments:bandwidth"),
                   [](const HostFollowed& m) { m.model.queues->qContentIs("q").config = {}; }),
              ElementsAre("- /qos/queues/queue[name=q]/config/qosoc-augments:bandwidth"));
}

TEST(LeafRequest, OfAContainerOutsideListsNamesItWhenItGoes) {
  HostFollowed built(R"({"pfc": {"watchdog": {"action": 5}}})",
                     only("/qos/qosoc-augments:pfc/watchdog/config"));
  built.model.pfc->watchdogIs({});
  EXPECT_THAT(built.commit(), ElementsAre("- /qos/qosoc-augments:pfc/watchdog/config"));
}

// ===== Warnings

struct Warned {
  explicit Warned(const ViewOptions& view = {})
      : built("{}",
              {.view = view, .warn = [this](const std::string& line) { lines.push_back(line); }}) {}
  HostLines lines;
  HostFollowed built;
};

TEST(LeafRequest, WarnsOnceOfAnEntryThatTheDocumentCannotHold) {
  Warned warned;
  warned.built.queueIs("a\x01");
  EXPECT_THAT(warned.built.commit(), IsEmpty());
  ASSERT_EQ(warned.lines.size(), 1u);
  EXPECT_EQ(warned.lines[0].find("/openconfig-qos:qos/queues/queue[name='a\\u0001']: "), 0u)
      << warned.lines[0];
  warned.built.model.queues->qDel("a\x01");
  warned.built.commit();
  warned.built.queueIs("a\x01");
  warned.built.commit();
  EXPECT_EQ(warned.lines.size(), 1u);
}

TEST(LeafRequest, WarnsOnceOfAValueThatTheDocumentCannotHold) {
  Warned warned;
  for (const unsigned char dscp : {64, 46, 64}) {
    QosOc::Config::Term term = warned.built.term("t");
    term.conditions.emplace();
    term.conditions->ipv4.dscp = dscp;
    warned.built.termIs(term);
    warned.built.commit();
  }
  ASSERT_EQ(warned.lines.size(), 1u);
  EXPECT_NE(warned.lines[0].find("64 is above 63"), std::string::npos) << warned.lines[0];
}

TEST(LeafRequest, WithStateWarnsOnceOfALeafAndItsMirror) {
  Warned warned({.state = true});
  warned.built.forwardingGroupIs("f", "q\x02");
  warned.built.commit();
  EXPECT_EQ(warned.lines.size(), 1u);
}

TEST(LeafRequest, OfASubtreeWarnsOfWhatIsLeftOutThere) {
  for (const char* only : {"/qos/queues", "/qos/forwarding-groups/forwarding-group[name=f]"}) {
    HostModel built;
    HostLines ofFeed;
    HostLines ofDocument;
    const auto warn = [](HostLines& to) {
      return [&to](const std::string& line) { to.push_back(line); };
    };
    Feed feed(built.model);
    const HostConsumer early(feed, {.only = Subtree(only), .warn = warn(ofFeed)});
    feed.commit();
    built.queueIs("a\x01");
    built.classifier("c\x01");
    built.forwardingGroupIs("f", "q\x02");
    built.forwardingGroupIs("g", "q\x03");
    feed.commit();
    OpenConfigJson(warn(ofDocument), {}, Subtree(only)).json(built.model, Layout::compact);
    EXPECT_EQ(ofFeed, ofDocument) << only;
    EXPECT_EQ(ofFeed.size(), 1u) << only;
  }
}

TEST(LeafRequest, WithInterfaceRefWarnsOfAnInterfaceAtBothOfItsPlaces) {
  Warned warned({.interfaceRef = true});
  warned.built.interface("e\x01");
  warned.built.commit();
  EXPECT_EQ(warned.lines.size(), 2u);
}

TEST(LeafRequest, OfALateObserverWarnsOfWhatIsThere) {
  HostFollowed built;
  built.queueIs("a\x01");
  built.forwardingGroupIs("f", "q\x02");
  built.commit();
  HostLines lines;
  const HostConsumer late(built.feed,
                          {.warn = [&](const std::string& line) { lines.push_back(line); }});
  built.commit();
  EXPECT_EQ(lines.size(), 2u);
}

}  // namespace
}  // namespace host::leafRequestTest
