// A document that was given in the place of another kind of document.
#pragma once

#include <string_view>

#include "host/Fault.h"

namespace host {

// A refusal of a text that has a member which only a saved state or only an OpenConfig document has
// becomes one fault that says what the text is, since the others come of it; `openConfig` ends the
// sentence for an OpenConfig document. Any other refusal stays as it is.
Refusal ofOtherDocument(const Refusal& refusal, std::string_view openConfig);

// Runs `read`. Throws: Refusal, as above.
template <class Read>
void readExpected(const Read& read, std::string_view openConfig) {
  try {
    read();
  } catch (const Refusal& refusal) {
    throw ofOtherDocument(refusal, openConfig);
  }
}

}  // namespace host
