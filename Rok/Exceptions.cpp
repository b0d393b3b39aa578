#include "Rok/Exceptions.h"

#include <cstdarg>
#include <cstdio>
#include <sstream>

namespace Rok {

// The destructors stand here so that each class has its type information in one place: only then
// does a host catch what the library throws.
Exception::~Exception() = default;
RangeException::~RangeException() = default;
MutatorException::~MutatorException() = default;
MutatorArgNullPointerException::~MutatorArgNullPointerException() = default;
MutatorReinstantiatingException::~MutatorReinstantiatingException() = default;

Velmo::String _fmt(const char* format, ...) {
  std::va_list args;
  va_start(args, format);
  std::va_list again;
  va_copy(again, args);
  const int size = std::vsnprintf(nullptr, 0, format, args);
  va_end(args);
  std::string text(size > 0 ? static_cast<std::size_t>(size) : 0, '\0');
  if (size > 0) std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return {text};
}

void throwRangeException(const char* text) { throw RangeException(text); }

void throwRangeException(const Velmo::String& text) {
  throw RangeException(std::string(std::string_view(text)));
}

void throwMutatorArgNullPointerException(std::string_view argName, const FwkType& type,
                                         AttributeId attributeId) {
  throw MutatorArgNullPointerException(std::string(type.name) + ": argument " +
                                           std::string(argName) + " (attribute " +
                                           std::to_string(attributeId) + ") must not be null",
                                       std::string(argName), attributeId);
}

void throwMutatorReinstantiating(const FwkType& type, AttributeId attributeId,
                                 std::string_view oldText, std::string_view newText) {
  const std::string attribute(type.attributeName(attributeId));
  throw MutatorReinstantiatingException(
      std::string(type.name) + ": a child built with another " + attribute + " (attribute " +
          std::to_string(attributeId) + ") exists: " + std::string(oldText) + ", not " +
          std::string(newText),
      attribute, attributeId);
}

namespace Impl {

void throwMutatorReinstantiating(const FwkType& type, AttributeId attributeId,
                                 const void* oldObject, const void* newObject) {
  const auto print = [](std::ostream& out, const void* value) { out << value; };
  Rok::throwMutatorReinstantiating(type, attributeId, printed(oldObject, print),
                                   printed(newObject, print));
}

std::string printed(const void* value, void (*print)(std::ostream&, const void*)) {
  std::ostringstream out;
  print(out, value);
  return out.str();
}

}  // namespace Impl
}  // namespace Rok
