// "classifiers": {"<name>": {"config": {...}, "terms": {"<id>": {...}} or null}}
#include "host/model/Parts.h"

namespace host {
namespace {

using namespace QosOc::Config;

Codec<TermConditionsIpConfig> familyCodec() {
  using Family = TermConditionsIpConfig;
  return record<Family>(
      {member("dscp", &Family::dscp, orNull(number<unsigned char>())),
       member("dscp-set", &Family::dscpSet, list<Velmo::ByteVector>(number<unsigned char>()))});
}

Codec<TermConditions> conditionsCodec() {
  return record<TermConditions>({member("ipv4", &TermConditions::ipv4, familyCodec()),
                                 member("ipv6", &TermConditions::ipv6, familyCodec())});
}

// The config of the actions is not shown as a level of its own.
Codec<TermActions> actionsCodec() {
  const Codec<Rok::String> group = text();
  return record<TermActions>(
      {{"target-group",
        {group.schema,
         [=](JsonWriter& out, const TermActions& v) { group.write(out, v.config.targetGroup); },
         [=](TermActions& v, const Value& value) { group.read(v.config.targetGroup, value); }}}});
}

Codec<Term> termCodec() {
  return record<Term>({member("actions", &Term::actions, orNull(actionsCodec())),
                       member("conditions", &Term::conditions, orNull(conditionsCodec())),
                       member("config-id", &Term::configId, text())});
}

Collection<Terms> termsCodec() {
  const auto map = [](const Terms& terms) -> const Terms::Map& { return terms.term(); };
  return records<Rok::String>(map, &Terms::termIs, termCodec());
}

Codec<ClassifierConfig> configCodec() {
  using Type = QosOc::Classifier::Type;
  return record<ClassifierConfig>(
      {member("name", &ClassifierConfig::name, text()),
       member("type", &ClassifierConfig::type, orNull(number<Type>()))});
}

Codec<Classifier> classifierCodec() {
  return record<Classifier>(
      {attribute("config", &Classifier::config, &Classifier::configIs, configCodec()),
       child("terms", &Classifier::terms, &Classifier::termsIs, termsCodec())});
}

}  // namespace

ModelPart classifiersPart() {
  const auto map = [](const ClassifiersDir& dir) -> const auto& { return dir.classifier(); };
  return modelPart("classifiers", &Model::classifiers,
                   objects(map, &ClassifiersDir::classifierIs, classifierCodec()));
}

}  // namespace host
