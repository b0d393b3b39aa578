#include "models/openconfig/Classifier.h"

namespace QosOc::Classifier {

const Rok::EnumType<unsigned char>& rokEnumType(Type) {
  static const Rok::EnumType<unsigned char> type(
      "QosOc::Classifier::Type", {{0, "classifierTypeIpv4"}, {1, "classifierTypeIpv6"}});
  return type;
}

}  // namespace QosOc::Classifier

namespace QosOc::Config {

std::ostream& operator<<(std::ostream& out, const ClassifierConfig& config) {
  return out << "{name " << config.name << ", type " << config.type << "}";
}

std::ostream& operator<<(std::ostream& out, const TermConditionsIpConfig& config) {
  out << "{dscp ";
  if (config.dscp) {
    out << static_cast<unsigned>(*config.dscp);
  } else {
    out << "(absent)";
  }
  out << ", dscpSet [";
  const char* comma = "";
  for (const unsigned value : config.dscpSet) {
    out << comma << value;
    comma = ", ";
  }
  return out << "]}";
}

std::ostream& operator<<(std::ostream& out, const TermConditions& conditions) {
  return out << "{ipv4 " << conditions.ipv4 << ", ipv6 " << conditions.ipv6 << "}";
}

std::ostream& operator<<(std::ostream& out, const TermActions& actions) {
  return out << "{targetGroup " << actions.config.targetGroup << "}";
}

std::ostream& operator<<(std::ostream& out, const Term& term) {
  return out << "{id " << term.id << ", configId " << term.configId << ", conditions "
             << term.conditions << ", actions " << term.actions << "}";
}

}  // namespace QosOc::Config
