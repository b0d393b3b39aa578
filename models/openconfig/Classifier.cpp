#include "models/openconfig/Classifier.h"

namespace QosOc::Classifier {

const Rok::EnumType<unsigned char>& rokEnumType(Type) {
  static const Rok::EnumType<unsigned char> type(
      "QosOc::Classifier::Type", {{0, "classifierTypeIpv4"}, {1, "classifierTypeIpv6"}});
  return type;
}

}  // namespace QosOc::Classifier
