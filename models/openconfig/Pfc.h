// OpenConfig priority flow control of the whole device. That of an interface is in Interface.h.
#pragma once

#include <cstdint>
#include <ostream>

#include "Rok/Rok.h"

namespace QosOc::Config {

// The watchdog's settings. The times are the native ones, in native units.
struct PfcWatchdog {
  double timeA = 0;
  double timeB = 0;
  double timeC = 0;
  std::uint8_t action = 1;
  Rok::String priorities;  // hexadecimal digits

  bool operator==(const PfcWatchdog&) const = default;
  explicit operator bool() const { return *this != PfcWatchdog(); }
  friend std::ostream& operator<<(std::ostream& out, const PfcWatchdog& watchdog) {
    return out << "{timeA " << watchdog.timeA << ", timeB " << watchdog.timeB << ", timeC "
               << watchdog.timeC << ", action " << unsigned{watchdog.action} << ", priorities "
               << watchdog.priorities << "}";
  }
};

class Pfc final : public Rok::PtrInterface {
 public:
  const PfcWatchdog& watchdog() const { return watchdog_; }
  void watchdogIs(const PfcWatchdog& watchdog) { watchdog_ = watchdog; }

 private:
  PfcWatchdog watchdog_;
};

}  // namespace QosOc::Config
