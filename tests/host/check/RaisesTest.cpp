// Every value of a byte at every place that a root may raise over: the rules find what is raised.
#include "host/check/Raises.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "host/NativeReader.h"
#include "host/Roots.h"
#include "tests/support/WalkOrder.h"

namespace host::raisesTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

// ===== Documents

std::string comment(const std::string& key, const std::string& metaData) {
  std::string text;
  for (const char c : R"({"MetaData-OpenConfig":)" + metaData + '}') {
    text += c == '"' ? std::string("\\\"") : std::string(1, c);
  }
  return R"("comments":{")" + key + R"(":")" + text + R"("})";
}

std::string queue(const std::string& settings, const std::string& metaData = "{}") {
  return R"({"interfaces":{"Ethernet1":{"tx-queues":{"uc-3":{)" + settings + "}}}}," +
         comment("if-Et1-uc-txq-3", metaData) + '}';
}

std::string profile(const std::string& settings, const std::string& queue = "uc-0",
                    const std::string& name = "__YANG_QMP_[p]") {
  return R"({"qos-profiles":{")" + name + R"(":{"tx-queues":{")" + queue + R"(":{)" + settings +
         "}}}}}";
}

std::string policy(const std::string& schedulers, const std::string& name = "__YANG_SP_[s]") {
  return R"({"qos-profiles":{")" + name + R"(":{}},)" + comment("qos-profile-" + name, schedulers) +
         '}';
}

std::string servicePolicies(const std::string& first, const std::string& second) {
  return R"({"service-policies":{")" + first + R"(":{"interfaces":{"Ethernet1":true}},")" + second +
         R"(":{"interfaces":{"Ethernet2":true}}}})";
}

constexpr const char* namesPolicy = R"({"scheduler-policy":{"name":"s"}})";
constexpr const char* namesProfile = R"({"queue-management-profile":{"name":"p"}})";
constexpr const char* namesBoth =
    R"({"scheduler-policy":{"name":"s"},"queue-management-profile":{"name":"p"}})";
constexpr const char* namesNothing =
    R"({"scheduler-policy":{"name":""},"queue-management-profile":{"name":""}})";
constexpr const char* halfBad =
    R"({"scheduler-policy":{"name":"s"},"queue-management-profile":{}})";

// ===== What is raised

// The roots that raise over a document at a start from nothing, and those of which a rule says so.
struct Verdict {
  explicit Verdict(std::string_view document) {
    const Native native;
    readNativeText(document, native);
    const Model model;
    buildRoots({}, native, model, [this](const std::string& report) {
      raised.insert(report.substr(5, report.find(':') - 5));
    });
    Raises(native).all([this](const Raise& raise) { found.insert(std::string(raise.root)); });
  }
  std::set<std::string> raised;
  std::set<std::string> found;
};

std::vector<std::string> placesOf(std::string_view document, const Model* model = nullptr) {
  const Native native;
  readNativeText(document, native);
  std::vector<std::string> places;
  Raises(native, model).all([&](const Raise& raise) {
    places.push_back(shownPointer(raise.place));
  });
  std::sort(places.begin(), places.end());
  return places;
}

// A document with "?" where each value is tried.
class EachByte : public testing::TestWithParam<std::string> {};

TEST_P(EachByte, RaisesWhereARuleSaysSo) {
  const std::string form = GetParam();
  const std::size_t at = form.find('?');
  for (unsigned value = 0; value < 256; ++value) {
    std::string document = form;
    document.replace(at, 1, std::to_string(value));
    const Verdict verdict(document);
    EXPECT_EQ(verdict.found, verdict.raised) << document;
  }
}

INSTANTIATE_TEST_SUITE_P(
    Queues, EachByte,
    testing::Values(queue(R"("bandwidth":?)"), queue(R"("bandwidth":?)", namesPolicy),
                    queue(R"("bandwidth":?)", namesProfile), queue(R"("bandwidth":?)", namesBoth),
                    queue(R"("bandwidth":?)", namesNothing), queue(R"("bandwidth":?)", halfBad),
                    queue(R"("bandwidth":?,"priority":"strict")"), queue(R"("priority":?)"),
                    queue(R"("shape":?)"), queue(R"("ecn":{"max-drop-percent":?})"),
                    queue(R"("ecn":{"max-drop-percent":?})", namesPolicy),
                    queue(R"("ecn":{"max-drop-percent":?})", namesProfile),
                    queue(R"("ecn":{"max-drop-percent":?})", namesBoth),
                    queue(R"("ecn":{"max-drop-percent":?})", namesNothing),
                    queue(R"("ecn":{"max-drop-percent":?})", halfBad),
                    queue(R"("ecn":{"max-drop-percent":0,"threshold-unit":?})"),
                    queue(R"("ecn":{"max-drop-percent":0,"weight":?})"),
                    queue(R"("wred":{"max-drop-percent":?})")));

INSTANTIATE_TEST_SUITE_P(
    Profiles, EachByte,
    testing::Values(profile(R"("ecn":{"max-drop-percent":?})"),
                    profile(R"("wred":{"max-drop-percent":?})"),
                    profile(R"("wred":{"max-drop-percent":?},"ecn":{"max-drop-percent":0})"),
                    profile(R"("ecn":{"max-drop-percent":?},"wred":{"max-drop-percent":0})"),
                    profile(R"("ecn":{"max-drop-percent":?})", "mc-0"),
                    profile(R"("ecn":{"max-drop-percent":?})", "uc-1"),
                    profile(R"("ecn":{"max-drop-percent":?})", "uc-0", "__YANG_QMP_[]"),
                    profile(R"("ecn":{"max-drop-percent":?})", "uc-0", "__YANG_SP_[p]"),
                    profile(R"("bandwidth":?)"), profile(R"("priority":?)"),
                    profile(R"("ecn":{"max-drop-percent":0,"threshold-unit":?})")));

INSTANTIATE_TEST_SUITE_P(
    Policies, EachByte,
    testing::Values(policy(R"({"1":{"one-rate-two-color":{"cir-pct":?}}})"),
                    policy(R"({"1":{"one-rate-two-color":{"cir":5,"cir-pct":?}}})"),
                    policy(R"({"1":{"one-rate-two-color":{"cir":?}}})"),
                    policy(R"({"1":{"inputs":{"a":{"weight":?}}}})"),
                    policy(R"({"?":{"one-rate-two-color":{"cir-pct":101}}})"),
                    policy(R"({"1":{"one-rate-two-color":{"cir-pct":1?}}})"),
                    policy(R"({"1":{"one-rate-two-color":{"cir-pct":?}}})", "__YANG_QMP_[s]"),
                    policy(R"({"1":{"one-rate-two-color":{"cir-pct":?}}})", "__YANG_SP_[]")));

INSTANTIATE_TEST_SUITE_P(
    Others, EachByte,
    testing::Values(
        R"({"forwarding-groups":{"g":?}})", R"({"queue-names":{"q":?}})",
        R"({"queue-names":{"q":3},"tc-to-tx-queue":{"5":?},"forwarding-groups":{"g":5}})",
        R"({"interfaces":{"Ethernet1":{"pfc":{"priorities":?}}}})",
        R"({"pfc-watchdog":{"action":?,"priorities":3}})", R"({"pfc-watchdog":{"priorities":?}})",
        R"({"access-lists":{"ipv4":{"__yang_[a]_[b]":{"rules":{"1":{"dscp":?}}}}}})",
        R"({"access-lists":{"ipv6":{"__yang_[a]_[b]":{"rules":{"1":{"tc":?,"tc-mask":252}}}}}})",
        R"({"access-lists":{"ipv6":{"__yang_[a]_[b]":{"rules":{"1":{"tc":184,"tc-mask":?}}}}}})",
        R"({"class-maps":{"qos":{"__yang_[a]_[b]":{"match":["?"]}}}})",
        R"({"class-maps":{"?":{"__yang_[a]_[b]":{"match":["1"]}}}})",
        R"({"forwarding-groups":{"g":17},"policy-maps":{"qos":{"__yang_[IPV4__a]":{"classes":)"
        R"({"__yang_[a]_[b]":{"actions":{"set-traffic-class":?}}}}}}})",
        R"({"policy-maps":{"qos":{"__yang_[IPV4__a]":{"classes":)"
        R"({"__yang_[a]_[b]":{"actions":{"?":300}}}}}}})"));

// ===== Places

TEST(Raises, NameThePlacesOfAQueue) {
  EXPECT_THAT(placesOf(queue(R"("bandwidth":150,"ecn":{"min-threshold":4294967295,)"
                             R"("max-threshold":4294967295},"wred":{})")),
              ElementsAre("/interfaces/Ethernet1/tx-queues/uc-3/bandwidth",
                          "/interfaces/Ethernet1/tx-queues/uc-3/ecn/max-drop-percent",
                          "/interfaces/Ethernet1/tx-queues/uc-3/ecn/max-threshold",
                          "/interfaces/Ethernet1/tx-queues/uc-3/ecn/min-threshold"));
}

TEST(Raises, OverEachThresholdAlone) {
  for (const char* name : {"min-threshold", "max-threshold"}) {
    const std::string ecn =
        std::string(R"("ecn":{"max-drop-percent":0,")") + name + R"(":4294967295})";
    EXPECT_THAT(placesOf(queue(ecn)),
                ElementsAre("/interfaces/Ethernet1/tx-queues/uc-3/ecn/" + std::string(name)));
    EXPECT_THAT(Verdict(queue(ecn)).raised, ElementsAre("queue"));
    EXPECT_THAT(placesOf(profile(ecn)), IsEmpty());
    EXPECT_THAT(Verdict(profile(ecn)).raised, IsEmpty());
  }
}

TEST(Raises, NameTheProfilesAndTheCommentsOfPolicies) {
  EXPECT_THAT(placesOf(profile(R"("ecn":{},"wred":{"max-drop-percent":150})")),
              ElementsAre("/qos-profiles/__YANG_QMP_[p]/tx-queues/uc-0/ecn/max-drop-percent",
                          "/qos-profiles/__YANG_QMP_[p]/tx-queues/uc-0/wred/max-drop-percent"));
  EXPECT_THAT(placesOf(policy(R"({"1":{"one-rate-two-color":{"cir-pct":150}}})")),
              ElementsAre("/comments/qos-profile-__YANG_SP_[s]"));
}

TEST(Raises, OverNothingThatACommentSpeaksForWhichCannotBeRead) {
  EXPECT_THAT(placesOf(queue(R"("bandwidth":150)", R"({"scheduler-policy":5})")), IsEmpty());
  EXPECT_THAT(placesOf(policy(R"({"1":{"one-rate-two-color":{"cir-pct":150,"cir":"5"}}})")),
              IsEmpty());
}

// A rate that the model has stays.
TEST(Raises, OverNoRateOfASchedulerThatTheModelHas) {
  const Native before;
  readNativeText(policy(R"({"1":{"one-rate-two-color":{"cir-pct":40}}})"), before);
  const Model model;
  EXPECT_THAT(
      buildRoots({}, before, model, [](const std::string& report) { ADD_FAILURE() << report; }),
      testing::SizeIs(10));
  const std::string after = policy(
      R"({"1":{"one-rate-two-color":{"cir-pct":150}},"2":{"one-rate-two-color":{"cir-pct":40}}})");
  EXPECT_THAT(placesOf(after), testing::SizeIs(1));
  EXPECT_THAT(placesOf(after, &model), IsEmpty());
}

// ===== Service policies

TEST(Raises, OverServicePoliciesOfOnePolicyMapInEachWalkOrder) {
  const char* const names[] = {"__yang_[IPV4__a]", "__yang_[IPV6__a]", "__yang_[IPV4__a][IPV6__b]",
                               "__yang_"};
  for (const std::string name : names) {
    const std::string document = servicePolicies("1:" + name, "2:" + name);
    for (std::uint32_t seed = 0; seed < 64; ++seed) {
      const support::WalkOrder order(seed);
      EXPECT_THAT(Verdict(document).raised, ElementsAre("interface-classifier"))
          << document << seed;
    }
    EXPECT_THAT(placesOf(document),
                ElementsAre("/service-policies/1:" + name, "/service-policies/2:" + name));
  }
}

TEST(Raises, OverNoOtherServicePolicies) {
  const std::string documents[] = {
      servicePolicies("1:plain", "2:plain"),
      servicePolicies("1:__yang_[IPV4__]", "2:__yang_[IPV4__]"),
      servicePolicies("1:__yang_[IPV6__a][IPV4__b]", "2:__yang_[IPV6__a][IPV4__b]"),
      servicePolicies("1:__yang_[IPV4__a]", "2:__yang_[IPV4__b]"),
      servicePolicies("1:__yang_[IPV4__a]", "1:__yang_[IPV4__a][IPV6__a]"),
  };
  for (const std::string& document : documents) {
    EXPECT_THAT(placesOf(document), IsEmpty()) << document;
    EXPECT_THAT(Verdict(document).raised, IsEmpty()) << document;
  }
}

}  // namespace
}  // namespace host::raisesTest
