#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::schedulerPoliciesJsonTest {
namespace {

using namespace QosOc::Config;
using support::HostModel;
using support::HostRendered;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* type = R"("type":"openconfig-qos-types:ONE_RATE_TWO_COLOR")";
const std::string list = "/openconfig-qos:qos/scheduler-policies/scheduler-policy";
const std::string native = ": left out (from the comment on the QoS profile \"__YANG_SP_[p]\")";

std::string tree(const std::string& policies) {
  return R"("scheduler-policies":{"scheduler-policy":[)" + policies + "]}";
}
// The policy "p" with these schedulers.
std::string schedulers(const std::string& schedulers) {
  return tree(R"({"config":{"name":"p"},"name":"p","schedulers":{"scheduler":[)" + schedulers +
              "]}}");
}
// Its scheduler 1 with these inputs.
std::string inputs(const std::string& inputs) {
  return schedulers(R"({"config":{"sequence":1,)" + std::string(type) + R"(},"inputs":{"input":[)" +
                    inputs + R"(]},"sequence":1})");
}

Rok::Ptr<Scheduler> scheduler(const HostModel& built, std::uint32_t sequence) {
  return built.model.schedulerPolicies->schedulerPolicyIs("p")->schedulersIs()->schedulerIs(
      sequence);
}
void inputIs(const HostModel& built, std::string_view id, std::string_view queue,
             Rok::Optional<std::uint64_t> weight = {}, unsigned char inputType = 0) {
  SchedulerInput input{Rok::String(id)};
  input.config = {"other", SchedulerInputType{inputType}, queue, weight};
  scheduler(built, 1)->inputsIs()->inputIs(input);
}

TEST(SchedulerPoliciesJson, ShowsPoliciesWithoutSchedulers) {
  const HostModel built;
  built.model.schedulerPolicies->schedulerPolicyIs("b")->configIs({"other"});
  built.model.schedulerPolicies->schedulerPolicyIs("a")->schedulersIs();
  built.model.schedulerPolicies->schedulerPolicyIs("");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), tree(R"({"config":{"name":"a"},"name":"a"},)"
                                  R"({"config":{"name":"b"},"name":"b"})"));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(SchedulerPoliciesJson, ShowsSchedulersInTheOrderOfTheirSequences) {
  const HostModel built;
  scheduler(built, 10)->configIs({99, SchedulerType::ONE_RATE_TWO_COLOR, {}});
  scheduler(built, 2)->configIs({2, SchedulerType::ONE_RATE_TWO_COLOR, SchedulerPriority::STRICT});
  scheduler(built, 0)->inputsIs();
  const HostRendered rendered(built);
  EXPECT_EQ(
      rendered.tree(),
      schedulers(R"({"config":{"sequence":0,)" + std::string(type) +
                 R"(},"sequence":0},{"config":{"priority":"STRICT","sequence":2,)" + type +
                 R"(},"sequence":2},{"config":{"sequence":10,)" + type + R"(},"sequence":10})"));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(SchedulerPoliciesJson, ShowsRates) {
  const HostModel built;
  OneRateTwoColor both;
  both.cir = 18446744073709551615u;
  both.cirPct = QosOc::PercentType(100);
  scheduler(built, 1)->oneRateTwoColorIs(both);
  OneRateTwoColor zero;
  zero.cir = std::uint64_t{0};
  scheduler(built, 2)->oneRateTwoColorIs(zero);
  scheduler(built, 3)->oneRateTwoColorIs(OneRateTwoColor());
  const auto entry = [](const std::string& sequence, const std::string& rate) {
    return R"({"config":{"sequence":)" + sequence + ',' + type + "}," + rate + R"("sequence":)" +
           sequence + '}';
  };
  EXPECT_EQ(HostRendered(built).tree(),
            schedulers(entry("1", R"("one-rate-two-color":{"config":{"cir":"18446744073709551615",)"
                                  R"("cir-pct":100}},)") +
                       ',' + entry("2", R"("one-rate-two-color":{"config":{"cir":"0"}},)") + ',' +
                       entry("3", "")));
}

TEST(SchedulerPoliciesJson, ShowsInputs) {
  const HostModel built;
  inputIs(built, "b", "q", std::uint64_t{18446744073709551615u});
  inputIs(built, "a", "");
  inputIs(built, "", "q");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), inputs(R"({"config":{"id":"a","input-type":"QUEUE"},"id":"a"},)"
                                    R"({"config":{"id":"b","input-type":"QUEUE","queue":"q",)"
                                    R"("weight":"18446744073709551615"},"id":"b"})"));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(SchedulerPoliciesJson, LeavesOutNumbersThatHaveNoName) {
  const HostModel built;
  scheduler(built, 1)->configIs({1, SchedulerType{7}, SchedulerPriority{8}});
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), schedulers(R"({"config":{"sequence":1},"sequence":1})"));
  const std::string config = list + "[name='p']/schedulers/scheduler[sequence='1']/config/";
  EXPECT_THAT(rendered.warnings,
              ElementsAre(config + "priority: 8 is no priority of a scheduler" + native,
                          config + "type: 7 is no type of a scheduler" + native));
}

TEST(SchedulerPoliciesJson, LeavesOutAQueueWithoutItsType) {
  const HostModel built;
  inputIs(built, "a", "q", std::uint64_t{1}, 9);
  inputIs(built, "b", "", {}, 9);
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), inputs(R"({"config":{"id":"a","weight":"1"},"id":"a"},)"
                                    R"({"config":{"id":"b"},"id":"b"})"));
  const std::string input = list + "[name='p']/schedulers/scheduler[sequence='1']/inputs/input";
  EXPECT_THAT(
      rendered.warnings,
      ElementsAre(
          input + "[id='a']/config/input-type: 9 is no type of a scheduler's input" + native,
          input + "[id='a']/config/queue: \"q\" is no queue, by its input-type" + native,
          input + "[id='b']/config/input-type: 9 is no type of a scheduler's input" + native));
}

TEST(SchedulerPoliciesJson, LeavesOutNamesThatAStringCannotHold) {
  const HostModel built;
  built.model.schedulerPolicies->schedulerPolicyIs("\x01");
  inputIs(built, "a", "\x02");
  inputIs(built, "\x03", "q");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), inputs(R"({"config":{"id":"a","input-type":"QUEUE"},"id":"a"})"));
  const std::string input = list + "[name='p']/schedulers/scheduler[sequence='1']/inputs/input";
  EXPECT_THAT(
      rendered.warnings,
      ElementsAre(list + "[name='\\u0001']: a name that YANG strings can't hold: left out (from "
                         "the QoS profile \"__YANG_SP_[\\u0001]\")",
                  input + "[id='\\u0003']: an id that YANG strings can't hold" + native,
                  input +
                      "[id='a']/config/queue: \"\\u0002\" is a name that YANG strings can't "
                      "hold" +
                      native));
}

}  // namespace
}  // namespace host::schedulerPoliciesJsonTest
