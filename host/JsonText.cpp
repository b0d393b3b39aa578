#include "host/JsonText.h"

#include <cerrno>
#include <cstring>
#include <memory>

#include "host/JsonStream.h"
#include "host/Text.h"

namespace host {
namespace {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

[[noreturn]] void throwUnreadable(int error) {
  throw Fault("", std::string("cannot be read: ") + std::strerror(error));
}

[[noreturn]] void throwFault(const Fault& fault, const JsonStream& stream, Positions positions) {
  if (positions == Positions::ofSyntax) throw fault;
  // The parser stands behind a scalar or a key, and at the bracket that opens an object or array.
  const bool isOpening = stream.Peek() == '{' || stream.Peek() == '[';
  throw Fault(fault.place(), fault.what(), stream.position(stream.Tell() - (isOpening ? 0 : 1)));
}

void read(JsonStream& stream, SchemaReader& reader, Positions positions) {
  const SyntaxFault syntax = parseJson(stream, reader);
  if (stream.failed()) throwUnreadable(errno);
  if (reader.fault()) throwFault(*reader.fault(), stream, positions);
  if (syntax.reason.empty()) return;
  throw Fault(reader.place(), "not JSON: " + syntax.reason, stream.position(syntax.offset));
}

}  // namespace

void readJsonFile(const std::string& path, SchemaReader& reader, Positions positions) {
  errno = 0;
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
  if (!file) throwUnreadable(errno);
  JsonStream stream(file.get());
  read(stream, reader, positions);
}

void readJsonText(std::string_view text, SchemaReader& reader, Positions positions) {
  JsonStream stream(text);
  read(stream, reader, positions);
}

std::string Fault::inFile(const std::string& file) const {
  std::string line = shown(file);
  if (!position_.empty()) line += ':' + position_;
  if (!place_.empty()) line += ": " + place_;
  return line + ": " + what();
}

}  // namespace host
