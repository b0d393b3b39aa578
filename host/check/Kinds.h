// The kinds of findings: stable words, for programs.
#pragma once

#include <span>
#include <string_view>

namespace host {

struct FindingKind {
  std::string_view word;
  std::string_view meaning;  // as docs/checking.md has it
};

// All of them, those of errors first.
std::span<const FindingKind> findingKinds();

}  // namespace host
