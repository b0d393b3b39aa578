// The names of the QoS profiles that queue-management profiles live in, `__YANG_QMP_[Q]`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <regex>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "tests/support/TraceCapture.h"

namespace {

using testing::PrintToString;

// The expression that defines the form, applied as a search.
std::string bySearch(const std::string& name) {
  static const std::regex form(R"(^__YANG_QMP_\[(.+)\]$)");
  std::smatch match;
  return std::regex_search(name, match, form) ? match[1].str() : std::string();
}
std::string byHand(const std::string& name) {
  return std::string(std::string_view(decodeQMPProfileName(name)));
}
void expectDecodedAsByTheForm(const std::string& name) {
  EXPECT_EQ(byHand(name), bySearch(name)) << PrintToString(name);
}

TEST(QMPProfileNames, TheProfileIsWhatStandsInTheBrackets) {
  const std::pair<const char*, const char*> rows[] = {{"__YANG_QMP_[gold]", "gold"},
                                                      {"__YANG_QMP_[g]", "g"},
                                                      {"__YANG_QMP_[a]b]", "a]b"},
                                                      {"__YANG_QMP_[]]", "]"},
                                                      {"__YANG_QMP_[]]]", "]]"},
                                                      {"__YANG_QMP_[[]", "["},
                                                      {"__YANG_QMP_[[gold]]", "[gold]"},
                                                      {"__YANG_QMP_[ ]", " "},
                                                      {"__YANG_QMP_[]", ""},
                                                      {"__YANG_QMP_[gold", ""},
                                                      {"__YANG_QMP_[", ""},
                                                      {"__YANG_QMP_]", ""},
                                                      {"__YANG_QMP_gold]", ""},
                                                      {"__YANG_QMP_[gold] ", ""},
                                                      {" __YANG_QMP_[gold]", ""},
                                                      {"__YANG_QMP_[gold]x", ""},
                                                      {"__yang_qmp_[gold]", ""},
                                                      {"__YANG_SP_[gold]", ""},
                                                      {"__YANG_QMP[gold]", ""},
                                                      {"gold", ""},
                                                      {"", ""}};
  for (const auto& [name, profile] : rows) {
    EXPECT_EQ(decodeQMPProfileName(name), profile) << name;
    expectDecodedAsByTheForm(name);
  }
}

TEST(QMPProfileNames, ALineTerminatorAnywhereDecodesToNothing) {
  for (const char* name :
       {"__YANG_QMP_[a\nb]", "__YANG_QMP_[a\rb]", "__YANG_QMP_[\n]", "__YANG_QMP_[gold]\n",
        "\n__YANG_QMP_[gold]", "__YANG_QMP_[gold\n]", "x\n__YANG_QMP_[gold]\ny"}) {
    EXPECT_EQ(decodeQMPProfileName(name), "") << PrintToString(name);
    expectDecodedAsByTheForm(name);
  }
}

TEST(QMPProfileNames, NulAndHighBytesBelongToAName) {
  const std::string name("\0\x80\xff\xe2\x80\xa8", 6);
  EXPECT_EQ(decodeQMPProfileName("__YANG_QMP_[" + name + "]"), name);
  expectDecodedAsByTheForm("__YANG_QMP_[" + name + "]");
}

TEST(QMPProfileNames, EncodingPutsTheNameInBrackets) {
  EXPECT_EQ(encodeQMPProfileName("gold"), "__YANG_QMP_[gold]");
  EXPECT_EQ(encodeQMPProfileName(""), "__YANG_QMP_[]");
  EXPECT_EQ(encodeQMPProfileName("a]b"), "__YANG_QMP_[a]b]");
  EXPECT_EQ(encodeQMPProfileName("a\nb"), "__YANG_QMP_[a\nb]");
}

TEST(QMPProfileNames, EncodingEndsTheNameAtItsFirstNul) {
  EXPECT_EQ(encodeQMPProfileName(std::string("go\0ld", 5)), "__YANG_QMP_[go]");
  EXPECT_EQ(encodeQMPProfileName(std::string("\0", 1)), "__YANG_QMP_[]");
}

TEST(QMPProfileNames, EveryOtherNameOfOneLineComesBackFromARoundTrip) {
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::string name;
    for (unsigned n = 1 + random() % 12; n > 0; --n) {
      const char byte = "ab[]_^$.\\ \xff\x80"[random() % 12];
      name += byte;
    }
    EXPECT_EQ(decodeQMPProfileName(encodeQMPProfileName(name)), name) << PrintToString(name);
  }
}

TEST(QMPProfileNames, AdversarialNamesDecodeAsTheFormSays) {
  const std::vector<std::string> pieces = {
      "[",  "]",  "gold", "__YANG_QMP_[", "",  "\n", "\r", "\xff", "\xe2\x80\xa8",
      "]]", "[]", "QMP_", "__YANG_SP_[a", "$", "^",  ".",  "\\",   std::string(1, '\0')};
  std::mt19937 random(20261121);
  int matches = 0;
  for (int i = 0; i < 50000; ++i) {
    std::string name = random() % 5 == 0 ? "" : "__YANG_QMP_[";
    for (unsigned n = random() % 4; n > 0; --n) name += pieces[random() % pieces.size()];
    if (random() % 4 != 0) name += "]";
    expectDecodedAsByTheForm(name);
    matches += byHand(name).empty() ? 0 : 1;
  }
  EXPECT_GT(matches, 10000) << "the names must hit the form often enough";
}

TEST(QMPProfileNames, NamesWithOneByteChangedDecodeAsTheFormSays) {
  std::mt19937 random(42);
  for (int i = 0; i < 50000; ++i) {
    std::string name = random() % 2 == 0 ? "__YANG_QMP_[qmp-wred]" : "__YANG_QMP_[a]b]";
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

// A regular-expression engine that recurses gives up near 26,000 characters.
TEST(QMPProfileNames, SixteenMegabytesDecodeWithoutTrouble) {
  const std::string name(std::size_t{16} << 20, ']');
  EXPECT_TRUE(decodeQMPProfileName("__YANG_QMP_[" + name + "]") == name);
  EXPECT_TRUE(decodeQMPProfileName("__YANG_QMP_[" + name + "\n]").empty());
}

TEST(QMPProfileNames, BothOpenWithALevelTwoLineOnTheUnitsOwnTrace) {
  support::TraceCapture trace({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  encodeQMPProfileName("gold");
  decodeQMPProfileName("plain");
  EXPECT_THAT(trace.lines(),
              testing::ElementsAre(
                  "2 Velmo::String encodeQMPProfileName(Velmo::String): qmpName: gold",
                  "2 Velmo::String decodeQMPProfileName(Velmo::String): profileName: plain"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQosQueueManagementProfileKivToOcSm"));
}

}  // namespace
