// /qos/forwarding-groups
#include "host/Text.h"
#include "host/openconfig/Lists.h"

namespace host {
namespace {

using namespace QosOc::Config;

void groupJson(Tree& tree, std::string_view name, const ForwardingGroupConfig& config) {
  tree.container("config", [&] {
    tree.word("name", name);
    tree.name("output-queue", config.outputQueue,
              [&] { return "the queue name " + quoted(config.outputQueue); });
  });
  tree.word("name", name);
}

}  // namespace

void forwardingGroupsJson(Tree& tree, const ForwardingGroupsDir& dir) {
  tree.list(
      "forwarding-groups", "forwarding-group", "name", dir.forwardingGroup(),
      [](std::string_view name) { return "the forwarding group " + quoted(name); },
      [&](std::string_view name, const auto& group) { groupJson(tree, name, group->config()); });
}

}  // namespace host
