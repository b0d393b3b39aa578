#include "host/JsonWriter.h"

#include <gtest/gtest.h>

#include <algorithm>

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
}

TEST(JsonWriter, WritesTheLargestNumber) {
  JsonWriter out(Layout::compact);
  out.number(~std::uint64_t{0});
  EXPECT_EQ(out.take(), "18446744073709551615");
}

}  // namespace
}  // namespace host::jsonWriterTest
