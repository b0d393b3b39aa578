// OpenConfig priority flow control of the whole device. That of an interface is in Interface.h.
#pragma once

#include <cstdint>
#include <ostream>

#include "Rok/Rok.h"
#include "models/openconfig/Fields.h"
#include "models/openconfig/Journal.h"

namespace QosOc::Config {

// The watchdog's settings. The times are the native ones, in native units.
struct PfcWatchdog {
  static constexpr RecordId record = RecordId::pfcWatchdog;
  double timeA = 0;
  double timeB = 0;
  double timeC = 0;
  std::uint8_t action = 1;
  Rok::String priorities;  // hexadecimal digits

  static constexpr auto fields() {
    return std::tuple{Field{"timeA", &PfcWatchdog::timeA}, Field{"timeB", &PfcWatchdog::timeB},
                      Field{"timeC", &PfcWatchdog::timeC}, Field{"action", &PfcWatchdog::action},
                      Field{"priorities", &PfcWatchdog::priorities}};
  }

  bool operator==(const PfcWatchdog&) const = default;
  explicit operator bool() const { return *this != PfcWatchdog(); }
};

class Pfc final : public Rok::PtrInterface {
 public:
  static constexpr auto attributes() {
    return std::tuple{attribute("watchdog", &Pfc::watchdog, &Pfc::watchdogIs)};
  }

  const PfcWatchdog& watchdog() const { return watchdog_.get(); }
  void watchdogIs(const PfcWatchdog& watchdog) { watchdog_.is(marker_, watchdog); }

  void journalIs(Journal* journal) { marker_ = Marker(journal); }
  bool hasJournal() const { return marker_.isOn(); }

 private:
  Recorded<PfcWatchdog> watchdog_;
  Marker marker_;
};

}  // namespace QosOc::Config
