// How `check` prints what it finds: a line each, for people or as JSON.
#pragma once

#include <string>
#include <string_view>

#include "host/TextPosition.h"

namespace qosoc {

// One finding, and where in which file it stands.
struct FoundLine {
  std::string file;  // as messages name it
  host::TextPosition position;
  std::string_view severity;
  std::string place;    // as messages show it; empty: there is none
  std::string pointer;  // the same as a JSON Pointer
  std::string_view kind;
  std::string text;
};

// "FILE:LINE:COLUMN: warning: POINTER: text", with colours in it or without.
std::string shownLine(const FoundLine& line, bool isColoured);
// {"file":…,"line":…,"column":…,"severity":…,"pointer":…,"kind":…,"text":…}
std::string jsonLine(const FoundLine& line);

}  // namespace qosoc
