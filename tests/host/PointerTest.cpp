#include "host/Pointer.h"

#include <gtest/gtest.h>

namespace host::pointerTest {
namespace {

TEST(Pointer, NamesTheWholeDocumentByNoTokens) {
  EXPECT_EQ(pointerTokens(""), Tokens{});
  EXPECT_EQ(shownPointer({}), "(document)");
}

TEST(Pointer, EscapesSlashAndTilde) {
  const Tokens tokens{"class-maps", "a/b~c", "", "~1"};
  EXPECT_EQ(pointerTokens("/class-maps/a~1b~0c//~01"), tokens);
  EXPECT_EQ(shownPointer(tokens), "/class-maps/a~1b~0c//~01");
  EXPECT_EQ(pointerText(tokens), "/class-maps/a~1b~0c//~01");
}

TEST(Pointer, BeginsWithASlash) {
  EXPECT_EQ(pointerTokens("class-maps"), std::nullopt);
  EXPECT_EQ(pointerTokens(" /class-maps"), std::nullopt);
}

TEST(Pointer, HasNoOtherEscapes) {
  EXPECT_EQ(pointerTokens("/a~2"), std::nullopt);
  EXPECT_EQ(pointerTokens("/a~"), std::nullopt);
  EXPECT_EQ(pointerTokens("/a~/b"), std::nullopt);
}

TEST(Pointer, IsWrittenWhole) {
  EXPECT_EQ(pointerText({}), "");
  EXPECT_EQ(pointerText(Tokens{"a\nb", std::string(1000, 'x')}), "/a\nb/" + std::string(1000, 'x'));
  EXPECT_EQ(pointerTokens(pointerText(Tokens(17, "~/"))), Tokens(17, "~/"));
}

TEST(Pointer, IsShownOnOneShortLine) {
  EXPECT_EQ(shownPointer(Tokens{"a\nb"}), "/a\\u000ab");
  EXPECT_EQ(shownPointer(Tokens{std::string(1000, 'x')}),
            "/" + std::string(60, 'x') + "...(1000 bytes)");
  EXPECT_EQ(shownPointer(Tokens(17, "a")), "/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/a/...");
}

}  // namespace
}  // namespace host::pointerTest
