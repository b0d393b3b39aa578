// /qos/interfaces, and what it refers to in /interfaces
#include "host/openconfig/MakeKind.h"
#include "host/openconfig/Priorities.h"

namespace host {

using namespace QosOc::Config;

namespace {

std::string shownInterface(const Keys& keys) { return "the interface " + quoted(keys[0]); }

std::string comment(const InterfaceOutputQueue& /*queue*/, const Keys& keys) {
  return "the comment on the tx queue " + quoted(keys[1]) + " of " + shownInterface(keys);
}

// A word for what the native side doesn't say and OpenConfig can't do without.
template <const std::string_view& word>
LeafValue always(const Interface& /*interface*/, const Keys& /*keys*/, const Faults& /*faults*/) {
  return word;
}
constexpr std::string_view ethernet = "iana-if-type:ethernetCsmacd";
constexpr std::string_view up = "UP";  // what `enabled` stands for when it is left out
constexpr std::string_view unknown = "UNKNOWN";
constexpr std::string_view adminStatuses[] = {"UP", "DOWN", "TESTING"};
constexpr std::string_view operStatuses[] = {"UP",      "DOWN",        "TESTING",         "UNKNOWN",
                                             "DORMANT", "NOT_PRESENT", "LOWER_LAYER_DOWN"};

// The reference is to the port as such, so it names no subinterface; other documents may.
LeafValue subinterface(const InterfaceConfig& /*config*/, const Keys& /*keys*/,
                       const Faults& /*faults*/) {
  return {};
}

}  // namespace

// ===== Tables

template <>
struct Table<InterfaceConfig> {
  static std::string native(const Keys& keys) { return shownInterface(keys); }
  static constexpr Leaf<InterfaceConfig> leaves[] = {
      {"config/interface-id", entryKey},
      {"interface-id", entryKey},
      {"interface-ref/config/interface", entryKey, nullptr, {}, Shown::withInterfaceRef},
      {"interface-ref/config/subinterface",
       {LeafType::uint32, subinterface},
       nullptr,
       {},
       Shown::withInterfaceRef},
  };
};

// An entry of /interfaces is valid only with a type and its state, so these are always there.
template <>
struct Table<Interface> {
  static std::string native(const Keys& keys) { return shownInterface(keys); }
  static constexpr Leaf<Interface> leaves[] = {
      {"config/name", entryKey},
      {"config/type", {LeafType::identityref, always<ethernet>}},
      {"name", entryKey},
      {"state/admin-status", {LeafType::enumeration, always<up>, {.names = adminStatuses}}},
      {"state/oper-status", {LeafType::enumeration, always<unknown>, {.names = operStatuses}}},
      {"state/type", {LeafType::identityref, always<ethernet>}},
  };
};

template <>
struct Table<InterfaceInputClassifier> {
  static std::string native(const Keys& keys) {
    return "a service policy of " + shownInterface(keys);
  }
  static constexpr Leaf<InterfaceInputClassifier> leaves[] = {
      {"config/name", at<&InterfaceInputClassifier::config, &InterfaceInputClassifierConfig::name>},
      {"config/type",
       {LeafType::enumeration, keyOf<InterfaceInputClassifier>, {.names = classifierTypes}}},
      {"type",
       {LeafType::enumeration, keyOf<InterfaceInputClassifier>, {.names = classifierTypes}}},
  };
};

template <>
struct Table<IntfPfc> {
  static std::string native(const Keys& keys) {
    return "the PFC settings of " + shownInterface(keys);
  }
  static constexpr Leaf<IntfPfc> leaves[] = {
      {"config/priorities", {LeafType::string, priorities<&IntfPfc::priorities>, prioritiesLimits}},
  };
};

template <>
struct Table<InterfaceOutputQueue> {
  static std::string native(const Keys& keys) { return "the queue name " + quoted(keys[1]); }
  // A blanked attachment is bookkeeping: the records can't be removed.
  static bool isThere(const InterfaceOutputQueue& queue) { return bool(queue.config); }
  static constexpr Leaf<InterfaceOutputQueue> leaves[] = {
      {"config/name", entryKey},
      {"config/queue-management-profile",
       at<&InterfaceOutputQueue::config, &InterfaceOutputQueueConfig::queueManagementProfile>,
       comment},
      {"name", entryKey},
  };
};

template <>
struct Table<InterfaceOutputSchedulerPolicy> {
  static std::string native(const Keys& keys) {
    return "a comment on a tx queue of " + shownInterface(keys);
  }
  static constexpr Leaf<InterfaceOutputSchedulerPolicy> leaves[] = {
      {"config/name",
       at<&InterfaceOutputSchedulerPolicy::config, &InterfaceOutputSchedulerPolicyConfig::name>},
  };
};

namespace kinds {

constexpr const RecordKind* belowInterface[] = {&inputClassifier, &outputPfc, &outputQueue,
                                                &outputSchedulerPolicy};
constinit const RecordKind interface = listKind<InterfaceConfig, &Model::interfaces>(
    "interfaces/interface", "interface-id", nullptr, belowInterface);
constinit const RecordKind referencedInterface =
    below(interfacesRoot, listKind<Interface, &Model::interfaces>("interface", "name"));
constinit const RecordKind inputClassifier =
    listKind<InterfaceInputClassifier, &Interface::input, &InterfaceInput::classifiers>(
        "input/classifiers/classifier", "type", &interface);
constinit const RecordKind outputPfc =
    containerKind<IntfPfc, &Interface::output, &InterfaceOutput::pfc>("output/qosoc-augments:pfc",
                                                                      &interface);
constinit const RecordKind outputQueue =
    listKind<InterfaceOutputQueue, &Interface::output, &InterfaceOutput::queues>(
        "output/queues/queue", "name", &interface);
constinit const RecordKind outputSchedulerPolicy =
    containerKind<InterfaceOutputSchedulerPolicy, &Interface::output,
                  &InterfaceOutput::schedulerPolicy>("output/scheduler-policy", &interface);

}  // namespace kinds
}  // namespace host
