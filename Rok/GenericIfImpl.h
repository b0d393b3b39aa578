// Generic access to values: code that handles any class asks for a hash here. Classes whose values
// are never keys have none, and asking for one is an error of the caller.
#pragma once

#include <cstdint>
#include <string_view>

#include "Dorpel/Export.h"
#include "Rok/Exceptions.h"
#include "Rok/Hash.h"

namespace Rok {

// A value of a type without a hash was asked for it.
class QOS_EXPORT UnhashableException : public Exception {
 public:
  using Exception::Exception;
  ~UnhashableException() override;
};

struct QOS_EXPORT GenericIfImpl {
  // "values of <typeName> have no hash"
  [[noreturn]] static void throwUnhashableException(std::string_view typeName);

  // hashSingleAttr for values that have a hash. Throws: UnhashableException for a class without
  // one, by its rokTypeName.
  template <class T>
  static std::uint32_t hash(std::uint32_t seed, const T& value) {
    if constexpr (requires { hashSingleAttr(seed, value); }) {
      return hashSingleAttr(seed, value);
    } else {
      throwUnhashableException(T::rokTypeName);
    }
  }
};

}  // namespace Rok
