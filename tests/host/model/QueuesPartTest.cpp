#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"
#include "tests/support/HostModel.h"

namespace host::queuesPartTest {
namespace {

using QosOc::Config::Queue;
using QosOc::Config::QueueEcnConfig;
using support::hostFault;
using support::hostModelWith;
using support::hostPart;

constexpr const char* part = "queues";

TEST(QueuesPart, ReadsAndWritesEveryField) {
  const std::string text =
      R"({"q":{"config":{"bandwidth":100,"name":"other","strict-priority":true},"ecn-config":{)"
      R"("max-drop-probability-percent":100,"max-threshold":4294967294,"min-threshold":7,)"
      R"("threshold-unit":255,"weight":4294967295}}})";
  const Model model = hostModelWith(part, text);
  EXPECT_EQ(hostPart(model, part), text);
  Queue queue("q");
  queue.config.name = "other";
  queue.config.strictPriority = true;
  queue.config.bandwidth = QosOc::PercentType(100);
  queue.ecnConfig = QueueEcnConfig{100, 4294967294u, 7u, 255, 4294967295u};
  EXPECT_EQ(model.queues->q("q"), queue);
}

TEST(QueuesPart, TellsAnAbsentEcnBlockFromADefaultOne) {
  const std::string config = R"("config":{"bandwidth":null,"name":"","strict-priority":false})";
  const std::string text =
      R"({"absent":{)" + config + R"(,"ecn-config":null},"default":{)" + config +
      R"(,"ecn-config":{"max-drop-probability-percent":0,"max-threshold":0,"min-threshold":0,)"
      R"("threshold-unit":0,"weight":0}}})";
  const Model model = hostModelWith(part, text);
  EXPECT_EQ(hostPart(model, part), text);
  EXPECT_FALSE(model.queues->q("absent").ecnConfig);
  EXPECT_EQ(model.queues->q("default").ecnConfig, QueueEcnConfig());
}

TEST(QueuesPart, TellsABandwidthOfZeroFromNone) {
  const Model model = hostModelWith(part, R"({"q": {"config": {"bandwidth": 0}}})");
  EXPECT_EQ(model.queues->q("q").config.bandwidth, QosOc::PercentType(0));
  EXPECT_NE(hostPart(model, part).find(R"("bandwidth":0)"), std::string::npos);
}

TEST(QueuesPart, TakesWhatIsLeftOutAsAbsentOrDefault) {
  const Model model = hostModelWith(part, R"({"": {}, "q": {}, "ecn": {"ecn-config": {}}})");
  EXPECT_EQ(model.queues->q().members(), 3u);
  EXPECT_EQ(model.queues->q("q"), Queue("q"));
  EXPECT_EQ(model.queues->q("ecn").ecnConfig, QueueEcnConfig());
}

TEST(QueuesPart, RefusesNumbersThatTheRecordsCannotHold) {
  const auto faultOf = [](const std::string& queue) {
    return hostFault([&] { hostModelWith(part, R"({"q": )" + queue + "}"); });
  };
  EXPECT_EQ(faultOf(R"({"config": {"bandwidth": 101}})"),
            "/queues/q/config/bandwidth: expected a whole number from 0 to 100 or null, not 101");
  EXPECT_EQ(faultOf(R"({"ecn-config": {"min-threshold": 4294967295}})"),
            "/queues/q/ecn-config/min-threshold: expected a whole number from 0 to 4294967294, "
            "not 4294967295");
  EXPECT_EQ(faultOf(R"({"ecn-config": {"max-threshold": 4294967295}})"),
            "/queues/q/ecn-config/max-threshold: expected a whole number from 0 to 4294967294, "
            "not 4294967295");
  EXPECT_EQ(faultOf(R"({"ecn-config": {"max-drop-probability-percent": 101}})"),
            "/queues/q/ecn-config/max-drop-probability-percent: expected a whole number from 0 to "
            "100, not 101");
  EXPECT_EQ(faultOf(R"({"ecn-config": {"threshold-unit": 256}})"),
            "/queues/q/ecn-config/threshold-unit: expected a whole number from 0 to 255, not 256");
  EXPECT_EQ(faultOf(R"({"ecn-config": {"weight": 4294967296}})"),
            "/queues/q/ecn-config/weight: expected a whole number from 0 to 4294967295, not "
            "4294967296");
  EXPECT_EQ(faultOf(R"({"config": {"strict-priority": 1}})"),
            "/queues/q/config/strict-priority: expected true or false, not 1");
}

}  // namespace
}  // namespace host::queuesPartTest
