#include "host/Native.h"

namespace host {

Native::Native() {
  // The class-map root refuses to be built without this entry.
  aclConfig->cmapTypeIs(Qos::mapQos, Rok::make<Qos::Input::ClassMapTypeConfig>(Qos::mapQos));
}

}  // namespace host
