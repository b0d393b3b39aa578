#include "tests/support/House.h"

#include <sstream>

#include "host/ModelWriter.h"
#include "host/NativeReader.h"

namespace support {

const std::string_view smallDocument = R"({
  "class-maps": {"qos": {
    "__yang_[c4]_[]": {"match": ["ip-access-group"]},
    "__yang_[c4]_[t]": {"match": ["ip-access-group"]},
    "__yang_[c6]_[t]": {"match": ["ipv6-access-group"]}}},
  "access-lists": {
    "ipv4": {"__yang_[c4]_[t]": {"rules": {"10": {"dscp": 46}, "20": {"dscp": 34}}}},
    "ipv6": {"__yang_[c6]_[t]": {"rules": {"10": {"tc": 184, "tc-mask": 252}}}}},
  "policy-maps": {"qos": {"__yang_[IPV4__c4][IPV6__c6]": {"classes": {
    "__yang_[c4]_[t]": {"actions": {"set-traffic-class": 5}},
    "__yang_[c6]_[t]": {}}}}},
  "service-policies": {"1:__yang_[IPV4__c4][IPV6__c6]": {"interfaces": {"Ethernet1": true}}},
  "tc-to-tx-queue": {"5": 3},
  "forwarding-groups": {"bulk": 1, "voice": 5},
  "queue-names": {"gold": 3},
  "interfaces": {
    "Ethernet1": {"tx-queues": {"uc-3": {"bandwidth": 40}}, "pfc": {"priorities": 8}},
    "Ethernet3": {"tx-queues": {
      "uc-1": {"bandwidth": 20, "ecn": {"max-threshold": 900, "max-drop-percent": 10}}}}},
  "qos-profiles": {
    "__YANG_QMP_[drop]": {"tx-queues": {"uc-0": {"wred": {"max-drop-percent": 5}}}},
    "__YANG_SP_[fair]": {}},
  "comments": {
    "if-Et1-uc-txq-3": "{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"fair\"},\"queue-management-profile\":{\"name\":\"drop\"}}}",
    "qos-profile-__YANG_SP_[fair]": "{\"MetaData-OpenConfig\":{\"1\":{\"one-rate-two-color\":{\"cir-pct\":40},\"inputs\":{\"i\":{\"queue\":\"gold\"}}}}}"},
  "pfc-watchdog": {"time-a": 0.2, "priorities": 24}
})";

House::House(std::string_view document) { host::readNativeText(document, native); }

void House::build() {
  for (const host::Root& root : host::roots()) build(root.name);
}

void House::build(std::string_view root) {
  roots.push_back(host::rootNamed(root)->factory(native, model));
}

Qos::Input::ClassMapTypeConfig& classMaps(const host::Native& native) {
  return **native.aclConfig->cmapType().find(Qos::mapQos);
}
Qos::Input::PolicyMapTypeConfig& policyMaps(const host::Native& native) {
  return **native.aclConfig->pmapType().find(Qos::mapQos);
}
Acl::Input::AclTypeConfig& acls(const host::Native& native) {
  return **native.acls->config().find(Acl::aclTypeIpv4);
}

Rok::Ptr<Qos::ClassAction> newClassAction(const Rok::String& name) {
  auto made = Rok::make<Qos::ClassAction>(name);
  made->policyActionIs(Qos::actionSetTc, Rok::make<Qos::Action>(Qos::actionSetTc, 5u));
  return made;
}

std::string text(const host::Model& model) { return host::modelJson(model, host::Layout::compact); }

std::string freshModel(const host::Native& native) {
  const host::Model model;
  Roots roots;
  for (const host::Root& root : host::roots()) roots.push_back(root.factory(native, model));
  return text(model);
}

std::string freshModel(const host::Native& native, std::string_view root) {
  const host::Model model;
  const auto built = host::rootNamed(root)->factory(native, model);
  return text(model);
}

namespace {

class Census {
 public:
  explicit Census(const host::Native& native) {
    classification(*native.aclConfig);
    accessLists(*native.acls);
    qosConfig(*native.qosConfig);
    at("profiles", native.qosProfiles.get());
    each("profiles", native.qosProfiles->config(), [this](const auto& path, const auto& profile) {
      if (at(path + "/body", profile.qosProfile().get())) {
        each(path + "/body", profile.qosProfile()->txQueueConfig());
      }
    });
    at("comments", native.cliConfig.get());
  }
  Watched found() && { return std::move(found_); }

 private:
  void classification(const Qos::Input::AclConfig& config) {
    at("classification", &config);
    each("class-maps", config.cmapType(),
         [this](const auto& path, const auto& type) { each(path, type.cmap()); });
    each("policy-maps", config.pmapType(), [this](const auto& path, const auto& type) {
      each(path, type.pmap(), [this](const auto& pmap, const auto& policyMap) {
        each(pmap, policyMap.classAction(), [this](const auto& cmap, const auto& classAction) {
          each(cmap, classAction.policyAction());
        });
      });
    });
  }
  void accessLists(const Acl::Input::Config& config) {
    at("access-lists", &config);
    each("access-lists", config.config(), [this](const auto& path, const auto& family) {
      each(path, family.acl(), [this](const auto& acl, const auto& list) {
        at(acl + "/rules", list.aclSubConfig().get());
      });
    });
  }
  void qosConfig(const Qos::Input::Config& config) {
    at("qos", &config);
    at("forwarding-groups", config.forwardingGroupNameToTcMap().get());
    at("queue-names", config.queueNameToTxQueueIdMap().get());
    each("service-policies", config.servicePolicyConfig());
    each("interfaces", config.intfConfig(), [this](const auto& path, const auto& interface) {
      at(path + "/pfc", interface.pfcPortConfig().get());
      each(path, interface.txQueueConfig());
    });
  }

  // Returns whether there is an object.
  bool at(const std::string& path, const Rok::PtrInterface* object) {
    if (object == nullptr) return false;
    const std::size_t notifiees = object->notifieeList()->notifiees();
    if (notifiees != 0) found_[path] = notifiees;
    return true;
  }
  template <class Map, class Below>
  void each(const std::string& path, const Map& map, const Below& below) {
    for (auto i = map.iterator(); i; ++i) {
      const auto& object = *map.find(i.key());
      std::ostringstream name;
      name << path << "/";
      if constexpr (std::is_enum_v<std::decay_t<decltype(i.key())>>) {
        name << static_cast<unsigned>(i.key());
      } else {
        name << i.key();
      }
      if (at(name.str(), object.get())) below(name.str(), *object);
    }
  }
  template <class Map>
  void each(const std::string& path, const Map& map) {
    each(path, map, [](const auto& /*path*/, const auto& /*object*/) {});
  }

  Watched found_;
};

}  // namespace

Watched watched(const host::Native& native) { return Census(native).found(); }

}  // namespace support
