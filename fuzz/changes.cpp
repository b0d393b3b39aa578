// A stream of changes, on a small device that nobody watches: the first line of the input is tried
// as the device's document. A line that is refused leaves everything as it was; after any line, the
// device is one that the document could hold.
#include "host/Changes.h"

#include <string>

#include "Fuzz.h"
#include "ValueText.h"
#include "host/Fault.h"
#include "host/Sections.h"

namespace {

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text = end == text.npos ? std::string_view() : text.substr(end + 1);
  return line;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view stream = Fuzz::text(data, size);
  const host::Native native;
  try {
    host::readNativeText(takeLine(stream), native);
  } catch (const host::Fault&) {
    return 0;
  }
  host::Changes changes(native, [](const std::string&) {});
  while (!stream.empty()) {
    const host::Value before = host::nativePlace(native)->value();
    if (changes.line(takeLine(stream)) == host::Changes::Outcome::applied) continue;
    Fuzz::require(host::nativePlace(native)->value() == before, "a refused line changed something");
  }
  const host::Native other;
  host::readNativeText(Fuzz::valueText(host::nativePlace(native)->value()), other);
  return 0;
}
