// Records every notification of a native side, also of the objects that come later.
#pragma once

#include <functional>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "host/Native.h"

namespace support {

// Watches one native object and calls `hear` for each of its notifications.
class HostNotifiee final : public Rok::PtrInterface::NotifieeConst {
 public:
  using Hear = std::function<void(Rok::AttributeId, const void*)>;
  HostNotifiee(const Rok::PtrInterface& notifier, Hear hear) : hear_(std::move(hear)) {
    notifierIs(&notifier);
    hasNotificationActiveIs(true);
    isRegisteredNotifieeIs(true);
  }
  void onAttribute(Rok::AttributeId id, const void* key) override { hear_(id, key); }

 private:
  Hear hear_;
};

// A line for each notification: the attribute, the keys that lead to its object, its own key.
// "cmapType 7", "cmap 1/VOICE", "match VOICE 2", "bandwidth Ethernet1 unicast-3". Of a rule, what
// its record holds by then: "ipRuleById 0/VOICE {dscp 46, matchDscp true}", "... gone".
class HostListener {
 public:
  explicit HostListener(const host::Native& native) {
    watchClassMaps(*native.aclConfig);
    watchPolicyMaps(*native.aclConfig);
    watchAcls(*native.acls);
    watchQosConfig(*native.qosConfig);
    watchProfiles(*native.qosProfiles);
    on<Cli::Config::Attr::comment>(*native.cliConfig,
                                   [this](const Rok::String& key) { tell("comment", key); });
  }

  // The lines since the last call.
  std::vector<std::string> heard() { return std::exchange(heard_, {}); }

 private:
  // ===== Class maps and policy maps

  void watchClassMaps(const Qos::Input::AclConfig& config) {
    entries<Qos::Input::AclConfig::Attr::cmapType>(
        "cmapType ", config, config.cmapType(),
        [this](Qos::MapType key, const auto& type) { watchClassMapType(plain(key) + "/", type); });
  }
  void watchClassMapType(const std::string& prefix, const Qos::Input::ClassMapTypeConfig& type) {
    entries<Qos::Input::ClassMapTypeConfig::Attr::cmap>(
        "cmap " + prefix, type, type.cmap(), [this](const Rok::String& name, const auto& classMap) {
          on<Qos::ClassMapConfig::Attr::match>(
              classMap, [this, name](auto option) { tell("match " + plain(name), option); });
        });
  }
  void watchPolicyMaps(const Qos::Input::AclConfig& config) {
    entries<Qos::Input::AclConfig::Attr::pmapType>(
        "pmapType ", config, config.pmapType(), [this](Qos::MapType key, const auto& type) {
          entries<Qos::Input::PolicyMapTypeConfig::Attr::pmap>(
              "pmap " + plain(key) + "/", type, type.pmap(),
              [this](const Rok::String& name, const auto& policyMap) {
                watchPolicyMap(plain(name), policyMap);
              });
        });
  }
  void watchPolicyMap(const std::string& name, const Qos::PolicyMapConfig& policyMap) {
    entries<Qos::PolicyMapConfig::Attr::classAction>(
        "classAction " + name + "/", policyMap, policyMap.classAction(),
        [this, name](const Rok::String& key, const auto& classAction) {
          watchClassAction(name + "/" + plain(key), classAction);
        });
  }
  void watchClassAction(const std::string& path, const Qos::ClassAction& classAction) {
    entries<Qos::ClassAction::Attr::policyAction>(
        "policyAction " + path + " ", classAction, classAction.policyAction(),
        [this, path](Qos::ActionType type, const auto& action) {
          on<Qos::Action::Attr::value>(action, [this, path, type] { tell("value " + path, type); });
        });
  }

  // ===== ACLs

  void watchAcls(const Acl::Input::Config& config) {
    entries<Acl::Input::Config::Attr::config>(
        "aclType ", config, config.config(), [this](Acl::AclType key, const auto& type) {
          entries<Acl::Input::AclTypeConfig::Attr::acl>(
              "acl " + plain(key) + "/", type, type.acl(),
              [this, key](const Rok::String& name, const auto& acl) {
                watchAcl(plain(key) + "/" + plain(name), acl);
              });
        });
  }
  void watchAcl(const std::string& path, const Acl::AclConfig& acl) {
    on<Acl::AclConfig::Attr::aclSubConfig>(acl, [this, path, raw = &acl] {
      tell("aclSubConfig", path);
      if (raw->aclSubConfig()) watchRules(path, *raw->aclSubConfig());
    });
    if (acl.aclSubConfig()) watchRules(path, *acl.aclSubConfig());
  }
  void watchRules(const std::string& path, const Acl::AclSubConfig& rules) {
    on<Acl::AclSubConfig::Attr::ruleBySequence>(
        rules, [this, path](std::uint32_t number) { tell("ruleBySequence " + path, number); });
    on<Acl::AclSubConfig::Attr::ipRuleById>(
        rules, [this, path, raw = &rules](const Umb::UniqueId& id) {
          tell("ipRuleById " + path, ruleText(raw->ipRuleById().find(id)));
        });
    on<Acl::AclSubConfig::Attr::ip6RuleById>(
        rules, [this, path, raw = &rules](const Umb::UniqueId& id) {
          tell("ip6RuleById " + path, ruleText(raw->ip6RuleById().find(id)));
        });
  }
  template <class Rule>
  static std::string ruleText(const Rule* rule) {
    return rule != nullptr ? plain(*rule) : "gone";
  }

  // ===== Interfaces, profiles, service policies, maps

  void watchQosConfig(const Qos::Input::Config& config) {
    using Attr = Qos::Input::Config::Attr;
    entries<Attr::intfConfig>(
        "intfConfig ", config, config.intfConfig(),
        [this](const Nerit::IntfId& id, const auto& intf) { watchInterface(plain(id), intf); });
    entries<Attr::servicePolicyConfig>(
        "servicePolicyConfig ", config, config.servicePolicyConfig(),
        [this](const Qos::ServicePolicyKey& key, const auto& policy) {
          on<Qos::ServicePolicyConfig::Attr::intfIds>(
              policy, [this, key](const auto& id) { tell("intfIds " + plain(key), id); });
        });
    watchNameMaps(config);
    on<Attr::tcToTxQueueMap>(config, [this](auto tc) { tell("tcToTxQueueMap", tc); });
    on<Attr::pfcWatchdogTimeA>(config, [this] { heard_.emplace_back("pfcWatchdogTimeA"); });
    on<Attr::pfcWatchdogTimeB>(config, [this] { heard_.emplace_back("pfcWatchdogTimeB"); });
    on<Attr::pfcWatchdogAction>(config, [this] { heard_.emplace_back("pfcWatchdogAction"); });
    on<Attr::pfcWatchdogTimeC>(config, [this] { heard_.emplace_back("pfcWatchdogTimeC"); });
    on<Attr::pfcWatchdogPriorities>(config,
                                    [this] { heard_.emplace_back("pfcWatchdogPriorities"); });
  }
  void watchNameMaps(const Qos::Input::Config& config) {
    const auto groups = [this, &config] {
      on<Qos::ForwardingGroupNameToTcMap::Attr::forwardingGroupNameToTc>(
          *config.forwardingGroupNameToTcMap(),
          [this](const auto& name) { tell("forwardingGroupNameToTc", name); });
    };
    const auto queues = [this, &config] {
      on<Qos::QueueNameToTxQueueIdMap::Attr::queueNameToTxQueueId>(
          *config.queueNameToTxQueueIdMap(),
          [this](const auto& name) { tell("queueNameToTxQueueId", name); });
    };
    on<Qos::Input::Config::Attr::forwardingGroupNameToTcMap>(config, [this, groups] {
      heard_.emplace_back("forwardingGroupNameToTcMap");
      groups();
    });
    on<Qos::Input::Config::Attr::queueNameToTxQueueIdMap>(config, [this, queues] {
      heard_.emplace_back("queueNameToTxQueueIdMap");
      queues();
    });
    groups();
    queues();
  }
  void watchInterface(const std::string& name, const Qos::IntfConfig& intf) {
    watchTxQueues<Qos::IntfConfig::Attr::txQueueConfig>(name, intf);
    const auto port = [this, name, raw = &intf] {
      if (!raw->pfcPortConfig()) return;
      on<Pfc::PortConfig::Attr::priorities>(*raw->pfcPortConfig(),
                                            [this, name] { tell("priorities", name); });
    };
    on<Qos::IntfConfig::Attr::pfcPortConfig>(intf, [this, name, port] {
      tell("pfcPortConfig", name);
      port();
    });
    port();
  }
  void watchProfiles(const Qos::QosProfileConfigDir& dir) {
    entries<Qos::QosProfileConfigDir::Attr::config>(
        "config ", dir, dir.config(), [this](const Rok::String& name, const auto& profile) {
          watchProfile(plain(name), profile);
        });
  }
  void watchProfile(const std::string& name, const Qos::QosProfileConfig& profile) {
    const auto body = [this, name, raw = &profile] {
      if (!raw->qosProfile()) return;
      watchTxQueues<Qos::QosProfile::Attr::txQueueConfig>(name, *raw->qosProfile());
    };
    on<Qos::QosProfileConfig::Attr::qosProfile>(profile, [this, name, body] {
      tell("qosProfile", name);
      body();
    });
    body();
  }
  template <auto attribute, class Owner>
  void watchTxQueues(const std::string& name, const Owner& owner) {
    entries<attribute>("txQueueConfig " + name + " ", owner, owner.txQueueConfig(),
                       [this, name](const Qos::TxQueue& id, const auto& queue) {
                         watchTxQueue(name + " " + plain(id), queue);
                       });
  }
  void watchTxQueue(const std::string& path, const Qos::TxQueueConfig& queue) {
    using Attr = Qos::TxQueueConfig::Attr;
    on<Attr::priority>(queue, [this, path] { tell("priority", path); });
    on<Attr::bandwidth>(queue, [this, path] { tell("bandwidth", path); });
    on<Attr::shape>(queue, [this, path] { tell("shape", path); });
    on<Attr::ecnConfig>(queue, [this, path] { tell("ecnConfig", path); });
    on<Attr::wredConfig>(queue, [this, path] { tell("wredConfig", path); });
  }

  // ===== Mechanism

  // Enumerators as their numbers, everything else as it prints.
  template <class T>
  static std::string plain(const T& value) {
    std::ostringstream out;
    if constexpr (std::is_enum_v<T>) {
      out << static_cast<unsigned>(value);
    } else {
      out << value;
    }
    return out.str();
  }
  template <class T>
  void tell(const std::string& what, const T& key) {
    heard_.push_back(what + " " + plain(key));
  }
  // Calls `hear` with the key of each notification of an attribute.
  template <auto attribute, class Hear>
  void on(const Rok::PtrInterface& object, Hear hear) {
    using Key = typename decltype(attribute)::Key;
    notifiees_.push_back(
        Rok::make<HostNotifiee>(object, [hear](Rok::AttributeId id, const void* key) {
          if (id != attribute.id) return;
          if constexpr (std::is_void_v<Key>) {
            hear();
          } else {
            hear(Key(*static_cast<const Key*>(key)));
          }
        }));
  }
  // Reports changes of a collection of objects, and calls `watch` for each object that is there or
  // comes.
  template <auto attribute, class Object, class Map, class Watch>
  void entries(const std::string& what, const Object& object, const Map& map, Watch watch) {
    on<attribute>(object, [this, what, &map, watch](const auto& key) {
      heard_.push_back(what + plain(key));
      if (const auto* found = map.find(key)) watch(key, **found);
    });
    for (auto i = map.iterator(); i; ++i) watch(i.key(), **map.find(i.key()));
  }

  std::vector<Rok::Ptr<HostNotifiee>> notifiees_;
  std::vector<std::string> heard_;
};

}  // namespace support
