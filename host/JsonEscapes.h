// The escapes of JSON strings.
#pragma once

#include <string>
#include <string_view>

namespace host {

// Whether it makes a whole escape behind a backslash.
bool isShortEscape(char c);

// Makes `text` what the inside of a JSON string stands for. False, with any text, when an escape in it is
// none of JSON's or half of a pair. Requires: no backslash stands at the end of an odd number of them.
bool unescape(std::string_view written, std::string& text);

}  // namespace host
