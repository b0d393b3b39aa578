#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "host/Sections.h"
#include "tests/support/HostDevice.h"

namespace host::nativeReaderTest {
namespace {

using support::HostDevice;
using support::hostFault;
using testing::ElementsAre;
using testing::IsEmpty;

std::string faultOf(std::string_view document) {
  return hostFault([&] { HostDevice device(document); });
}

TEST(NativeDocument, MountsTheQosEntryAlsoWhenItIsLeftOut) {
  for (const char* document : {"{}", R"({"class-maps": {}})", R"({"class-maps": {"qos": {}}})"}) {
    const HostDevice device(document);
    ASSERT_TRUE(device.classMaps()) << document;
    EXPECT_EQ(device.classMaps()->type(), Qos::mapQos);
    EXPECT_EQ(device.native.aclConfig->cmapType().members(), 1u);
    EXPECT_THAT(device.contents(), IsEmpty());
  }
}

TEST(NativeDocument, HoldsClassMapsWithTheirMatchOptions) {
  const HostDevice device(R"({"class-maps": {"qos": {
      "VOICE": {"match": ["ipv6-access-group", "ip-access-group"]},
      "VIDEO": {"match": [1, "7", 255]},
      "PLAIN": {},
      "EMPTY": {"match": []}}}})");
  EXPECT_THAT(device.contents(), ElementsAre("EMPTY", "PLAIN", "VIDEO 1 7 255", "VOICE 1 2"));
  EXPECT_EQ(device.classMap("VOICE")->name(), "VOICE");
  EXPECT_EQ(device.classMap("VOICE")->type(), Qos::mapQos);
}

TEST(NativeDocument, TakesTheNumberOfANameForTheName) {
  const HostDevice device(R"({"class-maps": {"1": {"VOICE": {"match": [2]}}}})");
  EXPECT_EQ(device.native.aclConfig->cmapType().members(), 1u);
  EXPECT_THAT(device.contents(), ElementsAre("VOICE 2"));
}

TEST(NativeDocument, HoldsClassMapsOfOtherTypes) {
  const HostDevice device(R"({"class-maps": {"7": {"X": {"match": [1]}}, "0": {}}})");
  EXPECT_THAT(device.contents(7), ElementsAre("X 1"));
  EXPECT_EQ(device.classMap("X", 7)->type(), Qos::MapType{7});
  EXPECT_TRUE(device.classMaps(0));
  EXPECT_TRUE(device.classMaps(1));
}

TEST(NativeDocument, TakesAnyTextForAName) {
  const HostDevice device(R"({"class-maps": {"qos": {
      "": {}, "a/b~c": {}, "__yang_[x]_[]": {}, "\u0000\n\ud83d\ude00": {}}}})");
  EXPECT_TRUE(device.classMap(""));
  EXPECT_TRUE(device.classMap("a/b~c"));
  EXPECT_TRUE(device.classMap("__yang_[x]_[]"));
  EXPECT_TRUE(device.classMap(std::string_view("\0\n\xf0\x9f\x98\x80", 6)));
}

TEST(NativeDocument, RefusesUnknownMembers) {
  EXPECT_EQ(faultOf(R"({"class-map": {}})"),
            "/class-map: unknown member: did you mean class-maps? (legal: class-maps, "
            "access-lists, policy-maps, service-policies, interfaces, qos-profiles, comments, "
            "tc-to-tx-queue, forwarding-groups, queue-names, pfc-watchdog)");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": {"matches": []}}}})"),
            "/class-maps/qos/V/matches: unknown member: did you mean match? (legal: match)");
}

TEST(NativeDocument, HasTheSectionsInAnyOrder) {
  std::vector<std::string> sections{
      R"("class-maps": {"qos": {"V": {"match": ["ip-access-group"]}}})",
      R"("access-lists": {"ipv4": {"V": {"rules": {"10": {"dscp": 46}, "20": {}}}, "W": {}},
                          "ipv6": {"V": {"rules": {"10": {"tc": 184, "tc-mask": 252}}}}})",
      R"("policy-maps": {"qos": {"P": {"classes": {"V": {"actions": {"set-traffic-class": 5}}}}}})",
      R"("service-policies": {"1:P": {"interfaces": {"Ethernet1": true}}})",
      R"("interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {"priority": "strict", "bandwidth": 40,
                        "ecn": {"weight": 1}, "wred": {}}}, "pfc": {"priorities": 8}}})",
      R"("qos-profiles": {"G": {"tx-queues": {"mc-3": {"shape": 7}}}, "H": {}})",
      R"("comments": {"if-Et1-unicast-3": "text"})",
      R"("tc-to-tx-queue": {"5": 3})",
      R"("forwarding-groups": {"voice": 5})",
      R"("queue-names": {"high": 3})",
      R"("pfc-watchdog": {"time-a": 0.5, "action": 2})"};
  const auto document = [&] {
    std::string text;
    for (const std::string& section : sections) text += (text.empty() ? "{" : ",") + section;
    return text + "}";
  };
  const HostDevice there(document());
  std::reverse(sections.begin(), sections.end());
  const HostDevice back(document());
  for (const Schema::Member& section : nativeSchema().members()) {
    const Value value = nativePlace(there.native)->at(section.name)->value();
    EXPECT_EQ(value, nativePlace(back.native)->at(section.name)->value()) << section.name;
    EXPECT_FALSE(value == section.schema.empty()) << section.name;
  }
}

TEST(NativeDocument, HasTheSectionsLeftOutAsIfTheyWereEmpty) {
  const HostDevice device;
  for (const Schema::Member& section : nativeSchema().members()) {
    EXPECT_EQ(nativePlace(device.native)->at(section.name)->value(), section.schema.empty())
        << section.name;
    EXPECT_EQ(*section.initial, section.schema.empty()) << section.name;
  }
}

TEST(NativeDocument, IsTheObjectOfAllItsSections) {
  const HostDevice device(R"({"comments": {"key": "text"}, "queue-names": {"q1": 1}})");
  Value expected = nativeSchema().empty();
  expected.put("comments", Value(Value::Object{{"key", Value("text")}}));
  expected.put("queue-names", Value(Value::Object{{"q1", Value(std::uint64_t{1})}}));
  EXPECT_EQ(nativePlace(device.native)->value(), expected);
}

TEST(NativeDocument, RefusesValuesOfTheWrongType) {
  EXPECT_EQ(faultOf("[]"), "(document): expected an object, not an array");
  EXPECT_EQ(faultOf(R"({"class-maps": []})"), "/class-maps: expected an object, not an array");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": "x"}})"),
            "/class-maps/qos: expected an object, not \"x\"");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": []}}})"),
            "/class-maps/qos/V: expected an object, not an array");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": {"match": "ip-access-group"}}}})"),
            "/class-maps/qos/V/match: expected an array, not \"ip-access-group\"");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": {"match": {}}}}})"),
            "/class-maps/qos/V/match: expected an array, not an object");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": {"match": [true]}}}})"),
            "/class-maps/qos/V/match/0: expected a match option: ip-access-group, "
            "ipv6-access-group or a number from 0 to 255, not true");
}

TEST(NativeDocument, RefusesNullEverywhere) {
  EXPECT_EQ(faultOf("null"), "(document): null is never a value here: expected an object");
  EXPECT_EQ(faultOf(R"({"class-maps": null})"),
            "/class-maps: null is never a value here: expected an object");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": {"match": null}}}})"),
            "/class-maps/qos/V/match: null is never a value here: expected an array");
}

TEST(NativeDocument, RefusesNumbersThatAreNoBytes) {
  const std::string expected =
      "/class-maps/qos/V/match/0: expected a match option: ip-access-group, "
      "ipv6-access-group or a number from 0 to 255, not ";
  for (const char* option : {"256", "-1", "1.5", "\"256\"", "\"01\"", "\"\""}) {
    EXPECT_EQ(
        faultOf(R"({"class-maps": {"qos": {"V": {"match": [)" + std::string(option) + "]}}}}"),
        expected + option);
  }
}

TEST(NativeDocument, RefusesMapTypesThatAreNoCanonicalBytes) {
  for (const char* type : {"01", "256", "-1", "1.0", "", "quality", " 1"}) {
    EXPECT_EQ(faultOf("{\"class-maps\": {\"" + std::string(type) + "\": {}}}"),
              "/class-maps/" + std::string(type) +
                  ": this key is not a map type: qos or a number from 0 to 255");
  }
  EXPECT_EQ(faultOf(R"({"class-maps": {"QoS": {}}})"),
            "/class-maps/QoS: this key is not a map type: qos or a number from 0 to 255: did you "
            "mean qos?");
}

TEST(NativeDocument, RefusesTheSameKeyTwice) {
  EXPECT_EQ(faultOf(R"({"class-maps": {}, "class-maps": {}})"),
            "/class-maps: the same member twice");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {}, "1": {}}})"),
            "/class-maps/1: the same key twice");
  EXPECT_EQ(faultOf(R"({"class-maps": {"1": {}, "qos": {}}})"),
            "/class-maps/qos: the same key twice");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": {}, "V": {}}}})"),
            "/class-maps/qos/V: the same key twice");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": {}, "\u0056": {}}}})"),
            "/class-maps/qos/V: the same key twice");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": {"match": [], "match": []}}}})"),
            "/class-maps/qos/V/match: the same member twice");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": {"match": ["ip-access-group", 1]}}}})"),
            "/class-maps/qos/V/match/1: the same value twice");
}

TEST(NativeDocument, RefusesTheSameKeyTwiceWhereverItStands) {
  EXPECT_EQ(faultOf(R"({"access-lists": {"ipv4": {}, "ipv4": {}}})"),
            "/access-lists/ipv4: the same member twice");
  EXPECT_EQ(faultOf(R"({"access-lists": {"ipv6": {"V": {}, "V": {}}}})"),
            "/access-lists/ipv6/V: the same key twice");
  EXPECT_EQ(faultOf(R"({"policy-maps": {"7": {"V": {}}, "7": {}}})"),
            "/policy-maps/7: the same key twice");
  EXPECT_EQ(faultOf(R"({"tc-to-tx-queue": {"5": 1, "5": 1}})"),
            "/tc-to-tx-queue/5: the same key twice");
  EXPECT_EQ(faultOf(R"({"service-policies": {"1:P": {}, "1:P": {}}})"),
            "/service-policies/1:P: the same key twice");
  EXPECT_EQ(faultOf(R"({"interfaces": {"e": {"tx-queues": {"uc-1": {}, "uc-1": {}}}}})"),
            "/interfaces/e/tx-queues/uc-1: the same key twice");
  for (const char* section : {"comments", "queue-names", "forwarding-groups"}) {
    const std::string value = section == std::string("comments") ? "\"\"" : "1";
    EXPECT_EQ(
        faultOf("{\"" + std::string(section) + R"(": {"": )" + value + R"(, "": )" + value + "}}"),
        "/" + std::string(section) + "/: the same key twice");
  }
  for (const char* section : {"interfaces", "qos-profiles"}) {
    EXPECT_EQ(faultOf("{\"" + std::string(section) + R"(": {"E": {}, "F": {}, "E": {}}})"),
              "/" + std::string(section) + "/E: the same key twice");
  }
}

TEST(NativeDocument, RefusesTheSameKeyTwiceAmongMany) {
  for (const int twice : {0, 15, 16, 17, 99}) {
    std::string rules;
    for (int i = 0; i < 100; ++i) rules += "\"" + std::to_string(i) + "\": {}, ";
    rules += "\"" + std::to_string(twice) + "\": {}";
    EXPECT_EQ(faultOf(R"({"access-lists": {"ipv4": {"V": {"rules": {)" + rules + "}}}}}"),
              "/access-lists/ipv4/V/rules/" + std::to_string(twice) + ": the same key twice");
  }
}

TEST(NativeDocument, JudgesAKeyBeforeWhatStandsUnderIt) {
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": {}, "V": {"matches": []}}}})"),
            "/class-maps/qos/V: the same key twice");
  EXPECT_EQ(faultOf(R"({"comments": {"V": "", "V": nope)"),
            "/comments/V: the same key twice\n/comments/V: not JSON: Invalid value.");
}

TEST(NativeDocument, RefusesWhatIsNotJson) {
  EXPECT_EQ(faultOf(""), "(document): not JSON: The document is empty.");
  EXPECT_EQ(faultOf("  \n "), "(document): not JSON: The document is empty.");
  EXPECT_EQ(faultOf("{"), "(document): not JSON: Missing a name for object member.");
  EXPECT_EQ(faultOf("nope"), "(document): not JSON: Invalid value.");
  EXPECT_EQ(faultOf("{} {}"),
            "(document): not JSON: The document root must not be followed by other values.");
  EXPECT_EQ(faultOf("{}x"),
            "(document): not JSON: The document root must not be followed by other values.");
  EXPECT_EQ(faultOf(R"({"class-maps": {"qos": {"V": {} "W": {}}}})"),
            "/class-maps/qos/V: not JSON: Missing a comma or '}' after an object member.");
  EXPECT_EQ(faultOf(std::string_view("{}\0", 3)), "(document): not JSON: a NUL byte");
  EXPECT_EQ(
      faultOf("\xef\xbb\xbf{}"),
      "(document): not JSON: Invalid value. (it begins with a byte-order mark: leave that out)");
}

TEST(NativeDocument, SaysWhereItIsNotJson) {
  try {
    const HostDevice device("{\n  \"class-maps\": {\n    \"qos\" {}\n}}");
    FAIL();
  } catch (const Refusal& refusal) {
    ASSERT_EQ(refusal.faults().size(), 1u);
    EXPECT_EQ(refusal.faults()[0].inFile("a.json"),
              "a.json:3:11: /class-maps/qos: not JSON: Missing a colon after a name of object "
              "member.");
  }
}

TEST(NativeDocument, SurvivesAnyDepth) {
  const std::string deep(1'000'000, '[');
  EXPECT_EQ(faultOf(deep),
            "(document): expected an object, not an array\n(document): not JSON: Invalid value.");
  EXPECT_EQ(
      faultOf(R"({"class-maps": {"qos": {"V": {"match": )" + deep),
      "/class-maps/qos/V/match/0: expected a match option: ip-access-group, ipv6-access-group or a "
      "number from 0 to 255, not an array\n/class-maps/qos/V/match/0: not JSON: Invalid value.");
}

}  // namespace
}  // namespace host::nativeReaderTest
