// A feed over writes that no translator makes: the model is written, removed and made anew by its
// own operations, in any order, and after each commit every consumer must hold what it does. Each
// write takes a byte that chooses it and one for each thing that it needs.
#include <string>

#include "Fuzz.h"
#include "tests/days/Follower.h"

namespace {

using namespace QosOc::Config;
using QosOc::Classifier::Type;

class Bytes {
 public:
  explicit Bytes(std::string_view bytes) : bytes_(bytes) {}
  bool isEmpty() const { return bytes_.empty(); }
  std::uint8_t take() {
    if (bytes_.empty()) return 0;
    const auto byte = static_cast<std::uint8_t>(bytes_.front());
    bytes_.remove_prefix(1);
    return byte;
  }
  bool flag() { return take() % 2 != 0; }
  // The consumers look at subtrees of the first two. Of the others, some are escaped in paths, one
  // is bookkeeping, and one is none that the document can hold.
  Rok::String name() {
    constexpr const char* names[] = {"edge-in", "Ethernet1", "a", "a]\\", "b", "", "c\x01", "1"};
    return names[take() % std::size(names)];
  }

 private:
  std::string_view bytes_;
};

using Write = void (*)(const host::Model& model, Bytes& bytes);

// ===== Classifiers and forwarding groups

Terms& terms(const host::Model& model, Bytes& bytes) {
  return *model.classifiers->classifierIs(bytes.name())->termsIs();
}

TermConditionsIpConfig conditions(Bytes& bytes) {
  TermConditionsIpConfig family;
  if (bytes.flag()) family.dscp = bytes.take();
  for (std::uint8_t more = bytes.take() % 4; more > 0; --more) family.dscpSetPush(bytes.take());
  return family;
}

constexpr Write classification[] = {
    [](const host::Model& model, Bytes& bytes) {
      model.classifiers->classifierIs(bytes.name())->typeIs(Type(bytes.take() % 3));
    },
    [](const host::Model& model, Bytes& bytes) { model.classifiers->classifierDel(bytes.name()); },
    [](const host::Model& model, Bytes& bytes) {
      model.classifiers->classifierIs(bytes.name())->termsDel();
    },
    [](const host::Model& model, Bytes& bytes) { terms(model, bytes).termMade(bytes.name()); },
    [](const host::Model& model, Bytes& bytes) { terms(model, bytes).termDel(bytes.name()); },
    [](const host::Model& model, Bytes& bytes) {
      Terms& at = terms(model, bytes);
      TermContent& content = at.termContent(at.termMade(bytes.name()));
      content.conditions.reset();
      if (bytes.flag()) content.conditions = TermConditions{conditions(bytes), conditions(bytes)};
    },
    [](const host::Model& model, Bytes& bytes) {
      Terms& at = terms(model, bytes);
      TermContent& content = at.termContent(at.termMade(bytes.name()));
      content.actions.reset();
      if (bytes.flag()) content.actions = TermActions{{bytes.name()}};
    },
    [](const host::Model& model, Bytes& bytes) {
      const Rok::String name = bytes.name();
      model.forwardingGroups->forwardingGroupIs(name)->configIs({name, bytes.name()});
    },
    [](const host::Model& model, Bytes& bytes) {
      model.forwardingGroups->forwardingGroupDel(bytes.name());
    },
};

// ===== Interfaces

Interface& interface(const host::Model& model, Bytes& bytes) {
  return *model.interfaces->interfaceIs(bytes.name());
}

constexpr Write attachments[] = {
    [](const host::Model& model, Bytes& bytes) {
      interface(model, bytes).configIs({bytes.name()});
    },
    [](const host::Model& model, Bytes& bytes) { interface(model, bytes).inputDel(); },
    [](const host::Model& model, Bytes& bytes) { interface(model, bytes).outputDel(); },
    [](const host::Model& model, Bytes& bytes) {
      InterfaceInputClassifiers& at = *interface(model, bytes).inputIs()->classifiersIs();
      InterfaceInputClassifier classifier{Type(bytes.take() % 3)};
      classifier.config.name = bytes.name();
      at.classifierIs(classifier);
    },
    [](const host::Model& model, Bytes& bytes) {
      InterfaceInputClassifiers& at = *interface(model, bytes).inputIs()->classifiersIs();
      at.classifierDel(Type(bytes.take() % 3));
    },
    [](const host::Model& model, Bytes& bytes) {
      InterfaceOutputQueues& at = *interface(model, bytes).outputIs()->queuesIs("");
      const Rok::String name = bytes.name();
      at.qContentIs(name).config = {bytes.flag() ? name : Rok::String(), bytes.name()};
    },
    [](const host::Model& model, Bytes& bytes) {
      InterfaceOutputQueues& at = *interface(model, bytes).outputIs()->queuesIs("");
      at.qContentIs(bytes.name()).config = {};
    },
    [](const host::Model& model, Bytes& bytes) {
      InterfaceOutput& at = *interface(model, bytes).outputIs();
      at.schedulerPolicyIs({});
      if (bytes.flag()) at.schedulerPolicyIs(InterfaceOutputSchedulerPolicy{{bytes.name()}});
    },
    [](const host::Model& model, Bytes& bytes) {
      interface(model, bytes).outputIs()->pfcIs({bytes.name()});
    },
    [](const host::Model& model, Bytes& bytes) {
      PfcWatchdog watchdog;
      watchdog.timeA = bytes.take() / 4.0;
      watchdog.action = bytes.take() % 3;
      watchdog.priorities = bytes.name();
      model.pfc->watchdogIs(bytes.flag() ? watchdog : PfcWatchdog());
    },
};

// ===== Queues, profiles and scheduler policies

Scheduler& scheduler(const host::Model& model, Bytes& bytes) {
  SchedulerPolicy& policy = *model.schedulerPolicies->schedulerPolicyIs(bytes.name());
  return *policy.schedulersIs()->schedulerIs(bytes.take() % 3);
}

constexpr Write queueing[] = {
    [](const host::Model& model, Bytes& bytes) { model.queues->qDel(bytes.name()); },
    [](const host::Model& model, Bytes& bytes) {
      QueueContent& content = model.queues->qContentIs(bytes.name());
      content.config.strictPriority = bytes.flag();
      content.config.bandwidth.reset();
      if (bytes.flag()) content.config.bandwidth = QosOc::PercentType(bytes.take() % 101);
    },
    [](const host::Model& model, Bytes& bytes) {
      QueueContent& content = model.queues->qContentIs(bytes.name());
      content.ecnConfig.reset();
      if (!bytes.flag()) return;
      content.ecnConfig = QueueEcnConfig();
      content.ecnConfig->weight = bytes.take();
    },
    [](const host::Model& model, Bytes& bytes) {
      QueueManagementProfilesDir& profiles = *model.queueManagementProfiles;
      profiles.queueManagementProfileContentIs(bytes.name()).wredUniform.weight = bytes.take();
    },
    [](const host::Model& model, Bytes& bytes) {
      model.queueManagementProfiles->queueManagementProfileDel(bytes.name());
    },
    [](const host::Model& model, Bytes& bytes) {
      model.schedulerPolicies->schedulerPolicyDel(bytes.name());
    },
    [](const host::Model& model, Bytes& bytes) {
      Scheduler& at = scheduler(model, bytes);
      SchedulerConfig config{.sequence = at.sequence()};
      if (bytes.flag()) config.priority = SchedulerPriority(bytes.take() % 2);
      at.configIs(config);
    },
    [](const host::Model& model, Bytes& bytes) {
      Scheduler& at = scheduler(model, bytes);
      SchedulerInput input(bytes.name());
      input.config.queue = bytes.name();
      if (bytes.flag()) input.config.weight = bytes.take();
      at.inputsIs()->inputIs(input);
    },
    [](const host::Model& model, Bytes& bytes) {
      Scheduler& at = scheduler(model, bytes);
      at.oneRateTwoColorIs({});
      if (bytes.flag()) at.oneRateTwoColorIs(OneRateTwoColor{bytes.take(), {}});
    },
};

constexpr std::size_t all =
    std::size(classification) + std::size(attachments) + std::size(queueing);

void write(std::size_t number, const host::Model& model, Bytes& bytes) {
  if (number < std::size(classification)) return classification[number](model, bytes);
  number -= std::size(classification);
  if (number < std::size(attachments)) return attachments[number](model, bytes);
  queueing[number - std::size(attachments)](model, bytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t longest = 400;
  if (size > longest) return 0;
  Bytes bytes(Fuzz::text(data, size));
  const host::Model model;
  days::Follower follower(model);
  while (!bytes.isEmpty()) {
    // One in five is a commit.
    const std::size_t number = bytes.take() % (all + all / 4);
    if (number < all) {
      write(number, model, bytes);
      if (!bytes.isEmpty()) continue;
    }
    const std::string wrong = follower.commit();
    Fuzz::require(wrong.empty(), wrong.c_str());
  }
  return 0;
}
