// A device with class maps and the classifiers that a root keeps for them.
#pragma once

#include <initializer_list>
#include <map>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"

namespace support {

using MatchOptions = std::initializer_list<Qos::ClassMapMatchOption>;

inline Rok::Ptr<Qos::ClassMapConfig> classMap(const Rok::String& name,
                                              MatchOptions options = {Qos::matchIpAccessGroup}) {
  auto config = Rok::make<Qos::ClassMapConfig>(name, Qos::mapQos);
  for (const auto option : options) config->matchIs(option, Rok::make<Qos::ClassMapMatch>());
  return config;
}

struct ClassMapDevice {
  Rok::Ptr<Qos::Input::AclConfig> aclConfig = Rok::make<Qos::Input::AclConfig>();
  Rok::Ptr<Qos::Input::ClassMapTypeConfig> classMaps =
      Rok::make<Qos::Input::ClassMapTypeConfig>(Qos::mapQos);
  Rok::Ptr<QosOc::Config::ClassifiersDir> classifiers = Rok::make<QosOc::Config::ClassifiersDir>();
  Rok::Ptr<QosOc::ClassMapKivToOcSm> root;

  ClassMapDevice() { aclConfig->cmapTypeIs(Qos::mapQos, classMaps); }

  // Native writes.
  Rok::Ptr<Qos::ClassMapConfig> add(const Rok::String& name,
                                    MatchOptions options = {Qos::matchIpAccessGroup}) {
    auto config = classMap(name, options);
    classMaps->cmapIs(name, config);
    return config;
  }
  void remove(const Rok::String& name) { classMaps->cmapDel(name); }

  // Starts and stops the root.
  void start() { root = QosOc::classMapKivToOcSmFactory(aclConfig, classifiers); }
  void stop() { root = nullptr; }
  void restart() {
    stop();
    start();
  }
  // The machine of a class map; null when it is not mirrored.
  Rok::Ptr<QosOc::ClassMapSm> machine(const Rok::String& name) const {
    return types()->cmapConfigSm().child(name);
  }
  Rok::Ptr<QosOc::ClassMapTypeSm> types() const {
    return root->cmapTypeConfigSm().child(Qos::mapQos);
  }

  // The output: "name/type" to the ids of the terms; "-" stands for absent terms.
  std::map<std::string, std::vector<std::string>> model() const {
    std::map<std::string, std::vector<std::string>> result;
    for (auto i = classifiers->classifier().iterator(); i; ++i) {
      const auto& classifier = *i.currNodeNonStale()->value();
      auto& terms = result[label(classifier)];
      if (!classifier.terms()) {
        terms = {"-"};
        continue;
      }
      for (auto t = classifier.terms()->term().iterator(); t; ++t) {
        terms.emplace_back(std::string_view(t.key()));
      }
      std::ranges::sort(terms);
    }
    return result;
  }
  static std::string label(const QosOc::Config::Classifier& classifier) {
    std::string result(std::string_view(classifier.name()));
    const auto type = classifier.config().type;
    if (!type) return result + "/untyped";
    return result + (*type == QosOc::Classifier::classifierTypeIpv4 ? "/v4" : "/v6");
  }

  // Output of an earlier run.
  Rok::Ptr<QosOc::Config::Classifier> earlier(
      const Rok::String& name, std::initializer_list<Rok::String> terms = {},
      QosOc::Classifier::Type type = QosOc::Classifier::classifierTypeIpv4) {
    auto classifier = classifiers->classifierIs(name);
    classifier->configIs({name, type});
    for (const auto& id : terms) {
      QosOc::Config::Term term(id);
      term.configId = id;
      classifier->termsIs()->termIs(term);
    }
    return classifier;
  }
};

using Model = std::map<std::string, std::vector<std::string>>;

}  // namespace support
