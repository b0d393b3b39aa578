// The names of the QoS profiles of scheduler policies, `__YANG_SP_[S]`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "tests/support/TraceCapture.h"

namespace {

using testing::PrintToString;

// The expression that defines the form, applied as a search.
std::string bySearch(const std::string& name) {
  static const std::regex form(R"(^__YANG_SP_\[(.+)\]$)");
  std::smatch match;
  return std::regex_search(name, match, form) ? match[1].str() : std::string();
}
std::string byHand(const std::string& name) {
  return std::string(std::string_view(decodeSPProfileName(name)));
}
void expectDecodedAsByTheForm(const std::string& name) {
  EXPECT_EQ(byHand(name), bySearch(name)) << PrintToString(name);
}

TEST(SPProfileNames, ThePolicyIsWhatStandsInTheBrackets) {
  const std::pair<const char*, const char*> rows[] = {{"__YANG_SP_[sp-gold]", "sp-gold"},
                                                      {"__YANG_SP_[g]", "g"},
                                                      {"__YANG_SP_[a]b]", "a]b"},
                                                      {"__YANG_SP_[]]", "]"},
                                                      {"__YANG_SP_[]]]", "]]"},
                                                      {"__YANG_SP_[[]", "["},
                                                      {"__YANG_SP_[[gold]]", "[gold]"},
                                                      {"__YANG_SP_[ ]", " "},
                                                      {"__YANG_SP_[]", ""},
                                                      {"__YANG_SP_[gold", ""},
                                                      {"__YANG_SP_[", ""},
                                                      {"__YANG_SP_]", ""},
                                                      {"__YANG_SP_gold]", ""},
                                                      {"__YANG_SP_[gold] ", ""},
                                                      {" __YANG_SP_[gold]", ""},
                                                      {"__YANG_SP_[gold]x", ""},
                                                      {"__yang_sp_[gold]", ""},
                                                      {"__YANG_QMP_[gold]", ""},
                                                      {"__YANG_SP[gold]", ""},
                                                      {"sp-gold", ""},
                                                      {"]", ""},
                                                      {"", ""}};
  for (const auto& [name, policy] : rows) {
    EXPECT_EQ(decodeSPProfileName(name), policy) << name;
    expectDecodedAsByTheForm(name);
  }
}

TEST(SPProfileNames, ALineTerminatorAnywhereDecodesToNothing) {
  for (const char* name :
       {"__YANG_SP_[a\nb]", "__YANG_SP_[a\rb]", "__YANG_SP_[\n]", "__YANG_SP_[gold]\n",
        "\n__YANG_SP_[gold]", "__YANG_SP_[gold\r]", "x\n__YANG_SP_[gold]\ny"}) {
    EXPECT_EQ(decodeSPProfileName(name), "") << PrintToString(name);
    expectDecodedAsByTheForm(name);
  }
}

TEST(SPProfileNames, NulAndHighBytesBelongToAName) {
  const std::string name("\0\x80\xff\xe2\x80\xa8", 6);
  EXPECT_EQ(decodeSPProfileName("__YANG_SP_[" + name + "]"), name);
  expectDecodedAsByTheForm("__YANG_SP_[" + name + "]");
}

TEST(SPProfileNames, EncodingPutsTheNameInBrackets) {
  EXPECT_EQ(encodeSPProfileName("sp-gold"), "__YANG_SP_[sp-gold]");
  EXPECT_EQ(encodeSPProfileName(""), "__YANG_SP_[]");
  EXPECT_EQ(encodeSPProfileName("a]b"), "__YANG_SP_[a]b]");
  EXPECT_EQ(encodeSPProfileName("a\nb"), "__YANG_SP_[a\nb]");
  EXPECT_EQ(encodeSPProfileName("%s%n"), "__YANG_SP_[%s%n]");
}

TEST(SPProfileNames, EncodingEndsTheNameAtItsFirstNul) {
  EXPECT_EQ(encodeSPProfileName(std::string("a\0b", 3)), "__YANG_SP_[a]");
}

// Names made of the pieces that matter, in any order.
std::string adversarialName(std::mt19937& random) {
  static const std::vector<std::string> pieces = {
      "]",           "[",           "a",
      "sp-gold",     "_",           "\n",
      "\r",          "\xff",        "\xe2\x80\xa8",
      "__YANG_SP_[", "][",          std::string(1, '\0'),
      "$",           "^",           "\\",
      ".",           "__YANG_QMP_["};
  std::string name = random() % 6 == 0 ? "" : "__YANG_SP_";
  if (random() % 6 != 0) name += "[";
  for (unsigned n = random() % 5; n > 0; --n) name += pieces[random() % pieces.size()];
  if (random() % 4 != 0) name += "]";
  if (random() % 8 == 0) name += pieces[random() % pieces.size()];
  return name;
}

TEST(SPProfileNames, AdversarialNamesDecodeAsTheFormSays) {
  std::mt19937 random(20261121);
  int matches = 0;
  for (int i = 0; i < 50000; ++i) {
    const std::string name = adversarialName(random);
    expectDecodedAsByTheForm(name);
    matches += byHand(name).empty() ? 0 : 1;
  }
  EXPECT_GT(matches, 1000) << "the names must hit the form often enough";
}

TEST(SPProfileNames, NamesWithOneByteChangedDecodeAsTheFormSays) {
  std::mt19937 random(42);
  for (int i = 0; i < 50000; ++i) {
    std::string name = "__YANG_SP_[sp]";
    const std::size_t at = random() % name.size();
    switch (random() % 3) {
      case 0:
        name[at] = static_cast<char>(random());
        break;
      case 1:
        name.insert(at, 1, static_cast<char>(random()));
        break;
      default:
        name.erase(at, 1);
    }
    expectDecodedAsByTheForm(name);
  }
}

TEST(SPProfileNames, ARoundTripGivesBackAnyNameOfOneLine) {
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::string name;
    for (unsigned n = 1 + random() % 12; n > 0; --n) {
      const char byte = static_cast<char>(random());
      name += byte == '\0' || byte == '\n' || byte == '\r' ? ']' : byte;
    }
    EXPECT_EQ(decodeSPProfileName(encodeSPProfileName(name)), name) << PrintToString(name);
  }
}

// A regular-expression engine that recurses gives up near 26,000 characters.
TEST(SPProfileNames, SixteenMegabytesDecodeWithoutTrouble) {
  const std::string name(std::size_t{16} << 20, ']');
  EXPECT_TRUE(decodeSPProfileName("__YANG_SP_[" + name + "]") == name);
}

TEST(SPProfileNames, BothFunctionsOpenWithALineAtLevelTwo) {
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
