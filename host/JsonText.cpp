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
  throw Refusal({"", std::string("cannot be read: ") + std::strerror(error)});
}

void read(JsonStream& stream, SchemaReader& reader) {
  reader.streamIs(&stream);
  const SyntaxFault syntax = parseJson(stream, reader);
  if (stream.failed()) throwUnreadable(errno);
  std::vector<Fault> faults = reader.faults();
  if (!syntax.reason.empty() && faults.size() < mostFaults) {
    faults.emplace_back(reader.place(), "not JSON: " + syntax.reason, stream.at(syntax.offset));
  }
  if (!faults.empty()) throw Refusal(std::move(faults));
}

}  // namespace

void readJsonFile(const std::string& path, SchemaReader& reader) {
  errno = 0;
  const std::unique_ptr<std::FILE, CloseFile> file(std::fopen(path.c_str(), "rb"));
  if (!file) throwUnreadable(errno);
  readJsonFile(file.get(), reader);
}

void readJsonFile(std::FILE* file, SchemaReader& reader) {
  JsonStream stream(file);
  read(stream, reader);
}

void readJsonText(std::string_view text, SchemaReader& reader) {
  JsonStream stream(text);
  read(stream, reader);
}

}  // namespace host
