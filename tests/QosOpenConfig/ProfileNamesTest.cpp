// The names of the QoS profiles in which queue-management profiles and scheduler policies live:
// `__YANG_QMP_[Q]` and `__YANG_SP_[S]`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "tests/support/OneByteChanged.h"
#include "tests/support/TraceCapture.h"

namespace profileNamesTest {
namespace {

using testing::PrintToString;
using Names = std::vector<std::string>;

// One of the two forms.
struct Form {
  const char* kind;      // "QMP"
  std::string opening;   // "__YANG_QMP_["
  std::string stranger;  // the other form's opening
  const char* expression;
  Velmo::String (*encode)(Velmo::String);
  Velmo::String (*decode)(Velmo::String);
};
void PrintTo(const Form& form, std::ostream* out) { *out << form.kind; }

const Form forms[] = {{"QMP", "__YANG_QMP_[", "__YANG_SP_[", R"(^__YANG_QMP_\[(.+)\]$)",
                       encodeQMPProfileName, decodeQMPProfileName},
                      {"SP", "__YANG_SP_[", "__YANG_QMP_[", R"(^__YANG_SP_\[(.+)\]$)",
                       encodeSPProfileName, decodeSPProfileName}};

class ProfileNames : public testing::TestWithParam<Form> {
 protected:
  const std::string& opening() const { return GetParam().opening; }
  std::string decoded(const std::string& name) const {
    return std::string(std::string_view(GetParam().decode(name)));
  }
  std::string encoded(const std::string& name) const {
    return std::string(std::string_view(GetParam().encode(name)));
  }
  // By the expression that defines the form, applied as a search.
  void expectDecodedAsByTheForm(const std::string& name) const {
    std::smatch match;
    const bool found = std::regex_search(name, match, expression_);
    EXPECT_EQ(decoded(name), found ? match[1].str() : "") << PrintToString(name);
  }
  // Made of the pieces that matter, in any order.
  std::string adversarial(std::mt19937& random) const {
    const Names pieces = {"]",       "[",
                          "a",       "gold",
                          "_",       "\n",
                          "\r",      "]]",
                          "[]",      "][",
                          "",        std::string(1, '\0'),
                          "\xff",    "$",
                          "^",       ".",
                          "\\",      "\xe2\x80\xa8",
                          opening(), GetParam().stranger};
    std::string name = random() % 6 == 0 ? "" : opening();
    if (random() % 8 == 0 && !name.empty()) name.pop_back();
    for (unsigned n = random() % 5; n > 0; --n) name += pieces[random() % pieces.size()];
    if (random() % 4 != 0) name += "]";
    if (random() % 8 == 0) name += pieces[random() % pieces.size()];
    return name;
  }

 private:
  const std::regex expression_{GetParam().expression};
};
INSTANTIATE_TEST_SUITE_P(Forms, ProfileNames, testing::ValuesIn(forms),
                         [](const auto& form) { return std::string(form.param.kind); });

TEST_P(ProfileNames, TheNameIsWhatStandsInTheBrackets) {
  for (const char* inside : {"gold", "g", "a]b", "]", "]]", "[", "[gold]", " ", "%s%n"}) {
    EXPECT_EQ(decoded(opening() + inside + "]"), inside);
    expectDecodedAsByTheForm(opening() + inside + "]");
  }
}

TEST_P(ProfileNames, ANameOfAnotherFormDecodesToNothing) {
  std::string lowerCase = opening();
  for (char& c : lowerCase) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
  const std::string unopened = opening().substr(0, opening().size() - 1);
  const std::string others[] = {"",
                                "gold",
                                "]",
                                opening(),
                                opening() + "]",
                                opening() + "gold",
                                opening() + "gold] ",
                                opening() + "gold]x",
                                " " + opening() + "gold]",
                                unopened + "]",
                                unopened + "gold]",
                                lowerCase + "gold]",
                                GetParam().stranger + "gold]"};
  for (const std::string& name : others) {
    EXPECT_EQ(decoded(name), "") << name;
    expectDecodedAsByTheForm(name);
  }
}

TEST_P(ProfileNames, ALineTerminatorAnywhereDecodesToNothing) {
  for (const std::string terminator : {"\n", "\r"}) {
    for (const std::string& name :
         {opening() + "a" + terminator + "b]", opening() + terminator + "]",
          opening() + "gold" + terminator + "]", opening() + "gold]" + terminator,
          terminator + opening() + "gold]", "x" + terminator + opening() + "gold]\ny"}) {
      EXPECT_EQ(decoded(name), "") << PrintToString(name);
      expectDecodedAsByTheForm(name);
    }
  }
}

TEST_P(ProfileNames, NulAndHighBytesBelongToAName) {
  const std::string name("\0\x80\xff\xe2\x80\xa8", 6);
  EXPECT_EQ(decoded(opening() + name + "]"), name);
  expectDecodedAsByTheForm(opening() + name + "]");
}

TEST_P(ProfileNames, EncodingPutsTheNameInBrackets) {
  for (const char* name : {"gold", "", "a]b", "a\nb", "%s%n"}) {
    EXPECT_EQ(encoded(name), opening() + name + "]");
  }
}

TEST_P(ProfileNames, EncodingEndsTheNameAtItsFirstNul) {
  EXPECT_EQ(encoded(std::string("go\0ld", 5)), opening() + "go]");
  EXPECT_EQ(encoded(std::string("\0", 1)), opening() + "]");
}

TEST_P(ProfileNames, EveryOtherNameOfOneLineComesBackFromARoundTrip) {
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::string name;
    for (unsigned n = 1 + random() % 12; n > 0; --n) {
      const char byte = static_cast<char>(random());
      name += byte == '\0' || byte == '\n' || byte == '\r' ? ']' : byte;
    }
    EXPECT_EQ(decoded(encoded(name)), name) << PrintToString(name);
  }
}

TEST_P(ProfileNames, AdversarialNamesDecodeAsTheFormSays) {
  std::mt19937 random(20261121);
  int matches = 0;
  for (int i = 0; i < 30000; ++i) {
    const std::string name = adversarial(random);
    expectDecodedAsByTheForm(name);
    matches += decoded(name).empty() ? 0 : 1;
  }
  EXPECT_GT(matches, 5000) << "the names must hit the form often enough";
}

TEST_P(ProfileNames, NamesWithOneByteChangedDecodeAsTheFormSays) {
  std::mt19937 random(42);
  for (int i = 0; i < 30000; ++i) {
    expectDecodedAsByTheForm(
        support::oneByteChanged(opening() + (i % 2 == 0 ? "qmp-wred]" : "a]b]"), random));
  }
}

// A regular-expression engine that recurses gives up near 26,000 characters.
TEST_P(ProfileNames, SixteenMegabytesDecodeWithoutTrouble) {
  const std::string name(std::size_t{16} << 20, ']');
  EXPECT_TRUE(GetParam().decode(opening() + name + "]") == name);
  EXPECT_TRUE(GetParam().decode(opening() + name + "\n]").empty());
}

TEST(ProfileNamesTrace, ThoseOfQueueManagementTellOnTheUnitsOwnHandleAtLevelTwo) {
  support::TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  encodeQMPProfileName("gold");
  decodeQMPProfileName("plain");
  EXPECT_THAT(trace.lines(),
              testing::ElementsAre(
                  "2 Velmo::String encodeQMPProfileName(Velmo::String): qmpName: gold",
                  "2 Velmo::String decodeQMPProfileName(Velmo::String): profileName: plain"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQosQueueManagementProfileKivToOcSm"));
}

TEST(ProfileNamesTrace, ThoseOfSchedulerPoliciesTellAtLevelTwo) {
  support::TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  decodeSPProfileName("plain");
  encodeSPProfileName("sp-gold");
  EXPECT_THAT(trace.lines(),
              testing::ElementsAre(
                  "2 Velmo::String decodeSPProfileName(Velmo::String): profileName: plain",
                  "2 Velmo::String encodeSPProfileName(Velmo::String): schedulerPolicyName: "
                  "sp-gold"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

}  // namespace
}  // namespace profileNamesTest
