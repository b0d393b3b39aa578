// Values of leaves as documents have them.
#include "host/openconfig/LeafText.h"

#include <gtest/gtest.h>

namespace host::leafTextTest {
namespace {

std::string canonical(LeafType type, const std::string& text) {
  const auto value = leafFrom(std::string_view(text), type, {});
  return value ? leafText(type, *value) : "none";
}

TEST(LeafTexts, OfDecimalNumbersAreCanonical) {
  const auto decimal = [](const std::string& text) { return canonical(LeafType::decimal64, text); };
  EXPECT_EQ(decimal("0"), R"("0.0")");
  EXPECT_EQ(decimal("00012.3400"), R"("12.34")");
  EXPECT_EQ(decimal("-7"), R"("-7.0")");
  EXPECT_EQ(decimal("-0.5"), R"("-0.5")");
  EXPECT_EQ(decimal("0.000000001"), R"("0.000000001")");
  EXPECT_EQ(decimal("9223372036.854775807"), R"("9223372036.854775807")");
  EXPECT_EQ(decimal("-9223372036.854775808"), R"("-9223372036.854775808")");
  for (const char* other : {"", "-", ".5", "5.", "1e3", "0x1", " 1", "1 ", "+-1", "0.0000000001",
                            "9223372036.854775808", "99999999999999999999"}) {
    EXPECT_EQ(decimal(other), "none") << other;
  }
}

TEST(LeafTexts, OfNumbersOf64BitsAreCanonical) {
  const auto number = [](const std::string& text) { return canonical(LeafType::uint64, text); };
  EXPECT_EQ(number("0"), R"("0")");
  EXPECT_EQ(number("000"), R"("0")");
  EXPECT_EQ(number("007"), R"("7")");
  EXPECT_EQ(number("18446744073709551615"), R"("18446744073709551615")");
  for (const char* other : {"", "-1", "1.0", "0x1", " 1", "18446744073709551616"}) {
    EXPECT_EQ(number(other), "none") << other;
  }
  EXPECT_FALSE(leafFrom(std::uint64_t{7}, LeafType::uint64, {})) << "a number is no text";
}

TEST(LeafTexts, OfIdentitiesNameTheirModule) {
  EXPECT_EQ(canonical(LeafType::identityref, "iana-if-type:ethernetCsmacd"),
            R"("iana-if-type:ethernetCsmacd")");
  for (const char* other : {"", "x", ":x", "x:"}) {
    EXPECT_EQ(canonical(LeafType::identityref, other), "none") << other;
  }
}

TEST(LeafTexts, AreFoundByTheirPaths) {
  std::vector<LeafText> leaves{{"/b", "1"}, {"/a-", "2"}, {"/a", "3"}};
  sortLeaves(leaves);
  EXPECT_EQ(leaves.front().path, "/a");
  EXPECT_EQ(findLeaf(leaves, "/b")->value, "1");
  EXPECT_EQ(findLeaf(leaves, "/c"), nullptr);
  EXPECT_EQ(findLeaf(leaves, "/a/"), nullptr);
}

}  // namespace
}  // namespace host::leafTextTest
