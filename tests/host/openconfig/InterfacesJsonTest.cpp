#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::interfacesJsonTest {
namespace {

using support::HostModel;
using support::HostRendered;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string list = "/openconfig-qos:qos/interfaces/interface";

std::string tree(const std::string& interfaces) {
  return R"("interfaces":{"interface":[)" + interfaces + "]}";
}
// The interface "e", what stands before its key and behind it.
std::string interface(const std::string& input, const std::string& output) {
  return tree(R"({"config":{"interface-id":"e"},)" + input + R"("interface-id":"e")" + output +
              '}');
}

TEST(InterfacesJson, ShowsAnInterfaceThatHasNothing) {
  const HostModel built;
  built.interface("e")->configIs({"other"});
  EXPECT_EQ(HostRendered(built).tree(), interface("", ""));
  built.interface("e")->inputIs();
  built.interface("e")->outputIs();
  EXPECT_EQ(HostRendered(built).tree(), interface("", ""));
  built.interface("e")->inputIs()->classifiersIs();
  built.interface("e")->outputIs()->queuesIs("");
  EXPECT_EQ(HostRendered(built).tree(), interface("", ""));
}

TEST(InterfacesJson, ShowsTheClassifiersOfTheInput) {
  const HostModel built;
  built.inputClassifierIs(1, "six");
  built.inputClassifierIs(0, "four");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(),
            interface(R"("input":{"classifiers":{"classifier":[)"
                      R"({"config":{"name":"four","type":"IPV4"},"type":"IPV4"},)"
                      R"({"config":{"name":"six","type":"IPV6"},"type":"IPV6"}]}},)",
                      ""));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(InterfacesJson, MakesTheTypeOfAClassifierFitTheKey) {
  const HostModel built;
  QosOc::Config::InterfaceInputClassifier classifier{QosOc::Classifier::classifierTypeIpv6};
  classifier.config = {"", QosOc::Classifier::classifierTypeIpv4};
  built.interface("e")->inputIs()->classifiersIs()->classifierIs(classifier);
  EXPECT_EQ(HostRendered(built).tree(), interface(R"("input":{"classifiers":{"classifier":[)"
                                                  R"({"config":{"type":"IPV6"},"type":"IPV6"}]}},)",
                                                  ""));
}

TEST(InterfacesJson, LeavesOutClassifiersWithoutATypeOrAName) {
  const HostModel built;
  built.inputClassifierIs(0, "bell\a");
  built.inputClassifierIs(2, "two");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), interface(R"("input":{"classifiers":{"classifier":[)"
                                       R"({"config":{"type":"IPV4"},"type":"IPV4"}]}},)",
                                       ""));
  const std::string classifier = list + "[interface-id='e']/input/classifiers/classifier";
  const std::string native = ": left out (from a service policy of the interface \"e\")";
  EXPECT_THAT(rendered.warnings,
              ElementsAre(classifier +
                              "[type='IPV4']/config/name: \"bell\\u0007\" is a name that YANG "
                              "strings can't hold" +
                              native,
                          classifier + "[type='2']: 2 is no type of a classifier" + native));
}

TEST(InterfacesJson, ShowsTheQueuesAndTheSchedulerPolicyOfTheOutput) {
  const HostModel built;
  built.outputQueueIs("q", "q", "p");
  built.outputQueueIs("a", "other", "");
  built.schedulerPolicyIs("s");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(),
            interface("", R"(,"output":{"queues":{"queue":[{"config":{"name":"a"},"name":"a"},)"
                          R"({"config":{"name":"q","queue-management-profile":"p"},"name":"q"}]},)"
                          R"("scheduler-policy":{"config":{"name":"s"}}})"));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(InterfacesJson, ShowsPriorityFlowControl) {
  const HostModel built;
  built.interface("e")->outputIs()->pfcIs({"0"});
  built.schedulerPolicyIs("s");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(),
            interface("", R"(,"output":{"qosoc-augments:pfc":{"config":{"priorities":"0"}},)"
                          R"("scheduler-policy":{"config":{"name":"s"}}})"));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(InterfacesJson, LeavesOutPrioritiesThatAreNoByte) {
  const HostModel built;
  built.interface("e")->outputIs()->pfcIs({"0x1"});
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), interface("", ""));
  EXPECT_THAT(rendered.warnings,
              ElementsAre(list + "[interface-id='e']/output/qosoc-augments:pfc/config/priorities: "
                                 "\"0x1\" is not eight bits in hexadecimal: left out (from the PFC "
                                 "settings of the interface \"e\")"));
}

TEST(InterfacesJson, LeavesOutBlankedAttachmentsWithoutAWord) {
  const HostModel built;
  built.outputQueueIs("q", "", "");
  built.outputQueueIs("\x01", "", "");
  built.outputQueueIs("", "q", "p");
  built.schedulerPolicyIs("");
  built.interface("");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), interface("", ""));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(InterfacesJson, LeavesOutNamesThatAStringCannotHold) {
  const HostModel built;
  built.interface("\x01")->configIs({"ok"});
  built.outputQueueIs("q", "q", "\x02");
  built.outputQueueIs("q\x03", "q", "p");
  built.schedulerPolicyIs("\x04");
  const HostRendered rendered(built);
  EXPECT_EQ(
      rendered.tree(),
      interface("", R"(,"output":{"queues":{"queue":[{"config":{"name":"q"},"name":"q"}]}})"));
  const std::string output = list + "[interface-id='e']/output/";
  const std::string unfit = " that YANG strings can't hold: left out (from ";
  EXPECT_THAT(
      rendered.warnings,
      ElementsAre(
          list + "[interface-id='\\u0001']: an interface-id" + unfit + "the interface \"\\u0001\")",
          output +
              "queues/queue[name='q']/config/queue-management-profile: \"\\u0002\" is "
              "a name" +
              unfit + "the comment on the tx queue \"q\" of the interface \"e\")",
          output + "queues/queue[name='q\\u0003']: a name" + unfit + "the queue name \"q\\u0003\")",
          output + "scheduler-policy/config/name: \"\\u0004\" is a name" + unfit +
              "a comment on a tx queue of the interface \"e\")"));
}

}  // namespace
}  // namespace host::interfacesJsonTest
