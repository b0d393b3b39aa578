#include "models/openconfig/SchedulerPolicy.h"

namespace QosOc::Config {

const Rok::EnumType<unsigned char>& rokEnumType(SchedulerInputType) {
  static const Rok::EnumType<unsigned char> type("QosOc::Config::SchedulerInputType",
                                                 {{0, "QUEUE"}});
  return type;
}

const Rok::EnumType<unsigned char>& rokEnumType(SchedulerType) {
  static const Rok::EnumType<unsigned char> type("QosOc::Config::SchedulerType",
                                                 {{0, "ONE_RATE_TWO_COLOR"}});
  return type;
}

const Rok::EnumType<unsigned char>& rokEnumType(SchedulerPriority) {
  static const Rok::EnumType<unsigned char> type("QosOc::Config::SchedulerPriority",
                                                 {{0, "STRICT"}});
  return type;
}

}  // namespace QosOc::Config
