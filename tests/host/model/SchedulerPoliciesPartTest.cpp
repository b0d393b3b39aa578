#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"
#include "tests/support/HostModel.h"

namespace host::schedulerPoliciesPartTest {
namespace {

using namespace QosOc::Config;
using support::hostFault;
using support::hostModelWith;
using support::hostPart;

constexpr const char* part = "scheduler-policies";

TEST(SchedulerPoliciesPart, ReadsAndWritesEveryField) {
  const std::string text = R"({"p":{"config":{"name":"other"},"schedulers":{"4294967295":{)"
                           R"("config":{"priority":0,"scheduler-type":255,"sequence":7},)"
                           R"("inputs":{"i":{"config":{"id":"j","input-type":254,"queue":"q",)"
                           R"("weight":18446744073709551615}}},)"
                           R"("one-rate-two-color":{"cir":18446744073709551615,"cir-pct":100}}}}})";
  const Model model = hostModelWith(part, text);
  EXPECT_EQ(hostPart(model, part), text);

  const auto policy = model.schedulerPolicies->schedulerPolicy("p");
  EXPECT_EQ(policy->config().name, "other");
  const auto scheduler = policy->schedulers()->scheduler(4294967295u);
  EXPECT_EQ(scheduler->config(),
            (SchedulerConfig{7, SchedulerType{255}, SchedulerPriority::STRICT}));
  OneRateTwoColor rate;
  rate.cir = 18446744073709551615u;
  rate.cirPct = QosOc::PercentType(100);
  EXPECT_EQ(scheduler->oneRateTwoColor(), rate);
  SchedulerInput input("i");
  input.config = {"j", SchedulerInputType{254}, "q", 18446744073709551615u};
  EXPECT_EQ(scheduler->inputs()->input("i"), input);
}

TEST(SchedulerPoliciesPart, TellsWhatIsAbsentFromWhatIsEmpty) {
  const std::string config = R"("config":{"priority":null,"scheduler-type":0,"sequence":0})";
  const std::string text =
      R"({"a":{"config":{"name":""},"schedulers":null},)"
      R"("b":{"config":{"name":""},"schedulers":{}},)"
      R"("c":{"config":{"name":""},"schedulers":{)"
      R"("0":{)" +
      config + R"(,"inputs":null,"one-rate-two-color":null},"1":{)" + config +
      R"(,"inputs":{},"one-rate-two-color":{"cir":null,"cir-pct":null}},"2":{)" + config +
      R"(,"inputs":{"":{"config":{"id":"","input-type":0,"queue":"","weight":null}}},)"
      R"("one-rate-two-color":{"cir":0,"cir-pct":0}}}}})";
  const Model model = hostModelWith(part, text);
  EXPECT_EQ(hostPart(model, part), text);
  EXPECT_FALSE(model.schedulerPolicies->schedulerPolicy("a")->schedulers());
  const auto schedulers = model.schedulerPolicies->schedulerPolicy("c")->schedulers();
  EXPECT_FALSE(schedulers->scheduler(0)->oneRateTwoColor());
  EXPECT_EQ(schedulers->scheduler(1)->oneRateTwoColor(), OneRateTwoColor());
}

TEST(SchedulerPoliciesPart, SortsSequencesByTheirBytes) {
  const Model model = hostModelWith(part, R"({"p": {"schedulers": {"2": {}, "10": {}}}})");
  const std::string text = hostPart(model, part);
  EXPECT_LT(text.find("\"10\""), text.find("\"2\""));
}

TEST(SchedulerPoliciesPart, RefusesWhatIsNoScheduler) {
  const auto faultOf = [](const std::string& schedulers) {
    return hostFault([&] { hostModelWith(part, R"({"p": {"schedulers": )" + schedulers + "}}"); });
  };
  EXPECT_EQ(faultOf(R"({"4294967296": {}})"),
            "/scheduler-policies/p/schedulers/4294967296: this key is not a whole number from 0 "
            "to 4294967295");
  EXPECT_EQ(faultOf(R"({"1": {"one-rate-two-color": {"cir-pct": 101}}})"),
            "/scheduler-policies/p/schedulers/1/one-rate-two-color/cir-pct: expected a whole "
            "number from 0 to 100 or null, not 101");
  EXPECT_EQ(faultOf(R"({"1": {"config": {"sequence": null}}})"),
            "/scheduler-policies/p/schedulers/1/config/sequence: null is never a value here: "
            "expected a whole number from 0 to 4294967295");
}

}  // namespace
}  // namespace host::schedulerPoliciesPartTest
