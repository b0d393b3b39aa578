#include "host/JsonStream.h"

#include <gtest/gtest.h>

namespace host::jsonStreamTest {
namespace {

// Keeps the last string of a text.
struct LastString : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, LastString> {
  std::string text;
  bool String(const char* begin, rapidjson::SizeType size, bool /*copy*/) {
    text.assign(begin, size);
    return true;
  }
};

// Counts the bytes that the parser takes one by one.
struct CountingStream : JsonStream {
  using JsonStream::JsonStream;
  std::size_t taken = 0;
  Ch Take() {
    ++taken;
    return JsonStream::Take();
  }
};

TEST(JsonStream, GivesTheParserAWholeStretchOfAStringAtOnce) {
  const std::string stretch(10'000, 'x');
  const std::string text = '"' + stretch + "\\n" + stretch + '"';
  CountingStream stream(text);
  LastString handler;
  JsonParser().Parse<rapidjson::kParseIterativeFlag>(stream, handler);
  EXPECT_EQ(handler.text, stretch + '\n' + stretch);
  EXPECT_LT(stream.taken, 10u);
}

TEST(JsonStream, JoinsAStringThatCrossesTheBlocksOfAFile) {
  std::string written;
  std::string read;
  for (int i = 0; i < 50'000; ++i) {
    written += "ab\\\"\xc3\xbc\\u00fc";
    read += "ab\"\xc3\xbc\xc3\xbc";
  }
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
  ASSERT_TRUE(file);
  std::fprintf(file.get(), "[\"%s\"]", written.c_str());
  std::rewind(file.get());
  JsonStream stream(file.get());
  LastString handler;
  EXPECT_EQ(parseJson(stream, handler).reason, "");
  EXPECT_EQ(handler.text, read);
}

TEST(JsonStream, PassesBytesThatAreNotUtf8) {
  JsonStream stream("\"\xff\x80 \xc3\"");
  LastString handler;
  EXPECT_EQ(parseJson(stream, handler).reason, "");
  EXPECT_EQ(handler.text, "\xff\x80 \xc3");
}

TEST(JsonStream, NamesTheByteOfAStringThatJsonForbids) {
  JsonStream stream(std::string_view("[\"abc\x01\"]"));
  LastString handler;
  const SyntaxFault fault = parseJson(stream, handler);
  EXPECT_EQ(fault.reason, "Invalid escape character in string.");
  EXPECT_EQ(fault.offset, 5u);
}

}  // namespace
}  // namespace host::jsonStreamTest
