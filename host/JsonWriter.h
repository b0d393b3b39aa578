// Writes a JSON text, compact or laid out for people: into a string, or piece by piece to a sink.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Dorpel/Export.h"

namespace QOS_EXPORT host {

enum class Layout { compact, pretty };

// Takes the pieces of a text as they are written.
using TextSink = std::function<void(std::string_view)>;

// Calls come in the order of the text. The text is valid if they nest and each key has one value.
class JsonWriter {
 public:
  explicit JsonWriter(Layout layout, TextSink sink = nullptr);
  ~JsonWriter();

  void beginObject();
  void endObject();
  void beginArray();
  void endArray();
  void key(std::string_view key) { text(key); }

  void text(std::string_view text);
  void number(std::uint64_t number);
  // Always with a fraction or an exponent. Requires: finite.
  void real(double number);
  void boolean(bool v);
  void null();
  // A value that is JSON already, in the layout that it has.
  void raw(std::string_view json);

  // The finished text. A pretty one ends with a line end. With a sink, that has all of it then and
  // this is empty.
  std::string take();

 private:
  struct QOS_LOCAL Out;
  template <class Write>
  void write(const Write& write);
  void handOn();

  const bool pretty_;
  const TextSink sink_;
  const std::unique_ptr<Out> out_;
};

}  // namespace host
