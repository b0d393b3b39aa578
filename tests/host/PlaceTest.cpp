#include "host/Place.h"

#include <gtest/gtest.h>

namespace host::placeTest {
namespace {

TEST(Writes, ReportsWhatLeavesAWriteAndGoesOn) {
  std::vector<std::string> reports;
  Writes writes([&](const std::string& what) { reports.push_back(what); });
  int done = 0;
  writes([&] { ++done; });
  writes([] { Rok::throwRangeException("no such queue"); });
  writes([] { throw Rok::MutatorReinstantiatingException("text", "aclConfig", 130); });
  writes([] { throw Rok::MutatorArgNullPointerException("text", "cmapConfig", 130); });
  writes([&] { ++done; });
  EXPECT_EQ(done, 2);
  EXPECT_EQ(reports, (std::vector<std::string>{"range: no such queue", "reinstantiating: aclConfig",
                                               "null argument: cmapConfig"}));
}

TEST(Writes, LetsOtherExceptionsPass) {
  Writes writes([](const std::string&) {});
  EXPECT_THROW(writes([] { throw std::logic_error("a fault of the program"); }), std::logic_error);
}

TEST(Place, OfALeafCannotBeWrittenBelow) {
  LeafPlace leaf(Value("text"));
  Writes writes([](const std::string&) {});
  EXPECT_EQ(leaf.value().text(), "text");
  EXPECT_FALSE(leaf.has("x"));
  EXPECT_THROW(leaf.put("x", Value(), writes), std::logic_error);
  EXPECT_THROW(leaf.erase("x", writes), std::logic_error);
}

}  // namespace
}  // namespace host::placeTest
