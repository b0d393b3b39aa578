#include "host/Sections.h"

#include <algorithm>
#include <stdexcept>

#include "host/JsonText.h"

namespace host {

Section classMapsSection();

namespace {

Section untranslated(std::string_view name) {
  return {name, Schema::unavailable("this section is not translated yet"), nullptr};
}

const std::vector<Section>& sections() {
  static const std::vector<Section> table{
      classMapsSection(),
      untranslated("access-lists"),
      untranslated("policy-maps"),
      untranslated("service-policies"),
      untranslated("interfaces"),
      untranslated("qos-profiles"),
      untranslated("comments"),
      untranslated("tc-to-tx-queue"),
      untranslated("forwarding-groups"),
      untranslated("queue-names"),
      untranslated("pfc-watchdog"),
  };
  return table;
}

Schema documentSchema() {
  std::vector<Schema::Member> members;
  for (const auto& [name, schema, place] : sections()) {
    std::optional<Value> initial;
    if (schema.kind() == Schema::Kind::keyed) initial = schema.empty();
    members.push_back({std::string(name), schema, std::move(initial)});
  }
  return Schema::record(std::move(members));
}

// The whole document. Its members are never absent, and none can be written as a whole.
class DocumentPlace final : public Place {
 public:
  explicit DocumentPlace(const Native& native) : native_(native) {}

  std::unique_ptr<Place> at(const std::string& key) const override {
    for (const Section& section : sections()) {
      if (section.name == key) return section.place(native_);
    }
    return nullptr;
  }

 private:
  const Native& native_;
};

// Writes what is read into the native objects at once. Nobody watches them yet.
class NativeSink final : public EntrySink {
 public:
  explicit NativeSink(const Native& native) { open_.push_back(nativePlace(native)); }

  void collectionBegins(const std::string& key) override {
    if (!open_.back()->has(key)) open_.back()->put(key, Value(Value::Object()), writes_);
    open_.push_back(open_.back()->at(key));
  }
  void collectionEnds() override { open_.pop_back(); }
  void entry(const std::string& key, Value value) override {
    open_.back()->put(key, value, writes_);
  }

 private:
  std::vector<std::unique_ptr<Place>> open_;
  Writes writes_{[](const std::string& text) { throw Fault("", text); }};
};

}  // namespace

const Schema& nativeSchema() {
  static const Schema schema = documentSchema();
  return schema;
}

std::unique_ptr<Place> nativePlace(const Native& native) {
  return std::make_unique<DocumentPlace>(native);
}

void readNative(const std::string& path, const Native& native) {
  NativeSink sink(native);
  SchemaReader reader(nativeSchema(), &sink);
  readJsonFile(path, reader);
}

void readNativeText(std::string_view text, const Native& native) {
  NativeSink sink(native);
  SchemaReader reader(nativeSchema(), &sink);
  readJsonText(text, reader);
}

}  // namespace host
