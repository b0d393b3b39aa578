// Keeps the trace to what the translators do.
#pragma once

#include <utility>

#include "Rok/Rok.h"

namespace host {

// While it stands, no trace line is written: the host decodes comments by the translators' own
// functions, and the lines of these would look as if a translator had.
class Untraced {
 public:
  Untraced() : sink_(Rok::TraceFacility::sinkIs([](const Rok::TraceFacility::Line& /*line*/) {})) {}
  Untraced(const Untraced&) = delete;
  Untraced& operator=(const Untraced&) = delete;
  ~Untraced() { Rok::TraceFacility::sinkIs(std::move(sink_)); }

 private:
  Rok::TraceFacility::Sink sink_;
};

}  // namespace host
