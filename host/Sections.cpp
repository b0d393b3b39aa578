#include "host/Sections.h"

#include <algorithm>
#include <stdexcept>

namespace host {

Section classMapsSection();
Section accessListsSection();
Section policyMapsSection();
Section servicePoliciesSection();
Section interfacesSection();
Section qosProfilesSection();
Section commentsSection();
Section tcToTxQueueSection();
Section forwardingGroupsSection();
Section queueNamesSection();
Section pfcWatchdogSection();

namespace {

const std::vector<Section>& sections() {
  static const std::vector<Section> table{
      classMapsSection(),       accessListsSection(), policyMapsSection(),
      servicePoliciesSection(), interfacesSection(),  qosProfilesSection(),
      commentsSection(),        tcToTxQueueSection(), forwardingGroupsSection(),
      queueNamesSection(),      pfcWatchdogSection(),
  };
  return table;
}

const Section* sectionNamed(std::string_view name) {
  for (const Section& section : sections()) {
    if (section.name == name) return &section;
  }
  return nullptr;
}

Schema documentSchema() {
  std::vector<Schema::Member> members;
  for (const Section& section : sections()) {
    members.push_back({std::string(section.name), section.schema, section.schema.empty()});
  }
  return Schema::record(std::move(members));
}

// The whole document. Its members are never absent.
class DocumentPlace final : public Place {
 public:
  explicit DocumentPlace(const Native& native) : native_(native) {}

  std::vector<Rok::String> keys() const override {
    std::vector<Rok::String> names;
    for (const Section& section : sections()) names.emplace_back(section.name);
    std::sort(names.begin(), names.end());
    return names;
  }
  std::unique_ptr<Place> at(const Rok::String& key) const override {
    const Section* section = sectionNamed(key);
    return section != nullptr ? section->place(native_) : nullptr;
  }
  void put(const Rok::String& key, const Value& value, Writes& writes) override {
    sectionNamed(key)->put(native_, value, writes);
  }

 private:
  const Native& native_;
};

// Writes what is read into the native objects at once. No root watches them yet.
class NativeSink final : public EntrySink {
 public:
  explicit NativeSink(const Native& native) { open_.push_back(nativePlace(native)); }

  void collectionBegins(const Rok::String& key) override {
    if (!open_.back()->has(key)) open_.back()->put(key, Value(Value::Object()), writes_);
    open_.push_back(open_.back()->at(key));
  }
  void collectionEnds() override { open_.pop_back(); }
  void entry(const Rok::String& key, const Value& value) override {
    open_.back()->put(key, value, writes_);
  }
  bool has(const Rok::String& key) const override { return open_.back()->has(key); }

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

std::unique_ptr<EntrySink> nativeSink(const Native& native) {
  return std::make_unique<NativeSink>(native);
}

}  // namespace host
