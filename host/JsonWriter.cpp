#include "host/JsonWriter.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "host/Json.h"
#include "host/Text.h"

namespace host {
namespace {

constexpr unsigned indent = 2;
constexpr std::size_t pieceSize = std::size_t{64} * 1024;

using Buffer = rapidjson::StringBuffer;

void append(Buffer& json, std::string_view text) { text.copy(json.Push(text.size()), text.size()); }

void appendEscaped(Buffer& json, char c) {
  constexpr std::string_view named = "\"\\\n\r\t";
  constexpr std::string_view names = "\"\\nrt";
  constexpr std::string_view digits = "0123456789abcdef";
  json.Put('\\');
  if (const std::size_t name = named.find(c); name != named.npos) return json.Put(names[name]);
  append(json, "u00");
  json.Put(digits[static_cast<unsigned char>(c) >> 4]);
  json.Put(digits[static_cast<unsigned char>(c) & 15]);
}

}  // namespace

struct JsonWriter::Out {
  using Compact = rapidjson::Writer<Buffer>;
  using Pretty = rapidjson::PrettyWriter<Buffer>;

  std::string_view text() const { return {buffer.GetString(), buffer.GetSize()}; }

  Buffer buffer;  // what the sink doesn't have yet
  Pretty writer{buffer};
};

JsonWriter::JsonWriter(Layout layout, TextSink sink)
    : pretty_(layout == Layout::pretty), sink_(std::move(sink)), out_(std::make_unique<Out>()) {
  out_->writer.SetIndent(' ', indent);
}

JsonWriter::~JsonWriter() = default;

// As its base, the pretty writer writes compactly.
template <class Write>
void JsonWriter::write(const Write& write) {
  pretty_ ? write(out_->writer) : write(static_cast<Out::Compact&>(out_->writer));
  if (sink_ && out_->buffer.GetSize() >= pieceSize) handOn();
}

void JsonWriter::beginObject() {
  write([](auto& writer) { writer.StartObject(); });
}

void JsonWriter::endObject() {
  write([](auto& writer) { writer.EndObject(); });
}

void JsonWriter::beginArray() {
  write([](auto& writer) { writer.StartArray(); });
}

void JsonWriter::endArray() {
  write([](auto& writer) { writer.EndArray(); });
}

// RapidJSON writes a string byte by byte, with \b and \f and capital digits in its escapes. So it
// gets an empty value, and the string follows that.
void JsonWriter::text(std::string_view text) {
  write([](auto& writer) { writer.RawValue("", 0, rapidjson::kStringType); });
  Buffer& json = out_->buffer;
  json.Put('"');
  for (;;) {
    const std::size_t plain = plainPrefix(text);
    append(json, text.substr(0, plain));
    if (plain == text.size()) break;
    appendEscaped(json, text[plain]);
    text.remove_prefix(plain + 1);
  }
  json.Put('"');
}

void JsonWriter::number(std::uint64_t number) {
  write([=](auto& writer) { writer.Uint64(number); });
}

// In the fewest digits, which RapidJSON doesn't always find.
void JsonWriter::real(double number) {
  char json[32];
  char* end = std::to_chars(std::begin(json), std::end(json), number).ptr;
  const bool looksWhole = std::string_view(json, end).find_first_of(".e") == std::string_view::npos;
  if (looksWhole) end = std::copy_n(".0", 2, end);
  write([&](auto& writer) { writer.RawValue(json, end - json, rapidjson::kNumberType); });
}

void JsonWriter::boolean(bool v) {
  write([=](auto& writer) { writer.Bool(v); });
}

void JsonWriter::null() {
  write([](auto& writer) { writer.Null(); });
}

void JsonWriter::raw(std::string_view json) {
  write([&](auto& writer) { writer.RawValue(json.data(), json.size(), rapidjson::kObjectType); });
}

std::string JsonWriter::take() {
  if (pretty_) out_->buffer.Put('\n');
  if (sink_) handOn();
  return std::string(out_->text());
}

void JsonWriter::handOn() {
  sink_(out_->text());
  out_->buffer.Clear();
}

}  // namespace host
