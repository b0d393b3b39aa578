// Output models, built by hand.
#pragma once

#include <initializer_list>
#include <string_view>

#include "host/Model.h"

namespace support {

struct HostModel {
  using Type = QosOc::Classifier::Type;

  Rok::Ptr<QosOc::Config::Classifier> classifier(std::string_view name,
                                                 Type type = Type::classifierTypeIpv4) const {
    const auto classifier = model.classifiers->classifierIs(name);
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

  host::Model model;
};

inline QosOc::Config::TermConditionsIpConfig hostDscps(std::initializer_list<unsigned> set) {
  QosOc::Config::TermConditionsIpConfig family;
  for (const unsigned dscp : set) family.dscpSetPush(static_cast<unsigned char>(dscp));
  return family;
}

}  // namespace support
