// The reader of native documents and their writer: a text is refused, or mounts a device whose
// document, once written, mounts the same one and is written the same again.
#include "Fuzz.h"
#include "host/Fault.h"
#include "host/NativeReader.h"
#include "host/NativeWriter.h"
#include "host/Sections.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const host::Native native;
  try {
    host::readNativeText(Fuzz::text(data, size), native);
  } catch (const host::Refusal&) {
    return 0;
  }
  const std::string written = host::nativeJson(native, host::Layout::pretty);
  const host::Native other;
  host::readNativeText(written, other);
  Fuzz::require(host::nativePlace(other)->value() == host::nativePlace(native)->value(),
                "a device reads back differently");
  Fuzz::require(host::nativeJson(other, host::Layout::pretty) == written,
                "a device that was read back is written differently");
  return 0;
}
