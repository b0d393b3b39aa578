// Strings as attributes: Velmo::String under the framework's name, and the limit that an attribute
// may carry.
#pragma once

#include <cstddef>

#include "Rok/Exceptions.h"
#include "Velmo/String.h"

namespace Rok {

using String = Velmo::String;

// A string attribute of at most `maxBytes` bytes.
template <std::size_t maxBytes>
class LimitedString {
 public:
  LimitedString() = default;
  // Throws: RangeException for a longer text.
  LimitedString(const String& text) { *this = text; }
  LimitedString& operator=(const String& text) {
    if (text.size() > maxBytes) {
      throwRangeException("Rok::String::bytes > maxLength() not allowed");
    }
    text_ = text;
    return *this;
  }

  const String& value() const { return text_; }
  operator const String&() const { return text_; }
  friend bool operator==(const LimitedString&, const LimitedString&) = default;

 private:
  String text_;
};

}  // namespace Rok
