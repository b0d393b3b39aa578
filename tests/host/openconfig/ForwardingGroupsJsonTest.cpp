#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::forwardingGroupsJsonTest {
namespace {

using support::HostModel;
using support::HostRendered;
using testing::ElementsAre;
using testing::IsEmpty;

std::string tree(const std::string& groups) {
  return R"("forwarding-groups":{"forwarding-group":[)" + groups + "]}";
}

TEST(ForwardingGroupsJson, ShowsGroupsWithTheirQueues) {
  const HostModel built;
  built.forwardingGroupIs("b", "q/1");
  built.forwardingGroupIs("a", "");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), tree(R"({"config":{"name":"a"},"name":"a"},)"
                                  R"({"config":{"name":"b","output-queue":"q/1"},"name":"b"})"));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(ForwardingGroupsJson, MakesTheConfigFitTheKey) {
  const HostModel built;
  built.model.forwardingGroups->forwardingGroupIs("a")->configIs({"other", ""});
  built.model.forwardingGroups->forwardingGroupIs("b");
  EXPECT_EQ(HostRendered(built).tree(), tree(R"({"config":{"name":"a"},"name":"a"},)"
                                             R"({"config":{"name":"b"},"name":"b"})"));
}

TEST(ForwardingGroupsJson, LeavesOutAnEmptyNameWithoutAWord) {
  const HostModel built;
  built.forwardingGroupIs("", "q");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), "");
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(ForwardingGroupsJson, LeavesOutNamesThatAStringCannotHold) {
  const HostModel built;
  built.forwardingGroupIs("bell\a", "q");
  built.forwardingGroupIs("f", "tab\t\x01");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), tree(R"({"config":{"name":"f"},"name":"f"})"));
  const std::string list = "/openconfig-qos:qos/forwarding-groups/forwarding-group";
  EXPECT_THAT(
      rendered.warnings,
      ElementsAre(list + "[name='bell\\u0007']: a name that YANG strings can't hold: left out "
                         "(from the forwarding group \"bell\\u0007\")",
                  list + "[name='f']/config/output-queue: \"tab\\u0009\\u0001\" is a name that "
                         "YANG strings can't hold: left out (from the queue name "
                         "\"tab\\u0009\\u0001\")"));
}

}  // namespace
}  // namespace host::forwardingGroupsJsonTest
