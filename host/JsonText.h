// JSON texts, read as streams of events. No text can overflow the stack, however deep it nests.
#pragma once

#include <string>
#include <string_view>

#include "host/SchemaReader.h"

namespace host {

// Which faults say at which line and column they are: those of the syntax, or those of the schema,
// too. Theirs is the bracket that opens what doesn't fit, or its last character.
enum class Positions { ofSyntax, ofAll };

// Feeds a file to a reader, a block at a time.
// Throws: Fault, also for a file that can't be read; then the fault has no place.
void readJsonFile(const std::string& path, SchemaReader& reader,
                  Positions positions = Positions::ofSyntax);

// The same for a text.
void readJsonText(std::string_view text, SchemaReader& reader,
                  Positions positions = Positions::ofSyntax);

}  // namespace host
