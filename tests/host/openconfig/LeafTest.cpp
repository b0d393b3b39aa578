// What stands at the ends of the OpenConfig document.
#include <gtest/gtest.h>

#include "host/openconfig/LeafTable.h"

namespace host::leafTest {
namespace {

TEST(Leaves, AreWrittenByTheirTypes) {
  EXPECT_EQ(leafText(LeafType::boolean, false), "false");
  EXPECT_EQ(leafText(LeafType::decimal64, std::string("1.5")), R"("1.5")");
  EXPECT_EQ(leafText(LeafType::enumeration, std::string_view("STRICT")), R"("STRICT")");
  EXPECT_EQ(leafText(LeafType::uint8List, std::vector<unsigned>{2, 1}), "[2,1]");
  EXPECT_EQ(leafText(LeafType::uint32, std::uint64_t{4294967295u}), "4294967295");
  EXPECT_EQ(leafText(LeafType::uint64, std::uint64_t{18446744073709551615u}),
            R"("18446744073709551615")")
      << "numbers of 64 bits are texts";
}

// The characters on both sides of each border, and none that JSON texts can't carry.
struct Sample {
  unsigned char number = 7;
  bool isOn = false;
};
LeafValue number(const Sample& sample, const Keys& /*keys*/, const Faults& /*faults*/) {
  return std::uint64_t{sample.number};
}

TEST(Leaves, MayStandOnlyWhenTheirConditionHoldsWhateverTheirType) {
  const Leaf<Sample> leaf{
      "n", {LeafType::uint8, number}, nullptr, {[](const Sample& s) { return s.isOn; }, " is off"}};
  std::string reason;
  const Faults faults{[&](const std::string& told) { reason = told; }};
  EXPECT_TRUE(isAbsent(leafValue(leaf, Sample{7, false}, {}, faults)));
  EXPECT_EQ(reason, "7 is off");
  EXPECT_EQ(leafValue(leaf, Sample{7, true}, {}, faults), LeafValue(std::uint64_t{7}));
}

TEST(Leaves, AnEmptyTextIsNoneAlsoOneThatWasMade) {
  const Leaf<Sample> leaf{"n", {LeafType::decimal64, [](const Sample&, const Keys&, const Faults&) {
                                  return LeafValue(std::string());
                                }}};
  EXPECT_TRUE(isAbsent(leafValue(leaf, Sample(), {}, {})));
}

TEST(YangStrings, HoldNeitherNoncharactersNorMostControlCharacters) {
  for (const char* held :
       {"", "plain", "\t", "\n", "\r", " ", "\x7f", "\xc2\x80", "\xef\xb7\x8f", "\xef\xb7\xb0",
        "\xef\xbf\xbd", "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbd"}) {
    EXPECT_TRUE(isYangString(held)) << held;
  }
  for (const char* other : {"\x01", "plain\x01", "\b", "\x0b", "\x0c", "\x0e", "\x1f",
                            "\xef\xb7\x90", "\xef\xb7\xaf", "\xef\xbf\xbe", "\xef\xbf\xbf",
                            "\xf0\x9f\xbf\xbe", "\xf4\x8f\xbf\xbe", "\xf4\x8f\xbf\xbf", "\x80"}) {
    EXPECT_FALSE(isYangString(other)) << other;
  }
}

}  // namespace
}  // namespace host::leafTest
