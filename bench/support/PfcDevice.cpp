#include "support/PfcDevice.h"

#include "support/Check.h"
#include "support/Order.h"
#include "support/TxQueues.h"

namespace Bench {
namespace {

// The other number of a pair: 2 and 3, 4 and 5. None is 0.
std::uint8_t otherOf(std::uint8_t priorities) { return priorities ^ 1u; }
std::uint8_t prioritiesOf(std::size_t number) {
  return static_cast<std::uint8_t>(2 + 2 * (number % 100));
}

}  // namespace

PfcDevice::PfcDevice(std::size_t interfaces) : ports_(interfaces) {
  input_->pfcWatchdogPrioritiesIs(prioritiesOf(0));
  Random random(1);
  for (const std::size_t number : shuffledNumbers(interfaces, random)) {
    ports_[number] = Rok::make<Pfc::PortConfig>(prioritiesOf(number));
    const auto interface = Rok::make<Qos::IntfConfig>(interfaceId(number));
    interface->pfcPortConfigIs(ports_[number]);
    input_->intfConfigIs(interface->intfId(), interface);
  }
}

void PfcDevice::start() {
  watchdog_ = Rok::make<QosOc::Config::Pfc>();
  interfaces_ = Rok::make<QosOc::Config::InterfacesDir>();
  watchdogRoot_ = QosOc::pfcKivToOCSmFactory(input_, watchdog_);
  portRoot_ = QosOc::intfPfcKivToOCSmFactory(input_, interfaces_);
}

void PfcDevice::changeWatchdog(const Change& /*change*/) {
  input_->pfcWatchdogPrioritiesIs(otherOf(input_->pfcWatchdogPriorities()));
}

void PfcDevice::changePort(const Change& change) {
  Pfc::PortConfig& port = *ports_[change.number];
  port.prioritiesIs(otherOf(port.priorities()));
}

void PfcDevice::check() const {
  require(
      watchdog_->watchdog().priorities == QosOc::priorityConverter(input_->pfcWatchdogPriorities()),
      "priorities of the watchdog");
  for (std::size_t number = 0; number < ports_.size(); ++number) {
    const auto interface = interfaces_->interface(interfaceId(number).stringValue());
    require(interface && interface->output() &&
                interface->output()->pfc().priorities ==
                    QosOc::priorityConverter(ports_[number]->priorities()),
            "priorities of a port");
  }
}

}  // namespace Bench
