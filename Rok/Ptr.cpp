#include "Rok/Ptr.h"

#include "Rok/FwkType.h"
#include "Rok/Hash.h"

namespace Rok {

bool VFPtrInterface::threadSafePointers_ = false;
std::uint32_t HashHelper::orderSeed_ = 0;
std::uint64_t HashHelper::version_ = 0;

PtrInterface::~PtrInterface() = default;

NotifieeList* PtrInterface::notifieeList() const { return nullptr; }

void PtrInterface::hasNotificationActiveIs(bool v) { flagIs(activeFlag, v); }

void PtrInterface::zeroReferencesIs(bool /*v*/) {}

const FwkType& PtrInterface::fwkType() const {
  static const FwkType type{"PtrInterface", {}};
  return type;
}

void PtrInterface::handleZeroRef() const {
  // One reference is held from here to the destructor, so that one that is taken and given back
  // meanwhile doesn't bring the count to zero a second time.
  referenceNew();
  auto* self = const_cast<PtrInterface*>(this);
  self->zeroReferencesIs(true);
  delete self;
}

}  // namespace Rok
