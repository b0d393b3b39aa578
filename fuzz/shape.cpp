// The two readers of native documents: what is judged fast and builds nothing finds the same faults as
// what mounts a device, wherever the blocks of the text end.
#include "host/Shape.h"

#include "Fuzz.h"
#include "host/NativeReader.h"
#include "host/Sections.h"
#include "host/ShapeReader.h"

namespace {

template <class Read>
std::vector<std::string> faultsOf(const Read& read) {
  try {
    read();
  } catch (const host::Refusal& refusal) {
    return host::linesOf(refusal.faults(), "");
  }
  return {};
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text = Fuzz::text(data, size);
  const auto faults = faultsOf([&] {
    const host::Native native;
    host::readNativeText(text, native);
  });
  for (const std::size_t block : {std::size_t{1}, std::size_t{23}, host::TextWindow::blockSize}) {
    host::TextWindow window(text, block);
    const bool fits = host::ShapeReader(window).fits(host::nativeSchema());
    Fuzz::require(!fits || faults.empty(), "a document that is refused has the right shape");
  }
  Fuzz::require(faultsOf([&] { host::checkShapeOfText(text); }) == faults,
                "the shape has other faults than the document");
  return 0;
}
