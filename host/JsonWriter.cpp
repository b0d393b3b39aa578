#include "host/JsonWriter.h"

#include <array>
#include <charconv>

#include "host/Text.h"

namespace host {
namespace {

constexpr unsigned indent = 2;
constexpr std::size_t pieceSize = std::size_t{64} * 1024;

void appendEscaped(std::string& out, char c) {
  constexpr std::string_view digits = "0123456789abcdef";
  switch (c) {
    case '"':
    case '\\':
      out += '\\';
      out += c;
      return;
    case '\n':
      out += "\\n";
      return;
    case '\r':
      out += "\\r";
      return;
    case '\t':
      out += "\\t";
      return;
    default:
      out += "\\u00";
      out += digits[static_cast<unsigned char>(c) >> 4];
      out += digits[static_cast<unsigned char>(c) & 15];
  }
}

template <class Number>
std::string_view printed(std::array<char, 32>& buffer, Number number) {
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number);
  return {buffer.data(), static_cast<std::size_t>(result.ptr - buffer.data())};
}

}  // namespace

void JsonWriter::key(std::string_view key) {
  separate();
  string(key);
  out_ += pretty_ ? ": " : ":";
  afterKey_ = true;
}

void JsonWriter::text(std::string_view text) {
  separate();
  string(text);
}

void JsonWriter::number(std::uint64_t number) {
  std::array<char, 32> buffer{};
  literal(printed(buffer, number));
}

void JsonWriter::real(double number) {
  std::array<char, 32> buffer{};
  const std::string_view digits = printed(buffer, number);
  literal(digits);
  if (digits.find_first_of(".e") == std::string_view::npos) out_ += ".0";
}

std::string JsonWriter::take() {
  if (pretty_) out_ += '\n';
  if (sink_) handOn();
  return std::move(out_);
}

void JsonWriter::begin(char bracket) {
  separate();
  out_ += bracket;
  ++depth_;
  first_ = true;
}

void JsonWriter::end(char bracket) {
  --depth_;
  if (!first_) newLine();
  out_ += bracket;
  first_ = false;
  if (sink_ && out_.size() >= pieceSize) handOn();
}

void JsonWriter::handOn() {
  sink_(out_);
  out_.clear();
}

void JsonWriter::literal(std::string_view text) {
  separate();
  out_ += text;
}

// Puts what stands between the last value and the one that comes now.
void JsonWriter::separate() {
  if (!afterKey_ && depth_ > 0) {
    if (!first_) out_ += ',';
    newLine();
  }
  afterKey_ = false;
  first_ = false;
}

void JsonWriter::newLine() {
  if (!pretty_) return;
  out_ += '\n';
  out_.append(std::size_t{depth_} * indent, ' ');
}

void JsonWriter::string(std::string_view text) {
  out_ += '"';
  while (!text.empty()) {
    const std::size_t plain = plainPrefix(text);
    out_ += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) break;
    appendEscaped(out_, text.front());
    text.remove_prefix(1);
  }
  out_ += '"';
}

}  // namespace host
