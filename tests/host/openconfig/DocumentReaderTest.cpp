// OpenConfig documents that are read: the leaves that a view has of them.
#include "host/openconfig/DocumentReader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/openconfig/Leaves.h"
#include "tests/support/HostModel.h"

namespace host::documentReaderTest {
namespace {

using support::HostModel;
using support::HostRendered;
using testing::ElementsAre;

std::vector<std::string> lines(const std::vector<LeafText>& leaves) {
  std::vector<std::string> lines;
  lines.reserve(leaves.size());
  for (const LeafText& leaf : leaves) lines.push_back(leaf.path + ' ' + leaf.value);
  return lines;
}
std::vector<std::string> read(const std::string& text, const ViewOptions& shown = {}) {
  const DocumentLeaves document = readDocument(text, shown);
  for (const Fault& fault : document.faults) ADD_FAILURE() << fault.inFile("document");
  return lines(document.leaves);
}
std::string qos(const std::string& tree) { return R"({"openconfig-qos:qos":{)" + tree + "}}"; }

TEST(OpenConfigDocuments, GiveTheLeavesThatTheyWereWrittenFrom) {
  const HostModel built = support::hostFullModel();
  for (const ViewOptions& written : support::hostAllViews()) {
    const std::string text = HostRendered(built, written).json;
    EXPECT_EQ(read(text, written), lines(leavesOf(built.model, View(written))));
  }
}

TEST(OpenConfigDocuments, SayNothingMoreWithMirrorsAndReferences) {
  const HostModel built = support::hostFullModel();
  for (const ViewOptions& written : support::hostAllViews()) {
    if (!written.augments) continue;
    const std::string text = HostRendered(built, written).json;
    for (ViewOptions shown : support::hostAllViews()) {
      // What was not written can't be read.
      if ((shown.state && !written.state) || (shown.interfaceRef && !written.interfaceRef))
        continue;
      EXPECT_EQ(read(text, shown), lines(leavesOf(built.model, View(shown))));
    }
  }
}

TEST(OpenConfigDocuments, KnowTheKeyOfAnEntryWhereverItStands) {
  const std::vector<std::string> expected{"/qos/queues/queue[name=q]/config/name \"q\"",
                                          "/qos/queues/queue[name=q]/name \"q\""};
  EXPECT_EQ(read(qos(R"("queues":{"queue":[{"name":"q","config":{"name":"q"}}]})")), expected);
  EXPECT_EQ(read(qos(R"("queues":{"queue":[{"config":{"name":"q"},"name":"q"}]})")), expected);
}

TEST(OpenConfigDocuments, NeedOfAnEntryTheKeyAlone) {
  EXPECT_THAT(read(qos(R"("queues":{"queue":[{"name":"]"}]})")),
              ElementsAre("/qos/queues/queue[name=\\]]/name \"]\""));
}

TEST(OpenConfigDocuments, MayHaveEmptyContainersAndLists) {
  EXPECT_THAT(read(qos("")), ElementsAre());
  EXPECT_THAT(read(qos(R"("queues":{"queue":[]},"classifiers":{})")), ElementsAre());
}

TEST(OpenConfigDocuments, HaveNoLeafOfALeafListWithoutAnElement) {
  EXPECT_THAT(read(qos(R"("classifiers":{"classifier":[{"name":"c","terms":{"term":[{"id":"t",
                  "conditions":{"ipv4":{"config":{"dscp-set":[]}}}}]}}]})")),
              ElementsAre("/qos/classifiers/classifier[name=c]/name \"c\"",
                          "/qos/classifiers/classifier[name=c]/terms/term[id=t]/id \"t\""));
}

TEST(OpenConfigDocuments, HoldCanonicalValues) {
  EXPECT_THAT(
      read(qos(R"("qosoc-augments:pfc":{"watchdog":{"config":
          {"time-a":"+01.50","time-b":"7","time-c":"-0.0","action":5}}},
          "queue-management-profiles":{"queue-management-profile":[{"name":"p",
          "wred":{"uniform":{"config":{"min-threshold":"007"}}}}]})")),
      ElementsAre("/qos/qosoc-augments:pfc/watchdog/config/action 5",
                  "/qos/qosoc-augments:pfc/watchdog/config/time-a \"1.5\"",
                  "/qos/qosoc-augments:pfc/watchdog/config/time-b \"7.0\"",
                  "/qos/qosoc-augments:pfc/watchdog/config/time-c \"0.0\"",
                  "/qos/queue-management-profiles/queue-management-profile[name=p]/name \"p\"",
                  "/qos/queue-management-profiles/queue-management-profile[name=p]/wred/uniform/"
                  "config/min-threshold \"7\""));
}

// ===== What a view doesn't ask for

TEST(OpenConfigDocuments, HaveAStateThatSaysSomethingElseInEachView) {
  const std::string text = qos(R"("classifiers":{"classifier":[{"name":"c",
      "config":{"name":"c","type":"IPV4"},"state":{"name":"c","type":"IPV6"}}]})");
  EXPECT_THAT(read(text), ElementsAre("/qos/classifiers/classifier[name=c]/config/name \"c\"",
                                      "/qos/classifiers/classifier[name=c]/config/type \"IPV4\"",
                                      "/qos/classifiers/classifier[name=c]/name \"c\"",
                                      "/qos/classifiers/classifier[name=c]/state/type \"IPV6\""));
  EXPECT_THAT(read(text, {.state = true}),
              testing::Contains("/qos/classifiers/classifier[name=c]/state/name \"c\""));
}

TEST(OpenConfigDocuments, HaveAStateWithoutAConfigInEachView) {
  EXPECT_THAT(read(qos(R"("queues":{"queue":[{"name":"q","state":{"name":"q"}}]})")),
              ElementsAre("/qos/queues/queue[name=q]/name \"q\"",
                          "/qos/queues/queue[name=q]/state/name \"q\""));
}

TEST(OpenConfigDocuments, HaveAReferenceThatSaysSomethingElseInEachView) {
  const std::string entry = "/qos/interfaces/interface[interface-id=e]";
  EXPECT_THAT(read(qos(R"("interfaces":{"interface":[{"interface-id":"e",
                  "interface-ref":{"config":{"interface":"e"},"state":{"interface":"e"}}}]})")),
              ElementsAre(entry + "/interface-id \"e\""));
  EXPECT_THAT(
      read(qos(R"("interfaces":{"interface":[{"interface-id":"e",
                  "interface-ref":{"config":{"interface":"f","subinterface":0}}}]})")),
      ElementsAre(entry + "/interface-id \"e\"", entry + "/interface-ref/config/interface \"f\"",
                  entry + "/interface-ref/config/subinterface 0"));
}

TEST(OpenConfigDocuments, HaveAnInterfaceOfItsOwnInEachView) {
  const auto both = [](const std::string& name, const std::string& type) {
    return R"({"openconfig-interfaces:interfaces":{"interface":[{"name":")" + name +
           R"(","config":{"name":")" + name + R"(","type":"iana-if-type:)" + type +
           R"("}}]},"openconfig-qos:qos":{"interfaces":{"interface":[{"interface-id":"e"}]}}})";
  };
  const std::string interface = "/qos/interfaces/interface[interface-id=e]/interface-id \"e\"";
  EXPECT_THAT(read(both("e", "ethernetCsmacd")), ElementsAre(interface));
  EXPECT_THAT(read(both("e", "ieee8023adLag")),
              ElementsAre("/interfaces/interface[name=e]/config/type "
                          "\"iana-if-type:ieee8023adLag\"",
                          interface));
  EXPECT_EQ(read(both("f", "ethernetCsmacd")).size(), 4u);
}

TEST(OpenConfigDocuments, HaveNothingOfTheAugmentingModuleWithoutAugments) {
  EXPECT_THAT(read(qos(R"("queues":{"queue":[{"name":"q","config":{"qosoc-augments:bandwidth":7},
                  "state":{"qosoc-augments:bandwidth":8}}]})"),
                   {.augments = false}),
              ElementsAre("/qos/queues/queue[name=q]/name \"q\""));
}

// ===== Which documents these are

TEST(OpenConfigDocuments, AreThoseWithTheRootOfQos) {
  EXPECT_TRUE(isOpenConfig(R"({"openconfig-qos:qos":{}})"));
  EXPECT_TRUE(isOpenConfig(R"({"openconfig-interfaces:interfaces":{"a":[{}]},"openconfig-qos:qos")"
                           R"(:)"));
  EXPECT_FALSE(isOpenConfig(R"({"openconfig-interfaces:interfaces":{}})"));
  EXPECT_FALSE(isOpenConfig(R"({"class-maps":{}})"));
  EXPECT_FALSE(isOpenConfig(R"({"a:b":{"openconfig-qos:qos":{}}})"));
  EXPECT_FALSE(isOpenConfig("{}"));
  EXPECT_FALSE(isOpenConfig("[\"openconfig-qos:qos\"]"));
  EXPECT_FALSE(isOpenConfig(""));
}

}  // namespace
}  // namespace host::documentReaderTest
