#include "host/NativeReader.h"

#include "host/JsonText.h"
#include "host/Sections.h"

namespace host {

void readNative(const std::string& path, const Native& native) {
  const std::unique_ptr<EntrySink> sink = nativeSink(native);
  SchemaReader reader(nativeSchema(), sink.get());
  readJsonFile(path, reader);
}

void readNative(std::FILE* file, const Native& native) {
  const std::unique_ptr<EntrySink> sink = nativeSink(native);
  SchemaReader reader(nativeSchema(), sink.get());
  readJsonFile(file, reader);
}

void readNativeText(std::string_view text, const Native& native) {
  const std::unique_ptr<EntrySink> sink = nativeSink(native);
  SchemaReader reader(nativeSchema(), sink.get());
  readJsonText(text, reader);
}

}  // namespace host
