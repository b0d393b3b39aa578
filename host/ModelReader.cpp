#include "host/ModelReader.h"

#include <algorithm>

#include "host/JsonText.h"
#include "host/ModelSchema.h"
#include "host/OtherDocument.h"
#include "host/model/Parts.h"

namespace host {
namespace {

// Requires: there is such a part.
const ModelPart& partNamed(std::string_view name) {
  const auto parts = modelParts();
  return *std::find_if(parts.begin(), parts.end(),
                       [&](const ModelPart& part) { return part.name == name; });
}

class ModelSink final : public EntrySink {
 public:
  explicit ModelSink(const Model& model) : model_(model) {}
  void collectionBegins(const Rok::String& key) override { open_ = &partNamed(key); }
  void collectionEnds() override { open_ = nullptr; }
  void entry(const Rok::String& key, const Value& value) override {
    (open_ != nullptr ? *open_ : partNamed(key)).entryIs(model_, key, value);
  }
  bool has(const Rok::String& key) const override { return open_->has(model_, key); }

 private:
  const Model& model_;
  const ModelPart* open_ = nullptr;
};

template <class Read>
void readInto(const Model& model, const Read& read) {
  ModelSink sink(model);
  SchemaReader reader(modelSchema(), &sink);
  readExpected([&] { read(reader); }, ": translate --format model prints what --initial reads");
}

}  // namespace

const Schema& modelSchema() {
  static const Schema schema = [] {
    std::vector<Schema::Member> members;
    for (const ModelPart& part : modelParts()) {
      members.push_back({std::string(part.name), part.schema()});
    }
    return Schema::record(std::move(members));
  }();
  return schema;
}

std::unique_ptr<EntrySink> modelSink(const Model& model) {
  return std::make_unique<ModelSink>(model);
}

void readModel(const std::string& path, const Model& model) {
  readInto(model, [&](SchemaReader& reader) { readJsonFile(path, reader); });
}

void readModel(std::FILE* file, const Model& model) {
  readInto(model, [&](SchemaReader& reader) { readJsonFile(file, reader); });
}

void readModelText(std::string_view text, const Model& model) {
  readInto(model, [&](SchemaReader& reader) { readJsonText(text, reader); });
}

}  // namespace host
