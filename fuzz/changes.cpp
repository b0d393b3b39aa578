// A stream of changes, on a small device with all roots: the first line of the input is tried as
// the device's document. A line that is refused leaves everything as it was; after any line, the
// device is one that the document could hold and over which fresh roots can be built.
//
// A comment with a value of the wrong type ends the process by design. So each line is first tried
// on a device without roots, and a stream ends where such a comment comes.
#include "host/Changes.h"

#include <string>

#include "Fuzz.h"
#include "host/CommentFaults.h"
#include "host/Fault.h"
#include "host/NativeReader.h"
#include "host/NativeWriter.h"
#include "host/Sections.h"
#include "tests/days/Device.h"

namespace {

std::string_view takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text = end == text.npos ? std::string_view() : text.substr(end + 1);
  return line;
}

// Whether some comment would end the program. Every changed comment is read as one of a tx queue.
bool isDeadly(const host::Native& native) {
  if (!host::commentFaults(native).empty()) return true;
  const auto& comments = native.cliConfig->comment();
  for (auto i = comments.unsafeIterator(); i; ++i) {
    if (host::attachmentFault(i->value())) return true;
  }
  return false;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view stream = Fuzz::text(data, size);
  const std::string_view document = takeLine(stream);
  const host::Native trial;
  try {
    host::readNativeText(document, trial);
  } catch (const host::Refusal&) {
    return 0;
  }
  if (isDeadly(trial)) return 0;
  host::Changes changes(trial, [](const std::string&) {});
  days::Device device(document, 0);
  while (!stream.empty()) {
    const std::string_view line = takeLine(stream);
    const host::Value before = device.document();
    const auto outcome = changes.line(line);
    if (isDeadly(trial)) break;
    Fuzz::require(device.line(line) == outcome, "who watches changes what is refused");
    if (outcome == host::Changes::Outcome::applied) continue;
    Fuzz::require(device.document() == before, "a refused line changed something");
  }
  const host::Native other;
  host::readNativeText(host::nativeJson(device.native(), host::Layout::compact), other);
  Fuzz::require(host::nativePlace(other)->value() == device.document(),
                "a document reads back otherwise");
  const host::Model empty;
  days::Life(device.native(), empty, 0);
  return 0;
}
