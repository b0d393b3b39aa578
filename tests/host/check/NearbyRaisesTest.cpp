// The places that the report of a line names.
#include "host/check/NearbyRaises.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/KeptDevice.h"

namespace host::nearbyRaisesTest {
namespace {

using support::hostLine;
using support::KeptDevice;
using support::ourComment;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string policy = ourComment(R"({"scheduler-policy":{"name":"s"}})");
const std::string both =
    ourComment(R"({"scheduler-policy":{"name":"s"},"queue-management-profile":{"name":"p"}})");
const std::string rate = ourComment(R"({"1":{"one-rate-two-color":{"cir-pct":150}}})");

// Everything in it is good, and much of it only by a comment.
std::string document() {
  return R"({"interfaces":{
      "Ethernet1/1":{"tx-queues":{"uc-1":{"bandwidth":150},"uc-2":{"bandwidth":40,"ecn":{"max-drop-percent":1}}}},
      "Etna1/1":{"tx-queues":{"uc-1":{"bandwidth":151},"mc-1":{}}},
      "p7":{"tx-queues":{"mc-3":{"bandwidth":102,"ecn":{"max-threshold":4294967295}}}}},
    "qos-profiles":{"__YANG_QMP_[p]":{"tx-queues":{"uc-0":{"ecn":{"max-drop-percent":1},"wred":{"max-drop-percent":2}}}},
      "__YANG_SP_[s]":{}},
    "service-policies":{"1:__yang_[IPV4__a]":{}},
    "comments":{"if-Et1/1-uc-txq-1":)" +
         policy + R"(,"if-p7-mc-txq-3":)" + both + "}}";
}

// What the lines raise, without the texts: "line 1: /a, /b".
std::vector<std::string> placesOf(const std::vector<std::string>& lines) {
  KeptDevice d(document(), {.leftOut = KeptDevice::LeftOut::stays});
  EXPECT_THAT(d.reports(), IsEmpty());
  std::vector<std::string> places;
  for (const std::string& line : lines) {
    for (const std::string& report : d.line(line)) {
      const std::size_t at = report.find(" at /");
      places.push_back(at == report.npos ? report : report.substr(at + 4));
    }
  }
  return places;
}
std::vector<std::string> placesOf(const std::string& path, const std::string& value) {
  return placesOf({hostLine("add", path, value)});
}

const std::string queue1 = "/interfaces/Ethernet1~11/tx-queues/uc-1";
const std::string queue2 = "/interfaces/Ethernet1~11/tx-queues/uc-2";
const std::string other1 = "/interfaces/Etna1~11/tx-queues/uc-1";
const std::string multicast = "/interfaces/p7/tx-queues/mc-3";
const std::string ofPort = multicast + "/bandwidth, " + multicast + "/ecn/max-drop-percent, " +
                           multicast + "/ecn/max-threshold";
const std::string profile = "/qos-profiles/__YANG_QMP_[p]/tx-queues/uc-0";

TEST(NearbyRaises, AreTheSettingThatWasWritten) {
  EXPECT_THAT(placesOf(queue2 + "/bandwidth", "200"), ElementsAre(queue2 + "/bandwidth"));
  EXPECT_THAT(placesOf(queue2 + "/ecn/max-drop-percent", "101"),
              ElementsAre(queue2 + "/ecn/max-drop-percent"));
  EXPECT_THAT(placesOf(queue2 + "/ecn", R"({"max-drop-percent":1,"min-threshold":4294967295})"),
              ElementsAre(queue2 + "/ecn/min-threshold"));
  EXPECT_THAT(placesOf(queue1 + "/bandwidth", "200"), IsEmpty());
}

TEST(NearbyRaises, AreWhatTheHandlerOfASettingReadsBesides) {
  EXPECT_THAT(
      placesOf({hostLine("add", queue2 + "/bandwidth", "200"),
                hostLine("add", queue2 + "/priority", "1"), hostLine("add", queue2 + "/shape", "1"),
                hostLine("add", queue2 + "/ecn/weight", "1")}),
      ElementsAre(queue2 + "/bandwidth", queue2 + "/bandwidth"));
  EXPECT_THAT(placesOf({hostLine("add", queue2 + "/ecn/max-drop-percent", "200"),
                        hostLine("add", queue2 + "/ecn/weight", "1"),
                        hostLine("add", queue2 + "/bandwidth", "1")}),
              ElementsAre(queue2 + "/ecn/max-drop-percent", queue2 + "/ecn/max-drop-percent"));
}

TEST(NearbyRaises, AreWhatACommentSpokeFor) {
  EXPECT_THAT(placesOf({hostLine("remove", "/comments/if-p7-mc-txq-3")}), ElementsAre(ofPort));
  EXPECT_THAT(placesOf("/comments/if-p7-mc-txq-3", "\"a note\""), ElementsAre(ofPort));
}

TEST(NearbyRaises, AreThoseOfAllInterfacesThatShareTheComment) {
  EXPECT_THAT(placesOf({hostLine("remove", "/comments/if-Et1~11-uc-txq-1")}),
              ElementsAre(queue1 + "/bandwidth, " + other1 + "/bandwidth"));
}

// The index of short names follows the device.
TEST(NearbyRaises, AreThoseOfInterfacesThatCameOrWentSince) {
  const std::string comment = "/comments/if-Et1~11-uc-txq-1";
  const std::string third = "/interfaces/Et1~11";
  EXPECT_THAT(placesOf({hostLine("remove", comment), hostLine("add", comment, policy),
                        hostLine("remove", "/interfaces/Etna1~11"),
                        hostLine("add", third, R"({"tx-queues":{"uc-1":{"bandwidth":255}}})"),
                        hostLine("remove", comment)}),
              ElementsAre(queue1 + "/bandwidth, " + other1 + "/bandwidth",
                          third + "/tx-queues/uc-1/bandwidth, " + queue1 + "/bandwidth"));
}

TEST(NearbyRaises, AreAllOfAnObjectThatComes) {
  const std::string queues = R"({"uc-5":{"bandwidth":103},"uc-6":{"ecn":{}},"uc-7":{}})";
  const std::string path = "/interfaces/Ethernet9";
  EXPECT_THAT(placesOf(path, R"({"tx-queues":)" + queues + '}'),
              ElementsAre(path + "/tx-queues/uc-5/bandwidth, " + path +
                          "/tx-queues/uc-6/ecn/max-drop-percent"));
  // A write each.
  EXPECT_THAT(placesOf("/interfaces/p7/tx-queues", queues),
              ElementsAre("/interfaces/p7/tx-queues/uc-5/bandwidth",
                          "/interfaces/p7/tx-queues/uc-6/ecn/max-drop-percent"));
  EXPECT_THAT(
      placesOf({hostLine("remove", "/comments")}),
      testing::UnorderedElementsAre(ofPort, queue1 + "/bandwidth, " + other1 + "/bandwidth"));
}

TEST(NearbyRaises, AreBothBlocksOfAProfile) {
  EXPECT_THAT(
      placesOf({hostLine("add", profile + "/wred/max-drop-percent", "101"),
                hostLine("add", profile + "/ecn/weight", "7"),
                hostLine("add", profile + "/ecn", "{}"),
                hostLine("add", profile + "/bandwidth", "7")}),
      ElementsAre(profile + "/wred/max-drop-percent", profile + "/wred/max-drop-percent",
                  profile + "/ecn/max-drop-percent, " + profile + "/wred/max-drop-percent"));
}

TEST(NearbyRaises, AreThoseOfAProfileThatComes) {
  const std::string queues = R"({"mc-0":{"wred":{}}})";
  const std::string place = "/qos-profiles/__YANG_QMP_[p]/tx-queues/mc-0/wred/max-drop-percent";
  EXPECT_THAT(placesOf("/qos-profiles/__YANG_QMP_[p]", R"({"tx-queues":)" + queues + '}'),
              ElementsAre(place));
  EXPECT_THAT(placesOf("/qos-profiles/__YANG_QMP_[p]/tx-queues", queues), ElementsAre(place));
  EXPECT_THAT(placesOf("/qos-profiles/__YANG_QMP_[p]/tx-queues/mc-0", R"({"wred":{}})"),
              ElementsAre(place));
}

TEST(NearbyRaises, AreTheCommentOfAPolicy) {
  const std::string key = "/comments/qos-profile-__YANG_SP_[s]";
  EXPECT_THAT(placesOf(key, rate), ElementsAre(key));
  EXPECT_THAT(placesOf({hostLine("add", "/comments/qos-profile-__YANG_SP_[u]", rate),
                        hostLine("add", "/qos-profiles/__YANG_SP_[u]", "{}")}),
              ElementsAre("/comments/qos-profile-__YANG_SP_[u]"));
}

TEST(NearbyRaises, AreTheServicePolicyThatIsRefused) {
  EXPECT_THAT(placesOf("/service-policies/2:__yang_[IPV4__a]", "{}"),
              ElementsAre("/service-policies/2:__yang_[IPV4__a]"));
}

TEST(NearbyRaises, AreNamedUpToABound) {
  std::vector<Tokens> places;
  EXPECT_EQ(atPlaces(places), "");
  for (int n = 0; n < 20; ++n) places.push_back({"a", std::to_string(n)});
  EXPECT_TRUE(atPlaces(places).ends_with(", /a/9")) << atPlaces(places);
  places.push_back({"a", "0"});
  EXPECT_EQ(atPlaces(places).find("more"), std::string::npos);
  places.push_back({"a", "z"});
  EXPECT_TRUE(atPlaces(places).ends_with(", /a/9, and 1 more"));
}

}  // namespace
}  // namespace host::nearbyRaisesTest
