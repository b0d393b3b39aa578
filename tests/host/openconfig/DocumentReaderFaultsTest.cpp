// OpenConfig documents that are refused: each fault has its path, line and column.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/openconfig/DocumentReader.h"

namespace host::documentReaderFaultsTest {
namespace {

using testing::ElementsAre;

std::vector<std::string> faults(const std::string& text) {
  std::vector<std::string> lines;
  for (const Fault& fault : readDocument(text, {}).faults) {
    lines.push_back(shownPosition(fault.position()) + ' ' + fault.place() + ": " + fault.what());
  }
  return lines;
}
// In the leaf of a queue, of a profile or of the watchdog, without the position.
std::string faultBelow(const std::string& tree) {
  const auto all = faults(R"({"openconfig-qos:qos":{)" + tree + "}}");
  EXPECT_EQ(all.size(), 1u) << tree;
  return all.empty() ? "" : all.front().substr(all.front().find(' ') + 1);
}
std::string queue(const std::string& members) {
  return R"("queues":{"queue":[{"name":"q",)" + members + "}]}";
}
const std::string q = "/qos/queues/queue[name=q]";

// ===== Members

const std::string legalOfQos =
    " (legal: classifiers, forwarding-groups, interfaces, qosoc-augments:pfc, "
    "queue-management-profiles, queues, scheduler-policies)";
const std::string legalOfQueue =
    " (legal: name, qosoc-augments:bandwidth, qosoc-augments:strict-priority)";

TEST(OpenConfigFaults, NameAMemberThatTheTablesDoNotKnow) {
  EXPECT_THAT(faults("{\"openconfig-qos:qos\": {\n  \"queues\": {\"queue\": [\n"
                     "    {\"config\": {\"queue-id\": 7}, \"name\": \"q\"}]}}}"),
              ElementsAre("3:17 " + q + "/config/queue-id: unknown member" + legalOfQueue));
  EXPECT_THAT(faults(R"({"openconfig-qos:qos":{},"qos":{}})"),
              ElementsAre("1:26 /qos: unknown member (legal: openconfig-interfaces:interfaces, "
                          "openconfig-qos:qos)"));
  EXPECT_EQ(faultBelow(R"("pfc":{"watchdog":[{"x":[1]}]})"),
            "/qos/pfc: unknown member (legal: classifiers, forwarding-groups, interfaces, "
            "qosoc-augments:pfc, queue-management-profiles, queues, scheduler-policies)");
  EXPECT_EQ(faultBelow(queue(R"("config":{"bandwidth":7})")),
            q + "/config/bandwidth: unknown member" + legalOfQueue)
      << "a member of the augmenting module without its name";
}

TEST(OpenConfigFaults, NameAMemberThatIsThereTwice) {
  EXPECT_EQ(faultBelow(queue(R"("name":"q")")), q + "/name: the same member twice");
  EXPECT_EQ(faultBelow(R"("queues":{},"queues":{})"), "/qos/queues: the same member twice");
}

TEST(OpenConfigFaults, StandWhereTheMemberBeginsWhateverIsInItsName) {
  EXPECT_THAT(faults(R"({"openconfig-qos:qos":{"a\\\"b\\":1}})"),
              ElementsAre("1:24 /qos/a\\\"b\\: unknown member" + legalOfQos));
  EXPECT_THAT(faults("\"x\""), ElementsAre("1:1 (document): expected an object, not \"x\""));
}

// ===== Shapes

TEST(OpenConfigFaults, NameAValueOfTheWrongShape) {
  EXPECT_THAT(faults("[]"), ElementsAre("1:1 (document): expected an object, not an array"));
  EXPECT_THAT(faults("7"), ElementsAre("1:1 (document): expected an object, not 7"));
  EXPECT_EQ(faultBelow(R"("queues":[])"), "/qos/queues: expected an object, not an array");
  EXPECT_EQ(faultBelow(R"("queues":{"queue":{"name":"q"}})"),
            "/qos/queues/queue: expected an array of objects, not an object");
  EXPECT_EQ(faultBelow(R"("queues":{"queue":["q"]})"),
            "/qos/queues/queue: expected an object, not \"q\"");
  EXPECT_EQ(faultBelow(R"("queues":{"queue":[[{"name":"q"}]]})"),
            "/qos/queues/queue: expected an object, not an array");
  EXPECT_EQ(faultBelow(queue(R"("config":{"name":{"x":1}})")),
            q + "/config/name: expected a string that YANG can hold, not an object");
  EXPECT_EQ(faultBelow(queue(R"("config":null)")), q + "/config: expected an object, not null");
}

// ===== Values

TEST(OpenConfigFaults, NameAValueThatItsLeafCannotHold) {
  EXPECT_EQ(faultBelow(queue(R"("config":{"qosoc-augments:bandwidth":101})")),
            q + "/config/qosoc-augments:bandwidth: expected a whole number from 0 to 100, not 101");
  EXPECT_EQ(
      faultBelow(queue(R"("config":{"qosoc-augments:bandwidth":"7"})")),
      q + "/config/qosoc-augments:bandwidth: expected a whole number from 0 to 100, not \"7\"");
  EXPECT_EQ(faultBelow(queue(R"("config":{"qosoc-augments:bandwidth":-1})")),
            q + "/config/qosoc-augments:bandwidth: expected a whole number from 0 to 100, not -1");
  EXPECT_EQ(faultBelow(queue(R"("config":{"qosoc-augments:bandwidth":1.5})")),
            q + "/config/qosoc-augments:bandwidth: expected a whole number from 0 to 100, not 1.5");
  EXPECT_EQ(faultBelow(queue(R"("config":{"qosoc-augments:strict-priority":"true"})")),
            q + "/config/qosoc-augments:strict-priority: expected true or false, not \"true\"");
  EXPECT_EQ(faultBelow(queue(R"("config":{"name":"\u0001"})")),
            q + "/config/name: expected a string that YANG can hold, not \"\\u0001\"");
}

TEST(OpenConfigFaults, NameAWordThatIsNoneOfTheLeafs) {
  EXPECT_EQ(faultBelow(R"("classifiers":{"classifier":[{"name":"c","config":{"type":"IP"}}]})"),
            "/qos/classifiers/classifier[name=c]/config/type: expected \"IPV4\", \"IPV6\", "
            "\"MPLS\" or \"ETHERNET\", not \"IP\"");
  EXPECT_EQ(faultBelow(R"("scheduler-policies":{"scheduler-policy":[{"name":"s","schedulers":
                {"scheduler":[{"config":{"type":"ONE_RATE_TWO_COLOR"},"sequence":7}]}}]})"),
            "/qos/scheduler-policies/scheduler-policy[name=s]/schedulers/scheduler[sequence=7]/"
            "config/type: expected \"openconfig-qos-types:ONE_RATE_TWO_COLOR\" or "
            "\"openconfig-qos-types:TWO_RATE_THREE_COLOR\", not \"ONE_RATE_TWO_COLOR\"");
  EXPECT_EQ(faultBelow(R"("qosoc-augments:pfc":{"watchdog":{"config":{"priorities":"0A"}}})"),
            "/qos/qosoc-augments:pfc/watchdog/config/priorities: expected a string with eight "
            "bits in hexadecimal, not \"0A\"");
}

TEST(OpenConfigFaults, NameAnElementOfALeafList) {
  const auto set = [](const std::string& elements) {
    return faultBelow(R"("classifiers":{"classifier":[{"name":"c","terms":{"term":[{"id":"t",
        "conditions":{"ipv4":{"config":{"dscp-set":)" +
                      elements + "}}}}]}}]}");
  };
  const std::string path =
      "/qos/classifiers/classifier[name=c]/terms/term[id=t]/conditions/ipv4/config/dscp-set: ";
  EXPECT_EQ(set("[1,64]"), path + "expected a whole number from 0 to 63, not 64");
  EXPECT_EQ(set("[1,2,1]"), path + "the same value twice: 1");
  EXPECT_EQ(set("[1,[2]]"), path + "expected a whole number from 0 to 63, not an array");
  EXPECT_EQ(set("7"), path + "expected an array of whole numbers from 0 to 63, not 7");
}

// ===== Keys

TEST(OpenConfigFaults, NameAnEntryWithoutItsKey) {
  EXPECT_THAT(faults("{\"openconfig-qos:qos\":{\"queues\":{\"queue\":[\n{\"config\":{}}]}}}"),
              ElementsAre("2:1 /qos/queues/queue: the key \"name\" is missing"));
  EXPECT_EQ(faultBelow(R"("queues":{"queue":[{"name":7}]})"),
            "/qos/queues/queue/name: expected a string that YANG can hold, not 7")
      << "and nothing else";
}

TEST(OpenConfigFaults, NameAnEntryThatIsThereTwice) {
  EXPECT_EQ(faultBelow(R"("queues":{"queue":[{"name":"q"},{"name":"p"},{"name":"q"}]})"),
            q + ": the same entry twice");
}

TEST(OpenConfigFaults, NameAKeyThatIsNotWhatTheConfigSays) {
  const std::string fault = R"(: the entry has the key "q" and config/name "p")";
  EXPECT_EQ(faultBelow(queue(R"("config":{"name":"p"})")), q + "/config/name" + fault);
  EXPECT_EQ(faultBelow(R"("queues":{"queue":[{"config":{"name":"p"},"name":"q"}]})"),
            q + "/name" + fault);
}

// ===== Texts

TEST(OpenConfigFaults, OfTheSyntaxStandLast) {
  EXPECT_THAT(faults("{\"openconfig-qos:qos\":{\"x\":1,\n\"queues\":{\"queue\":[{\"y\":2,"),
              ElementsAre("1:24 /qos/x: unknown member" + legalOfQos,
                          "2:21 /qos/queues/queue/y: unknown member (legal: config, name, "
                          "qosoc-augments:ecn, state)",
                          "2:27 (document): not JSON: Missing a name for object member."));
  EXPECT_THAT(faults(""), ElementsAre("1:1 (document): not JSON: The document is empty."));
}

TEST(OpenConfigFaults, AreTwentyAtMost) {
  std::string members;
  for (int i = 0; i < 30; ++i) members += (i > 0 ? ",\"x" : "\"x") + std::to_string(i) + "\":{}";
  const auto all = faults(R"({"openconfig-qos:qos":{)" + members + "}");
  EXPECT_EQ(all.size(), 20u);
  EXPECT_THAT(all.back(), testing::HasSubstr("/qos/x19"));
}

TEST(OpenConfigFaults, ComeOutOfDeepTexts) {
  std::string deep = R"({"openconfig-qos:qos":{"x":)";
  deep.append(1'000'000, '[');
  EXPECT_EQ(faults(deep).size(), 2u);
}

}  // namespace
}  // namespace host::documentReaderFaultsTest
