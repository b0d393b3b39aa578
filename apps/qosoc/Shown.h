// Which leaves a command shows: --only, --no-augments, --state, --interface-ref.
#pragma once

#include <string>

#include "Arguments.h"
#include "host/openconfig/Subtree.h"
#include "host/openconfig/View.h"

namespace qosoc {

struct Shown {
  // Requires: the command knows the options. Throws: UsageError.
  explicit Shown(const Arguments& arguments);

  host::ViewOptions view;
  host::Subtree only;
  std::string option;  // one of them that was given; empty when none was
};

}  // namespace qosoc
