// The native service-policy records.
#include "models/native/ServicePolicy.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

#include "models/native/QosInput.h"
#include "tests/support/NotificationLog.h"

namespace Qos::servicePolicyTest {
namespace {

using support::NotificationLog;
using testing::ElementsAre;

TEST(ServicePolicyKey, TagAndNameMakeTheKey) {
  const ServicePolicyKey key{1, "a"};
  EXPECT_EQ(key, (ServicePolicyKey{1, "a"}));
  EXPECT_NE(key, (ServicePolicyKey{2, "a"}));
  EXPECT_NE(key, (ServicePolicyKey{1, "b"}));
  EXPECT_EQ(ServicePolicyKey().keyTag, 0u);
  EXPECT_EQ(ServicePolicyKey().pmapName, "");
}

TEST(ServicePolicyKey, TheHashFollowsSeedTagAndName) {
  const ServicePolicyKey key{1, "a"};
  EXPECT_EQ(key.hash(7), (ServicePolicyKey{1, "a"}.hash(7)));
  EXPECT_NE(key.hash(7), key.hash(8));
  EXPECT_NE(key.hash(7), (ServicePolicyKey{2, "a"}.hash(7)));
  EXPECT_NE(key.hash(7), (ServicePolicyKey{1, "b"}.hash(7)));
  EXPECT_NE((ServicePolicyKey{0x0101, "a"}.hash(7)), key.hash(7)) << "all 16 bits count";
}

TEST(ServicePolicyKey, PrintsTagAndName) {
  std::ostringstream out;
  out << ServicePolicyKey{65535, "a"};
  EXPECT_EQ(out.str(), "65535:a");
}

TEST(ServicePolicyConfig, HoldsItsKey) {
  const ServicePolicyConfig policy({3, "__yang_[IPV4__a]"});
  EXPECT_EQ(policy.key(), (ServicePolicyKey{3, "__yang_[IPV4__a]"}));
  EXPECT_EQ(policy.pmapName(), "__yang_[IPV4__a]");
  EXPECT_EQ(policy.intfIds().members(), 0u);
}

TEST(ServicePolicyConfig, AChangeOfItsInterfacesNamesTheInterface) {
  const auto policy = Rok::make<ServicePolicyConfig>(ServicePolicyKey{1, "a"});
  const NotificationLog<ServicePolicyConfig::Attr::intfIds> log(*policy);
  const Nerit::IntfId ethernet(Rok::String("Ethernet1"));
  policy->intfIdsIs(ethernet, false);
  ASSERT_NE(policy->intfIds().find(ethernet), nullptr);
  EXPECT_FALSE(*policy->intfIds().find(ethernet)) << "an entry that holds false is an entry";
  policy->intfIdsIs(ethernet, false);
  policy->intfIdsIs(ethernet, true);
  EXPECT_TRUE(*policy->intfIds().find(ethernet));
  policy->intfIdsDel(ethernet);
  policy->intfIdsDel(ethernet);
  EXPECT_EQ(policy->intfIds().find(ethernet), nullptr);
  EXPECT_THAT(log.lines(), ElementsAre("131 Ethernet1", "131 Ethernet1", "131 Ethernet1"));
}

TEST(ServicePolicies, AreKeptByTheWholeKeyAndAChangeNamesIt) {
  const auto config = Rok::make<Input::Config>();
  const NotificationLog<Input::Config::Attr::servicePolicyConfig> log(*config);
  const auto first = Rok::make<ServicePolicyConfig>(ServicePolicyKey{1, "a"});
  const auto second = Rok::make<ServicePolicyConfig>(ServicePolicyKey{2, "a"});
  config->servicePolicyConfigIs(first->key(), first);
  config->servicePolicyConfigIs(second->key(), second);
  config->servicePolicyConfigIs(second->key(), second);
  EXPECT_EQ(*config->servicePolicyConfig().find({1, "a"}), first);
  EXPECT_EQ(*config->servicePolicyConfig().find({2, "a"}), second);
  config->servicePolicyConfigDel({1, "a"});
  config->servicePolicyConfigDel({1, "a"});
  EXPECT_EQ(config->servicePolicyConfig().find({1, "a"}), nullptr);
  EXPECT_EQ(config->servicePolicyConfig().members(), 1u);
  EXPECT_THAT(log.lines(), ElementsAre("131 1:a", "131 2:a", "131 1:a"));
}

}  // namespace
}  // namespace Qos::servicePolicyTest
