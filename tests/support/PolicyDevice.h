// A device with policy maps and forwarding groups, and the classifiers whose terms a root keeps in
// step with them.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <map>
#include <string>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"

namespace support {

// "edge-in/v4" to term id to what the term does: "-" without actions, "blank" with a blanked one,
// otherwise the target group. A classifier without terms has none; an empty collection of terms
// shows as "(empty)".
using Actions = std::map<std::string, std::string>;
using ActionModel = std::map<std::string, Actions>;

inline Rok::Ptr<Qos::ClassAction> classAction(const Rok::String& name) {
  return Rok::make<Qos::ClassAction>(name);
}
inline Rok::Ptr<Qos::ClassAction> classAction(const Rok::String& name, std::uint32_t tc) {
  auto made = classAction(name);
  made->policyActionIs(Qos::actionSetTc, Rok::make<Qos::Action>(Qos::actionSetTc, tc));
  return made;
}

struct PolicyDevice {
  using Groups = Qos::ForwardingGroupNameToTcMap;
  using Names = std::map<std::string, unsigned char>;

  Rok::Ptr<Qos::Input::AclConfig> aclConfig = Rok::make<Qos::Input::AclConfig>();
  Rok::Ptr<Qos::Input::PolicyMapTypeConfig> policyMaps =
      Rok::make<Qos::Input::PolicyMapTypeConfig>(Qos::mapQos);
  Rok::Ptr<Qos::Input::Config> config = Rok::make<Qos::Input::Config>();
  Rok::Ptr<Groups> groups = Rok::make<Groups>();
  Rok::Ptr<QosOc::Config::ClassifiersDir> classifiers = Rok::make<QosOc::Config::ClassifiersDir>();
  Rok::Ptr<QosOc::ClassActionKivToOcSm> root;

  explicit PolicyDevice(const Names& names = {{"expedited", 5}}) {
    aclConfig->pmapTypeIs(Qos::mapQos, policyMaps);
    config->forwardingGroupNameToTcMapIs(groups);
    for (const auto& [name, tc] : names) addGroup(name, tc);
  }

  // Native writes. A policy map or a class that isn't there yet is made.
  Rok::Ptr<Qos::PolicyMapConfig> addPolicyMap(const Rok::String& pmap) {
    if (const auto* found = policyMaps->pmap().find(pmap)) return *found;
    auto made = Rok::make<Qos::PolicyMapConfig>(pmap);
    policyMaps->pmapIs(pmap, made);
    return made;
  }
  void removePolicyMap(const Rok::String& pmap) { policyMaps->pmapDel(pmap); }
  Rok::Ptr<Qos::ClassAction> addClass(const Rok::String& pmap, const Rok::String& cmap) {
    return add(pmap, cmap, classAction(cmap));
  }
  // The class arrives with its action.
  Rok::Ptr<Qos::ClassAction> addClass(const Rok::String& pmap, const Rok::String& cmap,
                                      std::uint32_t tc) {
    return add(pmap, cmap, classAction(cmap, tc));
  }
  void removeClass(const Rok::String& pmap, const Rok::String& cmap) {
    (*policyMaps->pmap().find(pmap))->classActionDel(cmap);
  }
  // Adds the action, or changes its traffic class.
  void setTc(const Rok::String& pmap, const Rok::String& cmap, std::uint32_t tc) {
    const auto target = findClass(pmap, cmap);
    if (const auto* action = target->policyAction().find(Qos::actionSetTc)) {
      return (*action)->valueIs(tc);
    }
    target->policyActionIs(Qos::actionSetTc, Rok::make<Qos::Action>(Qos::actionSetTc, tc));
  }
  void removeTc(const Rok::String& pmap, const Rok::String& cmap) {
    findClass(pmap, cmap)->policyActionDel(Qos::actionSetTc);
  }
  void addGroup(const Rok::String& name, unsigned char tc) {
    groups->forwardingGroupNameToTcIs(name, tc);
  }
  void removeGroup(const Rok::String& name) { groups->forwardingGroupNameToTcDel(name); }
  // Mounts another map of names.
  void replaceGroups(const Names& names) {
    groups = Rok::make<Groups>();
    for (const auto& [name, tc] : names) addGroup(name, tc);
    config->forwardingGroupNameToTcMapIs(groups);
  }

  Rok::Ptr<Qos::ClassAction> findClass(const Rok::String& pmap, const Rok::String& cmap) const {
    return *(*policyMaps->pmap().find(pmap))->classAction().find(cmap);
  }
  Rok::Ptr<Qos::Action> findAction(const Rok::String& pmap, const Rok::String& cmap) const {
    return *findClass(pmap, cmap)->policyAction().find(Qos::actionSetTc);
  }

  // Starts and stops the root.
  void start() { root = QosOc::classActionKivToOcSmFactory(aclConfig, config, classifiers); }
  void stop() { root = nullptr; }
  void restart() {
    stop();
    start();
  }
  // The machines; null where something is not mirrored.
  Rok::Ptr<QosOc::PmapTypeSm> types() const { return root->pmapTypeSm().child(Qos::mapQos); }
  Rok::Ptr<QosOc::PmapConfigSm> machine(const Rok::String& pmap) const {
    return types()->pmapConfigSm().child(pmap);
  }
  Rok::Ptr<QosOc::ClassActionSm> machine(const Rok::String& pmap, const Rok::String& cmap) const {
    return machine(pmap)->classActionSm().child(cmap);
  }
  Rok::Ptr<QosOc::PolicyActionSm> actionMachine(const Rok::String& pmap,
                                                const Rok::String& cmap) const {
    return machine(pmap, cmap)->policyActionSm().child(Qos::actionSetTc);
  }

  // The output.
  ActionModel model() const {
    ActionModel result;
    for (auto i = classifiers->classifier().iterator(); i; ++i) {
      const auto& classifier = *i.currNodeNonStale()->value();
      Actions& actions = result[label(classifier)];
      if (!classifier.terms()) continue;
      if (classifier.terms()->term().members() == 0) actions["(empty)"] = "";
      for (auto t = classifier.terms()->term().iterator(); t; ++t) {
        actions[std::string(std::string_view(t.key()))] = action(t.currNodeNonStale()->value());
      }
    }
    return result;
  }
  QosOc::Config::Term term(const Rok::String& classifier, const Rok::String& id) const {
    return classifiers->classifier(classifier)->terms()->term(id);
  }
  static std::string label(const QosOc::Config::Classifier& classifier) {
    std::string result(std::string_view(classifier.name()));
    const auto type = classifier.config().type;
    if (!type) return result + "/untyped";
    return result + (*type == QosOc::Classifier::classifierTypeIpv4 ? "/v4" : "/v6");
  }
  static std::string action(const QosOc::Config::Term& term) {
    if (!term.actions) return "-";
    const Rok::String& group = term.actions->config.targetGroup;
    return group.empty() ? "blank" : std::string(std::string_view(group));
  }

  // Output of an earlier run, or of another writer: terms with these actions, in the words of the
  // model.
  Rok::Ptr<QosOc::Config::Classifier> earlier(const Rok::String& name, const Actions& terms = {}) {
    auto classifier = classifiers->classifierIs(name);
    classifier->configIs({name, QosOc::Classifier::classifierTypeIpv4});
    for (const auto& [id, group] : terms) {
      QosOc::Config::Term term(id);
      term.configId = id;
      if (group != "-") term.actions = QosOc::Config::TermActions();
      if (group != "-" && group != "blank") term.actions->config.targetGroup = group;
      classifier->termsIs()->termIs(term);
    }
    return classifier;
  }

 private:
  Rok::Ptr<Qos::ClassAction> add(const Rok::String& pmap, const Rok::String& cmap,
                                 const Rok::Ptr<Qos::ClassAction>& made) {
    addPolicyMap(pmap)->classActionIs(cmap, made);
    return made;
  }
};

}  // namespace support
