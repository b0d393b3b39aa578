// Random paths take in what their texts match. The fuzz target `paths` does the same for longer.
#include <gtest/gtest.h>

#include <random>

#include "tests/support/GnmiPathCheck.h"

namespace server::randomPathsTest {
namespace {

TEST(RandomPaths, TakeInWhatTheirTextsMatch) {
  const support::GnmiPathCheck check;
  std::minstd_rand random(1);
  for (int i = 0; i < 3000; ++i) {
    std::string bytes(3 + random() % 16, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random() >> 8);
    ASSERT_EQ(check.check(bytes), "") << i;
  }
}

}  // namespace
}  // namespace server::randomPathsTest
