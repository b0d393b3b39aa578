// OVERVIEW
//   The text form of values, written for traces and read back by generic access. valueToStrep of a
//   class gives one line of text; a constructor from a CharRange, the exact inverse, takes that
//   text off the front of the range.
//
// RULES
//   - A parser consumes what it reads and leaves the rest; for strepToValue nothing may be left.
//   - A string is written between single quotes. The quote and the backslash get a backslash in
//     front, a control character is written as \xNN, and every other byte stands for itself. So any
//     string reads back, NUL included, and its text goes through a printf format.
//   - Numbers are plain decimals: no sign, no blank, no leading zero.
//   - One value has one text: whatever a parser accepts, valueToStrep of the result gives again.
//   - What doesn't fit raises RangeException, with the names of the attributes that lead there.
//
// EXAMPLE
//   struct Limit {
//     explicit Limit(Rok::CharRange& range) {
//       range.needString("Limit(");
//       rate = Rok::deserializeAttr<std::uint64_t>(range, "rate");
//       range.needString(")");
//     }
//     std::uint64_t rate = 0;
//   };
//   assert(Rok::strepToValue<Limit>("Limit(40)").rate == 40);
//   assert(Rok::valueToStrep(Velmo::String("it's")) == R"('it\'s')");
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>

#include "Dorpel/Export.h"
#include "Rok/EnumType.h"
#include "Rok/Exceptions.h"
#include "Velmo/String.h"

namespace Rok {

// A text that is read from the front.
class QOS_EXPORT CharRange {
 public:
  // Requires: the text outlives the range.
  explicit CharRange(std::string_view text) : text_(text) {}

  // What hasn't been consumed yet.
  std::string_view rest() const { return text_.substr(consumed_); }
  // Takes so many bytes off the front. Requires: bytes <= rest().size().
  void consume(std::size_t bytes) { consumed_ += bytes; }

  // Consumes exactly that text. Throws: RangeException when another one stands there.
  void needString(std::string_view literal);
  // Throws: RangeException when something is left.
  void checkAllDataConsumed() const;
  // "at byte <consumed>: expected <what>"
  [[noreturn]] void throwExpected(std::string_view what) const;

 private:
  std::string_view text_;
  std::size_t consumed_ = 0;
};

// The text form of a string.
QOS_EXPORT Velmo::String valueToStrep(const Velmo::String& text);

// Passes on what went wrong in an attribute's value: "<attribute>: <what>".
[[noreturn]] QOS_EXPORT void rethrowFromDeserializeAttr(const RangeException& exception,
                                                        const char* attribute);

namespace Impl {
QOS_EXPORT Velmo::String stringFromStrep(CharRange& range);
QOS_EXPORT std::uint64_t numberFromStrep(CharRange& range, std::uint64_t max);
QOS_EXPORT unsigned char enumeratorFromStrep(CharRange& range, const EnumType<unsigned char>& type);

template <class T>
T fromStrep(CharRange& range) {
  if constexpr (std::same_as<T, Velmo::String>) {
    return stringFromStrep(range);
  } else if constexpr (std::unsigned_integral<T> && !std::same_as<T, bool>) {
    return static_cast<T>(numberFromStrep(range, std::numeric_limits<T>::max()));
  } else if constexpr (std::is_enum_v<T>) {
    return static_cast<T>(
        enumeratorFromStrep(range, EnumType<unsigned char>::template instance<T>()));
  } else {
    return T(range);
  }
}
}  // namespace Impl

// Reads a string, an unsigned number, an enumeration or a class off the front, as the value of that
// attribute. Throws: RangeException, with the attribute's name in front.
template <class T>
T deserializeAttr(CharRange& range, const char* attribute) {
  try {
    return Impl::fromStrep<T>(range);
  } catch (const RangeException& exception) {
    rethrowFromDeserializeAttr(exception, attribute);
  }
}

// The value whose text this is. Throws: RangeException for any other text, a longer one included.
template <class T>
T strepToValue(std::string_view text) {
  CharRange range(text);
  T value = Impl::fromStrep<T>(range);
  range.checkAllDataConsumed();
  return value;
}

}  // namespace Rok
