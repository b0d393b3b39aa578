// Where places of a native document stand in its text.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "host/Pointer.h"
#include "host/TextPosition.h"

namespace host {

// Of each place: that of the value of a scalar, and of the key of anything else. Of a place
// that the text leaves out, that of the innermost one around it. Keys with a name have it in `places`.
// Keys of a text that is no native document are passed over: a file may be written anew between two
// readings, and then the positions are those of what is left of the places.
// Throws: Refusal for a file that can't be read.
std::vector<TextPosition> positionsOfText(std::string_view text, std::span<const Tokens> places);
std::vector<TextPosition> positionsOfFile(const std::string& path, std::span<const Tokens> places);

}  // namespace host
