#include "host/TextWindow.h"

#include <gtest/gtest.h>

#include <memory>

namespace host::textWindowTest {
namespace {

TEST(TextWindow, ShowsATextBlockByBlock) {
  TextWindow window("abcdefg", 3);
  std::string blocks;
  while (window.more()) {
    blocks += std::string(window.rest()) + ' ';
    window.pass(window.rest().size());
  }
  EXPECT_EQ(blocks, "abc def g ");
  EXPECT_TRUE(window.isEnd(window.at()));
  EXPECT_EQ(*window.at(), '\0');
}

TEST(TextWindow, HoldsWhatIsNotPassed) {
  TextWindow window("abcdefghijklmnopqrstuvwxyz", 3);
  window.require(2);
  window.pass(1);
  window.require(20);
  EXPECT_TRUE(window.rest().starts_with("bcdefghijklmnopqrstu"));
  window.require(100);
  EXPECT_EQ(window.rest(), "bcdefghijklmnopqrstuvwxyz");
  EXPECT_FALSE(window.more());
  EXPECT_EQ(window.rest(), "bcdefghijklmnopqrstuvwxyz");
}

TEST(TextWindow, DistinguishesItsEndFromANulOfTheText) {
  TextWindow window(std::string_view("a\0b", 3), 2);
  ASSERT_TRUE(window.more());
  EXPECT_EQ(window.at()[1], '\0');
  EXPECT_FALSE(window.isEnd(window.at() + 1));
  EXPECT_TRUE(window.isEnd(window.at() + 2));
}

TEST(TextWindow, ReadsAFileFromWhereItStands) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::tmpfile(), &std::fclose);
  ASSERT_TRUE(file);
  std::fputs("0123456789", file.get());
  std::fseek(file.get(), 4, SEEK_SET);
  TextWindow window(file.get(), 4);
  window.require(100);
  EXPECT_EQ(window.rest(), "456789");
}

}  // namespace
}  // namespace host::textWindowTest
