#include "FoundLine.h"

#include "Terminal.h"
#include "host/JsonWriter.h"
#include "host/Text.h"

namespace qosoc {
namespace {

Style styleOf(std::string_view severity) {
  if (severity == "error") return Style::red;
  return severity == "warning" ? Style::yellow : Style::bold;
}

}  // namespace

std::string shownLine(const FoundLine& line, bool isColoured) {
  std::string text = host::shown(line.file) + ':' + shownPosition(line.position);
  text += ": " + styled(std::string(line.severity) + ':', styleOf(line.severity), isColoured);
  if (!line.place.empty()) text += ' ' + line.place + ':';
  return text + ' ' + line.text;
}

std::string jsonLine(const FoundLine& line) {
  host::JsonWriter out(host::Layout::compact);
  out.beginObject();
  out.key("file");
  out.text(line.file);
  out.key("line");
  out.number(line.position.line);
  out.key("column");
  out.number(line.position.column);
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
