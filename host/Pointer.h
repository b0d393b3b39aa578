// JSON Pointers: the names of places in a document.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Dorpel/Export.h"

namespace QOS_EXPORT host {

using Tokens = std::vector<std::string>;

// The place of a member or an entry of what stands at a place.
inline Tokens below(Tokens place, std::string_view key) {
  place.emplace_back(key);
  return place;
}

// The tokens of a pointer, unescaped. Nothing for a text that is no pointer.
std::optional<Tokens> pointerTokens(std::string_view pointer);

// The pointer of the tokens, as changes write it.
std::string pointerText(std::span<const std::string> tokens);

// The pointer of the tokens, for a message: like `shown`, and "(document)" for the whole document.
std::string shownPointer(std::span<const std::string> tokens);

}  // namespace host
