#include "host/NativeWriter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "host/Roots.h"
#include "host/Sections.h"
#include "tests/support/HostDevice.h"

namespace host::nativeWriterTest {
namespace {

using support::HostDevice;
using support::hostLine;

std::string written(const HostDevice& device) { return nativeJson(device.native, Layout::compact); }
// What is written of a device that was mounted from a document.
std::string rewritten(std::string_view document) { return written(HostDevice(document)); }
// For a document that is written as it was read.
void expectItself(std::string_view document) { EXPECT_EQ(rewritten(document), document); }
// Requires of what is written of a device that it mounts the same one.
void expectReadBack(const HostDevice& device) {
  const std::string text = written(device);
  const HostDevice other(text);
  EXPECT_EQ(nativePlace(other.native)->value(), nativePlace(device.native)->value()) << text;
  EXPECT_EQ(written(other), text);
}

TEST(NativeWriter, WritesNothingOfADeviceThatHasNothing) {
  expectItself("{}");
  EXPECT_EQ(nativeJson(Native(), Layout::pretty), "{}\n");
}

TEST(NativeWriter, LeavesOutWhatTheDocumentHoldsAnyway) {
  EXPECT_EQ(rewritten(R"({"class-maps": {"qos": {}}, "access-lists": {"ipv4": {}}, "comments": {},
                          "policy-maps": {}, "service-policies": {}, "interfaces": {},
                          "qos-profiles": {}, "forwarding-groups": {}, "queue-names": {},
                          "tc-to-tx-queue": {"0": 16, "16": 16}, "pfc-watchdog": {"action": 1,
                          "time-a": 0, "time-b": 0.0, "time-c": 0, "priorities": 0}})"),
            "{}");
  EXPECT_EQ(rewritten(R"({"class-maps": {"qos": {"V": {"match": []}}},
                          "interfaces": {"E": {"tx-queues": {"uc-1": {"priority": 2, "shape": 0,
                          "bandwidth": 101, "ecn": {"weight": 0, "max-drop-percent": 101}}}}}})"),
            R"({"class-maps":{"qos":{"V":{}}},)"
            R"("interfaces":{"E":{"tx-queues":{"uc-1":{"ecn":{}}}}}})");
}

TEST(NativeWriter, LeavesOutAnAlwaysThereObjectOnlyWhileNothingStandsInIt) {
  expectItself(R"({"access-lists":{"ipv6":{"V":{}}}})");
  expectItself(R"({"policy-maps":{"qos":{"P":{},"Q":{"classes":{"V":{}}}}}})");
  expectItself(R"({"interfaces":{"E":{},"F":{"tx-queues":{"mc-0":{}}}}})");
}

TEST(NativeWriter, NamesTheBytesThatHaveNames) {
  expectItself(
      R"({"class-maps":{"qos":{"V":{"match":["ip-access-group","ipv6-access-group",7]}},"7":{}},)"
      R"("policy-maps":{"qos":{"P":{"classes":{"V":{"actions":{"set-traffic-class":5,"7":6}}}}}},)"
      R"("interfaces":{"E":{"tx-queues":{"uc-1":{"priority":"strict"},"uc-2":{"priority":1}}}}})");
}

// Every section, and in it everything with a default at another value.
constexpr const char* full =
    R"({"class-maps":{"0":{},"qos":{"V":{"match":["ip-access-group"]}}},)"
    R"("access-lists":{"ipv4":{"V":{"rules":{"5":{},"10":{"dscp":0}}},"W":{}},)"
    R"("ipv6":{"V":{"rules":{"4294967295":{"tc":184,"tc-mask":252}}},"W":{"rules":{}}}},)"
    R"("policy-maps":{"qos":{"P":{"classes":{"V":{"actions":{"set-traffic-class":4294967295}}}}}},)"
    R"("service-policies":{"1:P":{"interfaces":{"E":true,"F":false}},"2:P":{},"65535:a:b":{}},)"
    R"("interfaces":{"E":{"tx-queues":{"uc-3":{"priority":"strict","bandwidth":40,"shape":9,)"
    R"("ecn":{"min-threshold":1,"max-threshold":2,"threshold-unit":3,"max-drop-percent":4,"weight":5},)"
    R"("wred":{}}},"pfc":{"priorities":8}},"F":{"pfc":{}}},)"
    R"("qos-profiles":{"G":{"tx-queues":{"mc-255":{"priority":0}}},"H":{},"I":{"tx-queues":{}}},)"
    R"("comments":{"":"","if-E-uc-txq-3":"{\"a\":\"b\"}\n"},)"
    R"("tc-to-tx-queue":{"0":3,"2":255,"16":0},)"
    R"("forwarding-groups":{"":5,"voice":255},)"
    R"("queue-names":{"high":3},)"
    R"("pfc-watchdog":{"time-a":0.1,"time-b":-0.5,"action":0,"time-c":3.0,"priorities":255}})";

TEST(NativeWriter, WritesEverySectionInTheOrderOfTheDocument) {
  std::string expected = full;
  const std::string number = R"("priority":0)";
  expected.replace(expected.find(number), number.size(), R"("priority":"strict")");
  EXPECT_EQ(rewritten(full), expected);
  expectReadBack(HostDevice(full));
}

TEST(NativeWriter, TellsWhatIsNullFromWhatIsEmpty) {
  expectItself(R"({"access-lists":{"ipv4":{"null":{},"rules":{"rules":{}}}}})");
  expectItself(R"({"qos-profiles":{"null":{},"queues":{"tx-queues":{}}}})");
  expectItself(R"({"interfaces":{"E":{"tx-queues":{"uc-0":{},"uc-1":{"ecn":{}}}}}})");
  expectItself(R"({"interfaces":{"E":{},"F":{"pfc":{}}}})");
}

TEST(NativeWriter, WritesAnyName) {
  const HostDevice device(R"({"class-maps": {"qos": {"": {}, "a/b~c": {}, "__yang_[x]_[]": {},
      "\u0000\u0001\n\"\\\u007f": {}, "\ud83d\ude00\u2028\ufffe": {}}},
      "service-policies": {"1::\u0000/": {}}, "comments": {"\t": "\u0000\u001f\ud83d\ude00"}})");
  expectReadBack(device);
  EXPECT_EQ(written(device),
            "{\"class-maps\":{\"qos\":{\"\":{},\"\\u0000\\u0001\\n\\\"\\\\\x7f\":{},"
            "\"__yang_[x]_[]\":{},\"a/b~c\":{},\"\xf0\x9f\x98\x80\xe2\x80\xa8\xef\xbf\xbe\":{}}},"
            "\"service-policies\":{\"1::\\u0000/\":{}},"
            "\"comments\":{\"\\t\":\"\\u0000\\u001f\xf0\x9f\x98\x80\"}}");
}

TEST(NativeWriter, WritesRealNumbersToTheirLastBit) {
  for (const char* time : {"0.1", "1e-300", "4.9406564584124654e-324", "123456789.123456789",
                           "1.7976931348623157e308", "18446744073709551615", "-2.5"}) {
    expectReadBack(HostDevice(R"({"pfc-watchdog": {"time-a": )" + std::string(time) + "}}"));
  }
}

TEST(NativeWriter, LaysTheDocumentOutForPeople) {
  EXPECT_EQ(nativeJson(HostDevice(R"({"queue-names": {"q": 1}, "comments": {"a": "b"}})").native,
                       Layout::pretty),
            "{\n  \"comments\": {\n    \"a\": \"b\"\n  },\n  \"queue-names\": {\n    \"q\": 1\n"
            "  }\n}\n");
}

TEST(NativeWriter, WritesWhatTheChangesLeft) {
  HostDevice device(full);
  for (const auto& [op, path, value] : std::vector<std::array<const char*, 3>>{
           {"remove", "/class-maps/qos/V", ""},
           {"remove", "/access-lists/ipv6/V/rules", ""},
           {"remove", "/interfaces/E/tx-queues/uc-3/ecn", ""},
           {"remove", "/interfaces/E/tx-queues/uc-3/priority", ""},
           {"remove", "/qos-profiles/G/tx-queues", ""},
           {"remove", "/forwarding-groups", ""},
           {"replace", "/tc-to-tx-queue", R"({"7": 7})"},
           {"remove", "/pfc-watchdog", ""},
           {"add", "/class-maps/7", "{}"},
           {"add", "/qos-profiles/H/tx-queues", R"({"uc-0": {"wred": {}}})"}}) {
    ASSERT_EQ(device.reportOf(op, path, value), "") << path;
    expectReadBack(device);
  }
  const std::string text = written(device);
  EXPECT_EQ(text.find("forwarding-groups"), text.npos);
  EXPECT_NE(text.find(R"("tc-to-tx-queue":{"7":7})"), text.npos);
  EXPECT_NE(text.find(R"("G":{},"H":{"tx-queues":{"uc-0":{"wred":{}}}})"), text.npos);
}

TEST(NativeWriter, IsNotMovedByALineThatIsRefusedOrRaises) {
  HostDevice device(R"({"interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {}}}}})");
  const Model model;
  const auto roots =
      buildRoots({}, device.native, model, [](const std::string& line) { ADD_FAILURE() << line; });
  const std::string before = written(device);
  EXPECT_NE(device.reportOf("add", "/queue-names/q", "300"), "");
  EXPECT_EQ(written(device), before);
  EXPECT_EQ(
      device.reportOf("add", "/interfaces/Ethernet1/tx-queues/uc-3/bandwidth", "102").find("range"),
      0u);
  expectReadBack(device);
  EXPECT_NE(written(device).find(R"("bandwidth":102)"), std::string::npos);
}

TEST(NativeWriter, HandsALargeDocumentOnInPieces) {
  std::string document = R"({"class-maps": {"qos": {"first": {})";
  for (int i = 0; i < 20'000; ++i) document += ",\"class map " + std::to_string(i) + "\": {}";
  const HostDevice device(document + "}}}");
  std::string text;
  std::size_t largest = 0;
  EXPECT_EQ(nativeJson(device.native, Layout::pretty,
                       [&](std::string_view piece) {
                         text += piece;
                         largest = std::max(largest, piece.size());
                       }),
            "");
  EXPECT_EQ(text, nativeJson(device.native, Layout::pretty));
  EXPECT_LT(largest, text.size() / 4);
}

}  // namespace
}  // namespace host::nativeWriterTest
