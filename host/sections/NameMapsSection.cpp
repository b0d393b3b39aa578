// "forwarding-groups": {"<name>": <traffic class>}
// "queue-names": {"<name>": <tx queue id>}
//
// Each map is an object of its own, which a write of the section replaces.
#include "host/sections/Forms.h"

namespace host {

Section forwardingGroupsSection() {
  using Qos::Input::Config;
  using Map = Qos::ForwardingGroupNameToTcMap;
  using Names = Values<all(&Map::forwardingGroupNameToTc), &Map::forwardingGroupNameToTcIs,
                       &Map::forwardingGroupNameToTcDel>;
  return section(
      &Native::qosConfig,
      object<&Config::forwardingGroupNameToTcMap, &Config::forwardingGroupNameToTcMapIs, Names>(
          "forwarding-groups"));
}

Section queueNamesSection() {
  using Qos::Input::Config;
  using Map = Qos::QueueNameToTxQueueIdMap;
  using Names = Values<all(&Map::queueNameToTxQueueId), &Map::queueNameToTxQueueIdIs,
                       &Map::queueNameToTxQueueIdDel>;
  return section(
      &Native::qosConfig,
      object<&Config::queueNameToTxQueueIdMap, &Config::queueNameToTxQueueIdMapIs, Names>(
          "queue-names"));
}

}  // namespace host
