#include "host/OpenConfigJson.h"

#include "host/openconfig/Lists.h"

namespace host {

std::string OpenConfigJson::json(const Model& model, Layout layout, const TextSink& sink) {
  const Warn warnOnce = [this](const std::string& warning) {
    if (warned_.insert(warning).second) warn_(warning);
  };
  Tree tree(layout, warnOnce, sink);
  return tree.whole("openconfig-qos:qos", [&] {
    classifiersJson(tree, *model.classifiers);
    forwardingGroupsJson(tree, *model.forwardingGroups);
    interfacesJson(tree, *model.interfaces);
    pfcJson(tree, *model.pfc);
    queueManagementProfilesJson(tree, *model.queueManagementProfiles);
    queuesJson(tree, *model.queues);
    schedulerPoliciesJson(tree, *model.schedulerPolicies);
  });
}

}  // namespace host
