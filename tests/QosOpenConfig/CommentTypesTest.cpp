// The value classes of comment metadata: attributes, collections, equality, and their text form.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <random>
#include <sstream>
#include <string>
#include <type_traits>

#include "QosOpenConfig/QosOpenConfigTypes.h"
#include "Rok/GenericIfImpl.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::commentTypesTest {
namespace {

using Input = SchedulerInputCommentInfo;
using Rate = OneRateTwoColorCommentInfo;
using Scheduler = SchedulerCommentInfo;
using Profile = SchedulerPolicyProfileCommentInfo;
using SchedulerPolicy = SchedulerPolicyCommentInfo;
using QueueManagementProfile = QueueManagementProfileCommentInfo;

Input input(const Rok::String& inputId, const Rok::String& q = "", std::uint64_t weight = 0) {
  Input result(inputId);
  result.qIs(q);
  result.weightIs(weight);
  return result;
}

Scheduler scheduler(std::uint32_t sequence, std::initializer_list<Input> inputs = {}) {
  Scheduler result(sequence);
  for (const Input& one : inputs) result.inputsIs(one);
  return result;
}

Profile profile(const Rok::String& name, std::initializer_list<Scheduler> schedulers = {}) {
  Profile result(name);
  for (const Scheduler& one : schedulers) result.schedulersIs(one);
  return result;
}

CommentInfo comment(const Rok::String& schedulerPolicy, const Rok::String& profile) {
  return {SchedulerPolicy(schedulerPolicy), QueueManagementProfile(profile)};
}

template <class Value>
std::string printed(const Value& value) {
  std::ostringstream out;
  out << value;
  return out.str();
}

template <class Act>
std::string rangeException(const Act& act) {
  try {
    act();
  } catch (const Rok::RangeException& e) {
    return e.what();
  }
  return "nothing thrown";
}

// ===== Defaults

TEST(CommentTypes, EveryDefaultIsTheZeroOfItsType) {
  EXPECT_EQ(Input().inputId(), "");
  EXPECT_EQ(Input("in-a"), input("in-a", "", 0));
  EXPECT_EQ(Rate(), Rate(0, 0));
  EXPECT_EQ(Scheduler(7).sequence(), 7u);
  EXPECT_EQ(Scheduler(7).priority(), NONE);
  EXPECT_EQ(Scheduler(7).oneRateTwoColor(), Rate());
  EXPECT_EQ(Scheduler(7).inputs().members(), 0u);
  EXPECT_EQ(Profile("sp-gold").name(), "sp-gold");
  EXPECT_EQ(Profile("sp-gold").schedulers().members(), 0u);
  EXPECT_EQ(SchedulerPolicy().schedulerPolicy(), "");
  EXPECT_EQ(QueueManagementProfile().queueManagementProfile(), "");
  EXPECT_EQ(CommentInfo(), comment("", ""));
}

TEST(CommentTypes, ATypeWithoutADefaultIsBuiltFromItsKey) {
  EXPECT_FALSE(std::is_default_constructible_v<Scheduler>);
  EXPECT_FALSE(std::is_default_constructible_v<Profile>);
  EXPECT_EQ(sizeof(SchedulerPriorityCommentInfo), 1u);
}

TEST(CommentTypes, AttributesKeepWhatTheyAreGiven) {
  Input one("in-a");
  one.qIs("q7");
  one.weightIs(18446744073709551615u);
  EXPECT_EQ(one.inputId(), "in-a");
  EXPECT_EQ(one.q(), "q7");
  EXPECT_EQ(one.weight(), 18446744073709551615u);
  Rate rate(7, 8);
  EXPECT_EQ(rate.cir(), 7u);
  EXPECT_EQ(rate.cirPct(), 8u);
  rate.cirIs(18446744073709551615u);
  rate.cirPctIs(255);
  EXPECT_EQ(rate, Rate(18446744073709551615u, 255));
  Scheduler two(4294967295u);
  two.priorityIs(STRICT);
  two.oneRateTwoColorIs(rate);
  EXPECT_EQ(two.sequence(), 4294967295u);
  EXPECT_EQ(two.priority(), STRICT);
  EXPECT_EQ(two.oneRateTwoColor(), rate);
  Profile three("");
  three.nameIs("sp-gold");
  EXPECT_EQ(three.name(), "sp-gold");
  SchedulerPolicy policy("a");
  policy.schedulerPolicyIs("b");
  EXPECT_EQ(policy, SchedulerPolicy("b"));
  QueueManagementProfile management("a");
  management.queueManagementProfileIs("b");
  EXPECT_EQ(management, QueueManagementProfile("b"));
  CommentInfo info;
  info.sPInfoIs(policy);
  info.qMPInfoIs(QueueManagementProfile("c"));
  EXPECT_EQ(info.sPInfo(), policy);
  EXPECT_EQ(info.qMPInfo().queueManagementProfile(), "c");
  EXPECT_EQ(info, comment("b", "c"));
}

// ===== Collections

TEST(CommentTypes, AMissingInputReadsAsTheDefaultAndNotAsOneWithTheAskedKey) {
  const Scheduler one = scheduler(7, {input("in-a", "q7", 30)});
  EXPECT_EQ(one.inputs("in-a"), input("in-a", "q7", 30));
  EXPECT_EQ(one.inputs("in-b"), Input());
  EXPECT_EQ(one.inputs("in-b").inputId(), "");
  EXPECT_EQ(one.inputs().members(), 1u);
}

TEST(CommentTypes, AMissingSchedulerReadsAsSchedulerZero) {
  const Profile one = profile("", {scheduler(7, {input("in-a")})});
  EXPECT_EQ(one.schedulers(7), scheduler(7, {input("in-a")}));
  EXPECT_EQ(one.schedulers(8), Scheduler(0));
}

TEST(CommentTypes, AnInputThatIsThereIsOverwrittenWhole) {
  Scheduler one = scheduler(7, {input("in-a", "q7", 30), input("in-b", "q6", 1)});
  one.inputsIs(input("in-a", "", 5));
  EXPECT_EQ(one.inputs().members(), 2u);
  EXPECT_EQ(one.inputs("in-a"), input("in-a", "", 5));
  EXPECT_EQ(one.inputs("in-b"), input("in-b", "q6", 1));
}

TEST(CommentTypes, ASchedulerThatIsThereIsOverwrittenWhole) {
  Scheduler strict = scheduler(7, {input("in-a")});
  strict.priorityIs(STRICT);
  strict.oneRateTwoColorIs(Rate(9, 9));
  Profile one = profile("", {strict, Scheduler(8)});
  one.schedulersIs(scheduler(7, {input("in-b")}));
  EXPECT_EQ(one.schedulers().members(), 2u);
  EXPECT_EQ(one.schedulers(7), scheduler(7, {input("in-b")}));
}

TEST(CommentTypes, DeletingGivesWhatWasThereOrTheDefault) {
  Scheduler one = scheduler(7, {input("in-a", "q7", 30), input("in-b")});
  EXPECT_EQ(one.inputsDel("in-a"), input("in-a", "q7", 30));
  EXPECT_EQ(one.inputsDel("in-a"), Input());
  EXPECT_EQ(one.inputs().members(), 1u);
  Profile two = profile("", {one, Scheduler(8)});
  EXPECT_EQ(two.schedulersDel(7), one);
  EXPECT_EQ(two.schedulersDel(7), Scheduler(0));
  EXPECT_EQ(two.schedulers().members(), 1u);
}

TEST(CommentTypes, DeletingAllLeavesNothing) {
  Scheduler one = scheduler(7, {input("in-a"), input("in-b")});
  one.inputsDelAll();
  EXPECT_EQ(one, Scheduler(7));
  Profile two = profile("sp", {scheduler(7), scheduler(8)});
  two.schedulersDelAll();
  EXPECT_EQ(two, Profile("sp"));
}

TEST(CommentTypes, ACopyIsIndependent) {
  const Profile one = profile("sp", {scheduler(7, {input("in-a")})});
  Profile other = one;
  other.schedulersIs(scheduler(7, {input("in-a"), input("in-b")}));
  EXPECT_EQ(one.schedulers(7).inputs().members(), 1u);
  EXPECT_EQ(other.schedulers(7).inputs().members(), 2u);
  EXPECT_FALSE(one == other);
}

// ===== Equality and truth

TEST(CommentTypes, InputsAreEqualWhenAllAttributesAre) {
  const Input one = input("in-a", "q7", 30);
  EXPECT_EQ(one, input("in-a", "q7", 30));
  EXPECT_FALSE(one == input("in-b", "q7", 30));
  EXPECT_FALSE(one == input("in-a", "q8", 30));
  EXPECT_FALSE(one == input("in-a", "q7", 31));
}

TEST(CommentTypes, RatesAreEqualWhenBothNumbersAre) {
  EXPECT_EQ(Rate(7, 8), Rate(7, 8));
  EXPECT_FALSE(Rate(7, 8) == Rate(6, 8));
  EXPECT_FALSE(Rate(7, 8) == Rate(7, 7));
}

TEST(CommentTypes, SchedulersAreEqualWhenAllAttributesAndInputsAre) {
  const Scheduler one = scheduler(7, {input("in-a", "q7"), input("in-b")});
  EXPECT_EQ(one, one);
  EXPECT_EQ(one, scheduler(7, {input("in-a", "q7"), input("in-b")}));
  EXPECT_FALSE(one == scheduler(8, {input("in-a", "q7"), input("in-b")}));
  EXPECT_FALSE(one == scheduler(7, {input("in-a", "q7")}));
  EXPECT_FALSE(one == scheduler(7, {input("in-a", "q7"), input("in-c")}));
  EXPECT_FALSE(one == scheduler(7, {input("in-a", "q8"), input("in-b")}));
  Scheduler other = one;
  other.priorityIs(STRICT);
  EXPECT_FALSE(one == other);
  other = one;
  other.oneRateTwoColorIs(Rate(1, 0));
  EXPECT_FALSE(one == other);
  other.oneRateTwoColorIs(Rate(0, 1));
  EXPECT_FALSE(one == other);
}

TEST(CommentTypes, ProfilesAreEqualWhenTheNameAndTheSchedulersAre) {
  const Profile one = profile("sp", {scheduler(7), scheduler(8, {input("in-a")})});
  EXPECT_EQ(one, one);
  EXPECT_EQ(one, profile("sp", {scheduler(7), scheduler(8, {input("in-a")})}));
  EXPECT_FALSE(one == profile("sq", {scheduler(7), scheduler(8, {input("in-a")})}));
  EXPECT_FALSE(one == profile("sp", {scheduler(7)}));
  EXPECT_FALSE(one == profile("sp", {scheduler(7), scheduler(8, {input("in-b")})}));
  EXPECT_FALSE(one == profile("sp", {scheduler(7), scheduler(9, {input("in-a")})}));
}

TEST(CommentTypes, TheOrderOfInsertionDoesNotCount) {
  EXPECT_EQ(scheduler(7, {input("in-a"), input("in-b")}),
            scheduler(7, {input("in-b"), input("in-a")}));
  const Profile one = profile("", {scheduler(1), scheduler(2), scheduler(3)});
  const support::WalkOrder order(5);
  EXPECT_EQ(one, profile("", {scheduler(3), scheduler(1), scheduler(2)}));
}

TEST(CommentTypes, CommentsAreEqualWhenBothNamesAre) {
  EXPECT_EQ(comment("a", "b"), comment("a", "b"));
  EXPECT_FALSE(comment("a", "b") == comment("a", "c"));
  EXPECT_FALSE(comment("a", "b") == comment("c", "b"));
}

TEST(CommentTypes, AValueIsTrueWhenItDiffersFromTheDefault) {
  EXPECT_FALSE(Input());
  EXPECT_TRUE(input("in-a"));
  EXPECT_TRUE(input("", "q7"));
  EXPECT_TRUE(input("", "", 1));
  EXPECT_FALSE(Rate());
  EXPECT_TRUE(Rate(1, 0));
  EXPECT_TRUE(Rate(0, 1));
  EXPECT_FALSE(Scheduler(0));
  EXPECT_TRUE(Scheduler(7));
  EXPECT_TRUE(scheduler(0, {Input()}));
  EXPECT_FALSE(Profile(""));
  EXPECT_TRUE(Profile("sp"));
  EXPECT_TRUE(profile("", {Scheduler(0)}));
  EXPECT_FALSE(SchedulerPolicy());
  EXPECT_TRUE(SchedulerPolicy("sp"));
  EXPECT_FALSE(QueueManagementProfile());
  EXPECT_TRUE(QueueManagementProfile("qmp"));
  EXPECT_FALSE(comment("", ""));
  EXPECT_TRUE(comment("sp", ""));
  EXPECT_TRUE(comment("", "qmp"));
}

template <class Value>
std::string unhashable(const Value& value) {
  try {
    static_cast<void>(Rok::GenericIfImpl::hash(1, value));
  } catch (const Rok::UnhashableException& e) {
    return e.what();
  }
  return "hashed";
}

TEST(CommentTypes, NoneHasAHash) {
  EXPECT_EQ(unhashable(Input()), "values of QosOc::SchedulerInputCommentInfo have no hash");
  EXPECT_EQ(unhashable(Rate()), "values of QosOc::OneRateTwoColorCommentInfo have no hash");
  EXPECT_EQ(unhashable(Scheduler(1)), "values of QosOc::SchedulerCommentInfo have no hash");
  EXPECT_EQ(unhashable(Profile("")),
            "values of QosOc::SchedulerPolicyProfileCommentInfo have no hash");
  EXPECT_EQ(unhashable(SchedulerPolicy()),
            "values of QosOc::SchedulerPolicyCommentInfo have no hash");
  EXPECT_EQ(unhashable(QueueManagementProfile()),
            "values of QosOc::QueueManagementProfileCommentInfo have no hash");
  EXPECT_EQ(unhashable(CommentInfo()), "values of QosOc::CommentInfo have no hash");
}

// ===== The priority

TEST(CommentPriority, HasANameForEachValue) {
  EXPECT_EQ(static_cast<int>(NONE), 0);
  EXPECT_EQ(static_cast<int>(STRICT), 1);
  EXPECT_EQ(stringValue(NONE), "NONE");
  EXPECT_EQ(stringValue(STRICT), "STRICT");
  EXPECT_EQ(valueToStrep(STRICT), "STRICT");
  EXPECT_EQ(printed(STRICT), "STRICT");
  EXPECT_EQ(stringValue(SchedulerPriorityCommentInfo{7}), "7");
}

TEST(CommentPriority, IsBuiltFromANumberOrAText) {
  EXPECT_EQ(SchedulerPriorityCommentInfoInstance(0u), NONE);
  EXPECT_EQ(SchedulerPriorityCommentInfoInstance(1u), STRICT);
  EXPECT_EQ(SchedulerPriorityCommentInfoInstance(255u), SchedulerPriorityCommentInfo{255});
  EXPECT_EQ(rangeException([] { SchedulerPriorityCommentInfoInstance(256u); }),
            "QosOc::SchedulerPriorityCommentInfo has no value 256");
  EXPECT_EQ(SchedulerPriorityCommentInfoInstance(Rok::String("NONE")), NONE);
  EXPECT_EQ(SchedulerPriorityCommentInfoInstance(Rok::String("STRICT")), STRICT);
  EXPECT_EQ(SchedulerPriorityCommentInfoInstance(Rok::String("1")), STRICT);
  EXPECT_EQ(rangeException([] { SchedulerPriorityCommentInfoInstance(Rok::String("strict")); }),
            "at byte 0: expected a QosOc::SchedulerPriorityCommentInfo");
}

TEST(CommentPriority, IsTakenOffTheFrontOfARange) {
  Rok::CharRange range("STRICT, 'x'");
  SchedulerPriorityCommentInfo priority = NONE;
  sequenceToValue(range, priority);
  EXPECT_EQ(priority, STRICT);
  EXPECT_EQ(range.rest(), ", 'x'");
  EXPECT_EQ(rangeException([&] { sequenceToValue(range, priority); }),
            "at byte 6: expected a QosOc::SchedulerPriorityCommentInfo");
  EXPECT_EQ(priority, STRICT);
}

// ===== The text form

TEST(CommentStrep, AnInputShowsItsThreeAttributes) {
  EXPECT_EQ(valueToStrep(input("in-a", "q'7", 18446744073709551615u)),
            "Value('QosOc::SchedulerInputCommentInfo', ** {'inputId': 'in-a', 'q': 'q\\'7', "
            "'weight': 18446744073709551615})");
}

TEST(CommentStrep, ARateShowsBothNumbers) {
  EXPECT_EQ(valueToStrep(Rate(1000000000, 40)),
            "Value('QosOc::OneRateTwoColorCommentInfo', ** {'cir': 1000000000, 'cirPct': 40})");
}

TEST(CommentStrep, ASchedulerShowsItsAttributesAndNoneForItsInputs) {
  EXPECT_EQ(valueToStrep(Scheduler(7)),
            "Value('QosOc::SchedulerCommentInfo', ** {'sequence': 7, 'priority': NONE, "
            "'oneRateTwoColor': Value('QosOc::OneRateTwoColorCommentInfo', ** {'cir': 0, "
            "'cirPct': 0}), 'inputs': None})");
}

TEST(CommentStrep, ASchedulerWithThreeInputsStillShowsNone) {
  Scheduler one = scheduler(4294967295u, {input("in-a"), input("in-b"), input("in-c")});
  one.priorityIs(STRICT);
  one.oneRateTwoColorIs(Rate(5, 255));
  EXPECT_EQ(valueToStrep(one),
            "Value('QosOc::SchedulerCommentInfo', ** {'sequence': 4294967295, 'priority': STRICT, "
            "'oneRateTwoColor': Value('QosOc::OneRateTwoColorCommentInfo', ** {'cir': 5, "
            "'cirPct': 255}), 'inputs': None})");
}

TEST(CommentStrep, AProfileShowsItsNameAndNoneForItsSchedulers) {
  EXPECT_EQ(valueToStrep(Profile("sp-gold")),
            "Value('QosOc::SchedulerPolicyProfileCommentInfo', ** {'name': 'sp-gold', "
            "'schedulers': None})");
  EXPECT_EQ(valueToStrep(profile("", {scheduler(7), scheduler(8)})),
            "Value('QosOc::SchedulerPolicyProfileCommentInfo', ** {'name': '', 'schedulers': "
            "None})");
}

TEST(CommentStrep, ANameShowsAsItsStringAlone) {
  EXPECT_EQ(valueToStrep(SchedulerPolicy("sp-gold")), "'sp-gold'");
  EXPECT_EQ(valueToStrep(QueueManagementProfile("")), "''");
}

TEST(CommentStrep, ACommentShowsBothNames) {
  EXPECT_EQ(valueToStrep(comment("sp-gold", "")),
            "Value('QosOc::CommentInfo', ** {'sPInfo': 'sp-gold', 'qMPInfo': ''})");
}

TEST(CommentStrep, AValuePrintsAsItsTextForm) {
  EXPECT_EQ(printed(input("in-a")), valueToStrep(input("in-a")));
  EXPECT_EQ(printed(Rate(1, 2)), valueToStrep(Rate(1, 2)));
  EXPECT_EQ(printed(Scheduler(7)), valueToStrep(Scheduler(7)));
  EXPECT_EQ(printed(Profile("sp")), valueToStrep(Profile("sp")));
  EXPECT_EQ(printed(SchedulerPolicy("sp")), "'sp'");
  EXPECT_EQ(printed(QueueManagementProfile("qmp")), "'qmp'");
  EXPECT_EQ(printed(comment("a", "b")), valueToStrep(comment("a", "b")));
}

// ===== The text form, read

template <class Value>
Value again(const Value& value) {
  return Rok::strepToValue<Value>(valueToStrep(value));
}

TEST(CommentStrep, AValueReadsBack) {
  EXPECT_EQ(again(input("in-a", "q7", 30)), input("in-a", "q7", 30));
  EXPECT_EQ(again(Input()), Input());
  EXPECT_EQ(again(Rate(18446744073709551615u, 255)), Rate(18446744073709551615u, 255));
  EXPECT_EQ(again(SchedulerPolicy("sp")), SchedulerPolicy("sp"));
  EXPECT_EQ(again(QueueManagementProfile("qmp")), QueueManagementProfile("qmp"));
  EXPECT_EQ(again(comment("sp-gold", "qmp-wred")), comment("sp-gold", "qmp-wred"));
  EXPECT_EQ(Rok::strepToValue<SchedulerPriorityCommentInfo>(valueToStrep(STRICT)), STRICT);
}

std::string anyText(std::mt19937& random) {
  std::string text(random() % 10, '\0');
  for (char& c : text) {
    c = random() % 2 == 0 ? "', }{\\n%s"[random() % 9] : static_cast<char>(random() % 256);
  }
  return text;
}

TEST(CommentStrep, AValueOfAnyStringsReadsBack) {
  std::mt19937 random(3);
  for (int round = 0; round < 5000; ++round) {
    const Input one = input(anyText(random), anyText(random), random());
    ASSERT_EQ(again(one), one) << one;
    const CommentInfo two = comment(anyText(random), anyText(random));
    ASSERT_EQ(again(two), two) << two;
  }
}

TEST(CommentStrep, OneCharacterMoreIsAnError) {
  const auto longer = [](const Rok::String& text) { return text.addRight("x"); };
  const auto refused = [&]<class Value>(const Value& value) {
    const Rok::String text = valueToStrep(value);
    EXPECT_EQ(rangeException([&] { Rok::strepToValue<Value>(longer(text)); }),
              "at byte " + std::to_string(text.size()) + ": expected nothing more");
  };
  refused(comment("sp", "qmp"));
  refused(input("in-a"));
  refused(Rate(1, 2));
  refused(SchedulerPolicy("sp"));
  refused(QueueManagementProfile("qmp"));
}

// Every text that lacks its end, and every text with one byte replaced by another that reads, is
// refused or gives the value of that very text.
template <class Value>
void expectExactInverse(const Value& value) {
  const std::string text(valueToStrep(value));
  for (std::size_t size = 0; size < text.size(); ++size) {
    EXPECT_THROW(Rok::strepToValue<Value>(text.substr(0, size)), Rok::RangeException) << size;
  }
  for (std::size_t at = 0; at < text.size(); ++at) {
    for (const char c : {'x', '\'', ' ', '0', '9', '\\', '}'}) {
      std::string other = text;
      other[at] = c;
      try {
        EXPECT_EQ(valueToStrep(Rok::strepToValue<Value>(other)), other);
      } catch (const Rok::RangeException&) {
      }
    }
  }
}

TEST(CommentStrep, TheParserIsTheExactInverse) {
  expectExactInverse(input("in-a", "q7", 30));
  expectExactInverse(Rate(20, 10));
  expectExactInverse(SchedulerPolicy("sp"));
  expectExactInverse(QueueManagementProfile("qmp"));
  expectExactInverse(comment("sp", "qmp"));
}

TEST(CommentStrep, AFailureNamesTheAttribute) {
  const auto refusal = []<class Value>(const char* text) {
    return rangeException([&] { Rok::strepToValue<Value>(text); });
  };
  EXPECT_EQ(refusal.template operator()<Input>("Value('QosOc::SchedulerInputCommentInfo', ** "
                                               "{'inputId': 7, 'q': '', 'weight': 0})"),
            "inputId: at byte 57: expected a quoted string");
  EXPECT_EQ(refusal.template operator()<Input>("Value('QosOc::SchedulerInputCommentInfo', ** "
                                               "{'inputId': '', 'q': q, 'weight': 0})"),
            "q: at byte 66: expected a quoted string");
  EXPECT_EQ(refusal.template operator()<Input>("Value('QosOc::SchedulerInputCommentInfo', ** "
                                               "{'inputId': '', 'q': '', 'weight': -1})"),
            "weight: at byte 80: expected a number up to 18446744073709551615");
  EXPECT_EQ(refusal.template operator()<Rate>(
                "Value('QosOc::OneRateTwoColorCommentInfo', ** {'cir': x, 'cirPct': 0})"),
            "cir: at byte 54: expected a number up to 18446744073709551615");
  EXPECT_EQ(refusal.template operator()<Rate>(
                "Value('QosOc::OneRateTwoColorCommentInfo', ** {'cir': 0, 'cirPct': 256})"),
            "cirPct: at byte 67: expected a number up to 255");
  EXPECT_EQ(refusal.template operator()<SchedulerPolicy>("sp"),
            "schedulerPolicy: at byte 0: expected a quoted string");
  EXPECT_EQ(refusal.template operator()<QueueManagementProfile>("qmp"),
            "queueManagementProfile: at byte 0: expected a quoted string");
  EXPECT_EQ(refusal.template operator()<Rate>("Value('QosOc::CommentInfo', ** {"),
            "at byte 0: expected \"Value('QosOc::OneRateTwoColorCommentInfo', ** {\"");
}

TEST(CommentStrep, AFailureInANestedParserNamesTheOuterAttributeToo) {
  const auto refusal = [](const char* text) {
    return rangeException([&] { Rok::strepToValue<CommentInfo>(text); });
  };
  EXPECT_EQ(refusal("Value('QosOc::CommentInfo', ** {'sPInfo': sp, 'qMPInfo': ''})"),
            "sPInfo: schedulerPolicy: at byte 42: expected a quoted string");
  EXPECT_EQ(refusal("Value('QosOc::CommentInfo', ** {'sPInfo': 'sp', 'qMPInfo': None})"),
            "qMPInfo: queueManagementProfile: at byte 59: expected a quoted string");
}

// ===== The two classes that can't be read

TEST(CommentStrepDeathTest, NoTextReadsAsAScheduler) {
  const std::string message =
      "^assertion failed: \"false\" == nullptr: No String constructor for SchedulerCommentInfo - "
      "has collection\n";
  for (const Rok::String& text : {valueToStrep(Scheduler(7)), Rok::String("")}) {
    EXPECT_EXIT(Rok::strepToValue<Scheduler>(text), testing::KilledBySignal(SIGABRT), message);
  }
}

TEST(CommentStrepDeathTest, NoTextReadsAsAProfile) {
  const std::string message =
      "^assertion failed: \"false\" == nullptr: No String constructor for "
      "SchedulerPolicyProfileCommentInfo - has collection\n";
  for (const Rok::String& text : {valueToStrep(Profile("sp")), Rok::String("")}) {
    EXPECT_EXIT(Rok::strepToValue<Profile>(text), testing::KilledBySignal(SIGABRT), message);
  }
}

TEST(CommentStrepDeathTest, NobodyCatchesIt) {
  EXPECT_EXIT(
      {
        try {
          Rok::CharRange range("'x'");
          Rok::deserializeAttr<Scheduler>(range, "scheduler");
        } catch (...) {
          std::exit(0);
        }
      },
      testing::KilledBySignal(SIGABRT), "has collection");
}

}  // namespace
}  // namespace QosOc::commentTypesTest
