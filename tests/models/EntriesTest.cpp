// Reading one entry of a native collection, which all of them have in one form: x(key).
#include <gtest/gtest.h>

#include <type_traits>

#include "models/native/Acl.h"
#include "models/native/AclConfig.h"
#include "models/native/Cli.h"
#include "models/native/QosInput.h"

namespace entriesTest {
namespace {

using Rok::Ptr;

// Writes an entry, and reads it and another one.
template <class Object, class KeyArg, class ValueArg, class Key = std::remove_cvref_t<KeyArg>,
          class Value = std::remove_cvref_t<ValueArg>>
void expectEntry(const char* name, void (Object::*is)(KeyArg, ValueArg),
                 std::type_identity_t<Value (Object::*)(KeyArg) const> read,
                 const Ptr<Object>& object, const std::type_identity_t<Key>& there,
                 const std::type_identity_t<Key>& missing,
                 const std::type_identity_t<Value>& value) {
  SCOPED_TRACE(name);
  ASSERT_FALSE(value == Value()) << "the entry is to differ from none";
  EXPECT_EQ(((*object).*read)(there), Value()) << "while there is nothing";
  ((*object).*is)(there, value);
  EXPECT_EQ(((*object).*read)(there), value);
  EXPECT_EQ(((*object).*read)(missing), Value());
}

TEST(NativeCollections, ReadAnEntryByItsKeyAndAMissingOneAsNullOrAsTheDefault) {
  {
    using namespace Acl;
    const Umb::UniqueId id(1, 2, 3);
    const Umb::UniqueId other(1, 2, 4);
    const auto sub = Rok::make<AclSubConfig>();
    IpRuleConfig rule;
    rule.filter.dscp = 46;
    Ip6RuleConfig rule6;
    rule6.filter.tc = 184;
    expectEntry("ruleBySequence", &AclSubConfig::ruleBySequenceIs, &AclSubConfig::ruleBySequence,
                sub, 10, 20, id);
    expectEntry("ipRuleById", &AclSubConfig::ipRuleByIdIs, &AclSubConfig::ipRuleById, sub, id,
                other, rule);
    expectEntry("ip6RuleById", &AclSubConfig::ip6RuleByIdIs, &AclSubConfig::ip6RuleById, sub, id,
                other, rule6);
    const auto types = Rok::make<Input::Config>();
    const auto type = Rok::make<Input::AclTypeConfig>(aclTypeIpv4);
    expectEntry("config", &Input::Config::configIs, &Input::Config::config, types, aclTypeIpv4,
                aclTypeIpv6, type);
    expectEntry("acl", &Input::AclTypeConfig::aclIs, &Input::AclTypeConfig::acl, type, "a", "b",
                Rok::make<AclConfig>("a", aclTypeIpv4));
  }
  using namespace Qos;
  {
    using Input::AclConfig;
    using Input::ClassMapTypeConfig;
    using Input::PolicyMapTypeConfig;
    const auto types = Rok::make<AclConfig>();
    const auto cmaps = Rok::make<ClassMapTypeConfig>(mapQos);
    const auto cmap = Rok::make<ClassMapConfig>("a", mapQos);
    expectEntry("cmapType", &AclConfig::cmapTypeIs, &AclConfig::cmapType, types, mapQos, MapType{2},
                cmaps);
    expectEntry("cmap", &ClassMapTypeConfig::cmapIs, &ClassMapTypeConfig::cmap, cmaps, "a", "b",
                cmap);
    expectEntry("match", &ClassMapConfig::matchIs, &ClassMapConfig::match, cmap, matchIpAccessGroup,
                matchIpv6AccessGroup, Rok::make<ClassMapMatch>());
    const auto pmaps = Rok::make<PolicyMapTypeConfig>(mapQos);
    const auto pmap = Rok::make<PolicyMapConfig>("a");
    const auto action = Rok::make<ClassAction>("a");
    expectEntry("pmapType", &AclConfig::pmapTypeIs, &AclConfig::pmapType, types, mapQos, MapType{2},
                pmaps);
    expectEntry("pmap", &PolicyMapTypeConfig::pmapIs, &PolicyMapTypeConfig::pmap, pmaps, "a", "b",
                pmap);
    expectEntry("classAction", &PolicyMapConfig::classActionIs, &PolicyMapConfig::classAction, pmap,
                "a", "b", action);
    expectEntry("policyAction", &ClassAction::policyActionIs, &ClassAction::policyAction, action,
                actionSetTc, ActionType{5}, Rok::make<Action>(actionSetTc, 3));
  }
  const Nerit::IntfId intf("Ethernet1");
  const Nerit::IntfId otherIntf("Ethernet2");
  const auto txQueue = Rok::make<TxQueueConfig>(TxQueue{3, unicast});
  const TxQueue otherQueue{3, multicast};
  const auto config = Rok::make<Input::Config>();
  const auto intfConfig = Rok::make<IntfConfig>(intf);
  expectEntry("intfConfig", &Input::Config::intfConfigIs, &Input::Config::intfConfig, config, intf,
              otherIntf, intfConfig);
  expectEntry("txQueueConfig of an interface", &IntfConfig::txQueueConfigIs,
              &IntfConfig::txQueueConfig, intfConfig, txQueue->txQueue(), otherQueue, txQueue);
  const ServicePolicyKey key{1, "a"};
  const auto policy = Rok::make<ServicePolicyConfig>(key);
  expectEntry("servicePolicyConfig", &Input::Config::servicePolicyConfigIs,
              &Input::Config::servicePolicyConfig, config, key, ServicePolicyKey{2, "a"}, policy);
  expectEntry("intfIds", &ServicePolicyConfig::intfIdsIs, &ServicePolicyConfig::intfIds, policy,
              intf, otherIntf, true);
  expectEntry("queueNameToTxQueueId", &QueueNameToTxQueueIdMap::queueNameToTxQueueIdIs,
              &QueueNameToTxQueueIdMap::queueNameToTxQueueId, Rok::make<QueueNameToTxQueueIdMap>(),
              "high", "low", 7);
  expectEntry("forwardingGroupNameToTc", &ForwardingGroupNameToTcMap::forwardingGroupNameToTcIs,
              &ForwardingGroupNameToTcMap::forwardingGroupNameToTc,
              Rok::make<ForwardingGroupNameToTcMap>(), "voice", "bulk", 5);
  expectEntry("tcToTxQueueMap", &Input::Config::tcToTxQueueMapIs, &Input::Config::tcToTxQueueMap,
              config, 4, 5, 7);
  const auto profiles = Rok::make<QosProfileConfigDir>();
  expectEntry("config of QoS profiles", &QosProfileConfigDir::configIs,
              &QosProfileConfigDir::config, profiles, "a", "b", Rok::make<QosProfileConfig>("a"));
  expectEntry("txQueueConfig of a QoS profile", &QosProfile::txQueueConfigIs,
              &QosProfile::txQueueConfig, Rok::make<QosProfile>(), txQueue->txQueue(), otherQueue,
              txQueue);
  expectEntry("comment", &Cli::Config::commentIs, &Cli::Config::comment, Rok::make<Cli::Config>(),
              "if-Et1-UC-3", "if-Et1-UC-4", "text");
}

}  // namespace
}  // namespace entriesTest
