#include "host/SavedState.h"

#include <set>

#include "host/JsonText.h"
#include "host/ModelSchema.h"
#include "host/ModelWriter.h"
#include "host/NativeWriter.h"
#include "host/Sections.h"

namespace host {
namespace {

constexpr std::uint64_t version = 1;
constexpr std::string_view versionName = "qosoc-save";
constexpr std::string_view nativeName = "native";
constexpr std::string_view modelName = "model";

const Schema& savedSchema() {
  static const Schema schema = Schema::record({
      {versionName, Schema::exactly(Schema::number(UINT64_MAX), Value(version),
                                    "version " + std::to_string(version) + " of a saved state")},
      {nativeName, nativeSchema()},
      {modelName, modelSchema()},
  });
  return schema;
}

// Hands each part on to a sink of its own.
class SavedSink final : public EntrySink {
 public:
  SavedSink(const Native& native, const Model& model)
      : native_(nativeSink(native)), model_(modelSink(model)) {}

  void collectionBegins(const Rok::String& key) override {
    if (depth_++ > 0) return part_->collectionBegins(key);
    part_ = key == nativeName ? native_.get() : model_.get();
    seen_.emplace(key);
  }
  void collectionEnds() override {
    if (--depth_ > 0) part_->collectionEnds();
  }
  // Outside of the parts there is only the version.
  void entry(const Rok::String& key, const Value& value) override {
    depth_ > 0 ? part_->entry(key, value) : void(seen_.emplace(key));
  }
  bool has(const Rok::String& key) const override { return part_->has(key); }

  // Whether a member of the whole was read.
  bool hasMember(std::string_view name) const { return seen_.contains(name); }

 private:
  std::unique_ptr<EntrySink> native_;
  std::unique_ptr<EntrySink> model_;
  EntrySink* part_ = nullptr;  // the one that is being read
  unsigned depth_ = 0;         // collections that are open, that part included
  std::set<std::string, std::less<>> seen_;
};

// Whether a place is a member that no saved state has.
bool isForeign(std::string_view place) {
  return place.rfind('/') == 0 && savedSchema().member(place.substr(1)) == nullptr;
}

// Another version, and what is no saved state at all, is one fault: the others come of it.
void throwForeign(const Refusal& refusal, bool hasVersion) {
  for (const Fault& fault : refusal.faults()) {
    if (fault.place() == '/' + std::string(versionName)) throw Refusal(fault);
  }
  const Fault& first = refusal.faults().front();
  if (hasVersion || !isForeign(first.place())) return;
  throw Refusal(first.saying("unknown member: this is no saved state"));
}

template <class Read>
void readSaved(const Native& native, const Model& model, const Read& read) {
  SavedSink sink(native, model);
  SchemaReader reader(savedSchema(), &sink);
  try {
    read(reader);
  } catch (const Refusal& refusal) {
    throwForeign(refusal, sink.hasMember(versionName));
    throw;
  }
  for (const Schema::Member& member : savedSchema().members()) {
    if (sink.hasMember(member.name)) continue;
    throw Refusal({shownPointer({}), "the member \"" + std::string(member.name) +
                                         "\" is missing: this is no saved state"});
  }
}

}  // namespace

std::string savedStateJson(const Native& native, const Model& model, Layout layout,
                           const TextSink& sink) {
  JsonWriter out(layout, sink);
  out.beginObject();
  out.key(versionName);
  out.number(version);
  out.key(nativeName);
  writeNative(out, native);
  out.key(modelName);
  writeModel(out, model);
  out.endObject();
  return out.take();
}

void readSavedState(const std::string& path, const Native& native, const Model& model) {
  readSaved(native, model, [&](SchemaReader& reader) { readJsonFile(path, reader); });
}

void readSavedState(std::FILE* file, const Native& native, const Model& model) {
  readSaved(native, model, [&](SchemaReader& reader) { readJsonFile(file, reader); });
}
void readSavedStateText(std::string_view text, const Native& native, const Model& model) {
  readSaved(native, model, [&](SchemaReader& reader) { readJsonText(text, reader); });
}

}  // namespace host
