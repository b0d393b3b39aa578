#include "host/SchemaReader.h"

#include <gtest/gtest.h>

#include <fstream>

#include "host/JsonText.h"
#include "tests/support/HostDevice.h"

namespace host::schemaReaderTest {
namespace {

using support::hostFault;

constexpr Name colours[] = {{"red", 1}, {"blue", 2}};

Schema colour() { return Schema::named("a colour", colours); }
Schema sample() {
  return Schema::record({
      {"count", Schema::number(10), Value(std::uint64_t{3})},
      {"text", Schema::text()},
      {"real", Schema::real()},
      {"colours", Schema::set(colour()), Value(Value::List())},
      {"list", Schema::list(Schema::number(5))},
      {"maybe", Schema::number(5).orNull()},
      {"rooms", Schema::keyed(Key::named("a colour", colours), Schema::number(9), {"1"})},
      {"seven", Schema::exactly(Schema::number(9), Value(std::uint64_t{7}), "7")},
  });
}

Value read(const Schema& schema, std::string_view text) {
  SchemaReader reader(schema);
  readJsonText(text, reader);
  return reader.take();
}
std::string faultOf(std::string_view text) {
  return hostFault([&] { read(sample(), text); });
}

Value numbers(std::initializer_list<std::uint64_t> list) {
  Value::List values;
  for (const std::uint64_t n : list) values.emplace_back(n);
  return Value(std::move(values));
}

TEST(SchemaReader, PutsInDefaultsAndLeavesTheRestAbsent) {
  const Value value = read(sample(), "{}");
  EXPECT_EQ(value.at("count").number(), 3u);
  EXPECT_TRUE(value.at("colours").list().empty());
  EXPECT_EQ(value.find("text"), nullptr);
  EXPECT_EQ(value.find("list"), nullptr);
}

TEST(SchemaReader, MakesNamesNumbersAndSortsSets) {
  const Value value = read(sample(), R"({"colours": ["blue", 7, "red", "9"]})");
  EXPECT_EQ(value.at("colours"), numbers({1, 2, 7, 9}));
}

TEST(SchemaReader, KeepsTheOrderAndTheRepetitionsOfLists) {
  EXPECT_EQ(read(sample(), R"({"list": [5, 0, 5]})").at("list"), numbers({5, 0, 5}));
}

TEST(SchemaReader, MakesKeysCanonicalAndMountsWhatIsAlwaysThere) {
  EXPECT_EQ(read(sample(), R"({"rooms": {"blue": 4}})").at("rooms"),
            Value(Value::Object{{"2", Value(std::uint64_t{4})}, {"1", Value(Value::Object())}}));
}

TEST(SchemaReader, TakesNullOnlyWhereItIsAllowed) {
  EXPECT_TRUE(read(sample(), R"({"maybe": null})").at("maybe").isNull());
  EXPECT_EQ(faultOf(R"({"text": null})"), "/text: null is never a value here: expected a string");
}

TEST(SchemaReader, TakesWholeNumbersAsReals) {
  EXPECT_EQ(read(sample(), R"({"real": -3})").at("real").real(), -3.0);
  EXPECT_EQ(read(sample(), R"({"real": 2})").at("real").real(), 2.0);
  EXPECT_EQ(read(sample(), R"({"real": 0.1})").at("real").real(), 0.1);
}

TEST(SchemaReader, RefusesNumbersThatDoNotFit) {
  EXPECT_EQ(faultOf(R"({"count": 11})"), "/count: expected a whole number from 0 to 10, not 11");
  EXPECT_EQ(faultOf(R"({"count": -1})"), "/count: expected a whole number from 0 to 10, not -1");
  EXPECT_EQ(faultOf(R"({"count": 2.5})"), "/count: expected a whole number from 0 to 10, not 2.5");
  EXPECT_EQ(faultOf(R"({"count": 18446744073709551615})"),
            "/count: expected a whole number from 0 to 10, not 18446744073709551615");
  EXPECT_EQ(faultOf(R"({"count": 1e999})"),
            "/count: not JSON: Number too big to be stored in double.");
}

TEST(SchemaReader, RefusesAnotherKindOfValue) {
  EXPECT_EQ(faultOf("[]"), "(document): expected an object, not an array");
  EXPECT_EQ(faultOf("7"), "(document): expected an object, not 7");
  EXPECT_EQ(faultOf(R"({"text": {}})"), "/text: expected a string, not an object");
  EXPECT_EQ(faultOf(R"({"text": true})"), "/text: expected a string, not true");
  EXPECT_EQ(faultOf(R"({"count": "3"})"),
            "/count: expected a whole number from 0 to 10, not \"3\"");
  EXPECT_EQ(faultOf(R"({"list": [1, [2]]})"),
            "/list/1: expected a whole number from 0 to 5, not an array");
  EXPECT_EQ(faultOf(R"({"rooms": []})"), "/rooms: expected an object, not an array");
  EXPECT_EQ(faultOf(R"({"seven": 8})"), "/seven: expected 7, not 8");
}

TEST(SchemaReader, RefusesUnknownNames) {
  EXPECT_EQ(faultOf(R"({"colours": ["red", "green"]})"),
            "/colours/1: expected a colour: red, blue or a number from 0 to 255, not \"green\"");
  EXPECT_EQ(faultOf(R"({"rooms": {"01": 3}})"),
            "/rooms/01: this key is not a colour: red, blue or a number from 0 to 255");
}

TEST(SchemaReader, RefusesTheSameTwice) {
  EXPECT_EQ(faultOf(R"({"colours": ["red", 1]})"), "/colours/1: the same value twice");
  EXPECT_EQ(faultOf(R"({"rooms": {"red": 1, "1": 2}})"), "/rooms/1: the same key twice");
  EXPECT_EQ(faultOf(R"({"text": "a", "text": "a"})"), "/text: the same member twice");
}

TEST(SchemaReader, RefusesUnknownMembers) {
  EXPECT_EQ(faultOf(R"({"a/b": 1})"),
            "/a~1b: unknown member (legal: count, text, real, colours, list, maybe, rooms, seven)");
}

TEST(SchemaReader, FillsTheSlotsThatAreLeftOut) {
  const Schema slots =
      Schema::slots(Key::number("a slot", 2), Schema::number(9), {"0", "1", "2"}, numbers({}));
  EXPECT_EQ(
      read(slots, R"({"1": 4})"),
      Value(Value::Object{{"1", Value(std::uint64_t{4})}, {"0", numbers({})}, {"2", numbers({})}}));
  EXPECT_EQ(hostFault([&] { read(slots, R"({"3": 4})"); }),
            "/3: this key is not a slot: a number from 0 to 2");
}

TEST(SchemaReader, TakesADecimalTextForANumberOnlyWhereItIsAskedTo) {
  const Schema schema = Schema::record({{"any", colour()},
                                        {"strict", Schema::nameOrNumber("a colour", colours)},
                                        {"flag", Schema::boolean()}});
  const Value value = read(schema, R"({"any": "7", "strict": 7, "flag": false})");
  EXPECT_EQ(value.at("any").number(), 7u);
  EXPECT_EQ(value.at("strict").number(), 7u);
  EXPECT_EQ(read(schema, R"({"strict": "blue"})").at("strict").number(), 2u);
  EXPECT_EQ(value.at("flag"), Value(false));
  EXPECT_EQ(hostFault([&] { read(schema, R"({"strict": "7"})"); }),
            "/strict: expected a colour: red, blue or a number from 0 to 255, not \"7\"");
  EXPECT_EQ(hostFault([&] { read(schema, R"({"flag": 0})"); }),
            "/flag: expected true or false, not 0");
}

TEST(SchemaReader, RefusesTextThatIsNotUnicode) {
  EXPECT_EQ(faultOf("{\"text\": \"a\xff\"}"),
            "/text: this string is not valid Unicode: \"a\\xff\"");
  EXPECT_EQ(faultOf("{\"te\xfft\": 1}"), "(document): this key is not valid Unicode: \"te\\xfft\"");
  EXPECT_EQ(faultOf(R"({"text": "\udc00"})"),
            "/text: this string is not valid Unicode: \"\\xed\\xb0\\x80\"");
}

// ===== Several faults

std::string placed(const Schema& schema, std::string_view text, EntrySink* sink = nullptr) {
  SchemaReader reader(schema, sink);
  std::string lines;
  try {
    readJsonText(text, reader);
  } catch (const Refusal& refusal) {
    for (const Fault& fault : refusal.faults())
      lines += shownPosition(fault.position()) + ' ' + fault.place() + '\n';
  }
  return lines;
}

TEST(SchemaReader, ListsEachFaultWithTheLineAndColumnOfItsToken) {
  EXPECT_EQ(placed(sample(),
                   "{\"count\": 11,\n  \"text\" :\t[1, {\"a\": [2]}], \"real\": {\"b\": {}},\n"
                   " \"rooms\": {\"red\": -1, \"green\": 3, \"blue\": 1,\n\"2\": 1},\n"
                   "\"list\": [1, \"x\", [0], 9]}"),
            "1:11 /count\n2:12 /text\n2:37 /real\n3:19 /rooms/red\n3:23 /rooms/green\n"
            "4:1 /rooms/2\n5:13 /list/1\n5:18 /list/2\n5:23 /list/3\n");
}

TEST(SchemaReader, PassesOverWhatStandsBelowAFault) {
  EXPECT_EQ(
      placed(sample(), R"({"what": {"count": 11, "text": [7, {}]}, "count": "x", "text": 1})"),
      "1:2 /what\n1:51 /count\n1:64 /text\n");
  EXPECT_EQ(placed(sample(), R"({"rooms": {"red": 1, "red": {"a": [{}]}, "red": 2}, "real": ""})"),
            "1:22 /rooms/red\n1:42 /rooms/red\n1:61 /real\n");
}

TEST(SchemaReader, FindsAKeyTwiceAlsoWhenTheFirstOneHasAFault) {
  EXPECT_EQ(placed(sample(), R"({"rooms": {"red": "", "1": 1}})"),
            "1:19 /rooms/red\n1:23 /rooms/1\n");
  EXPECT_EQ(placed(sample(), R"({"text": 1, "text": ""})"), "1:10 /text\n1:13 /text\n");
}

TEST(SchemaReader, ListsTwentyFaultsAtMost) {
  std::string text = "{\"list\": [";
  for (int i = 0; i < 19; ++i) text += "9,\n";
  const auto count = [](const std::string& lines) {
    return std::count(lines.begin(), lines.end(), '\n');
  };
  EXPECT_EQ(count(placed(sample(), text + "1]}")), 19);
  EXPECT_EQ(count(placed(sample(), text + "9]}")), 20);
  EXPECT_EQ(count(placed(sample(), text + "9, 9, nope")), 20);
}

TEST(SchemaReader, ListsAFaultOfTheSyntaxBehindThoseOfTheShape) {
  EXPECT_EQ(faultOf(R"({"count": 11, "list": [1, [nope)"),
            "/count: expected a whole number from 0 to 10, not 11\n"
            "/list/1: expected a whole number from 0 to 5, not an array\n"
            "/list/1: not JSON: Invalid value.");
}

TEST(SchemaReader, SaysWhereAFaultIsWhoseTokenBeganInAnEarlierBlock) {
  // The stream reads a file in blocks of 65,536 bytes.
  const std::string text = "\n\n{\"count\": \n \"" + std::string(200'000, 'x') + "\"}";
  const std::string path = testing::TempDir() + "a-token-over-blocks.json";
  std::ofstream(path) << text;
  const Schema schema = sample();
  SchemaReader ofFile(schema);
  try {
    readJsonFile(path, ofFile);
    FAIL();
  } catch (const Refusal& refusal) {
    EXPECT_EQ(refusal.faults().front().position(), (TextPosition{4, 2}));
  }
}

TEST(SchemaReader, SaysThatATextIsOfAnotherEncoding) {
  const std::string mark = " (it begins with a byte-order mark: leave that out)";
  const std::string utf16 = " (it looks like UTF-16: write it as UTF-8)";
  EXPECT_EQ(faultOf("\xef\xbb\xbf{}"), "(document): not JSON: Invalid value." + mark);
  EXPECT_EQ(faultOf("\xff\xfe{"), "(document): not JSON: Invalid value." + utf16);
  EXPECT_EQ(faultOf("\xfe\xff"), "(document): not JSON: Invalid value." + utf16);
  EXPECT_EQ(faultOf(std::string_view("{\0}\0", 4)), "(document): not JSON: a NUL byte" + utf16);
  EXPECT_EQ(faultOf(std::string_view("\0{\0}", 4)), "(document): not JSON: a NUL byte" + utf16);
  EXPECT_EQ(faultOf(std::string_view("{} \0", 4)), "(document): not JSON: a NUL byte");
  EXPECT_EQ(faultOf("x"), "(document): not JSON: Invalid value.");
}

TEST(SchemaReader, NamesWhatWasProbablyMeant) {
  EXPECT_EQ(
      faultOf(R"({"txet": ""})"),
      "/txet: unknown member: did you mean text? (legal: count, text, real, colours, list, maybe, "
      "rooms, seven)");
  EXPECT_EQ(
      faultOf(R"({"rooms": {"bleu": 1}})"),
      "/rooms/bleu: this key is not a colour: red, blue or a number from 0 to 255: did you mean "
      "blue?");
  EXPECT_EQ(
      faultOf(R"({"colours": ["Red"]})"),
      "/colours/0: expected a colour: red, blue or a number from 0 to 255, not \"Red\": did you "
      "mean red?");
}

struct SinkLog final : EntrySink {
  void collectionBegins(const Rok::String& key) override { told("begin " + std::string(key)); }
  void collectionEnds() override { told("end"); }
  void entry(const Rok::String& key, const Value& value) override {
    told(std::string(key) + (value.as<Value::Object>() != nullptr ? " object" : " scalar"));
  }
  bool has(const Rok::String& /*key*/) const override { return false; }
  void told(const std::string& what) { log.push_back(what); }
  std::vector<std::string> log;
};

TEST(SchemaReader, HandsTheEntriesOfUpperCollectionsOnOneByOne) {
  SinkLog sink;
  const Schema room = Schema::record({{"size", Schema::number(9)}});
  const Schema house = Schema::record(
      {{"rooms", Schema::keyed(Key::named("a colour", colours), Schema::keyed(Key::name(), room))},
       {"doors", Schema::keyed(Key::name(), Schema::number(9))},
       {"roof", room},
       {"trees", Schema::record({{"old", Schema::keyed(Key::name(), room)}})}});
  SchemaReader reader(house, &sink);
  readJsonText(R"({"rooms": {"red": {"hall": {"size": 1}, "den": {}}, "blue": {}},
                   "doors": {"front": 1}, "roof": {"size": 2}, "trees": {"old": {"oak": {}}}})",
               reader);
  const std::vector<std::string> expected{
      "begin rooms", "begin 1",   "hall object", "den object",   "end", "begin 2",
      "end",         "end",       "begin doors", "front scalar", "end", "roof object",
      "begin trees", "begin old", "oak object",  "end",          "end"};
  EXPECT_EQ(sink.log, expected);
}

TEST(SchemaReader, HandsNoEntryOnThatHasAFault) {
  SinkLog sink;
  const Schema house = Schema::record(
      {{"rooms", Schema::keyed(Key::name(), Schema::record({{"size", Schema::number(9)}}))}});
  EXPECT_EQ(
      placed(house, R"({"rooms": {"hall": {"size": 10}, "den": {"size": 1}, "hall": {}}})", &sink),
      "1:29 /rooms/hall/size\n1:54 /rooms/hall\n");
  EXPECT_EQ(sink.log, (std::vector<std::string>{"begin rooms", "den object", "end"}));
}

TEST(SchemaReader, HandsTheEntriesOfARecordOfRecordsOnOneByOne) {
  SinkLog sink;
  const Schema room = Schema::record({{"things", Schema::keyed(Key::name(), Schema::number(9))}});
  const Schema house = Schema::record({{"number", Schema::number(9)},
                                       {"rooms", Schema::keyed(Key::name(), room)},
                                       {"roof", Schema::record({{"size", Schema::number(9)}})}});
  const Schema street = Schema::record({{"name", Schema::text()}, {"first", house}});
  SchemaReader reader(street, &sink);
  readJsonText(R"({"name": "", "first": {"number": 1, "rooms": {"hall": {"things": {"a": 1}}},
                   "roof": {"size": 2}}})",
               reader);
  const std::vector<std::string> expected{"name scalar", "begin first", "number scalar",
                                          "begin rooms", "hall object", "end",
                                          "roof object", "end"};
  EXPECT_EQ(sink.log, expected);
}

}  // namespace
}  // namespace host::schemaReaderTest
