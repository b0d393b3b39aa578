// Output models, built by hand, and how they print.
#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "host/Model.h"
#include "host/ModelReader.h"
#include "host/ModelWriter.h"
#include "host/OpenConfigJson.h"

namespace support {

struct HostModel {
  using Type = QosOc::Classifier::Type;

  Rok::Ptr<QosOc::Config::Classifier> classifier(std::string_view name,
                                                 Type type = Type::classifierTypeIpv4) const {
    auto classifier = model.classifiers->classifierIs(name);
    classifier->configIs({name, type});
    return classifier;
  }
  // A term of the classifier "c".
  QosOc::Config::Term term(std::string_view id) const {
    QosOc::Config::Term term{Rok::String(id)};
    term.configId = id;
    return term;
  }
  void termIs(const QosOc::Config::Term& term) const { classifier("c")->termsIs()->termIs(term); }

  void forwardingGroupIs(std::string_view name, std::string_view outputQueue) const {
    model.forwardingGroups->forwardingGroupIs(name)->configIs({name, outputQueue});
  }
  void queueIs(std::string_view name) const {
    model.queues->qIs(QosOc::Config::Queue(Rok::String(name)));
  }
  Rok::Ptr<QosOc::Config::Interface> interface(std::string_view name) const {
    return model.interfaces->interfaceIs(name);
  }
  // A classifier of the input of the interface "e".
  void inputClassifierIs(unsigned char type, std::string_view name) const {
    QosOc::Config::InterfaceInputClassifier classifier{Type{type}};
    classifier.config = {name, Type{type}};
    interface("e")->inputIs()->classifiersIs()->classifierIs(classifier);
  }
  // A queue of the output of the interface "e".
  void outputQueueIs(std::string_view name, std::string_view configName,
                     std::string_view profile) const {
    QosOc::Config::InterfaceOutputQueue queue{Rok::String(name)};
    queue.config = {configName, profile};
    interface("e")->outputIs()->queuesIs("")->qIs(queue);
  }
  void schedulerPolicyIs(std::string_view name) const {
    interface("e")->outputIs()->schedulerPolicyIs(
        QosOc::Config::InterfaceOutputSchedulerPolicy{{name}});
  }

  host::Model model;
};

// A model in the format `openconfig`, with the warnings.
struct HostRendered {
  explicit HostRendered(const HostModel& built, const host::ViewOptions& shown = {},
                        const host::Subtree& only = {})
      : json(host::OpenConfigJson([this](const std::string& line) { warnings.push_back(line); },
                                  shown, only)
                 .json(built.model, host::Layout::compact)) {}
  // Below the root.
  std::string tree() const {
    const std::string begin = R"({"openconfig-qos:qos":{)";
    return json.substr(begin.size(), json.size() - begin.size() - 2);
  }
  std::vector<std::string> warnings;
  std::string json;
};

// One member of a model in the format `model`.
inline std::string hostPart(const host::Model& model, const std::string& name) {
  const std::string text = host::modelJson(model, host::Layout::compact);
  const std::size_t begin = text.find('"' + name + "\":") + name.size() + 3;
  std::size_t end = begin;
  for (int depth = 0; end == begin || depth > 0; ++end) {
    depth += text[end] == '{' ? 1 : text[end] == '}' ? -1 : 0;
  }
  return text.substr(begin, end - begin);
}

// Reads one member of a model in the format `model`.
inline host::Model hostModelWith(const std::string& name, const std::string& part) {
  host::Model model;
  host::readModelText("{\"" + name + "\":" + part + "}", model);
  return model;
}

// One of each record, names that paths escape, and values that the document leaves out.
inline HostModel hostFullModel() {
  HostModel built;
  host::readModelText(R"({
      "classifiers": {"c[1]": {"config": {"name": "c", "type": 1}, "terms": {"t\\": {
          "actions": {"target-group": "f"}, "conditions": {"ipv4": {"dscp": 64},
              "ipv6": {"dscp": 0, "dscp-set": [1, 2, 2]}}}, "plain": {}}}, "": {}},
      "forwarding-groups": {"f": {"name": "f", "output-queue": "q"}, "\u0001": {}},
      "interfaces": {"Ethernet1/1": {"config": {"interface-id": "e"},
          "input": {"classifiers": {"1": {"config": {"name": "c[1]", "type": 1}}}},
          "output": {"pfc": {"priorities": "a0"}, "scheduler-policy": {"config": {"name": "s"}},
              "queues": {"q": {"config": {"name": "q", "queue-management-profile": "p"}}}}},
          "Ethernet2": {}},
      "pfc": {"watchdog": {"action": 5, "priorities": "8", "time-a": 0.5, "time-b": 100}},
      "queue-management-profiles": {"p": {"config": {"name": "p"}}},
      "queues": {"q": {"config": {"bandwidth": 40, "strict-priority": true}, "ecn-config": {}}},
      "scheduler-policies": {"s": {"schedulers": {"1": {"config": {"priority": 0},
          "inputs": {"i": {"config": {"queue": "q", "weight": 7}}},
          "one-rate-two-color": {"cir": 1000, "cir-pct": 20}}, "10": {}}}}})",
                      built.model);
  return built;
}

inline std::vector<host::ViewOptions> hostAllViews() {
  std::vector<host::ViewOptions> all;
  for (unsigned bits = 0; bits < 8; ++bits) {
    all.push_back({(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0});
  }
  return all;
}

inline QosOc::Config::TermConditionsIpConfig hostDscps(std::initializer_list<unsigned> set) {
  QosOc::Config::TermConditionsIpConfig family;
  for (const unsigned dscp : set) family.dscpSetPush(static_cast<unsigned char>(dscp));
  return family;
}

}  // namespace support
