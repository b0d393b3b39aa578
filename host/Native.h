// The native side: the objects that the host mounts and that the roots watch.
#pragma once

#include "Dorpel/Export.h"
#include "Rok/Rok.h"
#include "models/native/Acl.h"
#include "models/native/AclConfig.h"
#include "models/native/Cli.h"
#include "models/native/QosInput.h"
#include "models/native/TxQueue.h"

namespace QOS_EXPORT host {

struct Native {
  // Mounts what is always there, empty.
  Native();

  // Class maps and policy maps.
  Rok::Ptr<Qos::Input::AclConfig> aclConfig = Rok::make<Qos::Input::AclConfig>();
  // ACLs. Both families are always there.
  Rok::Ptr<Acl::Input::Config> acls = Rok::make<Acl::Input::Config>();
  // All other QoS settings. Both maps of names are always there.
  Rok::Ptr<Qos::Input::Config> qosConfig = Rok::make<Qos::Input::Config>();
  Rok::Ptr<Qos::QosProfileConfigDir> qosProfiles = Rok::make<Qos::QosProfileConfigDir>();
  Rok::Ptr<Cli::Config> cliConfig = Rok::make<Cli::Config>();
};

}  // namespace host
