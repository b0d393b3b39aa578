// The help of the program and of its commands.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "Command.h"

namespace qosoc {

// At most so many columns, but for lines that are shown as they are.
inline constexpr std::size_t helpColumns = 100;

// Headings are bold when `isStyled`.
std::string help(bool isStyled);
std::string help(const Command& command, bool isStyled);

// "-o, --output FILE"
std::string optionLabel(const Option& option);
// What an option does, with the words that its value may be: a paragraph each.
std::vector<std::string> optionParagraphs(const Option& option);

}  // namespace qosoc
