// /qos/queue-management-profiles
#include "host/Text.h"
#include "host/openconfig/Lists.h"

namespace host {
namespace {

using namespace QosOc::Config;

void uniformJson(Tree& tree, const WredUniform& uniform) {
  tree.container("config", [&] {
    tree.boolean("drop", uniform.drop);
    tree.boolean("enable-ecn", uniform.enableEcn);
    tree.number("max-drop-probability-percent", uniform.maxDropProbabilityPercent.value());
    tree.number64("max-threshold", uniform.maxThreshold);
    tree.number64("min-threshold", uniform.minThreshold);
    tree.number("weight", uniform.weight);
  });
}

void profileJson(Tree& tree, std::string_view name, const QueueManagementProfile& profile) {
  tree.container("config", [&] { tree.word("name", name); });
  tree.word("name", name);
  tree.container(
      "wred", [&] { tree.container("uniform", [&] { uniformJson(tree, profile.wredUniform); }); });
}

}  // namespace

void queueManagementProfilesJson(Tree& tree, const QueueManagementProfilesDir& dir) {
  tree.list(
      "queue-management-profiles", "queue-management-profile", "name", dir.queueManagementProfile(),
      [](std::string_view name) {
        return "the QoS profile " + quoted("__YANG_QMP_[" + std::string(name) + ']');
      },
      [&](std::string_view name, const QueueManagementProfile& profile) {
        profileJson(tree, name, profile);
      });
}

}  // namespace host
