#include "host/JsonWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace host::jsonWriterTest {
namespace {

std::string sample(Layout layout) {
  JsonWriter out(layout);
  out.beginObject();
  out.key("a");
  out.beginArray();
  out.number(1);
  out.beginObject();
  out.endObject();
  out.beginArray();
  out.endArray();
  out.endArray();
  out.key("b");
  out.null();
  out.key("c");
  out.boolean(true);
  out.endObject();
  return out.take();
}

TEST(JsonWriter, WritesOneLineWhenCompact) {
  EXPECT_EQ(sample(Layout::compact), R"({"a":[1,{},[]],"b":null,"c":true})");
}

TEST(JsonWriter, WritesOneValueALineWhenPretty) {
  EXPECT_EQ(sample(Layout::pretty),
            "{\n  \"a\": [\n    1,\n    {},\n    []\n  ],\n  \"b\": null,\n  \"c\": true\n}\n");
}

TEST(JsonWriter, EscapesWhatAStringCannotHold) {
  JsonWriter out(Layout::compact);
  out.text(std::string_view("\"\\/\n\r\t\b\0\x1fZ\xc3\xbc", 12));
  EXPECT_EQ(out.take(), R"("\"\\/\n\r\t\u0008\u0000\u001fZü")");
}

std::string textOf(std::string_view text) {
  JsonWriter out(Layout::compact);
  out.text(text);
  return out.take();
}

TEST(JsonWriter, EscapesEveryControlCharacterInOneWay) {
  for (char c = 0; c < ' '; ++c) {
    char expected[16];
    std::snprintf(expected, sizeof(expected), R"("a\u%04xb")", c);
    if (c == '\t') std::strcpy(expected, R"("a\tb")");
    if (c == '\n') std::strcpy(expected, R"("a\nb")");
    if (c == '\r') std::strcpy(expected, R"("a\rb")");
    EXPECT_EQ(textOf({"a" + std::string(1, c) + "b"}), expected);
  }
}

TEST(JsonWriter, LeavesOtherBytesAsTheyAreEvenIfTheyAreNotUtf8) {
  std::string bytes;
  for (int c = ' '; c < 256; ++c) {
    if (c != '"' && c != '\\') bytes += static_cast<char>(c);
  }
  EXPECT_EQ(textOf(bytes), '"' + bytes + '"');
}

TEST(JsonWriter, WritesAnEmptyText) { EXPECT_EQ(textOf({}), "\"\""); }

TEST(JsonWriter, EscapesKeysToo) {
  JsonWriter out(Layout::pretty);
  out.beginObject();
  out.key("a\"\f");
  out.text("\x1f");
  out.key("");
  out.text("b");
  out.endObject();
  EXPECT_EQ(out.take(), "{\n  \"a\\\"\\u000c\": \"\\u001f\",\n  \"\": \"b\"\n}\n");
}

TEST(JsonWriter, SeparatesTextsOfAnArray) {
  const auto write = [](Layout layout) {
    JsonWriter out(layout);
    out.beginArray();
    out.text("a");
    out.text("b");
    out.real(0.5);
    out.endArray();
    return out.take();
  };
  EXPECT_EQ(write(Layout::compact), R"(["a","b",0.5])");
  EXPECT_EQ(write(Layout::pretty), "[\n  \"a\",\n  \"b\",\n  0.5\n]\n");
}

TEST(JsonWriter, EndsThePrettyTextOfOneValueWithALineEnd) {
  JsonWriter out(Layout::pretty);
  out.number(1);
  EXPECT_EQ(out.take(), "1\n");
}

TEST(JsonWriter, HandsALongTextOnPieceByPiece) {
  const auto write = [](JsonWriter& out) {
    out.beginArray();
    for (int i = 0; i < 100'000; ++i) {
      out.beginArray();
      out.number(static_cast<std::uint64_t>(i));
      out.endArray();
    }
    out.endArray();
    return out.take();
  };
  JsonWriter whole(Layout::pretty);
  const std::string text = write(whole);
  std::string pieces;
  std::size_t largest = 0;
  JsonWriter out(Layout::pretty, [&](std::string_view piece) {
    pieces += piece;
    largest = std::max(largest, piece.size());
  });
  EXPECT_EQ(write(out), "");
  EXPECT_EQ(pieces, text);
  EXPECT_GT(text.size(), 1'000'000u);
  EXPECT_LT(largest, 100'000u);
}

std::string real(double number) {
  JsonWriter out(Layout::compact);
  out.real(number);
  return out.take();
}

TEST(JsonWriter, WritesRealsSoThatTheyReadBackAndLookReal) {
  EXPECT_EQ(real(0), "0.0");
  EXPECT_EQ(real(-3), "-3.0");
  EXPECT_EQ(real(0.1), "0.1");
  EXPECT_EQ(real(1e300), "1e+300");
  EXPECT_EQ(real(-2.5e-7), "-2.5e-07");
  EXPECT_EQ(real(1e16), "1e+16");
  EXPECT_EQ(real(5e-324), "5e-324");
  EXPECT_EQ(real(-1.7976931348623157e308), "-1.7976931348623157e+308");
  EXPECT_EQ(real(-0.0), "-0.0");
}

TEST(JsonWriter, WritesTheLargestNumber) {
  JsonWriter out(Layout::compact);
  out.number(~std::uint64_t{0});
  EXPECT_EQ(out.take(), "18446744073709551615");
}

TEST(JsonWriter, TakesAValueThatIsJsonAlready) {
  JsonWriter out(Layout::compact);
  out.beginObject();
  out.key("a");
  out.raw("[1, 2]");
  out.key("b");
  out.raw("\"x\"");
  out.endObject();
  EXPECT_EQ(out.take(), R"({"a":[1, 2],"b":"x"})");
}

}  // namespace
}  // namespace host::jsonWriterTest
