// The native side: the objects that the host mounts and that the roots watch.
#pragma once

#include "Rok/Rok.h"
#include "models/native/AclConfig.h"

namespace host {

struct Native {
  // Mounts what is always there, empty.
  Native();

  Rok::Ptr<Qos::Input::AclConfig> aclConfig = Rok::make<Qos::Input::AclConfig>();
};

}  // namespace host
