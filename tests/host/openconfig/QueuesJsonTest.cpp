#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::queuesJsonTest {
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

TEST(QueuesJson, ShowsNativeSettings) {
  const HostModel built;
  QosOc::Config::Queue strict("a");
  strict.config.name = "other";
  strict.config.strictPriority = true;
  built.model.queues->qIs(strict);
  QosOc::Config::Queue share("b");
  share.config.bandwidth = QosOc::PercentType(0);
  built.model.queues->qIs(share);
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(),
            tree(R"({"config":{"name":"a","qosoc-augments:strict-priority":true},"name":"a"},)"
                 R"({"config":{"name":"b","qosoc-augments:bandwidth":0},"name":"b"})"));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(QueuesJson, ShowsEverySettingOfAnEcnBlock) {
  const HostModel built;
  QosOc::Config::Queue full("a");
  full.ecnConfig = QosOc::Config::QueueEcnConfig{100, 4294967294u, 7u, 255, 4294967295u};
  built.model.queues->qIs(full);
  QosOc::Config::Queue blank("b");
  blank.ecnConfig = QosOc::Config::QueueEcnConfig();
  built.model.queues->qIs(blank);
  EXPECT_EQ(
      HostRendered(built).tree(),
      tree(R"({"config":{"name":"a"},"name":"a","qosoc-augments:ecn":{"config":{)"
           R"("max-drop-probability-percent":100,"max-threshold":4294967294,"min-threshold":7,)"
           R"("threshold-unit":255,"weight":4294967295}}},)"
           R"({"config":{"name":"b"},"name":"b","qosoc-augments:ecn":{"config":{)"
           R"("max-drop-probability-percent":0,"max-threshold":0,"min-threshold":0,)"
           R"("threshold-unit":0,"weight":0}}})"));
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
}  // namespace host::queuesJsonTest
