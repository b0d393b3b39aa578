// Which leaves a command shows: --no-augments, --state, --interface-ref.
#pragma once

#include <string>

#include "Arguments.h"
#include "host/openconfig/View.h"

namespace qosoc {

struct Shown {
  // Requires: the command knows the options.
  explicit Shown(const Arguments& arguments);

  host::ViewOptions view;
  std::string option;  // one of them that was given; empty when none was
};

}  // namespace qosoc
