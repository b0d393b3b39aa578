#include "host/NativeWriter.h"

#include <algorithm>

#include "host/Sections.h"
#include "host/ValueJson.h"

namespace host {
namespace {

// Goes through the places of the document in the order of its schema.
class NativeWriter {
 public:
  explicit NativeWriter(JsonWriter& out) : out_(out) {}

  void document(const Place& place, const Schema& schema) {
    out_.beginObject();
    members(place, schema);
    out_.endObject();
  }

 private:
  void members(const Place& place, const Schema& schema) {
    schema.kind() == Schema::Kind::record ? record(place, schema) : collection(place, schema);
  }

  void record(const Place& place, const Schema& schema) {
    for (const Schema::Member& member : schema.members()) {
      const std::unique_ptr<Place> below = place.at(member.name);
      if (below)
        at(member.name, *below, member.schema, member.initial ? &*member.initial : nullptr);
    }
  }

  void collection(const Place& place, const Schema& schema) {
    std::vector<Rok::String> keys = place.keys();
    const Key& key = schema.key();
    std::sort(keys.begin(), keys.end(),
              [&](const Rok::String& a, const Rok::String& b) { return key.isBefore(a, b); });
    for (const Rok::String& entry : keys) {
      at(key.spelled(entry), *place.at(entry), schema.element(), schema.initial(entry));
    }
  }

  // `initial` is what stands there when it is left out; null when nothing does.
  void at(const Rok::String& key, const Place& place, const Schema& schema, const Value* initial) {
    schema.isObject() ? object(key, place, schema, initial != nullptr)
                      : leaf(key, place.value(), schema, initial);
  }

  // An object that is always there is empty when it is left out: it begins when there is something
  // to stand in it, and otherwise not at all.
  void object(const Rok::String& key, const Place& place, const Schema& schema, bool isAlways) {
    waiting_.push_back(key);
    if (!isAlways) begin();
    members(place, schema);
    if (waiting_.empty()) {
      out_.endObject();
    } else {
      waiting_.pop_back();
    }
  }

  void leaf(const Rok::String& key, const Value& value, const Schema& schema,
            const Value* initial) {
    if (initial != nullptr && value == *initial) return;
    begin();
    out_.key(key);
    writeValue(out_, value, schema);
  }

  // Begins the objects that wait for something to stand in them.
  void begin() {
    for (const Rok::String& key : waiting_) {
      out_.key(key);
      out_.beginObject();
    }
    waiting_.clear();
  }

  JsonWriter& out_;
  std::vector<Rok::String> waiting_;  // keys, from the outermost; all around them has begun
};

}  // namespace

std::string nativeJson(const Native& native, Layout layout, const TextSink& sink) {
  JsonWriter out(layout, sink);
  writeNative(out, native);
  return out.take();
}

void writeNative(JsonWriter& out, const Native& native) {
  NativeWriter(out).document(*nativePlace(native), nativeSchema());
}

}  // namespace host
