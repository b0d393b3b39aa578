// Documents of both kinds, as the leaves that they stand for.
#include "host/LeavesOfText.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host::leavesOfTextTest {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

LeavesOfText leavesOf(const std::string& text, const std::string& only = "/") {
  return leavesOfText("f.json", text, {}, Subtree(only));
}

constexpr const char* native = R"({"queue-names": {"EF": 3, "AF": 2}})";
constexpr const char* openConfig = R"({"openconfig-qos:qos":{"queues":{"queue":[
    {"name":"AF","config":{"name":"AF"}},{"name":"EF","config":{"name":"EF"}}]}}})";

const std::string legal =
    " (legal: classifiers, forwarding-groups, interfaces, qosoc-augments:pfc, "
    "queue-management-profiles, queues, scheduler-policies)";

TEST(LeavesOfTexts, OfBothKindsAreTheSameForTheSameModel) {
  EXPECT_EQ(leavesOf(native).leaves.size(), 4u);
  EXPECT_EQ(leavesOf(native).leaves, leavesOf(openConfig).leaves);
}

TEST(LeavesOfTexts, StandWithinTheSubtree) {
  for (const char* text : {native, openConfig}) {
    EXPECT_THAT(leavesOf(text, "/qos/queues/queue[name=EF]/name").leaves,
                ElementsAre(LeafText{"/qos/queues/queue[name=EF]/name", "\"EF\""}));
    EXPECT_THAT(leavesOf(text, "/qos/classifiers").leaves, ElementsAre());
  }
}

TEST(LeavesOfTexts, NameTheFileOfAFault) {
  EXPECT_THAT(leavesOf(R"({"queue-names": {"EF": 300}})").faults,
              ElementsAre(HasSubstr(
                  "f.json:1:24: /queue-names/EF: expected a whole number from 0 to 255")));
  EXPECT_THAT(leavesOf(R"({"openconfig-qos:qos":{"x":1,"y":1}})").faults,
              ElementsAre("f.json:1:24: /qos/x: unknown member" + legal,
                          "f.json:1:30: /qos/y: unknown member" + legal));
}

TEST(LeavesOfTexts, TranslateNoDocumentWithACommentThatEndsTheProcess) {
  EXPECT_THAT(
      leavesOf(R"({"interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {}}}}, "comments":
          {"if-Et1-uc-txq-3": "{\"MetaData-OpenConfig\":{\"scheduler-policy\":1}}"}})")
          .faults,
      ElementsAre("f.json: /comments/if-Et1-uc-txq-3: at /MetaData-OpenConfig/scheduler-policy "
                  "of this comment: expected an object; it ends the program that translates it"));
}

TEST(LeavesOfTexts, RefuseADocumentThatARootRaisesOver) {
  EXPECT_THAT(leavesOf(R"({"forwarding-groups": {"voice": 17}})").faults,
              ElementsAre(HasSubstr("f.json: root forwarding-group: range: ")));
}

TEST(LeavesOfTexts, WarnOfWhatOpenConfigCannotHold) {
  const auto read = leavesOf(R"({"queue-names": {"\u0001": 3}})");
  EXPECT_THAT(read.faults, ElementsAre());
  EXPECT_THAT(read.warnings,
              ElementsAre("f.json: /openconfig-qos:qos/queues/queue[name='\\u0001']: a name that "
                          "YANG strings can't hold: left out (from the queue name \"\\u0001\")"));
}

}  // namespace
}  // namespace host::leavesOfTextTest
