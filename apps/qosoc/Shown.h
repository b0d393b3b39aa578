// Which leaves a command shows: --only, --no-augments, --state, --interface-ref.
#pragma once

#include <string>

#include "Arguments.h"
#include "host/openconfig/Subtree.h"
#include "host/openconfig/View.h"

namespace qosoc {

// What the options are called; a command says what they do in its own words.
inline constexpr Option onlyOption{.name = "--only", .value = "PATH", .kind = Kind::other};
inline constexpr Option noAugmentsOption{
    .name = "--no-augments", .help = "leave out what is not in OpenConfig's own modules"};
inline constexpr Option stateOption{.name = "--state"};
inline constexpr Option interfaceRefOption{.name = "--interface-ref"};
constexpr Option withHelp(Option option, std::string_view help) {
  option.help = help;
  return option;
}

struct Shown {
  // Requires: the command knows the options. Throws: UsageError.
  explicit Shown(const Arguments& arguments);

  host::ViewOptions view;
  host::Subtree only;
  std::string option;  // one of them that was given; empty when none was
};

}  // namespace qosoc
