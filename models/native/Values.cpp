#include "models/native/Values.h"

#include <algorithm>
#include <string_view>

namespace Nerit {

Rok::String IntfId::shortName() const {
  const std::string_view name = name_;
  const auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  const auto letters =
      static_cast<std::size_t>(std::find_if_not(name.begin(), name.end(), isLetter) - name.begin());
  if (letters <= 2) return name_;
  return Rok::String(name.substr(0, 2)).append(name.substr(letters));
}

}  // namespace Nerit

namespace Qos {

std::string valueToStrep(const TxQueueId& id) { return std::to_string(id.value); }

const Rok::EnumType<unsigned char>& rokEnumType(QueueType) {
  static const Rok::EnumType<unsigned char> type("Qos::QueueType",
                                                 {{0, "unicast"}, {1, "multicast"}});
  return type;
}

std::string stringValue(QueueType type) {
  return rokEnumType(type).stringValue(static_cast<unsigned char>(type));
}

const Rok::EnumType<unsigned char>& rokEnumType(TxQueuePriority) {
  static const Rok::EnumType<unsigned char> type(
      "Qos::TxQueuePriority", {{0, "strictPriority"}, {2, "priorityNotConfigured"}});
  return type;
}

std::ostream& operator<<(std::ostream& out, const TxQueue& queue) {
  return out << queue.type << "-" << queue.id;
}

}  // namespace Qos
