#include "host/check/Raises.h"
#include "host/check/Rules.h"

namespace host {

void judgeRanges(const Device& device, const Findings& findings) {
  Raises(device.native).all([&](Raise raise) {
    findings({"raises", std::move(raise.place), std::move(raise.text)});
  });
}

}  // namespace host
