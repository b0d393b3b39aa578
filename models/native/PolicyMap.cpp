#include "models/native/PolicyMap.h"

namespace Qos {

const Rok::EnumType<unsigned char>& rokEnumType(ActionType) {
  static const Rok::EnumType<unsigned char> type("Qos::ActionType", {{4, "actionSetTc"}});
  return type;
}

}  // namespace Qos
