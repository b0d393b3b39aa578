#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host {
namespace {

using support::HostModel;
using support::HostRendered;
using testing::ElementsAre;
using testing::IsEmpty;

std::string tree(const std::string& queues) { return R"("queues":{"queue":[)" + queues + "]}"; }

TEST(QueuesJson, ShowsQueuesOfBothSchemesOfNames) {
  const HostModel built;
  built.queueIs("gold");
  built.queueIs("Ethernet1-unicast-3");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(),
            tree(R"({"config":{"name":"Ethernet1-unicast-3"},"name":"Ethernet1-unicast-3"},)"
                 R"({"config":{"name":"gold"},"name":"gold"})"));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(QueuesJson, LeavesOutAnEmptyNameWithoutAWord) {
  const HostModel built;
  built.queueIs("");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), "");
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(QueuesJson, LeavesOutNamesThatAStringCannotHold) {
  const HostModel built;
  built.queueIs("\x01-unicast-3");
  built.queueIs("\x02-multicast-12");
  built.queueIs("\x03-unicast-03");
  built.queueIs("\x04-broadcast-3");
  built.queueIs("\x05");
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), "");
  const auto warning = [](const std::string& name, const std::string& kind) {
    return "/openconfig-qos:qos/queues/queue[name='" + name +
           "']: a name that YANG strings can't hold: left out (from the " + kind + " \"" + name +
           "\")";
  };
  EXPECT_THAT(rendered.warnings, ElementsAre(warning("\\u0001-unicast-3", "tx queue"),
                                             warning("\\u0002-multicast-12", "tx queue"),
                                             warning("\\u0003-unicast-03", "queue name"),
                                             warning("\\u0004-broadcast-3", "queue name"),
                                             warning("\\u0005", "queue name")));
}

}  // namespace
}  // namespace host
