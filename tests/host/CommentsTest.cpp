// The section "comments": how it is mounted, and what each change writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::commentsTest {
namespace {

using support::HostDevice;
using support::hostFault;
using support::hostOperation;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* device = R"({"comments": {"qos-profile-P": "text", "b": ""}})";

std::string faultOf(const std::string& section) {
  return hostFault([&] { HostDevice d(R"({"comments": )" + section + "}"); });
}

TEST(Comments, HoldATextForEachKey) {
  const HostDevice d(R"({"comments": {"if-Et7/1-unicast-3": "{\"a\":\n1}", "": "x", "e": ""}})");
  EXPECT_EQ(d.native.cliConfig->comment().members(), 3u);
  EXPECT_EQ(d.native.cliConfig->comment("if-Et7/1-unicast-3"), "{\"a\":\n1}");
  EXPECT_EQ(d.native.cliConfig->comment(""), "x");
  EXPECT_NE(d.native.cliConfig->comment().find("e"), nullptr);
}

TEST(Comments, RefuseWhatTheyCannotHold) {
  EXPECT_EQ(faultOf("[]"), "/comments: expected an object, not an array");
  EXPECT_EQ(faultOf(R"({"k": 1})"), "/comments/k: expected a string, not 1");
  EXPECT_EQ(faultOf(R"({"k": {}})"), "/comments/k: expected a string, not an object");
  EXPECT_EQ(faultOf(R"({"k": null})"),
            "/comments/k: null is never a value here: expected a string");
  EXPECT_EQ(faultOf(R"({"k": "x", "k": "x"})"), "/comments/k: the same key twice");
}

TEST(Comments, ACommentIsAssigned) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/comments/new~1one", R"("x")"), ElementsAre("comment new/one"));
  EXPECT_EQ(d.native.cliConfig->comment("new/one"), "x");
  for (const char* op : {"add", "replace"}) {
    EXPECT_THAT(d.heardFrom(op, "/comments/qos-profile-P", R"("text")"), IsEmpty());
  }
  EXPECT_THAT(d.heardFrom("replace", "/comments/qos-profile-P", R"("other")"),
              ElementsAre("comment qos-profile-P"));
  EXPECT_THAT(d.heardFrom("remove", "/comments/b"), ElementsAre("comment b"));
  EXPECT_EQ(d.native.cliConfig->comment().find("b"), nullptr);
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(Comments, CanBeAddedAlsoWhenTheDocumentLeftThemOut) {
  HostDevice d;
  EXPECT_THAT(d.heardFrom("add", "/comments/k", R"("x")"), ElementsAre("comment k"));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(Comments, AsAWholeAreDoneOneByOne) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    EXPECT_THAT(d.heardFrom(op, "/comments", R"({"z": "1", "b": "2", "a": "3"})"),
                ElementsAre("comment qos-profile-P", "comment z", "comment b", "comment a"));
    EXPECT_THAT(d.heardFrom(op, "/comments", R"({"a": "3", "b": "2", "z": "1"})"), IsEmpty());
    EXPECT_THAT(d.heardFrom("remove", "/comments"),
                ElementsAre("comment a", "comment b", "comment z"));
    EXPECT_THAT(d.heardFrom("remove", "/comments"), IsEmpty());
  }
}

TEST(Comments, TestSeesWhatTheNativeSideHolds) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("test", "/comments", R"({"b": "", "qos-profile-P": "text"})"), "");
  EXPECT_EQ(d.reportOf("test", "/comments/b", R"("x")"),
            "refused: /comments/b: test failed: expected \"x\", and \"\" is there");
  EXPECT_EQ(d.reportOf("test", "/comments/c", R"("")"), "refused: /comments/c: nothing is there");
}

TEST(Comments, RefuseChangesThatDoNotFit) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("remove", "/comments/c"), "refused: /comments/c: nothing is there");
  EXPECT_EQ(d.reportOf("replace", "/comments/c", R"("x")"),
            "refused: /comments/c: nothing is there");
  EXPECT_EQ(d.reportOf("add", "/comments/b/x", R"("x")"),
            "refused: /comments/b/x: nothing can stand below \"b\"");
  EXPECT_EQ(d.reportOf("add", "/comments/b", "null"),
            "refused: /comments/b: null is never a value here: expected a string");
  EXPECT_THAT(d.heardFrom("[" + hostOperation("remove", "/comments/b") + "," +
                          hostOperation("replace", "/comments/b", R"("x")") + "]"),
              IsEmpty());
}

}  // namespace
}  // namespace host::commentsTest
