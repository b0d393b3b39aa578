// "forwarding-groups": {"<name>": {"name": "", "output-queue": ""}}
#include "host/model/Parts.h"

namespace host {
namespace {

using namespace QosOc::Config;

Codec<ForwardingGroupConfig> configCodec() {
  return record<ForwardingGroupConfig>(
      {member("name", &ForwardingGroupConfig::name, text()),
       member("output-queue", &ForwardingGroupConfig::outputQueue, text())});
}

// A group has nothing but its config, so that is not shown as a level of its own.
Codec<ForwardingGroup> groupCodec() {
  return attribute("config", &ForwardingGroup::config, &ForwardingGroup::configIs, configCodec())
      .codec;
}

}  // namespace

ModelPart forwardingGroupsPart() {
  const auto map = [](const ForwardingGroupsDir& dir) -> const auto& {
    return dir.forwardingGroup();
  };
  return modelPart("forwarding-groups", &Model::forwardingGroups,
                   objects(map, &ForwardingGroupsDir::forwardingGroupIs, groupCodec()));
}

}  // namespace host
