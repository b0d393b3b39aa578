// A device with service policies, and the interfaces whose classifiers a root keeps in step with
// them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>

#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"

namespace support {

// Interface to its classifiers: "v4 a v6 b", "empty" when it has none, "no classifiers" and
// "no input" when not even that.
using BindingModel = std::map<std::string, std::string>;
using Interfaces = std::initializer_list<const char*>;

inline Nerit::IntfId intf(const char* name) { return Nerit::IntfId(Rok::String(name)); }

struct ServicePolicyDevice {
  Rok::Ptr<Qos::Input::Config> config = Rok::make<Qos::Input::Config>();
  Rok::Ptr<QosOc::Config::InterfacesDir> interfaces = Rok::make<QosOc::Config::InterfacesDir>();
  Rok::Ptr<QosOc::InterfaceClassifierKivToOcSm> root;

  // Native writes.
  static Qos::ServicePolicyKey key(const Rok::String& pmap, std::uint16_t tag = 1) {
    return {tag, pmap};
  }
  Rok::Ptr<Qos::ServicePolicyConfig> add(const Rok::String& pmap, Interfaces on = {},
                                         std::uint16_t tag = 1) {
    auto made = Rok::make<Qos::ServicePolicyConfig>(key(pmap, tag));
    for (const char* name : on) made->intfIdsIs(intf(name), true);
    config->servicePolicyConfigIs(key(pmap, tag), made);
    return made;
  }
  void remove(const Rok::String& pmap, std::uint16_t tag = 1) {
    config->servicePolicyConfigDel(key(pmap, tag));
  }

  // Starts and stops the root.
  void start() { root = QosOc::interfaceClassifierKivToOcSmFactory(config, interfaces); }
  void stop() { root = nullptr; }
  void restart() {
    stop();
    start();
  }
  // The machine of a service policy; null when it is not mirrored.
  Rok::Ptr<QosOc::ServicePolicySm> machine(const Rok::String& pmap) const {
    return root->servicePolicySm().child(pmap);
  }

  // The output.
  BindingModel model() const {
    BindingModel result;
    for (auto i = interfaces->interface().iterator(); i; ++i) {
      result[std::string(std::string_view(i.key()))] = bindings(*i.currNodeNonStale()->value());
    }
    return result;
  }
  static std::string bindings(const QosOc::Config::Interface& interface) {
    if (!interface.input()) return "no input";
    const auto& classifiers = interface.input()->classifiers();
    if (!classifiers) return "no classifiers";
    std::string result;
    for (const auto type :
         {QosOc::Classifier::classifierTypeIpv4, QosOc::Classifier::classifierTypeIpv6}) {
      const auto* found = classifiers->classifier().find(type);
      if (found == nullptr) continue;
      if (!result.empty()) result += " ";
      result += type == QosOc::Classifier::classifierTypeIpv4 ? "v4 " : "v6 ";
      result += std::string_view(found->config.name);
    }
    return result.empty() ? "empty" : result;
  }

  // Output of an earlier run: an interface with the classifiers that aren't null.
  Rok::Ptr<QosOc::Config::Interface> earlier(const Rok::String& name, const char* ipv4,
                                             const char* ipv6 = nullptr) {
    auto interface = interfaces->interfaceIs(name);
    interface->configIs({name});
    bind(*interface, QosOc::Classifier::classifierTypeIpv4, ipv4);
    bind(*interface, QosOc::Classifier::classifierTypeIpv6, ipv6);
    return interface;
  }

 private:
  static void bind(QosOc::Config::Interface& interface, QosOc::Classifier::Type type,
                   const char* classifierName) {
    const auto classifiers = interface.inputIs()->classifiersIs();
    if (classifierName == nullptr) return;
    QosOc::Config::InterfaceInputClassifier classifier(type);
    classifier.config = {classifierName, type};
    classifiers->classifierIs(classifier);
  }
};

}  // namespace support
