// JSON texts, read as streams of events. No text can overflow the stack, however deep it nests.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>

#include "host/SchemaReader.h"

namespace host {

// Feeds a file to a reader, a block at a time.
// Throws: Refusal, also for a file that can't be read; that fault has neither place nor position.
void readJsonFile(const std::string& path, SchemaReader& reader);
// The same for a file that is open. It is not closed.
void readJsonFile(std::FILE* file, SchemaReader& reader);

// The same for a text.
void readJsonText(std::string_view text, SchemaReader& reader);

}  // namespace host
