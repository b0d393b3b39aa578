#include "models/openconfig/Queue.h"

#include <ostream>

namespace QosOc::Config {
namespace {

const char* text(bool v) { return v ? "true" : "false"; }

}  // namespace

std::ostream& operator<<(std::ostream& out, const QueueConfig& config) {
  return out << "{name " << config.name << ", strictPriority " << text(config.strictPriority)
             << ", bandwidth " << config.bandwidth << "}";
}

std::ostream& operator<<(std::ostream& out, const QueueEcnConfig& config) {
  return out << "{maxDropProbabilityPercent " << config.maxDropProbabilityPercent
             << ", maxThreshold " << config.maxThreshold << ", minThreshold " << config.minThreshold
             << ", thresholdUnit " << static_cast<unsigned>(config.thresholdUnit) << ", weight "
             << config.weight << "}";
}

std::ostream& operator<<(std::ostream& out, const Queue& queue) {
  return out << "{name " << queue.name << ", config " << queue.config << ", ecnConfig "
             << queue.ecnConfig << "}";
}

std::ostream& operator<<(std::ostream& out, const QueueManagementProfile& profile) {
  const WredUniform& wred = profile.wredUniform;
  return out << "{name " << profile.name << ", config {name " << profile.config.name
             << "}, wredUniform {minThreshold " << wred.minThreshold << ", maxThreshold "
             << wred.maxThreshold << ", enableEcn " << text(wred.enableEcn) << ", drop "
             << text(wred.drop) << ", weight " << wred.weight << ", maxDropProbabilityPercent "
             << wred.maxDropProbabilityPercent << "}}";
}

}  // namespace QosOc::Config
