#include "models/openconfig/Interface.h"

#include <ostream>

namespace QosOc::Config {

std::ostream& operator<<(std::ostream& out, const InterfaceInputClassifier& classifier) {
  return out << "{type " << classifier.type << ", config {name " << classifier.config.name
             << ", type " << classifier.config.type << "}}";
}

std::ostream& operator<<(std::ostream& out, const InterfaceOutputQueue& queue) {
  return out << "{name " << queue.name << ", config {name " << queue.config.name
             << ", queueManagementProfile " << queue.config.queueManagementProfile << "}}";
}

std::ostream& operator<<(std::ostream& out, const InterfaceOutputSchedulerPolicyConfig& config) {
  return out << "{name " << config.name << "}";
}

std::ostream& operator<<(std::ostream& out, const InterfaceOutputSchedulerPolicy& policy) {
  return out << policy.config;
}

std::ostream& operator<<(std::ostream& out, const IntfPfc& pfc) {
  return out << "{priorities " << pfc.priorities << "}";
}

}  // namespace QosOc::Config
