// Writes a JSON text, compact or laid out for people: into a string, or piece by piece to a sink.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Dorpel/Export.h"

namespace QOS_EXPORT host {

// One line without white space, or laid out for people.
enum class Layout { compact, pretty };

// Takes the pieces of a text as they are written.
using TextSink = std::function<void(std::string_view)>;

// Calls come in the order of the text. The text is valid if they nest and each key has one value.
class JsonWriter {
 public:
  explicit JsonWriter(Layout layout, TextSink sink = nullptr);
  ~JsonWriter();

  // What stands between is the members: a key, then a value.
  void beginObject();
  void endObject();
  // What stands between is the elements.
  void beginArray();
  void endArray();
  // Of the next member.
  void key(std::string_view key) { text(key); }

  // Quotes, backslashes and control characters are escaped; all other bytes stand as they are.
  void text(std::string_view text);
  // In decimals.
  void number(std::uint64_t number);
  // Always with a fraction or an exponent. Requires: finite.
  void real(double number);
  // A literal.
  void boolean(bool v);
  // The literal `null`.
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
