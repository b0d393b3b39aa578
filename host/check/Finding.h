// What `check` says of a document: what is lost, or left hanging, when it is translated.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <tuple>

#include "host/Pointer.h"

namespace host {

struct Finding {
  std::string_view kind;  // a stable word, for programs
  Tokens place;           // in the native document; a key that has a name and a number, by its name
  std::string text;       // what is wrong; what to do

  friend auto operator<=>(const Finding& a, const Finding& b) {
    return std::tie(a.place, a.kind, a.text) <=> std::tie(b.place, b.kind, b.text);
  }
  friend bool operator==(const Finding& a, const Finding& b) = default;
};

using Findings = std::function<void(Finding finding)>;

}  // namespace host
