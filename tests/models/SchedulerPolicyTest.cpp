// The OpenConfig scheduler-policy records, and the attachment of a policy to an interface.
#include "models/openconfig/SchedulerPolicy.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <set>
#include <sstream>
#include <string>

#include "models/openconfig/Interface.h"

namespace QosOc::Config::schedulerPolicyTest {
namespace {

template <class T>
std::string printed(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

SchedulerInput input(const Rok::String& id) {
  SchedulerInput made(id);
  made.config.id = id;
  return made;
}

// ===== Enumerations

TEST(SchedulerEnumerations, AreOneByteWideAndBeginAtZero) {
  EXPECT_EQ(sizeof(SchedulerType), 1u);
  EXPECT_EQ(sizeof(SchedulerInputType), 1u);
  EXPECT_EQ(sizeof(SchedulerPriority), 1u);
  EXPECT_EQ(static_cast<int>(SchedulerType::ONE_RATE_TWO_COLOR), 0);
  EXPECT_EQ(static_cast<int>(SchedulerInputType::QUEUE), 0);
  EXPECT_EQ(static_cast<int>(SchedulerPriority::STRICT), 0);
}

TEST(SchedulerEnumerations, PrintByNameAndAForeignValueAsItsNumber) {
  EXPECT_EQ(printed(SchedulerType::ONE_RATE_TWO_COLOR), "ONE_RATE_TWO_COLOR");
  EXPECT_EQ(printed(SchedulerInputType::QUEUE), "QUEUE");
  EXPECT_EQ(printed(SchedulerPriority::STRICT), "STRICT");
  EXPECT_EQ(printed(static_cast<SchedulerType>(1)), "1");
  EXPECT_EQ(printed(static_cast<SchedulerInputType>(2)), "2");
  EXPECT_EQ(printed(static_cast<SchedulerPriority>(3)), "3");
  EXPECT_EQ(Rok::EnumType<unsigned char>::instance<SchedulerType>().name(),
            "QosOc::Config::SchedulerType");
  EXPECT_EQ(Rok::EnumType<unsigned char>::instance<SchedulerInputType>().name(),
            "QosOc::Config::SchedulerInputType");
  EXPECT_EQ(Rok::EnumType<unsigned char>::instance<SchedulerPriority>().name(),
            "QosOc::Config::SchedulerPriority");
}

// ===== Inputs

TEST(SchedulerInput, HasItsIdAndNothingElseAtFirst) {
  const SchedulerInput made("in");
  EXPECT_EQ(made.id, "in");
  EXPECT_EQ(made.config, SchedulerInputConfig());
  EXPECT_EQ(made.config.id, "");
  EXPECT_EQ(made.config.inputType, SchedulerInputType::QUEUE);
  EXPECT_EQ(made.config.queue, "");
  EXPECT_FALSE(made.config.weight.has_value());
}

TEST(SchedulerInputs, AMissingIdReadsAsTheDefaultAndALookupNeverCreates) {
  const auto inputs = Rok::make<SchedulerInputs>();
  EXPECT_EQ(inputs->input("nobody"), SchedulerInput());
  EXPECT_EQ(inputs->input().members(), 0u);
}

TEST(SchedulerInputs, AWriteReplacesTheWholeRecordOfThatId) {
  const auto inputs = Rok::make<SchedulerInputs>();
  SchedulerInput made = input("in");
  made.config.weight = std::uint64_t{7};
  inputs->inputIs(made);
  inputs->inputIs(input("other"));
  EXPECT_EQ(inputs->input("in"), made);
  inputs->inputIs(SchedulerInput("in"));
  EXPECT_EQ(inputs->input("in"), SchedulerInput("in"));
  EXPECT_EQ(inputs->input("other"), input("other"));
  EXPECT_EQ(inputs->input().members(), 2u);
}

TEST(SchedulerInputs, AreKeyedByTheRecordsOwnIdAndNotByThatOfItsConfig) {
  const auto inputs = Rok::make<SchedulerInputs>();
  SchedulerInput made("in");
  made.config.id = "other";
  inputs->inputIs(made);
  EXPECT_EQ(inputs->input("in"), made);
  EXPECT_FALSE(inputs->input("other"));
}

// ===== Rates

TEST(OneRateTwoColor, APercentageAboveAHundredIsRefusedAndTheRecordStaysAsItWas) {
  OneRateTwoColor rate;
  rate.cirPct = PercentType(100);
  try {
    rate.cirPct = PercentType(101);
    FAIL() << "no exception";
  } catch (const Rok::RangeException& e) {
    EXPECT_STREQ(e.what(),
                 "QosOc::PercentType::value < QosOc::PercentType::min or > "
                 "QosOc::PercentType::max not allowed");
  }
  EXPECT_EQ(rate.cirPct, PercentType(100));
}

// ===== Schedulers

TEST(Scheduler, HasItsSequenceAndNothingElseAtFirst) {
  const auto scheduler = Rok::make<Scheduler>(7u);
  EXPECT_EQ(scheduler->sequence(), 7u);
  EXPECT_EQ(scheduler->config(), SchedulerConfig()) << "the config is not filled by itself";
  EXPECT_EQ(scheduler->inputs(), nullptr);
  EXPECT_FALSE(scheduler->oneRateTwoColor().has_value());
}

TEST(Scheduler, TheConfigIsReplacedWhole) {
  const auto scheduler = Rok::make<Scheduler>(7u);
  scheduler->configIs({7, SchedulerType::ONE_RATE_TWO_COLOR, SchedulerPriority::STRICT});
  EXPECT_EQ(scheduler->config().priority, SchedulerPriority::STRICT);
  scheduler->configIs({8, SchedulerType::ONE_RATE_TWO_COLOR, {}});
  EXPECT_EQ(scheduler->config(), (SchedulerConfig{8, SchedulerType::ONE_RATE_TWO_COLOR, {}}));
  EXPECT_EQ(scheduler->sequence(), 7u) << "the key is its own";
}

TEST(Scheduler, InputsAreCreatedOnce) {
  const auto scheduler = Rok::make<Scheduler>(7u);
  const auto inputs = scheduler->inputsIs();
  ASSERT_NE(inputs, nullptr);
  EXPECT_EQ(scheduler->inputsIs(), inputs);
  EXPECT_EQ(scheduler->inputs(), inputs);
}

TEST(Scheduler, ARateWithOneOfItsFieldsAbsentKeepsTheOther) {
  const auto scheduler = Rok::make<Scheduler>(7u);
  scheduler->oneRateTwoColorIs(OneRateTwoColor{std::uint64_t{5000}, {}});
  ASSERT_TRUE(scheduler->oneRateTwoColor().has_value());
  EXPECT_EQ(scheduler->oneRateTwoColor()->cir, std::uint64_t{5000});
  EXPECT_FALSE(scheduler->oneRateTwoColor()->cirPct.has_value());
  scheduler->oneRateTwoColorIs(OneRateTwoColor{{}, PercentType(30)});
  EXPECT_FALSE(scheduler->oneRateTwoColor()->cir.has_value()) << "replaced, not merged";
  EXPECT_EQ(scheduler->oneRateTwoColor()->cirPct, PercentType(30));
}

TEST(Scheduler, ARateIsClearedByAnEmptyOptionalAndAnEmptyRateIsStillOne) {
  const auto scheduler = Rok::make<Scheduler>(7u);
  scheduler->oneRateTwoColorIs(OneRateTwoColor());
  EXPECT_TRUE(scheduler->oneRateTwoColor().has_value());
  scheduler->oneRateTwoColorIs(Scheduler::Rate());
  EXPECT_FALSE(scheduler->oneRateTwoColor().has_value());
}

TEST(Schedulers, ALookupNeverCreatesAndSchedulerIsCreatesOnce) {
  const auto schedulers = Rok::make<Schedulers>();
  EXPECT_EQ(schedulers->scheduler(1), nullptr);
  EXPECT_EQ(schedulers->scheduler().members(), 0u);
  const auto made = schedulers->schedulerIs(1);
  made->configIs({1, SchedulerType::ONE_RATE_TWO_COLOR, SchedulerPriority::STRICT});
  EXPECT_EQ(schedulers->schedulerIs(1), made);
  EXPECT_EQ(schedulers->scheduler(1), made);
  EXPECT_EQ(made->config().priority, SchedulerPriority::STRICT) << "as it stands";
}

TEST(Schedulers, AreKeyedByTheWholeSequenceAlsoByItsEnds) {
  const auto schedulers = Rok::make<Schedulers>();
  for (const std::uint32_t sequence : {0u, 1u, 0x10001u, 0xffffffffu}) {
    EXPECT_EQ(schedulers->schedulerIs(sequence)->sequence(), sequence);
  }
  std::set<std::uint32_t> sequences;
  for (auto i = schedulers->scheduler().iterator(); i; ++i) sequences.insert(i.key());
  EXPECT_EQ(sequences, (std::set<std::uint32_t>{0u, 1u, 0x10001u, 0xffffffffu}));
}

// ===== Policies

TEST(SchedulerPolicy, HasItsNameAndNothingElseAtFirst) {
  const auto policy = Rok::make<SchedulerPolicy>("wan");
  EXPECT_EQ(policy->name(), "wan");
  EXPECT_FALSE(policy->config()) << "the config is not filled by itself";
  EXPECT_EQ(policy->schedulers(), nullptr);
  policy->configIs({"wan"});
  EXPECT_EQ(policy->config().name, "wan");
}

TEST(SchedulerPolicy, SchedulersAreCreatedOnce) {
  const auto policy = Rok::make<SchedulerPolicy>("wan");
  const auto schedulers = policy->schedulersIs();
  ASSERT_NE(schedulers, nullptr);
  EXPECT_EQ(policy->schedulersIs(), schedulers);
  EXPECT_EQ(policy->schedulers(), schedulers);
}

TEST(SchedulerPoliciesDir, ALookupNeverCreatesAndSchedulerPolicyIsCreatesOnce) {
  const auto dir = Rok::make<SchedulerPoliciesDir>();
  EXPECT_EQ(dir->schedulerPolicy("wan"), nullptr);
  EXPECT_EQ(dir->schedulerPolicy().members(), 0u);
  const auto policy = dir->schedulerPolicyIs("wan");
  policy->schedulersIs();
  EXPECT_EQ(dir->schedulerPolicyIs("wan"), policy);
  EXPECT_EQ(dir->schedulerPolicy("wan"), policy);
  EXPECT_NE(policy->schedulers(), nullptr) << "as it stands";
}

TEST(SchedulerPoliciesDir, ADeletedPolicyTakesItsSchedulersAndTheirInputsWithIt) {
  const auto dir = Rok::make<SchedulerPoliciesDir>();
  auto scheduler = dir->schedulerPolicyIs("wan")->schedulersIs()->schedulerIs(1);
  const auto inputs = scheduler->inputsIs();
  inputs->inputIs(input("in"));
  dir->schedulerPolicyIs("lan");
  dir->schedulerPolicyDel("wan");
  dir->schedulerPolicyDel("wan");
  EXPECT_EQ(dir->schedulerPolicy("wan"), nullptr);
  EXPECT_NE(dir->schedulerPolicy("lan"), nullptr);
  EXPECT_EQ(scheduler->references(), 1u) << "its policy has let go";
  scheduler = nullptr;
  EXPECT_EQ(inputs->references(), 1u) << "its scheduler has let go";
  EXPECT_EQ(dir->schedulerPolicyIs("wan")->schedulers(), nullptr);
  EXPECT_FALSE(dir->schedulerPolicy("wan")->config());
}

// ===== Attachments

TEST(InterfaceOutput, AnAttachedPolicyNeedNotExist) {
  const auto output = Rok::make<InterfaceOutput>();
  output->schedulerPolicyIs(InterfaceOutputSchedulerPolicy{{"nobody's"}});
  ASSERT_TRUE(output->schedulerPolicy().has_value());
  EXPECT_EQ(output->schedulerPolicy()->config, (InterfaceOutputSchedulerPolicyConfig{"nobody's"}));
}

TEST(InterfaceOutput, AnAttachmentWithoutANameIsStillOne) {
  const auto output = Rok::make<InterfaceOutput>();
  output->schedulerPolicyIs(InterfaceOutputSchedulerPolicy());
  EXPECT_TRUE(output->schedulerPolicy().has_value());
}

}  // namespace
}  // namespace QosOc::Config::schedulerPolicyTest
