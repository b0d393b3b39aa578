#include "host/Roots.h"

#include <algorithm>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "QosOpenConfig/QosOpenConfigForwardingGroupKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigPfcKivToOCSm.h"
#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "host/Place.h"
#include "host/check/NearbyRaises.h"

namespace host {
namespace {

Rok::Ptr<Rok::PtrInterface> classMapRoot(const Native& native, const Model& model) {
  return QosOc::classMapKivToOcSmFactory(native.aclConfig, model.classifiers);
}

Rok::Ptr<Rok::PtrInterface> aclRoot(const Native& native, const Model& model) {
  return QosOc::aclKivToOcSmFactory(native.acls, model.classifiers);
}
Rok::Ptr<Rok::PtrInterface> classActionRoot(const Native& native, const Model& model) {
  return QosOc::classActionKivToOcSmFactory(native.aclConfig, native.qosConfig, model.classifiers);
}
Rok::Ptr<Rok::PtrInterface> interfaceClassifierRoot(const Native& native, const Model& model) {
  return QosOc::interfaceClassifierKivToOcSmFactory(native.qosConfig, model.interfaces);
}
Rok::Ptr<Rok::PtrInterface> forwardingGroupRoot(const Native& native, const Model& model) {
  return QosOc::forwardingGroupKivToOcSmFactory(native.qosConfig, model.forwardingGroups,
                                                model.queues);
}

Rok::Ptr<Rok::PtrInterface> queueRoot(const Native& native, const Model& model) {
  return QosOc::queueKivToOcSmFactory(native.qosConfig, model.queues, native.cliConfig);
}
Rok::Ptr<Rok::PtrInterface> pfcRoot(const Native& native, const Model& model) {
  return QosOc::pfcKivToOCSmFactory(native.qosConfig, model.pfc);
}
Rok::Ptr<Rok::PtrInterface> interfacePfcRoot(const Native& native, const Model& model) {
  return QosOc::intfPfcKivToOCSmFactory(native.qosConfig, model.interfaces);
}

Rok::Ptr<Rok::PtrInterface> queueManagementRoot(const Native& native, const Model& model) {
  return QosOc::queueManagementProfileKivToOcSmFactory(
      native.qosConfig, native.cliConfig, native.qosProfiles, model.queueManagementProfiles,
      model.interfaces);
}
Rok::Ptr<Rok::PtrInterface> schedulerPolicyRoot(const Native& native, const Model& model) {
  return QosOc::schedulerPolicyKivToOCSmFactory(native.cliConfig, native.qosConfig,
                                                native.qosProfiles, model.schedulerPolicies,
                                                model.interfaces);
}

constexpr Root table[] = {
    {"class-map", classMapRoot},
    {"acl", aclRoot},
    {"class-action", classActionRoot},
    {"interface-classifier", interfaceClassifierRoot},
    {"forwarding-group", forwardingGroupRoot},
    {"queue", queueRoot},
    {"pfc", pfcRoot},
    {"interface-pfc", interfacePfcRoot},
    {"queue-management", queueManagementRoot},
    {"scheduler-policy", schedulerPolicyRoot},
};

}  // namespace

std::span<const Root> roots() { return table; }

const Root* rootNamed(std::string_view name) {
  const auto* found = std::find_if(std::begin(table), std::end(table),
                                   [&](const Root& root) { return root.name == name; });
  return found != std::end(table) ? found : nullptr;
}

Rok::Ptr<Rok::PtrInterface> buildRoot(const Root& root, const Native& native, const Model& model,
                                      const std::function<void(const std::string&)>& report) {
  Rok::Ptr<Rok::PtrInterface> built;
  Writes attempt([&](const std::string& what) {
    std::vector<Tokens> places;
    Raises(native, &model).of(root.name, [&](Raise raise) {
      if (explains(raise, what)) places.push_back(std::move(raise.place));
    });
    report("root " + std::string(root.name) + ": " + what + atPlaces(std::move(places)));
  });
  attempt([&] { built = root.factory(native, model); });
  return built;
}

std::vector<Rok::Ptr<Rok::PtrInterface>> buildRoots(
    std::span<const std::string> names, const Native& native, const Model& model,
    const std::function<void(const std::string&)>& report) {
  std::vector<Rok::Ptr<Rok::PtrInterface>> built;
  for (const Root& root : table) {
    const bool wanted =
        names.empty() || std::find(names.begin(), names.end(), root.name) != names.end();
    if (!wanted) continue;
    if (auto made = buildRoot(root, native, model, report)) built.push_back(std::move(made));
  }
  return built;
}

}  // namespace host
