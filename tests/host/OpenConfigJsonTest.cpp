#include "host/OpenConfigJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::openConfigJsonTest {
namespace {

using support::HostModel;
using support::HostRendered;

TEST(OpenConfigFormat, OfAnEmptyModelIsAnEmptyTree) {
  EXPECT_EQ(HostRendered(HostModel()).json, R"({"openconfig-qos:qos":{}})");
}

TEST(OpenConfigFormat, ShowsTheListsInTheOrderOfTheirNames) {
  const HostModel built;
  built.model.schedulerPolicies->schedulerPolicyIs("s");
  built.queueIs("q");
  built.model.queueManagementProfiles->queueManagementProfileIs(
      QosOc::Config::QueueManagementProfile("p"));
  built.model.pfc->watchdogIs({1, 1, 1, 1, "1"});
  built.interface("e");
  built.forwardingGroupIs("f", "");
  built.classifier("c");
  std::size_t last = 0;
  for (const char* list : {"classifiers", "forwarding-groups", "interfaces", "qosoc-augments:pfc",
                           "queue-management-profiles", "queues", "scheduler-policies"}) {
    const std::size_t at = HostRendered(built).json.find('"' + std::string(list) + "\":{");
    ASSERT_NE(at, std::string::npos) << list;
    EXPECT_LT(last, at) << list;
    last = at;
  }
}

TEST(OpenConfigFormat, WritesNoContainerWithoutALeaf) {
  const HostModel built;
  built.interface("e")->outputIs()->queuesIs("");
  built.interface("e")->inputIs()->classifiersIs();
  built.outputQueueIs("blank", "", "");
  built.termIs(QosOc::Config::Term("t"));
  EXPECT_EQ(HostRendered(built).tree(),
            R"("classifiers":{"classifier":[{"config":{"name":"c","type":"IPV4"},"name":"c",)"
            R"("terms":{"term":[{"config":{"id":"t"},"id":"t"}]}}]},)"
            R"("interfaces":{"interface":[{"config":{"interface-id":"e"},"interface-id":"e"}]})");
}

TEST(OpenConfigFormat, QuotesAKeyInAWarningByTheQuoteThatItHasNot) {
  const HostModel built;
  built.classifier("it's", QosOc::Classifier::Type{7});
  EXPECT_EQ(
      HostRendered(built).warnings.at(0),
      "/openconfig-qos:qos/classifiers/classifier[name=\"it's\"]/config/type: 7 is no type of a "
      "classifier: left out (from the class map \"__yang_[it's]_[]\")");
}

TEST(OpenConfigFormat, WarnsOnceInTheLifeOfARenderer) {
  const HostModel built;
  built.classifier("c", QosOc::Classifier::Type{7});
  int warnings = 0;
  OpenConfigJson renderer([&](const std::string&) { ++warnings; });
  renderer.json(built.model, Layout::compact);
  renderer.json(built.model, Layout::compact);
  EXPECT_EQ(warnings, 1);
}

TEST(OpenConfigFormat, WarnsAheadOfAllThatADocumentLeavesOut) {
  const HostModel built;
  built.classifier("a", QosOc::Classifier::Type{7});
  built.classifier("b\x01", QosOc::Classifier::Type{7});
  built.classifier("c", QosOc::Classifier::Type{7});
  std::vector<std::string> warnings;
  OpenConfigJson renderer([&](const std::string& warning) { warnings.push_back(warning); });
  renderer.warn(built.model);
  EXPECT_EQ(warnings.size(), 3u);
  EXPECT_EQ(warnings, HostRendered(built).warnings);
  renderer.json(built.model, Layout::compact);
  EXPECT_EQ(warnings.size(), 3u);
}

TEST(OpenConfigFormat, WarnsAheadOfThePartThatIsShown) {
  const HostModel built;
  built.classifier("c", QosOc::Classifier::Type{7});
  int warnings = 0;
  OpenConfigJson renderer([&](const std::string&) { ++warnings; }, {}, Subtree("/qos/queues"));
  renderer.warn(built.model);
  EXPECT_EQ(warnings, 0);
}

// ===== Views

std::string shownBy(const ViewOptions& options, const HostModel& built) {
  return HostRendered(built, options).tree();
}

TEST(OpenConfigFormat, LeavesOutTheAugmentingModuleWhenAsked) {
  const HostModel built;
  QosOc::Config::Queue queue("q");
  queue.config.strictPriority = true;
  queue.ecnConfig = QosOc::Config::QueueEcnConfig();
  built.model.queues->qIs(queue);
  built.model.pfc->watchdogIs({1, 1, 1, 1, "1"});
  built.interface("e")->outputIs()->pfcIs({"8"});
  EXPECT_EQ(shownBy({.augments = false}, built),
            R"("interfaces":{"interface":[{"config":{"interface-id":"e"},"interface-id":"e"}]},)"
            R"("queues":{"queue":[{"config":{"name":"q"},"name":"q"}]})");
}

TEST(OpenConfigFormat, MirrorsEachConfigWithState) {
  const HostModel built;
  auto term = built.term("t");
  term.conditions = QosOc::Config::TermConditions();
  term.conditions->ipv4.dscp = static_cast<unsigned char>(46);
  built.termIs(term);
  EXPECT_EQ(shownBy({.state = true}, built),
            R"("classifiers":{"classifier":[{"config":{"name":"c","type":"IPV4"},"name":"c",)"
            R"("state":{"name":"c","type":"IPV4"},"terms":{"term":[{)"
            R"("conditions":{"ipv4":{"config":{"dscp":46},"state":{"dscp":46}}},)"
            R"("config":{"id":"t"},"id":"t","state":{"id":"t"}}]}}]})");
}

TEST(OpenConfigFormat, MirrorsWhatTheAugmentingModuleHasToo) {
  const HostModel built;
  built.model.pfc->watchdogIs({0, 0, 0, 5, "1"});
  built.interface("e")->outputIs()->pfcIs({"8"});
  EXPECT_EQ(
      shownBy({.state = true}, built),
      R"("interfaces":{"interface":[{"config":{"interface-id":"e"},"interface-id":"e",)"
      R"("output":{"qosoc-augments:pfc":{"config":{"priorities":"8"},)"
      R"("state":{"priorities":"8"}}},"state":{"interface-id":"e"}}]},)"
      R"("qosoc-augments:pfc":{"watchdog":{)"
      R"("config":{"action":5,"priorities":"1","time-a":"0.0","time-b":"0.0","time-c":"0.0"},)"
      R"("state":{"action":5,"priorities":"1","time-a":"0.0","time-b":"0.0","time-c":"0.0"}}})");
}

TEST(OpenConfigFormat, ShowsWhereAnInterfaceIsWithInterfaceRef) {
  const HostModel built;
  built.interface("e");
  EXPECT_EQ(HostRendered(built, {.interfaceRef = true}).json,
            R"({"openconfig-interfaces:interfaces":{"interface":[{"config":{"name":"e",)"
            R"("type":"iana-if-type:ethernetCsmacd"},"name":"e","state":{"admin-status":"UP",)"
            R"("oper-status":"UNKNOWN","type":"iana-if-type:ethernetCsmacd"}}]},)"
            R"("openconfig-qos:qos":{"interfaces":{"interface":[{"config":{"interface-id":"e"},)"
            R"("interface-id":"e","interface-ref":{"config":{"interface":"e"}}}]}}})");
  EXPECT_EQ(HostRendered(HostModel(), {.interfaceRef = true}).json, R"({"openconfig-qos:qos":{}})");
}

TEST(OpenConfigFormat, WarnsOnceOfALeafAndItsMirror) {
  const HostModel built;
  built.classifier("c", QosOc::Classifier::Type{7});
  EXPECT_EQ(HostRendered(built, {.state = true}).warnings.size(), 1u);
}

// ===== A part of the tree

std::string within(const std::string& path, const HostModel& built) {
  return HostRendered(built, {}, Subtree(path)).tree();
}

TEST(OpenConfigFormat, OfASubtreeHasTheKeysOfTheEntriesAround) {
  const HostModel built;
  built.termIs(built.term("t"));
  built.termIs(built.term("u"));
  built.queueIs("q");
  EXPECT_EQ(within("/qos/classifiers/classifier[name=c]/terms/term[id=t]/config", built),
            R"("classifiers":{"classifier":[{"name":"c",)"
            R"("terms":{"term":[{"config":{"id":"t"},"id":"t"}]}}]})");
  EXPECT_EQ(within("/qos/classifiers/classifier[name=c]/config/type", built),
            R"("classifiers":{"classifier":[{"config":{"type":"IPV4"},"name":"c"}]})");
  EXPECT_EQ(within("/qos/classifiers/classifier[name=c]/name", built),
            R"("classifiers":{"classifier":[{"name":"c"}]})");
}

TEST(OpenConfigFormat, OfASubtreeWithoutALeafIsAnEmptyTree) {
  const HostModel built;
  built.classifier("c");
  built.queueIs("q");
  for (const char* path : {"/qos/classifiers/classifier[name=c]/terms", "/interfaces",
                           "/qos/classifiers/classifier[name=other]", "/qos/qosoc-augments:pfc"}) {
    EXPECT_EQ(within(path, built), "") << path;
  }
}

TEST(OpenConfigFormat, OfAListHasAllOfItsEntries) {
  const HostModel built;
  built.classifier("c");
  built.queueIs("p");
  built.queueIs("q");
  EXPECT_EQ(within("/qos/queues/queue", built),
            R"("queues":{"queue":[{"config":{"name":"p"},"name":"p"},)"
            R"({"config":{"name":"q"},"name":"q"}]})");
}

TEST(OpenConfigFormat, OfASubtreeWarnsOfWhatItLeavesOutThere) {
  const HostModel built;
  built.classifier("c", QosOc::Classifier::Type{7});
  EXPECT_EQ(HostRendered(built, {}, Subtree("/qos/classifiers")).warnings.size(), 1u);
  EXPECT_EQ(HostRendered(built, {}, Subtree("/qos/queues")).warnings.size(), 0u);
}

}  // namespace
}  // namespace host::openConfigJsonTest
