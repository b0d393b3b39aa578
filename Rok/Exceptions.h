// OVERVIEW
//   What leaves a handler when a value or an argument is wrong, and the functions that throw it.
//
// RULES
//   - RangeException: a value is outside of its range. MutatorException: a constructor or a factory
//     refuses an argument. A broken invariant is neither; it is an assertion (Sassert.h).
//   - Translators throw and catch nothing. The exception goes through the notification, which calls
//     all other notifiees first (Notifier.h), and leaves the setter of the native object.
//   - A number is tested in the type in which it comes (isUpTo), before it is cut to a narrower
//     type.
//
// EXAMPLE
//   struct Dscp {
//     explicit Dscp(int v) : value(static_cast<unsigned char>(v)) {
//       if (!Rok::isUpTo(63, v)) Rok::throwRangeException(Rok::_fmt("%d is not a DSCP", v));
//     }
//     unsigned char value;
//   };
#pragma once

#include <concepts>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include "Dorpel/Export.h"
#include "Rok/FwkType.h"
#include "Rok/Ptr.h"
#include "Velmo/String.h"

namespace Rok {

// What a translator throws, whatever is wrong.
class QOS_EXPORT Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
  ~Exception() override;
};

// A value outside its declared range. what() is the text alone.
class QOS_EXPORT RangeException : public Exception {
 public:
  using Exception::Exception;
  ~RangeException() override;
};

// A mutator refuses one of its arguments.
class QOS_EXPORT MutatorException : public Exception {
 public:
  MutatorException(const std::string& text, std::string attribute, AttributeId attributeId)
      : Exception(text), attribute_(std::move(attribute)), attributeId_(attributeId) {}
  ~MutatorException() override;

  // The argument's name, and its number in the class that it builds.
  const std::string& attribute() const { return attribute_; }
  AttributeId attributeId() const { return attributeId_; }

 private:
  std::string attribute_;
  AttributeId attributeId_;
};

// An argument that must be there is null.
class QOS_EXPORT MutatorArgNullPointerException : public MutatorException {
 public:
  using MutatorException::MutatorException;
  ~MutatorArgNullPointerException() override;
};

// A child stands under the key already, built from another argument.
class QOS_EXPORT MutatorReinstantiatingException : public MutatorException {
 public:
  using MutatorException::MutatorException;
  ~MutatorReinstantiatingException() override;
};

// printf into a string.
[[gnu::format(printf, 1, 2)]] QOS_EXPORT Velmo::String _fmt(const char* format, ...);

// Throws: RangeException with that text.
[[noreturn]] QOS_EXPORT void throwRangeException(const char* text);
[[noreturn]] QOS_EXPORT void throwRangeException(const Velmo::String& text);

// Whether a number, in whatever type it comes, is one of 0 to `max`. The test comes before the
// number is cut to a narrower type: cut to a byte, 300 is 44.
template <std::integral Number>
constexpr bool isUpTo(std::uint64_t max, Number number) {
  if constexpr (std::signed_integral<Number>) {
    if (number < 0) return false;
  }
  return static_cast<std::common_type_t<Number, std::uint64_t>>(number) <= max;
}

// Tests an index into a bounded array. Throws: RangeException when index >= size.
inline void checkIndex(std::size_t index, std::size_t size) {
  if (index >= size) {
    throwRangeException(_fmt("cannot access index %d of an array with size %d",
                             static_cast<int>(index), static_cast<int>(size)));
  }
}

// "<type>: argument <argName> (attribute <id>) must not be null"
[[noreturn]] QOS_EXPORT void throwMutatorArgNullPointerException(std::string_view argName,
                                                                 const FwkType& type,
                                                                 AttributeId attributeId);

// "<type>: a child built with another <attribute> (attribute <id>) exists: <old>, not <new>"
[[noreturn]] QOS_EXPORT void throwMutatorReinstantiating(const FwkType& type,
                                                         AttributeId attributeId,
                                                         std::string_view oldText,
                                                         std::string_view newText);
namespace Impl {
// As above, with the two objects' addresses.
[[noreturn]] QOS_EXPORT void throwMutatorReinstantiating(const FwkType& type,
                                                         AttributeId attributeId,
                                                         const void* oldObject,
                                                         const void* newObject);
QOS_EXPORT std::string printed(const void* value, void (*print)(std::ostream&, const void*));

// As above, for an argument passed by value.
template <class T>
[[noreturn]] void throwMutatorReinstVal(const FwkType& type, AttributeId attributeId,
                                        const T& oldValue, const T& newValue) {
  const auto print = [](std::ostream& out, const void* value) {
    out << *static_cast<const T*>(value);
  };
  throwMutatorReinstantiating(type, attributeId, printed(&oldValue, print),
                              printed(&newValue, print));
}
}  // namespace Impl

}  // namespace Rok
