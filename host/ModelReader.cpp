#include "host/ModelReader.h"

#include "host/JsonText.h"

namespace host {
namespace {

using namespace QosOc::Config;

constexpr const char* unread = "this part of the model can't be read yet";

Schema familySchema() {
  const Schema dscp = Schema::number(255);
  return Schema::record(
      {{"dscp", dscp.orNull(), Value()}, {"dscp-set", Schema::list(dscp), Value(Value::List())}});
}

Schema termSchema() {
  const Value noFamily(Value::Object{{"dscp", Value()}, {"dscp-set", Value(Value::List())}});
  const Schema conditions =
      Schema::record({{"ipv4", familySchema(), noFamily}, {"ipv6", familySchema(), noFamily}});
  const Schema actions = Schema::record({{"target-group", Schema::text(), Value("")}});
  return Schema::record({{"actions", actions.orNull(), Value()},
                         {"conditions", conditions.orNull(), Value()},
                         {"config-id", Schema::text(), Value("")}});
}

Schema classifierSchema() {
  const Schema config = Schema::record(
      {{"name", Schema::text(), Value("")}, {"type", Schema::number(255).orNull(), Value()}});
  const Value noConfig(Value::Object{{"name", Value("")}, {"type", Value()}});
  return Schema::record({{"config", config, noConfig},
                         {"terms", Schema::keyed(Key::name(), termSchema()).orNull(), Value()}});
}

// Only the values that every model begins with.
Schema pfcSchema() {
  const std::string since = std::string(", since ") + unread;
  const Schema one = Schema::exactly(Schema::number(1), Value(std::uint64_t{1}), "1" + since);
  const Schema zero = Schema::exactly(Schema::real(), Value(0.0), "0" + since);
  const Schema none = Schema::exactly(Schema::text(), Value(""), "an empty string" + since);
  return Schema::record({{"watchdog", Schema::record({{"action", one},
                                                      {"priorities", none},
                                                      {"time-a", zero},
                                                      {"time-b", zero},
                                                      {"time-c", zero}})}});
}

const Schema& modelSchema() {
  const Schema empty = Schema::keyed(Key::name(), Schema::unavailable(unread));
  static const Schema schema =
      Schema::record({{"classifiers", Schema::keyed(Key::name(), classifierSchema())},
                      {"forwarding-groups", empty},
                      {"interfaces", empty},
                      {"pfc", pfcSchema()},
                      {"queue-management-profiles", empty},
                      {"queues", empty},
                      {"scheduler-policies", empty}});
  return schema;
}

unsigned char byteOf(const Value& value) { return static_cast<unsigned char>(value.number()); }

TermConditionsIpConfig familyOf(const Value& value) {
  TermConditionsIpConfig family;
  if (const Value& dscp = value.at("dscp"); !dscp.isNull()) family.dscp = byteOf(dscp);
  for (const Value& dscp : value.at("dscp-set").list()) family.dscpSetPush(byteOf(dscp));
  return family;
}

Term termOf(const std::string& id, const Value& value) {
  Term term(id);
  term.configId = value.at("config-id").text();
  if (const Value& conditions = value.at("conditions"); !conditions.isNull()) {
    term.conditions =
        TermConditions{familyOf(conditions.at("ipv4")), familyOf(conditions.at("ipv6"))};
  }
  if (const Value& actions = value.at("actions"); !actions.isNull()) {
    term.actions = TermActions{{actions.at("target-group").text()}};
  }
  return term;
}

void classifierIs(ClassifiersDir& classifiers, const std::string& name, const Value& value) {
  const auto classifier = classifiers.classifierIs(name);
  const Value& config = value.at("config");
  ClassifierConfig record{config.at("name").text(), {}};
  if (const Value& type = config.at("type"); !type.isNull()) {
    record.type = static_cast<QosOc::Classifier::Type>(byteOf(type));
  }
  classifier->configIs(record);
  if (value.at("terms").isNull()) return;
  const auto& terms = classifier->termsIs();
  for (const Member& term : value.at("terms").object()) terms->termIs(termOf(term.key, term.value));
}

// Classifiers are the only entries so far: the schema lets no other through.
class ModelSink final : public EntrySink {
 public:
  explicit ModelSink(const Model& model) : model_(model) {}
  void collectionBegins(const std::string& key) override { open_ = key; }
  void collectionEnds() override { open_.clear(); }
  void entry(const std::string& key, Value value) override {
    if (open_ == "classifiers") classifierIs(*model_.classifiers, key, value);
  }

 private:
  const Model& model_;
  std::string open_;
};

}  // namespace

void readModel(const std::string& path, const Model& model) {
  ModelSink sink(model);
  SchemaReader reader(modelSchema(), &sink);
  readJsonFile(path, reader);
}

void readModelText(std::string_view text, const Model& model) {
  ModelSink sink(model);
  SchemaReader reader(modelSchema(), &sink);
  readJsonText(text, reader);
}

}  // namespace host
