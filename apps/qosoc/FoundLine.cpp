#include "FoundLine.h"

#include <cstdint>

#include "Terminal.h"
#include "host/JsonWriter.h"
#include "host/Text.h"

namespace qosoc {
namespace {

Style styleOf(std::string_view severity) {
  if (severity == "error") return Style::red;
  return severity == "warning" ? Style::yellow : Style::bold;
}

// Line and column; 0 where they are not known.
std::pair<std::uint64_t, std::uint64_t> numbersOf(const FoundLine& line) {
  const std::string_view position = line.position;
  const std::size_t colon = position.find(':');
  if (colon == position.npos) return {};
  return {host::decimal(position.substr(0, colon), UINT64_MAX).value_or(0),
          host::decimal(position.substr(colon + 1), UINT64_MAX).value_or(0)};
}

}  // namespace

bool isBefore(const FoundLine& a, const FoundLine& b) { return numbersOf(a) < numbersOf(b); }

std::string shownLine(const FoundLine& line, bool isColoured) {
  std::string text = host::shown(line.file);
  if (!line.position.empty()) text += ':' + line.position;
  text += ": " + styled(std::string(line.severity) + ':', styleOf(line.severity), isColoured);
  if (!line.place.empty()) text += ' ' + line.place + ':';
  return text + ' ' + line.text;
}

std::string jsonLine(const FoundLine& line) {
  const auto [number, column] = numbersOf(line);
  host::JsonWriter out(host::Layout::compact);
  out.beginObject();
  out.key("file");
  out.text(line.file);
  out.key("line");
  out.number(number);
  out.key("column");
  out.number(column);
  out.key("severity");
  out.text(line.severity);
  out.key("pointer");
  out.text(line.pointer);
  out.key("kind");
  out.text(line.kind);
  out.key("text");
  out.text(line.text);
  out.endObject();
  return out.take();
}

}  // namespace qosoc
