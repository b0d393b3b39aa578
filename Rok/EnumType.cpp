#include "Rok/EnumType.h"

#include <algorithm>
#include <charconv>

#include "Rok/Exceptions.h"

namespace Rok {

std::string EnumType<unsigned char>::stringValue(unsigned char value) const {
  const auto found = std::ranges::find(enumerators_, value, &Enumerator::value);
  return found != enumerators_.end() ? std::string(found->name) : std::to_string(value);
}

std::optional<unsigned char> EnumType<unsigned char>::strepToValue(std::string_view text) const {
  const auto found = std::ranges::find(enumerators_, text, &Enumerator::name);
  if (found != enumerators_.end()) return found->value;
  unsigned char value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  const bool canonical = text.size() == 1 || (!text.empty() && text.front() != '0');
  if (error != std::errc() || end != text.data() + text.size() || !canonical) return {};
  return value;
}

unsigned char EnumType<unsigned char>::sequenceToValue(std::size_t sequence) const {
  checkIndex(sequence, enumerators_.size());
  return enumerators_[sequence].value;
}

std::ostream& EnumType<unsigned char>::operatorLessLess(std::ostream& out,
                                                        unsigned char value) const {
  return out << stringValue(value);
}

}  // namespace Rok
