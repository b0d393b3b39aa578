#include "host/ShapeReader.h"

#include <gtest/gtest.h>

#include <initializer_list>

#include "host/JsonText.h"
#include "tests/support/HostDevice.h"

namespace host::shapeReaderTest {
namespace {

using support::hostFault;

constexpr Name colours[] = {{"red", 1}, {"blue", 2}};

Schema sample() {
  return Schema::record({
      {"count", Schema::number(1000)},
      {"large", Schema::number(0xffffffffffffffff)},
      {"text", Schema::text()},
      {"real", Schema::real()},
      {"flag", Schema::boolean()},
      {"colours", Schema::set(Schema::named("a colour", colours))},
      {"colour", Schema::nameOrNumber("a colour", colours)},
      {"rooms", Schema::keyed(Key::named("a colour", colours), Schema::number(9))},
      {"names", Schema::keyed(Key::name(), Schema::keyed(Key::name(), Schema::boolean()))},
      {"list", Schema::list(Schema::number(5))},
      {"maybe", Schema::number(5).orNull()},
      {"seven", Schema::exactly(Schema::number(9), Value(std::uint64_t{7}), "7")},
  });
}

bool fits(std::string_view text, std::size_t block = TextWindow::blockSize) {
  static const Schema schema = sample();
  TextWindow window(text, block);
  return ShapeReader(window).fits(schema);
}

// What the other reader has against it.
std::string faultOf(std::string_view text) {
  static const Schema schema = sample();
  SchemaReader reader(schema);
  return hostFault([&] { readJsonText(text, reader); });
}

// Both readers take each, wherever the blocks of the text end.
void expectTaken(std::initializer_list<const char*> texts) {
  for (const std::string_view text : texts) {
    EXPECT_EQ(faultOf(text), "") << text;
    for (std::size_t block = 1; block <= text.size() + 1; ++block) {
      EXPECT_TRUE(fits(text, block)) << text << " by " << block;
    }
  }
}
void expectRefused(std::initializer_list<std::string_view> texts) {
  for (const std::string_view text : texts) {
    EXPECT_NE(faultOf(text), "") << text;
    for (std::size_t block = 1; block <= text.size() + 1; ++block) {
      EXPECT_FALSE(fits(text, block)) << text << " by " << block;
    }
  }
}

TEST(ShapeReader, TakesMembersInAnyOrder) {
  expectTaken({"{}", " \n{\t}\r ", R"({"count": 7, "text": "a", "flag": true})",
               R"({"flag":false,"text":"","count":0})",
               R"({"rooms": {}, "names": {}, "colours": []})"});
}

TEST(ShapeReader, RefusesMembersThatAreUnknownOrThereTwice) {
  expectRefused({R"({"counts": 7})", R"({"": 7})", R"({"count": 7, "count": 7})",
                 R"({"text": "", "count": 7, "text": ""})"});
}

TEST(ShapeReader, TakesNumbersThatFit) {
  expectTaken({R"({"count": 0})", R"({"count": 1000})", R"({"large": 9999999999999999999})"});
  expectRefused({R"({"count": 1001})", R"({"count": -1})", R"({"count": 01})", R"({"count": 7.0})",
                 R"({"count": 7e0})", R"({"count": "7"})", R"({"count": })", R"({"count": 7x})",
                 R"({"count": 18446744073709551616})", R"({"count": true})", R"({"count": null})",
                 R"({"count": 100000000000000000000000000000000000007})", R"({"count": 0x7})"});
}

TEST(ShapeReader, TakesNamesOfNumbers) {
  expectTaken({R"({"colours": ["red", 2, "7"]})", R"({"colour": "blue"})", R"({"colour": 255})",
               R"({"colour": "\u0062lue"})"});
  expectRefused({R"({"colours": ["green"]})", R"({"colours": ["256"]})", R"({"colours": ["07"]})",
                 R"({"colour": "7"})", R"({"colours": [[]]})", R"({"colours": {}})",
                 R"({"colours": [1,]})", R"({"colours": [1 2]})", R"({"colours": [,]})"});
}

TEST(ShapeReader, NoticesAnElementThatIsThereTwice) {
  expectRefused({R"({"colours": ["red", 1]})", R"({"colours": [7, "7"]})",
                 R"({"colours": [3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 3]})"});
}

TEST(ShapeReader, TakesReals) {
  expectTaken({R"({"real": 0})", R"({"real": -0.5})", R"({"real": 12.25})", R"({"real": -3})"});
  expectRefused({R"({"real": 01})", R"({"real": 1.})", R"({"real": .5})", R"({"real": -})",
                 R"({"real": +1})", R"({"real": "1"})", R"({"real": 1e999})",
                 R"({"real": 1.5.5})"});
}

TEST(ShapeReader, TakesWords) {
  expectTaken({R"({"flag": true})", R"({"flag": false})"});
  expectRefused({R"({"flag": tru})", R"({"flag": truee})", R"({"flag": 1})", R"({"flag": True})"});
}

TEST(ShapeReader, TakesKeysOfAKind) {
  expectTaken(
      {R"({"rooms": {"red": 1, "2": 2, "255": 3}})", R"({"names": {"": {"": true}, "a": {}}})"});
  expectRefused(
      {R"({"rooms": {"green": 1}})", R"({"rooms": {"01": 1}})", R"({"rooms": {"red": 10}})"});
}

TEST(ShapeReader, NoticesAKeyThatIsThereTwice) {
  expectTaken({R"({"names": {"a": {"a": true, "b": true}, "b": {"a": true}}})"});
  expectRefused({R"({"rooms": {"red": 1, "1": 2}})", R"({"names": {"a": {}, "a": {}}})",
                 R"({"names": {"a": {}, "\u0061": {}}})",
                 R"({"names": {"a": {"b": true, "b": true}}})"});
}

TEST(ShapeReader, TakesStringsOfUnicode) {
  expectTaken({R"({"text": "a\"\\\/\b\f\n\r\tz"})", R"({"text": "\u20ac\ud83d\ude00\u0000"})",
               "{\"text\": \"\x7f\u20ac\U0001f600\"}", R"({"text": "a string of some length"})"});
  expectRefused({"{\"text\": \"a\xff\"}", "{\"text\": \"\xe2\x82\"}", "{\"text\": \"a\nb\"}",
                 R"({"text": "\x"})", R"({"text": "\u12"})", R"({"text": "\udc00"})",
                 R"({"text": "\ud83d"})", "{\"text\": \"\xe2\\n\x82\xac\"}", "{\"te\xffxt\": \"\"}",
                 std::string_view("{\"text\": \"\0\"}", 13), "{\"text\": \"\\", "{\"text\": \"a"});
}

TEST(ShapeReader, RefusesWhatIsNoWholeDocument) {
  expectRefused({"", " ", "{", "[]", "7", "{}}", "{} {}", R"({"count")", R"({"count":)",
                 R"({"count": 7)", R"({"count": 7,)", R"({"count": 7,})", R"({"count" 7})",
                 R"({count: 7})", "{,}", R"({"count": 7 "text": ""})", "\xef\xbb\xbf{}",
                 std::string_view("{}\0", 3)});
}

TEST(ShapeReader, LeavesWhatIsRareToTheOtherReader) {
  for (const char* text :
       {R"({"real": 1e3})", R"({"large": 18446744073709551615})", R"({"count": -0})",
        R"({"maybe": null})", R"({"list": [5, 5]})", R"({"seven": 7})", R"({"te\u0078t": ""})"}) {
    EXPECT_FALSE(fits(text)) << text;
    EXPECT_EQ(faultOf(text), "") << text;
  }
}

}  // namespace
}  // namespace host::shapeReaderTest
