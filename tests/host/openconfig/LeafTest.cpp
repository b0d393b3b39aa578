// What stands at the ends of the OpenConfig document.
#include "host/openconfig/Leaf.h"

#include <gtest/gtest.h>

#include "host/JsonWriter.h"

namespace host::leafTest {
namespace {

std::string written(LeafType type, const LeafValue& value) {
  JsonWriter out(Layout::compact);
  writeLeaf(out, type, value);
  return out.take();
}

TEST(Leaves, AreWrittenByTheirTypes) {
  EXPECT_EQ(written(LeafType::boolean, false), "false");
  EXPECT_EQ(written(LeafType::decimal64, std::string("1.5")), R"("1.5")");
  EXPECT_EQ(written(LeafType::enumeration, std::string_view("STRICT")), R"("STRICT")");
  EXPECT_EQ(written(LeafType::uint8List, std::vector<unsigned>{2, 1}), "[2,1]");
  EXPECT_EQ(written(LeafType::uint32, std::uint64_t{4294967295u}), "4294967295");
  EXPECT_EQ(written(LeafType::uint64, std::uint64_t{18446744073709551615u}),
            R"("18446744073709551615")")
      << "numbers of 64 bits are texts";
}

// The characters on both sides of each border, and none that JSON texts can't carry.
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
