// A device with priority flow control: its watchdog, a port record on each interface, the two
// translators that follow them, and what they write.
#pragma once

#include <cstddef>
#include <vector>

#include "QosOpenConfig/QosOpenConfigPfcKivToOCSm.h"

namespace Bench {

class PfcDevice {
 public:
  struct Change {
    std::size_t number;
  };

  // The native side only.
  explicit PfcDevice(std::size_t interfaces);
  // The translators and their output come.
  void start();

  // The directories that the translators write, once they are there.
  template <class Visitor>
  void eachOutput(const Visitor& visit) const {
    visit(watchdog_);
    visit(interfaces_);
  }

  static Change change(std::size_t number) { return {number}; }

  // The events: the watchdog of the whole device, or a port, gets the other one of two sets of
  // priorities.
  void changeWatchdog(const Change& change);
  void changePort(const Change& change);

  // Ends the process unless the output has what the native side stands for.
  void check() const;

 private:
  Rok::Ptr<Qos::Input::Config> input_ = Rok::make<Qos::Input::Config>();
  std::vector<Rok::Ptr<Pfc::PortConfig>> ports_;  // by number
  Rok::Ptr<QosOc::Config::Pfc> watchdog_;
  Rok::Ptr<QosOc::Config::InterfacesDir> interfaces_;
  Rok::Ptr<QosOc::PfcKivToOCSm> watchdogRoot_;
  Rok::Ptr<QosOc::IntfPfcKivToOCSm> portRoot_;
};

}  // namespace Bench
