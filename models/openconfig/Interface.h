// OpenConfig interfaces: the classifiers of their input; the queues, scheduler policy and priority
// flow control of their output.
#pragma once

#include <iosfwd>

#include "Rok/Rok.h"
#include "models/openconfig/Classifier.h"
#include "models/openconfig/Records.h"

namespace QosOc::Config {

// ===== Input

struct InterfaceInputClassifierConfig {
  Rok::String name;
  QosOc::Classifier::Type type = QosOc::Classifier::classifierTypeIpv4;

  static constexpr auto fields() {
    return std::tuple{Field{"name", &InterfaceInputClassifierConfig::name},
                      Field{"type", &InterfaceInputClassifierConfig::type}};
  }

  bool operator==(const InterfaceInputClassifierConfig&) const = default;
  explicit operator bool() const { return *this != InterfaceInputClassifierConfig(); }
};

// The classifier that an interface's input has for one family.
struct InterfaceInputClassifier {
  QosOc::Classifier::Type type = QosOc::Classifier::classifierTypeIpv4;  // the key
  InterfaceInputClassifierConfig config;

  InterfaceInputClassifier() = default;
  explicit InterfaceInputClassifier(QosOc::Classifier::Type type) : type(type) {}
  static constexpr auto fields() {
    return std::tuple{KeyField{"type", &InterfaceInputClassifier::type},
                      Field{"config", &InterfaceInputClassifier::config}};
  }

  bool operator==(const InterfaceInputClassifier&) const = default;
  explicit operator bool() const { return *this != InterfaceInputClassifier(); }
};

class InterfaceInputClassifiers final : public Rok::PtrInterface {
 public:
  using Classifiers =
      RecordMap<InterfaceInputClassifier, 0xc19bf174u, &InterfaceInputClassifier::type>;

  static constexpr auto entries() {
    return Records{&InterfaceInputClassifiers::classifier,
                   &InterfaceInputClassifiers::classifierIs};
  }

  const Classifiers::Map& classifier() const { return classifiers_.map(); }
  // The default record when there is none.
  InterfaceInputClassifier classifier(QosOc::Classifier::Type type) const {
    return classifiers_.get(type);
  }
  void classifierIs(const InterfaceInputClassifier& classifier) { classifiers_.is(classifier); }
  void classifierDel(QosOc::Classifier::Type type) { classifiers_.del(type); }

 private:
  Classifiers classifiers_;
};

class InterfaceInput final : public Rok::PtrInterface {
 public:
  static constexpr auto attributes() {
    return std::tuple{
        child("classifiers", &InterfaceInput::classifiers, &InterfaceInput::classifiersIs)};
  }

  const Rok::Ptr<InterfaceInputClassifiers>& classifiers() const { return classifiers_; }
  const Rok::Ptr<InterfaceInputClassifiers>& classifiersIs() {
    if (!classifiers_) classifiers_ = Rok::make<InterfaceInputClassifiers>();
    return classifiers_;
  }

 private:
  Rok::Ptr<InterfaceInputClassifiers> classifiers_;
};

// ===== Output

struct InterfaceOutputQueueConfig {
  Rok::String name;
  Rok::String queueManagementProfile;

  static constexpr auto fields() {
    return std::tuple{
        Field{"name", &InterfaceOutputQueueConfig::name},
        Field{"queueManagementProfile", &InterfaceOutputQueueConfig::queueManagementProfile}};
  }

  bool operator==(const InterfaceOutputQueueConfig&) const = default;
  explicit operator bool() const { return *this != InterfaceOutputQueueConfig(); }
};

struct InterfaceOutputQueueContent {
  InterfaceOutputQueueConfig config;

  bool operator==(const InterfaceOutputQueueContent&) const = default;
};

struct InterfaceOutputQueue : InterfaceOutputQueueContent {
  using Content = InterfaceOutputQueueContent;
  Rok::String name;  // the key

  InterfaceOutputQueue() = default;
  explicit InterfaceOutputQueue(const Rok::String& name) : name(name) {}
  static constexpr auto fields() {
    return std::tuple{KeyField{"name", &InterfaceOutputQueue::name},
                      Field{"config", &InterfaceOutputQueue::config}};
  }

  bool operator==(const InterfaceOutputQueue&) const = default;
  explicit operator bool() const { return *this != InterfaceOutputQueue(); }
};

// An entry is blanked, never removed: there is no delete.
class InterfaceOutputQueues final : public Rok::PtrInterface {
 public:
  using Queues = RecordMap<InterfaceOutputQueue, 0xe49b69c1u, &InterfaceOutputQueue::name>;

  explicit InterfaceOutputQueues(const Rok::String& name) : name_(name) {}

  static constexpr auto entries() {
    return Records{&InterfaceOutputQueues::q, &InterfaceOutputQueues::qIs};
  }

  const Rok::String& name() const { return name_; }
  const Queues::Map& q() const { return queues_.map(); }
  // The default record when there is none.
  InterfaceOutputQueue q(const Rok::String& name) const { return queues_.get(name); }
  void qIs(const InterfaceOutputQueue& queue) { queues_.is(queue); }
  // What the entry of that name holds, to be written in place: as it stands, or a new entry of that
  // name alone.
  InterfaceOutputQueueContent& qContentIs(const Rok::String& name) {
    return queues_.contentIs(name);
  }
  // The same for an entry that was found here. Requires: it is still there.
  InterfaceOutputQueueContent& qContent(const InterfaceOutputQueue& found) {
    return queues_.content(found);
  }

 private:
  Rok::String name_;
  Queues queues_;
};

struct InterfaceOutputSchedulerPolicyConfig {
  Rok::String name;
  static constexpr auto fields() {
    return std::tuple{Field{"name", &InterfaceOutputSchedulerPolicyConfig::name}};
  }

  bool operator==(const InterfaceOutputSchedulerPolicyConfig&) const = default;
  explicit operator bool() const { return *this != InterfaceOutputSchedulerPolicyConfig(); }
};

struct InterfaceOutputSchedulerPolicy {
  InterfaceOutputSchedulerPolicyConfig config;
  static constexpr auto fields() {
    return std::tuple{Field{"config", &InterfaceOutputSchedulerPolicy::config}};
  }

  bool operator==(const InterfaceOutputSchedulerPolicy&) const = default;
  explicit operator bool() const { return *this != InterfaceOutputSchedulerPolicy(); }
};

// Priority flow control of a port: hexadecimal digits; empty when it was withdrawn.
struct IntfPfc {
  Rok::String priorities;
  static constexpr auto fields() { return std::tuple{Field{"priorities", &IntfPfc::priorities}}; }

  bool operator==(const IntfPfc&) const = default;
  explicit operator bool() const { return *this != IntfPfc(); }
};

class InterfaceOutput final : public Rok::PtrInterface {
 public:
  using SchedulerPolicy = Rok::Optional<InterfaceOutputSchedulerPolicy>;

  static constexpr auto attributes() {
    return std::tuple{child("queues", &InterfaceOutput::queues, &InterfaceOutput::queuesIs),
                      attribute("schedulerPolicy", &InterfaceOutput::schedulerPolicy,
                                &InterfaceOutput::schedulerPolicyIs),
                      attribute("pfc", &InterfaceOutput::pfc, &InterfaceOutput::pfcIs)};
  }

  // Null until made.
  const Rok::Ptr<InterfaceOutputQueues>& queues() const { return queues_; }
  // Creates, or gets what is there whatever its name.
  const Rok::Ptr<InterfaceOutputQueues>& queuesIs(const Rok::String& name) {
    if (!queues_) queues_ = Rok::make<InterfaceOutputQueues>(name);
    return queues_;
  }
  const SchedulerPolicy& schedulerPolicy() const { return schedulerPolicy_; }
  void schedulerPolicyIs(const SchedulerPolicy& policy) { schedulerPolicy_ = policy; }
  const IntfPfc& pfc() const { return pfc_; }
  void pfcIs(const IntfPfc& pfc) { pfc_ = pfc; }

 private:
  Rok::Ptr<InterfaceOutputQueues> queues_;
  SchedulerPolicy schedulerPolicy_;
  IntfPfc pfc_;
};

// ===== Interfaces

struct InterfaceConfig {
  Rok::String interfaceId;
  static constexpr auto fields() {
    return std::tuple{Field{"interfaceId", &InterfaceConfig::interfaceId}};
  }

  bool operator==(const InterfaceConfig&) const = default;
  explicit operator bool() const { return *this != InterfaceConfig(); }
};

class Interface final : public Rok::PtrInterface {
 public:
  explicit Interface(const Rok::String& interfaceId) : interfaceId_(interfaceId) {}

  static constexpr auto attributes() {
    return std::tuple{attribute("config", &Interface::config, &Interface::configIs),
                      child("input", &Interface::input, &Interface::inputIs),
                      child("output", &Interface::output, &Interface::outputIs)};
  }

  const Rok::String& interfaceId() const { return interfaceId_; }
  const InterfaceConfig& config() const { return config_; }
  void configIs(const InterfaceConfig& config) { config_ = config; }

  // Null until made.
  const Rok::Ptr<InterfaceInput>& input() const { return input_; }
  const Rok::Ptr<InterfaceInput>& inputIs() {
    if (!input_) input_ = Rok::make<InterfaceInput>();
    return input_;
  }
  void inputDel() { input_ = nullptr; }
  const Rok::Ptr<InterfaceOutput>& output() const { return output_; }
  const Rok::Ptr<InterfaceOutput>& outputIs() {
    if (!output_) output_ = Rok::make<InterfaceOutput>();
    return output_;
  }
  void outputDel() { output_ = nullptr; }

 private:
  Rok::String interfaceId_;
  InterfaceConfig config_;
  Rok::Ptr<InterfaceInput> input_;
  Rok::Ptr<InterfaceOutput> output_;
};

// All interfaces by long name. An interface, once made, stays: there is no delete.
class InterfacesDir final : public Rok::PtrInterface {
 public:
  using Interfaces = ObjectMap<Interface, 0xefbe4786u, &Interface::interfaceId>;

  static constexpr auto entries() {
    return Objects{&InterfacesDir::interface, &InterfacesDir::interfaceIs};
  }

  const Interfaces::Map& interface() const { return interfaces_.map(); }
  Rok::Ptr<Interface> interface(const Rok::String& name) const { return interfaces_.get(name); }
  Rok::Ptr<Interface> interfaceIs(const Rok::String& name) { return interfaces_.is(name); }

 private:
  Interfaces interfaces_;
};

}  // namespace QosOc::Config
