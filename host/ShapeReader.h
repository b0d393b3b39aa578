// Judges the form of a text by its schema, and that fast: it builds nothing and remembers nothing but
// hashes of the keys of the objects that are open. It only says whether the text is right. Where it is
// not sure, it says no: what is wrong, and whether anything is, the SchemaReader says.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>

#include "host/KeySet.h"
#include "host/Schema.h"
#include "host/TextWindow.h"

namespace host {

class ShapeReader {
 public:
  explicit ShapeReader(TextWindow& text) : text_(text) {}

  // Whether the rest of the text is one value that a SchemaReader takes, and nothing else. False may be
  // wrong: of numbers in an unusual spelling, null, a list, a value of which there is only one, and of
  // keys that differ and have the same hash.
  bool fits(const Schema& schema);

 private:
  struct Written {
    std::string_view text;
    bool hasEscapes = false;
    bool hasLongEscapes = false;  // others than of two characters
  };

  // As deep as the schema, which has an end.
  bool value(const Schema& schema);
  bool collection(const Schema& schema);
  bool record(const Schema& schema);
  bool set(const Schema& schema);
  bool scalar(const Scalar& scalar);
  template <class TakeKey>
  bool members(const TakeKey& takeKey);
  std::optional<std::uint64_t> number(const Scalar& scalar);
  std::optional<std::uint64_t> digits(std::uint64_t max);
  bool real();
  bool literal(std::string_view word);

  KeySet& keysOfNext();
  char next();
  bool takes(char c);
  bool takesName(std::string_view name);
  std::optional<bool> goesOn(char end);
  std::optional<std::string_view> string();
  bool text();
  std::optional<Written> written();

  TextWindow& text_;
  std::deque<KeySet> keys_;  // of the collections and sets that are open, and some that will be
  std::size_t open_ = 0;
  std::string unescaped_;  // of the string that was read last
};

}  // namespace host
