#include "Rok/Strep.h"

#include <random>

namespace strepTest {
namespace {

enum class Color : unsigned char { red = 1, deepBlue = 200 };

const Rok::EnumType<unsigned char>& rokEnumType(Color) {
  static const Rok::EnumType<unsigned char> type("Color", {{1, "red"}, {200, "deepBlue"}});
  return type;
}

// Reads as "[<number>]".
struct Boxed {
  explicit Boxed(Rok::CharRange& range) {
    range.needString("[");
    number = Rok::deserializeAttr<std::uint8_t>(range, "number");
    range.needString("]");
  }
  std::uint8_t number = 0;
};

template <class Act>
std::string rangeException(const Act& act) {
  try {
    act();
  } catch (const Rok::RangeException& e) {
    return e.what();
  }
  return "nothing thrown";
}

template <class T>
std::string refusal(const std::string& text) {
  return rangeException([&] { static_cast<void>(Rok::strepToValue<T>(text)); });
}

// ===== CharRange

TEST(CharRange, NeedStringConsumesExactlyTheLiteral) {
  Rok::CharRange range("Value(7)");
  range.needString("Value(");
  EXPECT_EQ(range.rest(), "7)");
  range.needString("");
  EXPECT_EQ(range.rest(), "7)");
  range.needString("7)");
  EXPECT_EQ(range.rest(), "");
  EXPECT_NO_THROW(range.checkAllDataConsumed());
}

TEST(CharRange, NeedStringRefusesAnotherTextAndConsumesNothing) {
  Rok::CharRange range("Value(7)");
  range.needString("Val");
  EXPECT_EQ(rangeException([&] { range.needString("uex"); }), "at byte 3: expected \"uex\"");
  EXPECT_EQ(range.rest(), "ue(7)");
}

TEST(CharRange, NeedStringRefusesATextThatEndsTooEarly) {
  Rok::CharRange range("Val");
  EXPECT_EQ(rangeException([&] { range.needString("Value"); }), "at byte 0: expected \"Value\"");
  EXPECT_EQ(rangeException([] { Rok::CharRange("").needString("V"); }),
            "at byte 0: expected \"V\"");
}

TEST(CharRange, TextLeftOverIsRefused) {
  Rok::CharRange range("ab");
  range.needString("a");
  EXPECT_EQ(rangeException([&] { range.checkAllDataConsumed(); }),
            "at byte 1: expected nothing more");
}

// ===== Strings

TEST(StringStrep, IsQuotedAndEscaped) {
  const std::pair<std::string, const char*> rows[] = {
      {"", "''"},
      {"edge-in", "'edge-in'"},
      {"it's", R"('it\'s')"},
      {"a\\b", R"('a\\b')"},
      {"\"%s\"", R"('"%s"')"},
      {"a\nb\tc", R"('a\x0ab\x09c')"},
      {std::string("a\0b", 3), R"('a\x00b')"},
      {"\x1f\x7f\x80\xff", "'\\x1f\\x7f\x80\xff'"},
      {"ü", "'ü'"},
  };
  for (const auto& [text, strep] : rows) {
    EXPECT_EQ(Rok::valueToStrep(Velmo::String(text)), strep);
    EXPECT_EQ(Rok::strepToValue<Velmo::String>(strep), text);
  }
}

TEST(StringStrep, EveryByteReadsBack) {
  for (int byte = 0; byte < 256; ++byte) {
    const Velmo::String text(std::string(1, static_cast<char>(byte)));
    EXPECT_EQ(Rok::strepToValue<Velmo::String>(Rok::valueToStrep(text)), text) << byte;
  }
}

TEST(StringStrep, AnyStringReadsBack) {
  std::mt19937 random(17);
  for (int round = 0; round < 20000; ++round) {
    std::string text(random() % 12, '\0');
    for (char& c : text) {
      c = random() % 2 == 0 ? "\\'x0a\n\x7f"[random() % 8] : static_cast<char>(random() % 256);
    }
    const Velmo::String strep = Rok::valueToStrep(Velmo::String(text));
    ASSERT_EQ(Rok::strepToValue<Velmo::String>(strep), text) << strep;
    ASSERT_EQ(std::string_view(strep).find('\0'), std::string_view::npos) << strep;
  }
}

// What is accepted is the text form of its value and of no other.
TEST(StringStrep, WhateverReadsIsWhatWouldBeWritten) {
  std::mt19937 random(18);
  int accepted = 0;
  for (int round = 0; round < 200000; ++round) {
    std::string text = "'";
    for (auto n = random() % 6; n > 0; --n) text += "\\'x01af9A\n\x7f"[random() % 11];
    if (random() % 8 != 0) text += '\'';
    try {
      const auto value = Rok::strepToValue<Velmo::String>(text);
      ++accepted;
      ASSERT_EQ(Rok::valueToStrep(value), text);
    } catch (const Rok::RangeException&) {
    }
  }
  EXPECT_GT(accepted, 1000);
}

TEST(StringStrep, AnotherTextIsRefused) {
  for (const std::string text :
       {"", "edge", "'", "'a", "a'", "\"a\"", "'\\", "'\\'", "'\\n'", "'\\x'", "'\\x0'", "'\\x0",
        "'\\x0g'", "'\\x0A'", "'\\x41'", "'\\x27'", "'a\nb'", "'\x7f'"}) {
    EXPECT_EQ(refusal<Velmo::String>(text), "at byte 0: expected a quoted string") << text;
  }
  EXPECT_EQ(refusal<Velmo::String>(std::string("'a\0b'", 5)),
            "at byte 0: expected a quoted string");
  EXPECT_EQ(refusal<Velmo::String>("'a''"), "at byte 3: expected nothing more");
}

// ===== Numbers

TEST(NumberStrep, ReadsDecimalsUpToTheLimitOfTheType) {
  EXPECT_EQ(Rok::strepToValue<std::uint64_t>("0"), 0u);
  EXPECT_EQ(Rok::strepToValue<std::uint64_t>("18446744073709551615"), 18446744073709551615u);
  EXPECT_EQ(Rok::strepToValue<std::uint32_t>("4294967295"), 4294967295u);
  EXPECT_EQ(Rok::strepToValue<std::uint8_t>("255"), 255u);
  EXPECT_EQ(refusal<std::uint64_t>("18446744073709551616"),
            "at byte 0: expected a number up to 18446744073709551615");
  EXPECT_EQ(refusal<std::uint32_t>("4294967296"), "at byte 0: expected a number up to 4294967295");
  EXPECT_EQ(refusal<std::uint8_t>("256"), "at byte 0: expected a number up to 255");
}

TEST(NumberStrep, AnotherTextIsRefused) {
  for (const char* text : {"", "-1", "+1", " 1", "01", "00", "x", "0x1", ".5"}) {
    EXPECT_NE(refusal<std::uint8_t>(text), "nothing thrown") << text;
  }
  EXPECT_EQ(refusal<std::uint8_t>("1.5"), "at byte 1: expected nothing more");
  EXPECT_EQ(refusal<std::uint8_t>("1 "), "at byte 1: expected nothing more");
}

// ===== Enumerations

TEST(EnumStrep, ReadsANameOrTheNumberOfAByte) {
  EXPECT_EQ(Rok::strepToValue<Color>("red"), Color::red);
  EXPECT_EQ(Rok::strepToValue<Color>("deepBlue"), Color::deepBlue);
  EXPECT_EQ(Rok::strepToValue<Color>("7"), Color{7});
  for (const char* text : {"", "Red", "redd", "re", "256", "-1", "'red'"}) {
    EXPECT_EQ(refusal<Color>(text), "at byte 0: expected a Color") << text;
  }
  EXPECT_EQ(refusal<Color>("red "), "at byte 3: expected nothing more");
}

// ===== Attributes

TEST(DeserializeAttr, ReadsAValueAndLeavesTheRest) {
  Rok::CharRange range("'q', 7, red, [9]!");
  EXPECT_EQ(Rok::deserializeAttr<Velmo::String>(range, "q"), "q");
  range.needString(", ");
  EXPECT_EQ(Rok::deserializeAttr<std::uint8_t>(range, "weight"), 7u);
  range.needString(", ");
  EXPECT_EQ(Rok::deserializeAttr<Color>(range, "color"), Color::red);
  range.needString(", ");
  EXPECT_EQ(Rok::deserializeAttr<Boxed>(range, "box").number, 9u);
  EXPECT_EQ(range.rest(), "!");
}

TEST(DeserializeAttr, AFailureNamesTheAttributesThatLeadThere) {
  Rok::CharRange range("[300]");
  EXPECT_EQ(rangeException([&] { Rok::deserializeAttr<Boxed>(range, "box"); }),
            "box: number: at byte 1: expected a number up to 255");
}

TEST(DeserializeAttr, RethrowingKeepsTheTypeAndThePreviousText) {
  const Rok::RangeException exception("too far");
  EXPECT_EQ(rangeException([&] { Rok::rethrowFromDeserializeAttr(exception, "sPInfo"); }),
            "sPInfo: too far");
}

TEST(StrepToValue, TextLeftOverIsAnError) {
  EXPECT_EQ(Rok::strepToValue<Boxed>("[7]").number, 7u);
  EXPECT_EQ(refusal<Boxed>("[7] "), "at byte 3: expected nothing more");
  EXPECT_EQ(refusal<Boxed>("[7"), "at byte 2: expected \"]\"");
}

}  // namespace
}  // namespace strepTest
