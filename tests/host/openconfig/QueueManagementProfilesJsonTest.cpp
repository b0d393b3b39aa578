#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::queueManagementProfilesJsonTest {
namespace {

using QosOc::Config::QueueManagementProfile;
using support::HostModel;
using support::HostRendered;
using testing::ElementsAre;
using testing::IsEmpty;

std::string tree(const std::string& profiles) {
  return R"("queue-management-profiles":{"queue-management-profile":[)" + profiles + "]}";
}

void profileIs(const HostModel& built, const QueueManagementProfile& profile) {
  built.model.queueManagementProfiles->queueManagementProfileIs(profile);
}

TEST(QueueManagementProfilesJson, ShowsWideNumbersAsTexts) {
  const HostModel built;
  QueueManagementProfile profile("p");
  profile.wredUniform = {4294967296u, 18446744073709551615u, true, false, 4294967295u, 99};
  profileIs(built, profile);
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(),
            tree(R"({"config":{"name":"p"},"name":"p","wred":{"uniform":{"config":{"drop":false,)"
                 R"("enable-ecn":true,"max-drop-probability-percent":99,)"
                 R"("max-threshold":"18446744073709551615","min-threshold":"4294967296",)"
                 R"("weight":4294967295}}}})"));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(QueueManagementProfilesJson, ShowsEverySettingOfANewProfile) {
  const HostModel built;
  QueueManagementProfile profile("p");
  profile.config.name = "other";
  profileIs(built, profile);
  profileIs(built, QueueManagementProfile(""));
  EXPECT_EQ(HostRendered(built).tree(),
            tree(R"({"config":{"name":"p"},"name":"p","wred":{"uniform":{"config":{"drop":false,)"
                 R"("enable-ecn":false,"max-drop-probability-percent":100,"max-threshold":"0",)"
                 R"("min-threshold":"0","weight":0}}}})"));
}

TEST(QueueManagementProfilesJson, LeavesOutNamesThatAStringCannotHold) {
  const HostModel built;
  profileIs(built, QueueManagementProfile("it's\a"));
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.tree(), "");
  EXPECT_THAT(
      rendered.warnings,
      ElementsAre("/openconfig-qos:qos/queue-management-profiles/queue-management-profile"
                  "[name=\"it's\\u0007\"]: a name that YANG strings can't hold: left out (from the "
                  "QoS profile \"__YANG_QMP_[it's\\u0007]\")"));
}

}  // namespace
}  // namespace host::queueManagementProfilesJsonTest
