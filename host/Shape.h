// The form of a native document alone: syntax, members, types, ranges, what stands there twice. It is
// judged as by readNative, and nothing is mounted.
#pragma once

#include <cstdio>
#include <string_view>

namespace host {

// Reads an open file, which stays open, from where it stands. One that can be read twice is judged much
// faster. Throws: Refusal, as readNative does.
void checkShape(std::FILE* file);
void checkShapeOfText(std::string_view text);

}  // namespace host
