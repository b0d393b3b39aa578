#include "tests/days/Device.h"

#include "host/NativeReader.h"
#include "host/Roots.h"
#include "host/Sections.h"
#include "tests/support/WalkOrder.h"

namespace days {

Life::Life(const host::Native& native, const host::Model& model, std::uint32_t orderSeed) {
  const support::WalkOrder order(orderSeed);
  roots = host::buildRoots({}, native, model,
                           [this](const std::string& report) { reports.push_back(report); });
}

host::Native mounted(std::string_view document, std::uint32_t orderSeed) {
  const support::WalkOrder order(orderSeed);
  host::Native native;
  host::readNativeText(document, native);
  return native;
}

Device::Device(std::string_view document, std::uint32_t orderSeed)
    : orderSeed_(orderSeed),
      native_(mounted(document, orderSeed)),
      life_(native_, model_, orderSeed) {}

host::Changes::Outcome Device::line(std::string_view text) {
  const support::WalkOrder order(orderSeed_);
  reports_.clear();
  return changes_.line(text);
}

host::Value Device::document() const { return host::nativePlace(native_)->value(); }

}  // namespace days
