#include "host/ModelWriter.h"

#include "host/Sorted.h"

namespace host {
namespace {

using namespace QosOc::Config;

// Writes a value, or null for an absent one.
template <class Optional, class Write>
void orNull(JsonWriter& out, const Optional& value, const Write& write) {
  if (value) {
    write(out, *value);
  } else {
    out.null();
  }
}

template <class Byte>
void writeByte(JsonWriter& out, Byte byte) {
  out.number(static_cast<unsigned char>(byte));
}

void writeFamily(JsonWriter& out, const TermConditionsIpConfig& family) {
  out.beginObject();
  out.key("dscp");
  orNull(out, family.dscp, writeByte<unsigned char>);
  out.key("dscp-set");
  out.beginArray();
  for (const unsigned char dscp : family.dscpSet) writeByte(out, dscp);
  out.endArray();
  out.endObject();
}

void writeConditions(JsonWriter& out, const TermConditions& conditions) {
  out.beginObject();
  out.key("ipv4");
  writeFamily(out, conditions.ipv4);
  out.key("ipv6");
  writeFamily(out, conditions.ipv6);
  out.endObject();
}

void writeActions(JsonWriter& out, const TermActions& actions) {
  out.beginObject();
  out.key("target-group");
  out.text(actions.config.targetGroup);
  out.endObject();
}

void writeTerm(JsonWriter& out, const Term& term) {
  out.beginObject();
  out.key("actions");
  orNull(out, term.actions, writeActions);
  out.key("conditions");
  orNull(out, term.conditions, writeConditions);
  out.key("config-id");
  out.text(term.configId);
  out.endObject();
}

void writeTerms(JsonWriter& out, const Terms& terms) {
  out.beginObject();
  for (const auto& [id, term] : sorted(terms.term())) {
    out.key(id);
    writeTerm(out, *term);
  }
  out.endObject();
}

void writeClassifier(JsonWriter& out, const Classifier& classifier) {
  out.beginObject();
  out.key("config");
  out.beginObject();
  out.key("name");
  out.text(classifier.config().name);
  out.key("type");
  orNull(out, classifier.config().type, writeByte<QosOc::Classifier::Type>);
  out.endObject();
  out.key("terms");
  orNull(out, classifier.terms(), writeTerms);
  out.endObject();
}

void writeClassifiers(JsonWriter& out, const ClassifiersDir& classifiers) {
  out.beginObject();
  for (const auto& [name, classifier] : sorted(classifiers.classifier())) {
    out.key(name);
    writeClassifier(out, **classifier);
  }
  out.endObject();
}

void writeNothing(JsonWriter& out, std::string_view member) {
  out.key(member);
  out.beginObject();
  out.endObject();
}

void writePfc(JsonWriter& out) {
  out.beginObject();
  out.key("watchdog");
  out.beginObject();
  out.key("action");
  out.number(1);
  out.key("priorities");
  out.text("");
  for (const char* time : {"time-a", "time-b", "time-c"}) {
    out.key(time);
    out.real(0);
  }
  out.endObject();
  out.endObject();
}

}  // namespace

std::string modelJson(const Model& model, Layout layout) {
  JsonWriter out(layout);
  out.beginObject();
  out.key("classifiers");
  writeClassifiers(out, *model.classifiers);
  writeNothing(out, "forwarding-groups");
  writeNothing(out, "interfaces");
  out.key("pfc");
  writePfc(out);
  writeNothing(out, "queue-management-profiles");
  writeNothing(out, "queues");
  writeNothing(out, "scheduler-policies");
  out.endObject();
  return out.take();
}

}  // namespace host
