#include "Rok/StateMachine.h"

namespace Rok {

void StateMachineBase::rokPartsAssert(std::size_t named, std::string_view type) const {
  if (named == rokParts_) return;
  SassertHelper("named == rokParts_")
      << type << "::parts() names " << named << " of " << static_cast<unsigned>(rokParts_)
      << " watches and collections";
}

}  // namespace Rok
