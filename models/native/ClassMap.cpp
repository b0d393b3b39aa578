#include "models/native/ClassMap.h"

namespace Qos {

const Rok::EnumType<unsigned char>& rokEnumType(MapType) {
  static const Rok::EnumType<unsigned char> type("Qos::MapType", {{1, "mapQos"}});
  return type;
}

const Rok::EnumType<unsigned char>& rokEnumType(ClassMapMatchOption) {
  static const Rok::EnumType<unsigned char> type(
      "Qos::ClassMapMatchOption", {{1, "matchIpAccessGroup"}, {2, "matchIpv6AccessGroup"}});
  return type;
}

}  // namespace Qos
