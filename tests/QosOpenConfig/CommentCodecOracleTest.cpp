// Random documents, written, read back, and read beside the plain way to read them.
#include <gtest/gtest.h>

#include <random>
#include <string>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "host/CommentFaults.h"
#include "tests/support/CommentByDocument.h"
#include "tests/support/CommentDocuments.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::commentCodecOracleTest {
namespace {

using namespace support::commentDocuments;

// ===== Any text, written and read back

std::string anyName(std::mt19937& random) {
  std::string text(random() % 24, '\0');
  for (char& c : text) {
    c = random() % 3 == 0 ? "\"\\/\b\f\n\r\t\x1f\x7f{}[]:,u0"[random() % 18]
                          : static_cast<char>(1 + random() % 255);
  }
  return text;
}

std::uint64_t anyNumber(std::mt19937_64& random) { return random() >> (random() % 64); }

TEST(CommentCodec, AttachmentsOfAnyNamesReadBack) {
  std::mt19937 random(11);
  for (int round = 0; round < 20000; ++round) {
    const CommentInfo info = comment(anyName(random), anyName(random));
    const Rok::String text = serializeJsonComment(info);
    ASSERT_EQ(deserializeJsonComment(text), info) << text;
    ASSERT_EQ(serializeJsonComment(deserializeJsonComment(text)), text);
    // What is written is one line: comments are sequences of lines.
    ASSERT_EQ(std::string_view(text).find('\n'), std::string_view::npos);
  }
}

TEST(CommentCodec, ProfilesOfAnyValuesReadBack) {
  std::mt19937 random(12);
  std::mt19937_64 numbers(13);
  for (int round = 0; round < 500; ++round) {
    Profile info("");
    for (auto n = random() % 12; n > 0; --n) {
      Scheduler one(static_cast<std::uint32_t>(anyNumber(numbers)));
      one.priorityIs(random() % 2 == 0 ? NONE : STRICT);
      one.oneRateTwoColorIs(Rate(random() % 2 == 0 ? 0 : anyNumber(numbers),
                                 static_cast<std::uint8_t>(random() % 3 == 0 ? 0 : random())));
      for (auto m = random() % 12; m > 0; --m) {
        one.inputsIs(input(anyName(random), anyName(random), anyNumber(numbers)));
      }
      info.schedulersIs(one);
    }
    const Rok::String text = serializeJsonProfileComment(info);
    ASSERT_EQ(deserializeJsonProfileComment(text), info) << text;
  }
}

TEST(CommentCodec, DocumentsMayBeLargerThanTheBuffersOfTheReader) {
  const std::string longName(100000, 'n');
  EXPECT_EQ(deserializeJsonComment(serializeJsonComment(comment(longName, longName + "\n"))),
            comment(longName, longName + "\n"));
  Profile info("");
  for (std::uint32_t sequence = 0; sequence < 300; ++sequence) {
    Scheduler one(sequence);
    for (std::uint32_t n = 0; n < 100; ++n) {
      one.inputsIs(input("input-of-a-long-name-" + std::to_string(n),
                         "queue-of-a-long-name-" + std::to_string(n), n));
    }
    info.schedulersIs(one);
  }
  EXPECT_EQ(deserializeJsonProfileComment(serializeJsonProfileComment(info)), info);
}

// Cut anywhere, a document is none, and that is an ordinary event.
TEST(CommentCodec, ADocumentThatIsCutOffIsNone) {
  for (const char* text : {bothParts, twoSchedulers}) {
    const std::string whole(text);
    for (std::size_t size = 0; size < whole.size(); ++size) {
      ASSERT_EQ(deserializeJsonComment(whole.substr(0, size)), CommentInfo()) << size;
      ASSERT_EQ(deserializeJsonProfileComment(whole.substr(0, size)), Profile("")) << size;
    }
  }
}

// ===== Any text, beside the plain way to read it

// Mostly documents: of ours, with something foreign, with members twice and in any order.
class AnyDocument {
 public:
  explicit AnyDocument(std::uint32_t seed) : random_(seed) {}

  std::string text() {
    std::string result = rarely() ? value() : root();
    if (random_() % 4 != 0) return result;
    for (auto n = 1 + random_() % 3; n > 0 && !result.empty(); --n) corrupt(result);
    return result;
  }

 private:
  bool rarely() { return random_() % 16 == 0; }
  std::string any(std::initializer_list<const char*> texts) {
    return texts.begin()[random_() % texts.size()];
  }

  std::string root() { return object({R"("MetaData-OpenConfig")"}, &AnyDocument::metaData); }
  std::string metaData() {
    return random_() % 2 == 0
               ? object({R"("scheduler-policy")", R"("queue-management-profile")"},
                        &AnyDocument::part)
               : object({R"("1")", R"("2")", R"("1x")", R"("-1")", R"(" 2")", R"("")"},
                        &AnyDocument::scheduler);
  }
  std::string part() { return object({R"("name")"}, &AnyDocument::string); }
  std::string scheduler() {
    switch (random_() % 3) {
      case 0:
        return object({R"("priority")"}, &AnyDocument::value);
      case 1:
        return object({R"("one-rate-two-color")"}, &AnyDocument::rate);
      default:
        return object({R"("inputs")"}, &AnyDocument::inputs);
    }
  }
  std::string rate() { return object({R"("cir")", R"("cir-pct")"}, &AnyDocument::number); }
  std::string inputs() { return object({R"("a")", R"("b")", R"("a\u0000")"}, &AnyDocument::input); }
  std::string input() {
    return random_() % 2 == 0 ? object({R"("queue")"}, &AnyDocument::string)
                              : object({R"("weight")"}, &AnyDocument::number);
  }

  std::string object(std::initializer_list<const char*> keys,
                     std::string (AnyDocument::*member)()) {
    if (rarely()) return value();
    std::string result = "{" + space();
    for (auto n = random_() % 4; n > 0; --n) {
      result += rarely() ? string() + ":" + value() : any(keys) + space() + ":" + (this->*member)();
      if (n > 1) result += space() + ",";
    }
    return result + "}" + space();
  }
  std::string string() {
    return any({R"("")", R"("sp")", R"("q\u0071\n\"")", R"("a\u0000b")", R"("\ud83d\ude00")",
                "\"gr\xc3\xbc\xc3\x9f\"", "\"\xff\"", R"("MetaData-OpenConfig")", R"("name")"});
  }
  std::string number() {
    return any({"0", "-0", "7", "300", "4294967295", "18446744073709551615", "40"});
  }
  std::string value() {
    return any({"null", "true", "-7", "1.5", "1e300", "1e999", "\"x\"", "\"\x1a\"", "[]",
                "[1,{\"name\":[{}]}]", R"({"name":"a","MetaData-OpenConfig":{}})", "4294967296",
                "-9223372036854775808", "18446744073709551616", "{}"});
  }
  std::string space() { return rarely() ? any({" ", "\n", "\t\r", "  "}) : ""; }

  void corrupt(std::string& text) {
    const std::size_t at = random_() % text.size();
    switch (random_() % 4) {
      case 0:
        text[at] = "\"\\{}[]:,0e-n \x1f"[random_() % 15];
        break;
      case 1:
        text.erase(at, 1 + random_() % 3);
        break;
      case 2:
        text.insert(at, text.substr(random_() % text.size(), random_() % 30));
        break;
      default:
        text.resize(at);
    }
  }

  std::mt19937 random_;
};

// The trace lines that a decoder writes for one text, without the first, which shows the text.
template <class Read, class Expected>
void expectReading(const std::string& text, Read read, const Expected& expected) {
  support::TraceCapture trace({2});
  EXPECT_EQ(read(text), expected.info) << text;
  ASSERT_EQ(trace.lines().size(), expected.remark.empty() ? 1u : 2u) << text;
  EXPECT_TRUE(trace.lines().back().starts_with("2 " + expected.remark)) << text;
}

TEST(CommentCodec, AnyTextIsReadAsItsDocumentWouldBe) {
  AnyDocument any(14);
  unsigned attachments = 0;
  unsigned profiles = 0;
  for (int round = 0; round < 10000 && !HasFailure(); ++round) {
    const std::string text = any.text();
    if (!host::attachmentFault(text)) {
      const auto expected = support::attachmentByDocument(text);
      expectReading(text, deserializeJsonComment, expected);
      attachments += expected.info ? 1 : 0;
    }
    if (!host::profileFault(text)) {
      const auto expected = support::profileByDocument(text);
      expectReading(text, deserializeJsonProfileComment, expected);
      profiles += expected.info ? 1 : 0;
    }
  }
  EXPECT_GT(attachments, 500u);
  EXPECT_GT(profiles, 500u);
}

}  // namespace
}  // namespace QosOc::commentCodecOracleTest
