#include "host/Roots.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Roots, ComeInOneOrder) {
  std::vector<std::string_view> names;
  for (const Root& root : roots()) names.push_back(root.name);
  EXPECT_THAT(names, ElementsAre("class-map", "acl", "class-action", "interface-classifier",
                                 "forwarding-group", "queue", "pfc", "interface-pfc",
                                 "queue-management", "scheduler-policy"));
}

TEST(Roots, AreFoundByName) {
  ASSERT_NE(rootNamed("class-map"), nullptr);
  EXPECT_NE(rootNamed("class-map")->factory, nullptr);
  EXPECT_NE(rootNamed("acl"), nullptr);
  EXPECT_EQ(rootNamed("class-maps"), nullptr);
}

TEST(Roots, BringTheModelInLineWithTheNativeSide) {
  const support::HostDevice device(
      R"({"class-maps": {"qos": {"__yang_[c]_[]": {"match": ["ip-access-group"]}}}})");
  const Model model;
  std::vector<std::string> reports;
  const auto built = buildRoots({}, device.native, model,
                                [&](const std::string& line) { reports.push_back(line); });
  EXPECT_EQ(built.size(), 1u);
  EXPECT_TRUE(model.classifiers->classifier("c"));
  EXPECT_THAT(reports, IsEmpty());
}

TEST(Roots, AreBuiltByName) {
  const Native native;
  const Model model;
  const std::vector<std::string> none{"acl"};
  EXPECT_THAT(buildRoots(none, native, model, [](const std::string&) {}), IsEmpty());
  const std::vector<std::string> one{"class-map"};
  EXPECT_EQ(buildRoots(one, native, model, [](const std::string&) {}).size(), 1u);
}

TEST(Roots, ThatThrowAreReportedAndLeftOut) {
  const Native native;
  native.aclConfig->cmapTypeDel(Qos::mapQos);
  const Model model;
  std::vector<std::string> reports;
  const auto built =
      buildRoots({}, native, model, [&](const std::string& line) { reports.push_back(line); });
  EXPECT_THAT(built, IsEmpty());
  EXPECT_THAT(reports, ElementsAre("root class-map: null argument: cmapTypeConfig"));
}

}  // namespace
}  // namespace host
