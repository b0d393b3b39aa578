#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"
#include "tests/support/HostModel.h"

namespace host::queueManagementProfilesPartTest {
namespace {

using QosOc::Config::QueueManagementProfile;
using support::hostFault;
using support::hostModelWith;
using support::hostPart;

constexpr const char* part = "queue-management-profiles";

TEST(QueueManagementProfilesPart, ReadsAndWritesEveryField) {
  const std::string text =
      R"({"p":{"config":{"name":"other"},"wred-uniform":{"drop":true,"enable-ecn":true,)"
      R"("max-drop-probability-percent":0,"max-threshold":18446744073709551615,)"
      R"("min-threshold":4294967296,"weight":4294967295}}})";
  const Model model = hostModelWith(part, text);
  EXPECT_EQ(hostPart(model, part), text);
  QueueManagementProfile profile("p");
  profile.config.name = "other";
  profile.wredUniform = {4294967296u, 18446744073709551615u, true, true, 4294967295u, 0};
  EXPECT_EQ(model.queueManagementProfiles->queueManagementProfile("p"), profile);
}

TEST(QueueManagementProfilesPart, TakesWhatIsLeftOutAsDefault) {
  const Model model = hostModelWith(part, R"({"p": {}})");
  EXPECT_EQ(model.queueManagementProfiles->queueManagementProfile("p"),
            QueueManagementProfile("p"));
  EXPECT_EQ(hostPart(model, part),
            R"({"p":{"config":{"name":""},"wred-uniform":{"drop":false,"enable-ecn":false,)"
            R"("max-drop-probability-percent":100,"max-threshold":0,"min-threshold":0,)"
            R"("weight":0}}})");
}

TEST(QueueManagementProfilesPart, RefusesAProbabilityAbove100) {
  EXPECT_EQ(hostFault([] {
              hostModelWith(part,
                            R"({"p": {"wred-uniform": {"max-drop-probability-percent": 101}}})");
            }),
            "/queue-management-profiles/p/wred-uniform/max-drop-probability-percent: expected a "
            "whole number from 0 to 100, not 101");
}

}  // namespace
}  // namespace host::queueManagementProfilesPartTest
