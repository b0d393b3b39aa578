// Where places stand in a text.
#include "host/check/Positions.h"

#include <gtest/gtest.h>

#include <fstream>

#include "host/Fault.h"

namespace host::positionsTest {
namespace {

// Line 1 is the first one.
constexpr const char* text = R"({
  "queue-names": {"EF": 5,
    "A\/F": 3},
  "interfaces": {"Ethernet1": {"tx-queues": {
    "uc-5": {"ecn": {"max-threshold": 9}}}}},
  "policy-maps": {"1": {"__yang_": {}}},
  "class-maps": {"qos": {"A": {"match": [
    7, "1"]}}}
})";

std::string position(const Tokens& place) {
  return shownPosition(positionsOfText(text, std::vector<Tokens>{place}).at(0));
}

TEST(Positions, OfAScalarIsThatOfItsValue) {
  EXPECT_EQ(position({"queue-names", "EF"}), "2:25");
  EXPECT_EQ(position({"interfaces", "Ethernet1", "tx-queues", "uc-5", "ecn", "max-threshold"}),
            "5:39");
}

TEST(Positions, OfAnObjectIsThatOfItsKey) {
  EXPECT_EQ(position({"interfaces", "Ethernet1"}), "4:18");
  EXPECT_EQ(position({"interfaces", "Ethernet1", "tx-queues", "uc-5"}), "5:5");
}

TEST(Positions, OfASetIsThatOfItsKey) {
  EXPECT_EQ(position({"class-maps", "qos", "A", "match"}), "7:32");
}

TEST(Positions, OfAPlaceThatIsLeftOutIsThatOfWhatIsAroundIt) {
  EXPECT_EQ(position({"interfaces", "Ethernet1", "tx-queues", "uc-5", "ecn", "weight"}), "5:14");
  EXPECT_EQ(position({"interfaces", "Ethernet1", "pfc", "priorities"}), "4:18");
  EXPECT_EQ(position({"comments", "if-Et1-uc-txq-5"}), "1:1");
  EXPECT_EQ(position({}), "1:1");
}

TEST(Positions, OfAKeyIsFoundHoweverTheTextSpellsIt) {
  EXPECT_EQ(position({"queue-names", "A/F"}), "3:13");
  EXPECT_EQ(position({"policy-maps", "qos", "__yang_"}), "6:25");
}

TEST(Positions, OfSeveralPlacesComeInTheirOrder) {
  const std::vector<Tokens> places{
      {"class-maps", "qos", "A"}, {"queue-names"}, {"class-maps", "qos", "A"}};
  EXPECT_EQ(positionsOfText(text, places), (std::vector<TextPosition>{{7, 26}, {2, 3}, {7, 26}}));
}

TEST(Positions, AreFoundInAFileOfManyBlocks) {
  std::string large = "{\"comments\": {\n";
  for (int i = 0; i < 20000; ++i) large += "\"c" + std::to_string(i) + "\": \"text\",\n";
  large += "\"last\": \"\"}}";
  const std::string path = testing::TempDir() + "/positions.json";
  std::ofstream(path) << large;
  const std::vector<Tokens> places{{"comments", "last"}, {"comments", "c7"}};
  EXPECT_EQ(positionsOfFile(path, places), (std::vector<TextPosition>{{20002, 9}, {9, 7}}));
}

// The file was written anew since its findings were made.
TEST(Positions, OfATextThatIsNoNativeDocumentAreThoseOfWhatIsThere) {
  const std::vector<Tokens> places{{"tc-to-tx-queue", "5"}, {"policy-maps", "qos", "a"}};
  EXPECT_EQ(positionsOfText(
                R"({"tc-to-tx-queue": {"wide": 3, "5": 1}, "policy-maps": [{"qos": 1}]})", places),
            (std::vector<TextPosition>{{1, 37}, {1, 41}}));
}

TEST(Positions, OfAFileThatIsNotThereAreRefused) {
  EXPECT_THROW(positionsOfFile("/nothing/here.json", {}), Refusal);
}

}  // namespace
}  // namespace host::positionsTest
