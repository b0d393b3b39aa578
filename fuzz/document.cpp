// The reader of native documents: it refuses a text, or mounts a device that reads back the same.
#include "Fuzz.h"
#include "host/Fault.h"
#include "host/Sections.h"
#include "tests/days/ValueText.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const host::Native native;
  try {
    host::readNativeText(Fuzz::text(data, size), native);
  } catch (const host::Fault&) {
    return 0;
  }
  const host::Value value = host::nativePlace(native)->value();
  const host::Native other;
  host::readNativeText(days::valueText(value), other);
  Fuzz::require(host::nativePlace(other)->value() == value, "a device reads back differently");
  return 0;
}
