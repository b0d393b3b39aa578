// Writes a JSON text, compact or laid out for people: into a string, or piece by piece to a sink.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>

namespace host {

enum class Layout { compact, pretty };

// Takes the pieces of a text as they are written.
using TextSink = std::function<void(std::string_view)>;

// Calls come in the order of the text. The text is valid if they nest and each key has one value.
class JsonWriter {
 public:
  explicit JsonWriter(Layout layout, TextSink sink = nullptr)
      : pretty_(layout == Layout::pretty), sink_(std::move(sink)) {}

  void beginObject() { begin('{'); }
  void endObject() { end('}'); }
  void beginArray() { begin('['); }
  void endArray() { end(']'); }
  void key(std::string_view key);

  void text(std::string_view text);
  void number(std::uint64_t number);
  // Always with a fraction or an exponent. Requires: finite.
  void real(double number);
  void boolean(bool v) { literal(v ? "true" : "false"); }
  void null() { literal("null"); }

  // The finished text. A pretty one ends with a line end. With a sink, that has all of it then and
  // this is empty.
  std::string take();

 private:
  void begin(char bracket);
  void end(char bracket);
  void literal(std::string_view text);
  void separate();
  void handOn();
  void newLine();
  void string(std::string_view text);

  const bool pretty_;
  const TextSink sink_;
  std::string out_;  // what the sink doesn't have yet
  unsigned depth_ = 0;
  bool first_ = true;  // nothing is in this object or array yet
  bool afterKey_ = false;
};

}  // namespace host
