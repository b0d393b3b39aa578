// The names `__yang_[C]_[]` and `__yang_[C]_[T]`.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/OneByteChanged.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::classifierNamesTest {
namespace {

using Names = std::pair<Velmo::String, Velmo::String>;
const Names none;

// The expressions that define the two forms.
const std::regex& placeholderForm() {
  static const std::regex form(R"(^__yang_\[([^\]]+)\]_\[\]$)");
  return form;
}
const std::regex& termForm() {
  static const std::regex form(R"(^__yang_\[([^\]]+)\]_\[([^\]]+)\]$)");
  return form;
}

std::string byPlaceholderForm(const std::string& name) {
  std::smatch match;
  return std::regex_match(name, match, placeholderForm()) ? match[1].str() : std::string();
}
std::pair<std::string, std::string> byTermForm(const std::string& name) {
  std::smatch match;
  if (!std::regex_match(name, match, termForm())) return {};
  return {match[1].str(), match[2].str()};
}

void expectDecodedAsByTheForms(const std::string& name) {
  const auto [classifier, term] = byTermForm(name);
  EXPECT_EQ(classifierKeyFromConfigObjName(name), Names(classifier, term))
      << testing::PrintToString(name);
  EXPECT_EQ(classifierNameFromClassName(name), byPlaceholderForm(name))
      << testing::PrintToString(name);
}

TEST(ClassifierNames, ThePlaceholderFormNamesTheClassifier) {
  EXPECT_EQ(classifierNameFromClassName("__yang_[edge-in]_[]"), "edge-in");
}

TEST(ClassifierNames, ATermsNameIsNoPlaceholder) {
  EXPECT_EQ(classifierNameFromClassName("__yang_[edge-in]_[voice]"), "");
}

TEST(ClassifierNames, ATermsNameGivesClassifierAndTerm) {
  EXPECT_EQ(classifierKeyFromConfigObjName("__yang_[edge-in]_[voice]"), Names("edge-in", "voice"));
}

TEST(ClassifierNames, APlaceholderGivesNoTerm) {
  EXPECT_EQ(classifierKeyFromConfigObjName("__yang_[edge-in]_[]"), none);
}

TEST(ClassifierNames, AnOrdinaryNameGivesNothing) {
  EXPECT_EQ(classifierKeyFromConfigObjName("plain-class"), none);
  EXPECT_EQ(classifierNameFromClassName("plain-class"), "");
}

TEST(ClassifierNames, EmptyClassifierNamesMatchNeitherForm) {
  for (const char* name : {"__yang_[]_[]", "__yang_[]_[t]"}) {
    EXPECT_EQ(classifierKeyFromConfigObjName(name), none) << name;
    EXPECT_EQ(classifierNameFromClassName(name), "") << name;
  }
}

TEST(ClassifierNames, AClosingBracketInsideANameMatchesNeitherForm) {
  EXPECT_EQ(classifierKeyFromConfigObjName("__yang_[a]b]_[c]"), none);
  EXPECT_EQ(classifierNameFromClassName("__yang_[a]b]_[c]"), "");
  EXPECT_EQ(classifierKeyFromConfigObjName("__yang_[a]_[b]c]"), none);
  EXPECT_EQ(classifierNameFromClassName("__yang_[a]b]_[]"), "");
}

TEST(ClassifierNames, AnOpeningBracketInsideANameIsPartOfIt) {
  EXPECT_EQ(classifierKeyFromConfigObjName("__yang_[a[b]_[c]"), Names("a[b", "c"));
  EXPECT_EQ(classifierKeyFromConfigObjName("__yang_[a]_[[c]"), Names("a", "[c"));
  EXPECT_EQ(classifierNameFromClassName("__yang_[[]_[]"), "[");
}

TEST(ClassifierNames, TheEmptyStringGivesNothing) {
  EXPECT_EQ(classifierKeyFromConfigObjName(""), none);
  EXPECT_EQ(classifierNameFromClassName(""), "");
}

TEST(ClassifierNames, TheFormsAreCaseSensitiveAndAnchoredAtBothEnds) {
  for (const char* name :
       {"__YANG_[a]_[b]", " __yang_[a]_[b]", "__yang_[a]_[b] ", "x__yang_[a]_[b]",
        "__yang_[a]_[b]_[c]", "__yang_[a]-[b]", "__yang_[a]_[b", "__yang_[a]_[", "__yang_[a]",
        "__yang_[", "__yang_[a]_[]]", "__yang_[a]_[]x"}) {
    EXPECT_EQ(classifierKeyFromConfigObjName(name), none) << name;
    EXPECT_EQ(classifierNameFromClassName(name), "") << name;
  }
}

TEST(ClassifierNames, LineTerminatorsNulAndHighBytesBelongToAName) {
  const std::string classifier("a\n\r\0\xff", 5);
  const std::string term("\0\x80\xe2\x80\xa8", 5);
  const std::string name = "__yang_[" + classifier + "]_[" + term + "]";
  EXPECT_EQ(classifierKeyFromConfigObjName(name), Names(classifier, term));
  EXPECT_EQ(classifierNameFromClassName("__yang_[" + classifier + "]_[]"), classifier);
}

TEST(ClassifierNames, ANameDecodesByOneFormAtMost) {
  std::mt19937 random(7);
  for (int i = 0; i < 20000; ++i) {
    std::string name = "__yang_[c]_[";
    for (unsigned n = random() % 4; n > 0; --n) name += "]t["[random() % 3];
    name += "]";
    const bool placeholder = !classifierNameFromClassName(name).empty();
    const bool term = classifierKeyFromConfigObjName(name) != none;
    EXPECT_FALSE(placeholder && term) << name;
  }
}

// Names made of the pieces that matter, in any order.
std::string adversarialName(std::mt19937& random) {
  static const std::vector<std::string> pieces = {"__yang_[",
                                                  "]_[",
                                                  "]",
                                                  "[",
                                                  "_",
                                                  "edge-in",
                                                  "voice",
                                                  "",
                                                  "\n",
                                                  "\r",
                                                  std::string(1, '\0'),
                                                  "\xff",
                                                  "\x80",
                                                  "\xe2\x80\xa8",
                                                  "__yang_",
                                                  "]_[]",
                                                  "[]",
                                                  "^",
                                                  "$",
                                                  "\\",
                                                  "."};
  std::string name = random() % 4 == 0 ? "" : "__yang_[";
  for (unsigned n = random() % 8; n > 0; --n) name += pieces[random() % pieces.size()];
  if (random() % 3 != 0) name += "]_[";
  for (unsigned n = random() % 4; n > 0; --n) name += pieces[random() % pieces.size()];
  if (random() % 3 != 0) name += "]";
  return name;
}

TEST(ClassifierNames, AdversarialNamesDecodeAsTheFormsSay) {
  std::mt19937 random(20261121);
  for (int i = 0; i < 50000; ++i) expectDecodedAsByTheForms(adversarialName(random));
}

TEST(ClassifierNames, NamesWithOneByteChangedDecodeAsTheFormsSay) {
  std::mt19937 random(42);
  const std::string valid[] = {"__yang_[edge-in]_[voice]", "__yang_[edge-in]_[]", "__yang_[a]_[b]"};
  for (int i = 0; i < 50000; ++i) {
    expectDecodedAsByTheForms(support::oneByteChanged(valid[random() % 3], random));
  }
}

// A regular-expression engine that recurses gives up near 26,000 characters.
TEST(ClassifierNames, SixteenMegabytesDecodeWithoutTrouble) {
  const std::string classifier(std::size_t{8} << 20, 'c');
  const std::string term(std::size_t{8} << 20, 't');
  const Names names = classifierKeyFromConfigObjName("__yang_[" + classifier + "]_[" + term + "]");
  EXPECT_TRUE(names.first == classifier && names.second == term);
  EXPECT_TRUE(classifierNameFromClassName("__yang_[" + classifier + "]_[]") == classifier);
  EXPECT_TRUE(classifierNameFromClassName("__yang_[" + classifier).empty());
}

TEST(ClassifierNames, TheDecodersOpenWithALevelEightLine) {
  support::TraceCapture trace({0, 2, 8, 9});
  classifierNameFromClassName("plain-class");
  classifierKeyFromConfigObjName("__yang_[edge-in]_[voice]");
  EXPECT_THAT(
      trace.lines(),
      testing::ElementsAre(
          "8 Velmo::String QosOc::classifierNameFromClassName(const Velmo::String&) ( plain-class",
          "8 std::pair<Velmo::String, Velmo::String> "
          "QosOc::classifierKeyFromConfigObjName(const Velmo::String&) ( "
          "__yang_[edge-in]_[voice]"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

}  // namespace
}  // namespace QosOc::classifierNamesTest
