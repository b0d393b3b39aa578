// Native priority flow control of one port.
#pragma once

#include <cstdint>

#include "Rok/Rok.h"

namespace Pfc {

// The settings of a port that has any.
class PortConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> priorities{130};
  };

  explicit PortConfig(std::uint8_t priorities = 0) : priorities_(priorities) {}

  // A bit for each priority. Notifies: priorities.
  std::uint8_t priorities() const { return priorities_; }
  void prioritiesIs(std::uint8_t v) { attributeIs(priorities_, v, Attr::priorities); }

 private:
  std::uint8_t priorities_;
};

}  // namespace Pfc
