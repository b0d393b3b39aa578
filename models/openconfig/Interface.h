// OpenConfig interfaces: the classifiers of their input; the queues, scheduler policy and priority
// flow control of their output.
#pragma once

#include <iosfwd>

#include "Rok/Rok.h"
#include "models/openconfig/Classifier.h"
#include "models/openconfig/Records.h"

namespace QosOc::Config {

// ===== Input

// The name and the family of the classifier.
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
  static constexpr RecordId record = RecordId::inputClassifier;
  QosOc::Classifier::Type type = QosOc::Classifier::classifierTypeIpv4;  // the key
  InterfaceInputClassifierConfig config;

  InterfaceInputClassifier() = default;
  explicit InterfaceInputClassifier(QosOc::Classifier::Type key) : type(key) {}
  static constexpr auto fields() {
    return std::tuple{KeyField{"type", &InterfaceInputClassifier::type},
                      Field{"config", &InterfaceInputClassifier::config}};
  }

  bool operator==(const InterfaceInputClassifier&) const = default;
  explicit operator bool() const { return *this != InterfaceInputClassifier(); }
};

// The classifiers of an interface's input, one a family.
class InterfaceInputClassifiers final : public Rok::PtrInterface {
 public:
  using Classifiers =
      RecordMap<InterfaceInputClassifier, 0xc19bf174u, &InterfaceInputClassifier::type>;

  static constexpr auto entries() {
    return Records{&InterfaceInputClassifiers::classifier, &InterfaceInputClassifiers::classifierIs,
                   &InterfaceInputClassifiers::classifierDel};
  }

  const Classifiers::Map& classifier() const { return classifiers_.map(); }
  // The default record when there is none.
  InterfaceInputClassifier classifier(QosOc::Classifier::Type type) const {
    return classifiers_.get(type);
  }
  void classifierIs(const InterfaceInputClassifier& classifier) { classifiers_.is(classifier); }
  void classifierDel(QosOc::Classifier::Type type) { classifiers_.del(type); }

  void markerIs(const Marker& marker) { classifiers_.markerIs(marker); }

 private:
  Classifiers classifiers_;
};

// What comes in: the service policies write it.
class InterfaceInput final : public Rok::PtrInterface {
 public:
  static constexpr auto attributes() {
    return std::tuple{
        child("classifiers", &InterfaceInput::classifiers, &InterfaceInput::classifiersIs)};
  }

  const Rok::Ptr<InterfaceInputClassifiers>& classifiers() const { return classifiers_; }
  const Rok::Ptr<InterfaceInputClassifiers>& classifiersIs() {
    if (!classifiers_) made(classifiers_, marker_);
    return classifiers_;
  }

  void markerIs(const Marker& marker) {
    marker_ = marker;
    if (classifiers_) classifiers_->markerIs(marker);
  }

 private:
  Rok::Ptr<InterfaceInputClassifiers> classifiers_;
  Marker marker_;
};

// ===== Output

// A queue's name, and the queue-management profile that it uses; empty when that was withdrawn.
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

// What an output queue holds beside its key.
struct InterfaceOutputQueueContent {
  InterfaceOutputQueueConfig config;

  bool operator==(const InterfaceOutputQueueContent&) const = default;
};

// A queue of an interface's output, by its name.
struct InterfaceOutputQueue : InterfaceOutputQueueContent {
  static constexpr RecordId record = RecordId::outputQueue;
  using Content = InterfaceOutputQueueContent;
  Rok::String name;  // the key

  InterfaceOutputQueue() = default;
  explicit InterfaceOutputQueue(const Rok::String& key) : name(key) {}
  static constexpr auto fields() {
    return std::tuple{KeyField{"name", &InterfaceOutputQueue::name},
                      Field{"config", &InterfaceOutputQueue::config}};
  }

  bool operator==(const InterfaceOutputQueue&) const = default;
  explicit operator bool() const { return *this != InterfaceOutputQueue(); }
};

// A writer blanks an entry and never removes it: there is no delete for it.
class InterfaceOutputQueues final : public Rok::PtrInterface {
 public:
  using Queues = RecordMap<InterfaceOutputQueue, 0xe49b69c1u, &InterfaceOutputQueue::name>;

  explicit InterfaceOutputQueues(const Rok::String& name) : name_(name) {}

  static constexpr auto entries() {
    return Records{&InterfaceOutputQueues::q, &InterfaceOutputQueues::qIs,
                   &InterfaceOutputQueues::qDel};
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

  void markerIs(const Marker& marker) { queues_.markerIs(marker); }

 private:
  void qDel(const Rok::String& name) { queues_.del(name); }

  Rok::String name_;
  Queues queues_;
};

// The name of a scheduler policy.
struct InterfaceOutputSchedulerPolicyConfig {
  Rok::String name;
  static constexpr auto fields() {
    return std::tuple{Field{"name", &InterfaceOutputSchedulerPolicyConfig::name}};
  }

  bool operator==(const InterfaceOutputSchedulerPolicyConfig&) const = default;
  explicit operator bool() const { return *this != InterfaceOutputSchedulerPolicyConfig(); }
};

// The scheduler policy of an interface's output.
struct InterfaceOutputSchedulerPolicy {
  static constexpr RecordId record = RecordId::outputSchedulerPolicy;
  InterfaceOutputSchedulerPolicyConfig config;
  static constexpr auto fields() {
    return std::tuple{Field{"config", &InterfaceOutputSchedulerPolicy::config}};
  }

  bool operator==(const InterfaceOutputSchedulerPolicy&) const = default;
  explicit operator bool() const { return *this != InterfaceOutputSchedulerPolicy(); }
};

// Priority flow control of a port: hexadecimal digits; empty when it was withdrawn.
struct IntfPfc {
  static constexpr RecordId record = RecordId::outputPfc;
  Rok::String priorities;
  static constexpr auto fields() { return std::tuple{Field{"priorities", &IntfPfc::priorities}}; }

  bool operator==(const IntfPfc&) const = default;
  explicit operator bool() const { return *this != IntfPfc(); }
};

// What goes out: queues, scheduler policy and priority flow control have a writer each.
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
    if (!queues_) made(queues_, marker_, name);
    return queues_;
  }
  const SchedulerPolicy& schedulerPolicy() const { return schedulerPolicy_.get(); }
  void schedulerPolicyIs(const SchedulerPolicy& policy) { schedulerPolicy_.is(marker_, policy); }
  const IntfPfc& pfc() const { return pfc_.get(); }
  void pfcIs(const IntfPfc& pfc) { pfc_.is(marker_, pfc); }

  void markerIs(const Marker& marker) {
    marker_ = marker;
    if (queues_) queues_->markerIs(marker);
  }

 private:
  Rok::Ptr<InterfaceOutputQueues> queues_;
  Recorded<SchedulerPolicy> schedulerPolicy_;
  Recorded<IntfPfc> pfc_;
  Marker marker_;
};

// ===== Interfaces

// What an interface is called: its native long name.
struct InterfaceConfig {
  static constexpr RecordId record = RecordId::interface;
  Rok::String interfaceId;
  static constexpr auto fields() {
    return std::tuple{Field{"interfaceId", &InterfaceConfig::interfaceId}};
  }

  bool operator==(const InterfaceConfig&) const = default;
  explicit operator bool() const { return *this != InterfaceConfig(); }
};

class Interface final : public Rok::PtrInterface {
 public:
  static constexpr RecordId record = InterfaceConfig::record;

  explicit Interface(const Rok::String& interfaceId) : interfaceId_(interfaceId) {}

  static constexpr auto attributes() {
    return std::tuple{attribute("config", &Interface::config, &Interface::configIs),
                      child("input", &Interface::input, &Interface::inputIs),
                      child("output", &Interface::output, &Interface::outputIs)};
  }

  const Rok::String& interfaceId() const { return interfaceId_; }
  const InterfaceConfig& config() const { return config_.get(); }
  void configIs(const InterfaceConfig& config) { config_.is(marker_, config); }

  // Null until made.
  const Rok::Ptr<InterfaceInput>& input() const { return input_; }
  const Rok::Ptr<InterfaceInput>& inputIs() {
    if (!input_) made(input_, marker_);
    return input_;
  }
  void inputDel() { removed(input_, marker_, record); }
  const Rok::Ptr<InterfaceOutput>& output() const { return output_; }
  const Rok::Ptr<InterfaceOutput>& outputIs() {
    if (!output_) made(output_, marker_);
    return output_;
  }
  void outputDel() { removed(output_, marker_, record); }

  void markerIs(const Marker& marker) {
    marker_ = marker;
    if (input_) input_->markerIs(marker);
    if (output_) output_->markerIs(marker);
  }

 private:
  Rok::String interfaceId_;
  Recorded<InterfaceConfig> config_;
  Rok::Ptr<InterfaceInput> input_;
  Rok::Ptr<InterfaceOutput> output_;
  Marker marker_;
};

// All interfaces by long name. An interface, once made, stays: writers have no delete for it.
class InterfacesDir final : public Rok::PtrInterface {
 public:
  using Interfaces = ObjectMap<Interface, 0xefbe4786u, &Interface::interfaceId>;

  static constexpr auto entries() {
    return Objects{&InterfacesDir::interface, &InterfacesDir::interfaceIs,
                   &InterfacesDir::interfaceDel};
  }

  const Interfaces::Map& interface() const { return interfaces_.map(); }
  Rok::Ptr<Interface> interface(const Rok::String& name) const { return interfaces_.get(name); }
  Rok::Ptr<Interface> interfaceIs(const Rok::String& name) { return interfaces_.is(name); }

  void journalIs(Journal* journal) { interfaces_.markerIs(Marker(journal)); }

 private:
  void interfaceDel(const Rok::String& name) { interfaces_.del(name); }

  Interfaces interfaces_;
};

}  // namespace QosOc::Config
