#include "host/SharedTexts.h"

#include <gtest/gtest.h>

#include <string>

namespace host::sharedTextsTest {
namespace {

TEST(SharedTexts, GiveEqualTextsOneBuffer) {
  SharedTexts texts;
  const Rok::String first = texts.of("edge-in");
  const Rok::String second = texts.of(std::string("edge-") + "in");
  EXPECT_EQ(first, "edge-in");
  EXPECT_TRUE(first.shares(second));
}

TEST(SharedTexts, KeepManyTextsApart) {
  SharedTexts texts;
  std::vector<Rok::String> made;
  for (int i = 0; i < 1000; ++i) made.push_back(texts.of("name-" + std::to_string(i)));
  for (int i = 0; i < 1000; ++i) {
    const std::string text = "name-" + std::to_string(i);
    EXPECT_EQ(made[i], text);
    EXPECT_TRUE(made[i].shares(texts.of(text))) << text;
  }
}

TEST(SharedTexts, HoldAnyText) {
  SharedTexts texts;
  const std::string_view nul("a\0b", 3);
  EXPECT_EQ(texts.of(nul), nul);
  EXPECT_EQ(texts.of("a"), "a");
  EXPECT_EQ(texts.of(""), "");
}

}  // namespace
}  // namespace host::sharedTextsTest
