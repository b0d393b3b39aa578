// What `check` says of a document: what is lost, or left hanging, when it is translated.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "host/Pointer.h"

namespace host {

struct Finding {
  std::string_view kind;  // a stable word, for programs
  Tokens place;           // in the native document, as it spells its keys
  std::string text;       // what is wrong; what to do
};

using Findings = std::function<void(Finding finding)>;

}  // namespace host
