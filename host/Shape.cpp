#include "host/Shape.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/JsonText.h"
#include "host/OtherDocument.h"
#include "host/Sections.h"
#include "host/ShapeReader.h"

namespace host {
namespace {

// Remembers which entries the open collections have, and nothing of them.
class KeysOnly final : public EntrySink {
 public:
  void collectionBegins(const Rok::String& key) override {
    open_.back().insert(key);
    open_.emplace_back();
  }
  void collectionEnds() override { open_.pop_back(); }
  void entry(const Rok::String& key, const Value& /*value*/) override { open_.back().insert(key); }
  bool has(const Rok::String& key) const override { return open_.back().contains(key); }
  bool keepsTexts() const override { return false; }

 private:
  struct TextHash {
    std::size_t operator()(const Rok::String& text) const noexcept { return text.hash(); }
  };
  std::vector<std::unordered_set<Rok::String, TextHash>> open_{1};
};

// Says what is wrong.
template <class Read>
void readThrough(const Read& read) {
  KeysOnly sink;
  SchemaReader reader(nativeSchema(), &sink);
  readExpected([&] { read(reader); }, ", which diff reads");
}

}  // namespace

void checkShape(std::FILE* file) {
  const off_t start = ::ftello(file);
  if (start >= 0) {
    TextWindow text(file);
    if (ShapeReader(text).fits(nativeSchema()) && std::ferror(file) == 0) return;
    std::clearerr(file);
    if (::fseeko(file, start, SEEK_SET) != 0) {
      throw Refusal({"", std::string("cannot be read again: ") + std::strerror(errno)});
    }
  }
  readThrough([&](SchemaReader& reader) { readJsonFile(file, reader); });
}

void checkShapeOfText(std::string_view text) {
  TextWindow window(text);
  if (ShapeReader(window).fits(nativeSchema())) return;
  readThrough([&](SchemaReader& reader) { readJsonText(text, reader); });
}

}  // namespace host
