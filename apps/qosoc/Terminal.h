// What only a terminal gets: colours, and lines that are erased again. NO_COLOR, unless it is empty,
// turns colours off; TERM without a value or as "dumb" turns both off.
#pragma once

#include <string>
#include <string_view>

namespace qosoc {

// Whether a stream of the process, as STDOUT_FILENO, is a terminal that can erase a line.
bool canErase(int stream);
// Whether it is one that has colours, and they are wanted.
bool hasColours(int stream);

enum class Style { bold, boldRed, red, green, yellow };

// The text in a style, or as it is when `isOn` is not.
std::string styled(std::string_view text, Style style, bool isOn);

// The head of a message in its colour: up to the first colon, yellow for a warning and red for all
// else.
std::string withStyledHead(std::string_view line, bool isOn);

}  // namespace qosoc
