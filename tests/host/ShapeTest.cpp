// The form of native documents is judged as the reader of native documents judges it.
#include "host/Shape.h"

#include <gtest/gtest.h>

#include <fstream>
#include <random>
#include <sstream>

#include "host/Sections.h"
#include "host/ShapeReader.h"
#include "tests/support/HostDevice.h"
#include "tests/support/OneByteChanged.h"

namespace host::shapeTest {
namespace {

// All there is in a document, and each in two ways.
const std::string everything = R"({
  "class-maps": {"qos": {"V": {"match": ["ip-access-group", 7, "9"]}, "W\u00fc": {}}, "255": {}, "0": {"": {}}},
  "access-lists": {"ipv4": {"A": {"rules": {"0": {}, "4294967295": {"dscp": 255}}}, "B": {}},
                   "ipv6": {"A": {"rules": {"10": {"tc": 184, "tc-mask": 252}}}}},
  "policy-maps": {"7": {"P": {"classes": {"C": {"actions": {"set-traffic-class": 5, "9": 1}}}}}},
  "service-policies": {"65535:P:\n/q": {"interfaces": {"Ethernet1/1": true}}, "0:": {}},
  "interfaces": {"E": {"tx-queues": {"uc-0": {"priority": "unset", "bandwidth": 40, "shape": 0},
                                     "mc-255": {"priority": 255, "ecn": {"weight": 1}}}, "pfc": {}}},
  "qos-profiles": {"P": {"tx-queues": {"uc-1": {"wred": {"max-threshold": 4294967295}}}}, "Q": {}},
  "comments": {"": "", "any/~": "{\"a\": \"\u20ac\"}"},
  "tc-to-tx-queue": {"0": 0, "7": 15}, "forwarding-groups": {"f": 17}, "queue-names": {"q": 255},
  "pfc-watchdog": {"time-a": 1, "time-b": -0.5, "action": 255, "priorities": 0}
})";

template <class Read>
std::vector<std::string> linesOfRefusal(const Read& read) {
  try {
    read();
  } catch (const Refusal& refusal) {
    return linesOf(refusal.faults(), "file");
  }
  return {};
}
std::vector<std::string> shapeFaults(std::string_view text) {
  return linesOfRefusal([&] { checkShapeOfText(text); });
}
std::vector<std::string> readingFaults(std::string_view text) {
  return linesOfRefusal([&] {
    const Native native;
    readNativeText(text, native);
  });
}

bool fits(std::string_view text, std::size_t block) {
  TextWindow window(text, block);
  return ShapeReader(window).fits(nativeSchema());
}

std::string contents(const std::string& path) {
  std::ostringstream text;
  text << std::ifstream(QOS_SOURCE_DIR "/" + path, std::ios::binary).rdbuf();
  return text.str();
}

std::vector<std::string> documents() {
  return {everything, contents("examples/edge-router/01-native.json"),
          contents("examples/one-classifier/03-native-after.json"),
          contents("examples/feeder/native.json")};
}

// A stretch of the text that stands at another place too: often a member twice, or one of another object.
std::string withStretchCopied(std::string text, std::mt19937& random) {
  const std::string punctuation = "{}[],:\"\n";
  const auto boundary = [&] {
    const std::size_t at = text.find_first_of(punctuation, random() % text.size());
    return at == text.npos ? text.size() : at;
  };
  const std::size_t from = boundary();
  const std::string stretch = text.substr(from, random() % 40);
  return text.insert(boundary(), stretch);
}

// One word in the place of another one of the same document.
std::string withWordChanged(std::string text, std::mt19937& random) {
  static const std::vector<std::string> words = {
      "null",        "true",  "-1",       "256",     "4294967296",    "0.5",      "\"\"",
      "\"x\"",       "\"7\"", "\"uc-3\"", "\"1:P\"", "\"qos\"",       "[]",       "{}",
      "\"\\ud800\"", "1e3",   "-0",       "007",     "\"\\u0071os\"", "\"ipv4\"", "\"match\"",
      "\"1\"",       "1"};
  const std::size_t begin = text.find_first_of("\"0123456789{[", random() % text.size());
  if (begin == text.npos) return text;
  const std::size_t end = text.find_first_of(",:}] \n", begin);
  return text.replace(begin, end == text.npos ? 1 : end - begin, words[random() % words.size()]);
}

std::string withSlip(const std::string& text, std::mt19937& random) {
  switch (random() % 4) {
    case 0:
      return support::oneByteChanged(text, random);
    case 1:
      return withStretchCopied(text, random);
    case 2:
      return text.substr(0, random() % text.size());
    default:
      return withWordChanged(text, random);
  }
}

TEST(Shape, OfARightDocumentIsJudgedAtOnce) {
  for (const std::string& document : documents()) {
    EXPECT_EQ(readingFaults(document), std::vector<std::string>());
    for (std::size_t block : {1, 2, 7, 64, 1000, 65536})
      EXPECT_TRUE(fits(document, block)) << document;
  }
}

TEST(Shape, OfADocumentWithSlipsIsJudgedAsByReadingIt) {
  std::mt19937 random(31);
  int refused = 0;
  int takenAtOnce = 0;
  for (int turn = 0; turn < 3000; ++turn) {
    const std::vector<std::string> all = documents();
    std::string text = all[random() % all.size()];
    for (std::size_t slips = 1 + random() % 3; slips > 0 && !text.empty(); --slips) {
      text = withSlip(text, random);
    }
    const std::vector<std::string> faults = readingFaults(text);
    ASSERT_EQ(shapeFaults(text), faults) << text;
    refused += faults.empty() ? 0 : 1;
    const bool fit = fits(text, 1 + random() % 100);
    ASSERT_TRUE(!fit || faults.empty()) << text;
    takenAtOnce += fit ? 1 : 0;
  }
  EXPECT_GT(refused, 1000);
  EXPECT_GT(takenAtOnce, 100);
}

TEST(Shape, NamesTheFirstFaultsOfMany) {
  std::string text = R"({"comments": {"a": 1)";
  for (int i = 0; i < 30; ++i) text += R"(, "a": "")";
  EXPECT_EQ(shapeFaults(text + "}}").size(), mostFaults + 1);
  EXPECT_EQ(shapeFaults(text + "}}"), readingFaults(text + "}}"));
}

TEST(Shape, OfAFileIsJudgedFromWhereItStands) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
  ASSERT_TRUE(file);
  std::fputs("xyz{\n\"comments\": 7}", file.get());
  std::fseek(file.get(), 3, SEEK_SET);
  EXPECT_EQ(linesOfRefusal([&] { checkShape(file.get()); }),
            (std::vector<std::string>{"file:2:13: /comments: expected an object, not 7"}));
  std::rewind(file.get());
  std::fputs("   ", file.get());
  std::rewind(file.get());
  EXPECT_EQ(linesOfRefusal([&] { checkShape(file.get()); }).size(), 1u);
}

TEST(Shape, OfAnotherDocumentSaysWhichOne) {
  EXPECT_EQ(
      shapeFaults(R"({"openconfig-qos:qos": {}})"),
      (std::vector<std::string>{
          "file:1:2: /openconfig-qos:qos: this is an OpenConfig document, which diff reads"}));
}

}  // namespace
}  // namespace host::shapeTest
