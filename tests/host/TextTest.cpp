#include "host/Text.h"

#include <gtest/gtest.h>

#include <regex>

namespace host::textTest {
namespace {

TEST(Text, IsUtf8OnlyInItsShortestFormAndWithoutSurrogates) {
  EXPECT_TRUE(isUtf8(""));
  EXPECT_TRUE(isUtf8("Zürich \xe2\x82\xac \xf0\x9f\x98\x80"));
  EXPECT_FALSE(isUtf8("\xff"));
  EXPECT_FALSE(isUtf8("\xc3"));
  EXPECT_FALSE(isUtf8("\xc0\xaf"));
  EXPECT_FALSE(isUtf8("\xe0\x80\x80"));
  EXPECT_FALSE(isUtf8("\xed\xa0\x80"));
  EXPECT_FALSE(isUtf8("\xf4\x90\x80\x80"));
  EXPECT_FALSE(isUtf8("\xf8\x88\x80\x80\x80"));
}

TEST(Text, IsJudgedBehindLongRunsOfAscii) {
  std::string text(2003, 'a');
  EXPECT_TRUE(isUtf8(text));
  text[1001] = '\x80';
  EXPECT_FALSE(isUtf8(text));
}

TEST(Text, IsADecimalOnlyInCanonicalFormAndInRange) {
  EXPECT_EQ(decimal("0", 255), 0u);
  EXPECT_EQ(decimal("255", 255), 255u);
  for (const char* text : {"", "256", "01", "00", "+1", "-1", " 1", "1 ", "1.0", "0x1", "a",
                           "99999999999999999999999"}) {
    EXPECT_EQ(decimal(text, 255), std::nullopt) << text;
  }
}

TEST(Text, HasAPatternOfItsDecimals) {
  for (const std::uint64_t max : {0u, 7u, 9u, 10u, 19u, 99u, 100u, 255u, 256u, 1090u}) {
    const std::regex pattern(decimalPattern(max));
    for (std::uint64_t n = 0; n < 1200; ++n) {
      EXPECT_EQ(std::regex_match(std::to_string(n), pattern), n <= max) << max;
    }
    for (const char* text : {"", "00", "01", "+1", "1.0", " 1", "1a", "99999999999"}) {
      EXPECT_FALSE(std::regex_match(text, pattern)) << max << ' ' << text;
    }
  }
  const std::regex all(decimalPattern(4294967295));
  EXPECT_TRUE(std::regex_match("4294967295", all));
  EXPECT_TRUE(std::regex_match("4294967289", all));
  EXPECT_TRUE(std::regex_match("999999999", all));
  EXPECT_FALSE(std::regex_match("4294967296", all));
  EXPECT_FALSE(std::regex_match("5000000000", all));
}

TEST(Text, IsShownWithoutCharactersThatMoveTheCursor) {
  EXPECT_EQ(shown("a\nb\x1b[31m"), "a\\u000ab\\u001b[31m");
  EXPECT_EQ(shown("\x7f|\xc2\x9b|\xe2\x80\xae"), "\\u007f|\\u009b|\\u202e");
  EXPECT_EQ(shown(std::string_view("\0", 1)), "\\u0000");
  EXPECT_EQ(shown("Zürich"), "Zürich");
}

TEST(Text, IsShownWithNoncharactersByTheirNumber) {
  EXPECT_EQ(shown("\xef\xb7\x90|\xef\xbf\xbe|\xf4\x8f\xbf\xbf"), "\\ufdd0|\\ufffe|\\u10ffff");
  EXPECT_EQ(shown("\xef\xb7\xb0"), "\xef\xb7\xb0") << "the character behind them";
}

TEST(Text, IsShownWithBadBytesAsHex) { EXPECT_EQ(shown("a\xff\xc3z"), "a\\xff\\xc3z"); }

TEST(Text, IsShownCutWhenLong) {
  const std::string longest(160, 'x');
  EXPECT_EQ(shown(longest), longest);
  const std::string text(100'000'000, 'x');
  EXPECT_EQ(shown(text), longest.substr(0, 60).append("...(100000000 bytes)"));
  EXPECT_EQ(quoted("a"), "\"a\"");
}

TEST(Text, IsPlainUpToWhatAJsonStringEscapes) {
  for (const char special : {'"', '\\', '\0', '\n', '\x1f'}) {
    for (std::size_t at = 0; at < 20; ++at) {
      std::string text(20, 'x');
      text[at] = special;
      EXPECT_EQ(plainPrefix(text), at) << int{special};
    }
  }
  const std::string plain = " !#[]\x7f\x80\xff\xc3\xa2\xdc!\x21\x23\x5b\x5d\xa2";
  EXPECT_EQ(plainPrefix(plain), plain.size());
  EXPECT_EQ(plainPrefix(plain + plain + "\x01"), 2 * plain.size());
  EXPECT_EQ(plainPrefix(""), 0u);
}

TEST(Text, IsCutBetweenCharacters) {
  std::string text;
  for (int i = 0; i < 100; ++i) text += "€";
  EXPECT_TRUE(isUtf8(shown(text)));
}

}  // namespace
}  // namespace host::textTest
