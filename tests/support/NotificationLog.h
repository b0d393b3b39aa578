// Records which attributes of a notifier change, and at which keys.
#pragma once

#include <sstream>
#include <string>
#include <type_traits>
#include <vector>

#include "Rok/Notifier.h"

namespace support {

// NotificationLog<Port::Attr::mtu, Port::Attr::queue>: a line for each change, the attribute's id
// and its key, as "130" or "131 7". A change of any other attribute is written with a "?".
template <auto... attributes>
class NotificationLog final : public Rok::PtrInterface::NotifieeConst {
 public:
  explicit NotificationLog(const Rok::PtrInterface& notifier) {
    notifierIs(&notifier);
    isRegisteredNotifieeIs(true);
    hasNotificationActiveIs(true);
  }

  void onAttribute(Rok::AttributeId id, const void* key) override {
    std::ostringstream line;
    line << id;
    const bool known = (print<attributes>(line, id, key) || ...);
    if (!known) line << " ?";
    lines_.push_back(line.str());
  }
  const std::vector<std::string>& lines() const { return lines_; }

 private:
  template <auto attribute>
  static bool print(std::ostream& out, Rok::AttributeId id, const void* key) {
    using Key = typename decltype(attribute)::Key;
    if (id != attribute.id) return false;
    if constexpr (!std::is_void_v<Key>) out << " " << *static_cast<const Key*>(key);
    return true;
  }

  std::vector<std::string> lines_;
};

}  // namespace support
