// A member of ours with a value of the wrong type ends the process, through RapidJSON's assertions.
// The same tests run on a codec that is built as a release is, and under hostile settings: see
// release/.
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <ostream>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigHelper.h"

namespace commentCodecDeathTest {
namespace {

using Read = void (*)(const std::string& text);

void readAttachment(const std::string& text) { deserializeJsonComment(text); }
void readProfile(const std::string& text) { deserializeJsonProfileComment(text); }

using Values = std::vector<std::string>;

const Values notObjects = {"null", "true", "false", "0",  "7",   "-1",
                           "1.5",  "\"\"", "\"x\"", "[]", "[{}]"};
const Values notStrings = {"null", "true", "false", "0", "7", "-1", "1.5", "{}", "[]", "[\"x\"]"};
const Values notNumbers = {"null", "true", "false", "\"\"", "\"7\"", "{}", "[]", "[7]"};
const Values notUnsigned = {"-1",   "-9223372036854775808", "1.5",  "0.0", "7.0", "1e2",
                            "-0.0", "18446744073709551616", "1e300"};
const Values notUnsigned32 = {"4294967296", "18446744073709551615"};

struct Position {
  const char* name;
  Read read;
  const char* before;
  const char* behind;
  std::vector<Values> wrong;

  friend std::ostream& operator<<(std::ostream& out, const Position& position) {
    return out << position.before << "*" << position.behind;
  }
};

// Where a value stands, who reads it, and which values it may not have.
const Position positions[] = {
    {"MetaDataOfAnAttachment", readAttachment, R"({"MetaData-OpenConfig":)", "}", {notObjects}},
    {"MetaDataOfAProfile", readProfile, R"({"MetaData-OpenConfig":)", "}", {notObjects}},
    {"SchedulerPolicy",
     readAttachment,
     R"({"MetaData-OpenConfig":{"scheduler-policy":)",
     "}}",
     {notObjects}},
    {"QueueManagementProfile",
     readAttachment,
     R"({"MetaData-OpenConfig":{"queue-management-profile":)",
     "}}",
     {notObjects}},
    {"SchedulerPolicyName",
     readAttachment,
     R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":)",
     "}}}",
     {notStrings}},
    {"QueueManagementProfileName",
     readAttachment,
     R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":)",
     "}}}",
     {notStrings}},
    {"Scheduler", readProfile, R"({"MetaData-OpenConfig":{"1":)", "}}", {notObjects}},
    {"SchedulerOfAForeignKey",
     readProfile,
     R"({"MetaData-OpenConfig":{"no number":)",
     "}}",
     {notObjects}},
    {"Rate",
     readProfile,
     R"({"MetaData-OpenConfig":{"1":{"one-rate-two-color":)",
     "}}}",
     {notObjects}},
    {"Inputs", readProfile, R"({"MetaData-OpenConfig":{"1":{"inputs":)", "}}}", {notObjects}},
    {"Input", readProfile, R"({"MetaData-OpenConfig":{"1":{"inputs":{"a":)", "}}}}", {notObjects}},
    {"Queue",
     readProfile,
     R"({"MetaData-OpenConfig":{"1":{"inputs":{"a":{"queue":)",
     "}}}}}",
     {notStrings}},
    {"Weight",
     readProfile,
     R"({"MetaData-OpenConfig":{"1":{"inputs":{"a":{"weight":)",
     "}}}}}",
     {notNumbers, notUnsigned}},
    {"Cir",
     readProfile,
     R"({"MetaData-OpenConfig":{"1":{"one-rate-two-color":{"cir":)",
     "}}}}",
     {notNumbers, notUnsigned}},
    {"CirPct",
     readProfile,
     R"({"MetaData-OpenConfig":{"1":{"one-rate-two-color":{"cir-pct":)",
     "}}}}",
     {notNumbers, notUnsigned, notUnsigned32}},
};

class WrongTypeDeathTest : public testing::TestWithParam<Position> {};
INSTANTIATE_TEST_SUITE_P(Positions, WrongTypeDeathTest, testing::ValuesIn(positions),
                         [](const auto& position) { return position.param.name; });

TEST_P(WrongTypeDeathTest, EndsTheProcess) {
  const Position& position = GetParam();
  for (const Values& values : position.wrong) {
    for (const std::string& value : values) {
      const std::string text = position.before + value + position.behind;
      EXPECT_EXIT(position.read(text), testing::KilledBySignal(SIGABRT),
                  "^assertion failed: .+: a comment holds a JSON value of the wrong type\n")
          << text;
    }
  }
}

TEST_P(WrongTypeDeathTest, ARightOneDoesNot) {
  const Position& position = GetParam();
  Values right;
  if (position.wrong.front() == notObjects) right = {"{}", " { } "};
  if (position.wrong.front() == notStrings) right = {"\"\"", "\"x\""};
  if (position.wrong.front() == notNumbers) right = {"0", "4294967295", "-0"};
  if (position.wrong.front() == notNumbers && position.wrong.size() == 2) {
    right.emplace_back("18446744073709551615");
  }
  ASSERT_FALSE(right.empty());
  for (const std::string& value : right) position.read(position.before + value + position.behind);
}

TEST(WrongTypeDeathTest, NobodyCatchesIt) {
  EXPECT_EXIT(
      {
        try {
          readAttachment(R"({"MetaData-OpenConfig":7})");
        } catch (...) {
          std::exit(0);
        }
      },
      testing::KilledBySignal(SIGABRT), "^assertion failed: IsObject\\(\\): ");
}

// The parts are looked at in their order, and a later one is not looked at in vain.
TEST(WrongTypeDeathTest, ASecondPartOfTheWrongTypeCountsOnceTheFirstHasItsName) {
  EXPECT_EXIT(readAttachment(R"({"MetaData-OpenConfig":{"queue-management-profile":{"name":7},)"
                             R"("scheduler-policy":{"name":"a"}}})"),
              testing::KilledBySignal(SIGABRT), "wrong type");
}

TEST(WrongTypeDeathTest, ADeeplyNestedValueCountsLikeAnyOther) {
  const std::string deep = std::string(5000, '[') + std::string(5000, ']');
  EXPECT_EXIT(readProfile(R"({"MetaData-OpenConfig":{"1":)" + deep + "}}"),
              testing::KilledBySignal(SIGABRT), "wrong type");
}

}  // namespace
}  // namespace commentCodecDeathTest
