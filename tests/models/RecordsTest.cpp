// What every record of the output promises by its fields: equality, the default, the text.
#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>
#include <type_traits>

#include "models/openconfig/Classifier.h"
#include "models/openconfig/ForwardingGroup.h"
#include "models/openconfig/Interface.h"
#include "models/openconfig/Pfc.h"
#include "models/openconfig/Queue.h"
#include "models/openconfig/SchedulerPolicy.h"

namespace QosOc::Config::recordsTest {
namespace {

// A record's name, and the text of its default, which names each of its fields.
struct Row {
  const char* name;
  const char* text;
};
template <class Record>
constexpr Row row{};

template <>
constexpr Row row<ClassifierConfig>{"ClassifierConfig", "{name , type (absent)}"};
template <>
constexpr Row row<TermConditionsIpConfig>{"TermConditionsIpConfig", "{dscp (absent), dscpSet []}"};
template <>
constexpr Row row<TermConditions>{
    "TermConditions", "{ipv4 {dscp (absent), dscpSet []}, ipv6 {dscp (absent), dscpSet []}}"};
template <>
constexpr Row row<TermActionsConfig>{"TermActionsConfig", "{targetGroup }"};
template <>
constexpr Row row<TermActions>{"TermActions", "{targetGroup }"};
template <>
constexpr Row row<Term>{"Term", "{id , configId , conditions (absent), actions (absent)}"};
template <>
constexpr Row row<ForwardingGroupConfig>{"ForwardingGroupConfig", "{name , outputQueue }"};
template <>
constexpr Row row<InterfaceInputClassifierConfig>{"InterfaceInputClassifierConfig",
                                                  "{name , type classifierTypeIpv4}"};
template <>
constexpr Row row<InterfaceInputClassifier>{
    "InterfaceInputClassifier",
    "{type classifierTypeIpv4, config {name , type classifierTypeIpv4}}"};
template <>
constexpr Row row<InterfaceOutputQueueConfig>{"InterfaceOutputQueueConfig",
                                              "{name , queueManagementProfile }"};
template <>
constexpr Row row<InterfaceOutputQueue>{"InterfaceOutputQueue",
                                        "{name , config {name , queueManagementProfile }}"};
template <>
constexpr Row row<InterfaceOutputSchedulerPolicyConfig>{"InterfaceOutputSchedulerPolicyConfig",
                                                        "{name }"};
template <>
constexpr Row row<InterfaceOutputSchedulerPolicy>{"InterfaceOutputSchedulerPolicy",
                                                  "{config {name }}"};
template <>
constexpr Row row<IntfPfc>{"IntfPfc", "{priorities }"};
template <>
constexpr Row row<InterfaceConfig>{"InterfaceConfig", "{interfaceId }"};
template <>
constexpr Row row<PfcWatchdog>{"PfcWatchdog", "{timeA 0, timeB 0, timeC 0, action 1, priorities }"};
template <>
constexpr Row row<QueueConfig>{"QueueConfig", "{name , strictPriority false, bandwidth (absent)}"};
template <>
constexpr Row row<QueueEcnConfig>{"QueueEcnConfig",
                                  "{maxDropProbabilityPercent 0, maxThreshold 0, minThreshold 0, "
                                  "thresholdUnit 0, weight 0}"};
template <>
constexpr Row row<Queue>{"Queue",
                         "{name , config {name , strictPriority false, bandwidth (absent)}, "
                         "ecnConfig (absent)}"};
template <>
constexpr Row row<WredUniform>{"WredUniform",
                               "{minThreshold 0, maxThreshold 0, enableEcn false, drop false, "
                               "weight 0, maxDropProbabilityPercent 100}"};
template <>
constexpr Row row<QueueManagementProfileConfig>{"QueueManagementProfileConfig", "{name }"};
template <>
constexpr Row row<QueueManagementProfile>{
    "QueueManagementProfile",
    "{name , config {name }, wredUniform {minThreshold 0, maxThreshold 0, enableEcn false, drop "
    "false, weight 0, maxDropProbabilityPercent 100}}"};
template <>
constexpr Row row<SchedulerInputConfig>{"SchedulerInputConfig",
                                        "{id , inputType QUEUE, queue , weight (absent)}"};
template <>
constexpr Row row<SchedulerInput>{"SchedulerInput",
                                  "{id , config {id , inputType QUEUE, queue , weight (absent)}}"};
template <>
constexpr Row row<OneRateTwoColor>{"OneRateTwoColor", "{cir (absent), cirPct (absent)}"};
template <>
constexpr Row row<SchedulerConfig>{
    "SchedulerConfig", "{sequence 0, schedulerType ONE_RATE_TWO_COLOR, priority (absent)}"};
template <>
constexpr Row row<SchedulerPolicyConfig>{"SchedulerPolicyConfig", "{name }"};

using AllRecords =
    testing::Types<ClassifierConfig, TermConditionsIpConfig, TermConditions, TermActionsConfig,
                   TermActions, Term, ForwardingGroupConfig, InterfaceInputClassifierConfig,
                   InterfaceInputClassifier, InterfaceOutputQueueConfig, InterfaceOutputQueue,
                   InterfaceOutputSchedulerPolicyConfig, InterfaceOutputSchedulerPolicy, IntfPfc,
                   InterfaceConfig, PfcWatchdog, QueueConfig, QueueEcnConfig, Queue, WredUniform,
                   QueueManagementProfileConfig, QueueManagementProfile, SchedulerInputConfig,
                   SchedulerInput, OneRateTwoColor, SchedulerConfig, SchedulerPolicyConfig>;

struct ByName {
  template <class Record>
  static std::string GetName(int /*number*/) {
    return row<Record>.name;
  }
};

// ===== Other values

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<Rok::Optional<T>> = true;

template <class T, class Act>
void eachOther(const T& value, const Act& act);

template <class Record, class AField, class Act>
void eachOtherIn(const Record& record, const AField& field, const Act& act) {
  eachOther(record.*field.place, [&](const auto& other, const std::string& path) {
    Record changed = record;
    changed.*field.place = other;
    act(changed, "." + std::string(field.name) + path);
  });
}

// Calls `act` with each value that differs from this one in one place, and with the place's path.
// An optional may be there with its default, or with a value that differs from that in one place.
template <class T, class Act>
void eachOther(const T& value, const Act& act) {
  if constexpr (requires { T::fields().field; }) {
    eachOtherIn(value, T::fields().field, act);
  } else if constexpr (HasFields<T>) {
    std::apply([&](const auto&... field) { (eachOtherIn(value, field, act), ...); }, T::fields());
  } else if constexpr (isOptional<T>) {
    using Value = typename T::value_type;
    act(T(Value()), " is there");
    eachOther(Value(), [&](const Value& other, const std::string& path) { act(T(other), path); });
  } else if constexpr (std::is_same_v<T, Rok::String>) {
    act(T("other"), "");
  } else if constexpr (std::is_same_v<T, Velmo::ByteVector>) {
    T changed = value;
    changed.push_back(46);
    act(changed, "");
  } else if constexpr (std::is_same_v<T, bool>) {
    act(!value, "");
  } else if constexpr (std::is_enum_v<T>) {
    act(static_cast<T>(static_cast<unsigned>(value) + 1), "");
  } else if constexpr (std::is_arithmetic_v<T>) {
    act(static_cast<T>(value + 1), "");
  } else {
    act(T(value.value() == 0 ? 1u : 0u), "");  // a number with a range
  }
}

template <class T>
std::string printed(const T& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

// ===== The tests

template <class T>
class Record : public testing::Test {};
TYPED_TEST_SUITE(Record, AllRecords, ByName);

TYPED_TEST(Record, TheDefaultIsFalseAndPrintsAllItsFields) {
  EXPECT_FALSE(static_cast<bool>(TypeParam()));
  EXPECT_EQ(printed(TypeParam()), row<TypeParam>.text);
}

TYPED_TEST(Record, EachFieldCountsForEqualityAndTellsItFromTheDefault) {
  const TypeParam record;
  EXPECT_EQ(record, TypeParam());
  eachOther(record, [&](const TypeParam& other, const std::string& path) {
    EXPECT_NE(other, record) << path;
    EXPECT_EQ(other, TypeParam(other)) << path;
    EXPECT_TRUE(static_cast<bool>(other)) << path;
  });
}

TYPED_TEST(Record, EachFieldShowsInTheText) {
  std::set<std::string> texts{printed(TypeParam())};
  eachOther(TypeParam(), [&](const TypeParam& other, const std::string& path) {
    EXPECT_TRUE(texts.insert(printed(other)).second) << path << " in " << printed(other);
  });
  EXPECT_GT(texts.size(), 1u);
}

// ===== Records with a key

template <class T>
class KeyedRecord : public testing::Test {};
using KeyedRecords = testing::Types<Term, InterfaceInputClassifier, InterfaceOutputQueue, Queue,
                                    QueueManagementProfile, SchedulerInput>;
TYPED_TEST_SUITE(KeyedRecord, KeyedRecords, ByName);

TYPED_TEST(KeyedRecord, OfTheDefaultKeyItIsTheDefaultAndOfAnotherItHasThatAlone) {
  const auto key = std::get<0>(TypeParam::fields());
  static_assert(key.isKey);
  const TypeParam none;
  EXPECT_EQ(TypeParam(none.*key.place), none);
  eachOther(none.*key.place, [&](const auto& other, const std::string& /*path*/) {
    TypeParam expected;
    expected.*key.place = other;
    EXPECT_EQ(TypeParam(other), expected);
  });
}

}  // namespace
}  // namespace QosOc::Config::recordsTest
