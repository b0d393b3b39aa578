// "interfaces": {"<long name>": {"config": {"interface-id": ""}, "input": {...} or null,
//                                "output": {...} or null}}
#include "host/model/Parts.h"

namespace host {
namespace {

using namespace QosOc::Config;
using Type = QosOc::Classifier::Type;

// ===== Input

Codec<InterfaceInputClassifierConfig> inputClassifierConfigCodec() {
  using Config = InterfaceInputClassifierConfig;
  return record<Config>(
      {member("name", &Config::name, text()), member("type", &Config::type, number<Type>())});
}

Codec<InterfaceInputClassifiers> inputClassifiersCodec() {
  using Classifiers = InterfaceInputClassifiers;
  const auto map = [](const Classifiers& classifiers) -> const auto& {
    return classifiers.classifier();
  };
  const auto classifier = record<InterfaceInputClassifier>(
      {member("config", &InterfaceInputClassifier::config, inputClassifierConfigCodec())});
  return records<Type>(map, &Classifiers::classifierIs, classifier);
}

Codec<InterfaceInput> inputCodec() {
  return record<InterfaceInput>({child("classifiers", &InterfaceInput::classifiers,
                                       &InterfaceInput::classifiersIs, inputClassifiersCodec())});
}

// ===== Output

Codec<InterfaceOutputQueueConfig> outputQueueConfigCodec() {
  using Config = InterfaceOutputQueueConfig;
  return record<Config>(
      {member("name", &Config::name, text()),
       member("queue-management-profile", &Config::queueManagementProfile, text())});
}

Codec<InterfaceOutputQueues> outputQueuesCodec() {
  const auto map = [](const InterfaceOutputQueues& queues) -> const auto& { return queues.q(); };
  const auto queue = record<InterfaceOutputQueue>(
      {member("config", &InterfaceOutputQueue::config, outputQueueConfigCodec())});
  return records<Rok::String>(map, &InterfaceOutputQueues::qIs, queue);
}

Codec<InterfaceOutputSchedulerPolicy> schedulerPolicyCodec() {
  using Config = InterfaceOutputSchedulerPolicyConfig;
  const auto config = record<Config>({member("name", &Config::name, text())});
  return record<InterfaceOutputSchedulerPolicy>(
      {member("config", &InterfaceOutputSchedulerPolicy::config, config)});
}

Codec<InterfaceOutput> outputCodec() {
  const auto queuesIs = [](InterfaceOutput& output) { return output.queuesIs(""); };
  const auto pfc = record<IntfPfc>({member("priorities", &IntfPfc::priorities, text())});
  return record<InterfaceOutput>(
      {attribute("pfc", &InterfaceOutput::pfc, &InterfaceOutput::pfcIs, pfc),
       child("queues", &InterfaceOutput::queues, queuesIs, outputQueuesCodec()),
       attribute("scheduler-policy", &InterfaceOutput::schedulerPolicy,
                 &InterfaceOutput::schedulerPolicyIs, orNull(schedulerPolicyCodec()))});
}

// ===== Interfaces

Codec<Interface> interfaceCodec() {
  const auto config =
      record<InterfaceConfig>({member("interface-id", &InterfaceConfig::interfaceId, text())});
  return record<Interface>(
      {attribute("config", &Interface::config, &Interface::configIs, config),
       child("input", &Interface::input, &Interface::inputIs, inputCodec()),
       child("output", &Interface::output, &Interface::outputIs, outputCodec())});
}

}  // namespace

ModelPart interfacesPart() {
  const auto map = [](const InterfacesDir& dir) -> const auto& { return dir.interface(); };
  return modelPart("interfaces", &Model::interfaces,
                   objects(map, &InterfacesDir::interfaceIs, interfaceCodec()));
}

}  // namespace host
