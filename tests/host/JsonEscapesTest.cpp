#include "host/JsonEscapes.h"

#include <gtest/gtest.h>

namespace host::jsonEscapesTest {
namespace {

// What stands for something; "none" for what JSON doesn't have.
std::string meaning(std::string_view written) {
  std::string text = "what was there before";
  return unescape(written, text) ? text : "none";
}

TEST(JsonEscapes, StandForTheirCharacters) {
  EXPECT_EQ(meaning(R"(a\"b\\c\/d)"), "a\"b\\c/d");
  EXPECT_EQ(meaning(R"(\b\f\n\r\t)"), "\b\f\n\r\t");
  EXPECT_EQ(meaning("plain"), "plain");
  EXPECT_EQ(meaning(""), "");
}

TEST(JsonEscapes, StandForCharactersOfAnyPlane) {
  EXPECT_EQ(meaning(R"(\u0041\u00fC\u20ac\ud83d\ude00.)"), "A\u00fc\u20ac\U0001f600.");
  EXPECT_EQ(meaning(R"(\u0000)"), std::string(1, '\0'));
  EXPECT_EQ(meaning(R"(\u007f\u0080\u07ff\u0800\uffff\ud800\udc00\udbff\udfff)"),
            "\x7f\xc2\x80\xdf\xbf\xe0\xa0\x80\xef\xbf\xbf\xf0\x90\x80\x80\xf4\x8f\xbf\xbf");
}

TEST(JsonEscapes, HaveFourDigitsAndBothHalvesOfAPair) {
  for (const char* written :
       {R"(\u12)", R"(\u12g4)", R"(\u+123)", R"(\u 123)", R"(\u)", R"(\ud83d)", R"(\ud83d\n)",
        R"(\ud83d\u0041)", R"(\ude00)", R"(\ud83dx)", R"(\ud83d\u12)"}) {
    EXPECT_EQ(meaning(written), "none") << written;
  }
}

TEST(JsonEscapes, AreNoOthers) {
  for (const char* written : {R"(\a)", R"(\')", R"(\U0041)", R"(\x41)", "\\\n"}) {
    EXPECT_EQ(meaning(written), "none") << written;
  }
}

TEST(JsonEscapes, AreShortOnes) {
  std::string shortOnes;
  for (int c = 1; c < 256; ++c) {
    std::string text;
    const char written[] = {'\\', static_cast<char>(c)};
    EXPECT_EQ(isShortEscape(written[1]), unescape({written, 2}, text)) << c;
    if (isShortEscape(written[1])) shortOnes += written[1];
  }
  EXPECT_EQ(shortOnes, "\"/\\bfnrt");
}

}  // namespace
}  // namespace host::jsonEscapesTest
