#include "Rok/GenericIfImpl.h"

#include <string>

namespace Rok {

UnhashableException::~UnhashableException() = default;

void GenericIfImpl::throwUnhashableException(std::string_view typeName) {
  throw UnhashableException("values of " + std::string(typeName) + " have no hash");
}

}  // namespace Rok
