// OVERVIEW
//   Enumerations of the models: one byte wide, with a name for each enumerator.
//
// RULES
//   - An enumeration is open: a value without a name is legal, and its text is its number.
//   - The text of a value reads back as that value. Numbers are read in canonical decimals only.
//   - rokEnumType and operator<< stand in the namespace of the enumeration, where a call finds them
//     by its argument.
//
// EXAMPLE
//   enum class MapType : unsigned char { mapQos = 1 };
//   inline const Rok::EnumType<unsigned char>& rokEnumType(MapType) {
//     static const Rok::EnumType<unsigned char> type("Qos::MapType", {{1, "mapQos"}});
//     return type;
//   }
//   inline std::ostream& operator<<(std::ostream& out, MapType v) {
//     return Rok::enumPrint(out, v);
//   }
#pragma once

#include <cstddef>
#include <initializer_list>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

#include "Dorpel/Export.h"

namespace Rok {

template <class Rep>
class EnumType;

template <>
class QOS_EXPORT EnumType<unsigned char> {
 public:
  // A value and its name.
  struct Enumerator {
    unsigned char value;
    std::string_view name;
  };

  EnumType(std::string_view name, std::initializer_list<Enumerator> enumerators)
      : name_(name), enumerators_(enumerators) {}

  // The type object of an enumeration.
  template <class Enum>
  static const EnumType& instance() {
    return rokEnumType(Enum{});
  }

  std::string_view name() const { return name_; }
  std::size_t size() const { return enumerators_.size(); }

  // The enumerator's name; the decimal number for a value without one.
  std::string stringValue(unsigned char value) const;
  // The textual representation, which reads back as the value: the same text.
  std::string valueToStrep(unsigned char value) const { return stringValue(value); }
  // The value that a text stands for, by name or as a canonical decimal; nothing for another text.
  std::optional<unsigned char> strepToValue(std::string_view text) const;
  // The value at a place in declaration order. Requires: sequence < size().
  unsigned char sequenceToValue(std::size_t sequence) const;
  std::ostream& operatorLessLess(std::ostream& out, unsigned char value) const;

 private:
  std::string_view name_;
  std::vector<Enumerator> enumerators_;
};

// Prints the name of a value, or its number where it has none.
template <class Enum>
std::ostream& enumPrint(std::ostream& out, Enum value) {
  static_assert(sizeof(Enum) == 1, "enumerations of the models are one byte wide");
  return EnumType<unsigned char>::instance<Enum>().operatorLessLess(
      out, static_cast<unsigned char>(value));
}

}  // namespace Rok
