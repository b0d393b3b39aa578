#include "host/NativeReader.h"

#include "host/JsonText.h"
#include "host/OtherDocument.h"
#include "host/Sections.h"

namespace host {
namespace {

template <class Read>
void readInto(const Native& native, const Read& read) {
  const std::unique_ptr<EntrySink> sink = nativeSink(native);
  SchemaReader reader(nativeSchema(), sink.get());
  readExpected([&] { read(reader); }, ", which diff reads");
}

}  // namespace

void readNative(const std::string& path, const Native& native) {
  readInto(native, [&](SchemaReader& reader) { readJsonFile(path, reader); });
}

void readNative(std::FILE* file, const Native& native) {
  readInto(native, [&](SchemaReader& reader) { readJsonFile(file, reader); });
}

void readNativeText(std::string_view text, const Native& native) {
  readInto(native, [&](SchemaReader& reader) { readJsonText(text, reader); });
}

}  // namespace host
