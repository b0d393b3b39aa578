#include "host/Native.h"

namespace host {

Native::Native() {
  // The roots refuse to be built without any of these.
  aclConfig->cmapTypeIs(Qos::mapQos, Rok::make<Qos::Input::ClassMapTypeConfig>(Qos::mapQos));
  for (const Acl::AclType type : {Acl::aclTypeIpv4, Acl::aclTypeIpv6}) {
    acls->configIs(type, Rok::make<Acl::Input::AclTypeConfig>(type));
  }
  qosConfig->forwardingGroupNameToTcMapIs(Rok::make<Qos::ForwardingGroupNameToTcMap>());
  qosConfig->queueNameToTxQueueIdMapIs(Rok::make<Qos::QueueNameToTxQueueIdMap>());
}

}  // namespace host
