#include "models/openconfig/SchedulerPolicy.h"

#include <ostream>

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

std::ostream& operator<<(std::ostream& out, const SchedulerInputConfig& config) {
  return out << "{id " << config.id << ", inputType " << config.inputType << ", queue "
             << config.queue << ", weight " << config.weight << "}";
}

std::ostream& operator<<(std::ostream& out, const SchedulerInput& input) {
  return out << "{id " << input.id << ", config " << input.config << "}";
}

std::ostream& operator<<(std::ostream& out, const OneRateTwoColor& rate) {
  return out << "{cir " << rate.cir << ", cirPct " << rate.cirPct << "}";
}

std::ostream& operator<<(std::ostream& out, const SchedulerConfig& config) {
  return out << "{sequence " << config.sequence << ", schedulerType " << config.schedulerType
             << ", priority " << config.priority << "}";
}

std::ostream& operator<<(std::ostream& out, const SchedulerPolicyConfig& config) {
  return out << "{name " << config.name << "}";
}

}  // namespace QosOc::Config
