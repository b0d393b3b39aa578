// The keys of the comments of tx queues, taken apart.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "host/Text.h"
#include "models/native/Values.h"

namespace host {

struct CommentKey {
  static constexpr std::string_view opening = "if-";

  std::string shortName;  // of the interface, up to a NUL
  Qos::TxQueue queue;

  // "if-Et1-uc-txq-3"; nothing for a key of another form.
  static std::optional<CommentKey> parse(std::string_view key) {
    constexpr std::string_view unicast = "-uc-txq", multicast = "-mc-txq";
    const std::size_t dash = key.rfind('-');
    if (dash == key.npos || dash < opening.size() + unicast.size()) return std::nullopt;
    const auto id = decimal(key.substr(dash + 1), 255);
    const std::string_view name = key.substr(0, dash);
    const bool isMulticast = name.ends_with(multicast);
    if (!id || !name.starts_with(opening)) return std::nullopt;
    if (!isMulticast && !name.ends_with(unicast)) return std::nullopt;
    const std::size_t length = name.size() - opening.size() - unicast.size();
    return CommentKey{
        std::string(name.substr(opening.size(), length)),
        {static_cast<unsigned char>(*id), isMulticast ? Qos::multicast : Qos::unicast}};
  }
};

}  // namespace host
