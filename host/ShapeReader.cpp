#include "host/ShapeReader.h"

#include <cstring>

#include "host/JsonEscapes.h"
#include "host/Text.h"

namespace host {
namespace {

// A number or a word that is longer is left to the other reader.
constexpr std::size_t longestToken = 64;
// Which any number of 64 bits holds.
constexpr std::size_t mostDigits = 19;

bool isSpace(char c) { return c == ' ' || c == '\n' || c == '\r' || c == '\t'; }
bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool goesOnAsReal(char c) { return c == '.' || c == 'e' || c == 'E'; }

const char* behindDigits(const char* at) {
  while (isDigit(*at)) ++at;
  return at;
}

}  // namespace

bool ShapeReader::fits(const Schema& schema) {
  return value(schema) && next() == '\0' && text_.isEnd(text_.at());
}

bool ShapeReader::value(const Schema& schema) {
  switch (schema.kind()) {
    case Schema::Kind::record:
      return record(schema);
    case Schema::Kind::keyed:
      return collection(schema);
    case Schema::Kind::set:
      return set(schema);
    case Schema::Kind::scalar:
      return scalar(schema.scalar());
    case Schema::Kind::list:
      break;
  }
  return false;
}

bool ShapeReader::collection(const Schema& schema) {
  KeySet& keys = keysOfNext();
  const auto element = [&]() -> const Schema* {
    const std::optional<std::string_view> key = string();
    const auto canonical = key ? schema.key().canonicalText(*key) : std::nullopt;
    return canonical && keys.add(*canonical) ? &schema.element() : nullptr;
  };
  if (!members(element) || !keys.end()) return false;
  --open_;
  return true;
}

// A document mostly has the members in the order of the schema. An escape in a name is left to the other
// reader.
bool ShapeReader::record(const Schema& schema) {
  const std::vector<Schema::Member>& legal = schema.members();
  std::uint64_t seen = 0;
  std::size_t at = 0;
  return members([&]() -> const Schema* {
    text_.require(longestToken);
    for (std::size_t tried = 0; tried < legal.size(); ++tried, ++at) {
      if (at == legal.size()) at = 0;
      if (!takesName(legal[at].name)) continue;
      const std::uint64_t bit = std::uint64_t{1} << at;
      if ((seen & bit) != 0) return nullptr;
      seen |= bit;
      return &legal[at++].schema;
    }
    return nullptr;
  });
}

// The members of an object; `takeKey` takes a key and gives the schema of what stands under it, null where
// it can't stand.
template <class TakeKey>
bool ShapeReader::members(const TakeKey& takeKey) {
  if (!takes('{')) return false;
  if (takes('}')) return true;
  for (std::optional<bool> more = true; *more;) {
    next();
    const Schema* schema = takeKey();
    if (schema == nullptr || !takes(':') || !value(*schema)) return false;
    more = goesOn('}');
    if (!more) return false;
  }
  return true;
}

bool ShapeReader::set(const Schema& schema) {
  const Schema& element = schema.element();
  const bool isOfNumbers =
      element.kind() == Schema::Kind::scalar && element.scalar().type == Scalar::Type::number;
  if (!isOfNumbers || element.scalar().only || !takes('[')) return false;
  if (takes(']')) return true;
  KeySet& keys = keysOfNext();
  for (std::optional<bool> more = true; *more;) {
    const std::optional<std::uint64_t> found = number(element.scalar());
    if (!found || !keys.add(*found)) return false;
    more = goesOn(']');
    if (!more) return false;
  }
  --open_;
  return keys.end();
}

bool ShapeReader::scalar(const Scalar& scalar) {
  if (scalar.only) return false;
  switch (scalar.type) {
    case Scalar::Type::number:
      return number(scalar).has_value();
    case Scalar::Type::real:
      return real();
    case Scalar::Type::boolean:
      return literal("true") || literal("false");
    case Scalar::Type::text:
      break;
  }
  return text();
}

std::optional<std::uint64_t> ShapeReader::number(const Scalar& scalar) {
  if (next() != '"') return digits(scalar.max);
  const std::optional<std::string_view> text = string();
  return text ? scalar.numberOf(*text) : std::nullopt;
}

std::optional<std::uint64_t> ShapeReader::digits(std::uint64_t max) {
  text_.require(longestToken);
  const char* begin = text_.at();
  const char* end = begin;
  std::uint64_t number = 0;
  for (; isDigit(*end); ++end) number = 10 * number + static_cast<std::uint64_t>(*end - '0');
  const auto size = static_cast<std::size_t>(end - begin);
  const bool isPlain = size == 1 || (size > 1 && size <= mostDigits && *begin != '0');
  if (!isPlain || number > max || goesOnAsReal(*end)) return std::nullopt;
  text_.pass(size);
  return number;
}

// Without an exponent it is never too large.
bool ShapeReader::real() {
  next();
  text_.require(longestToken);
  const char* begin = text_.at();
  const char* whole = *begin == '-' ? begin + 1 : begin;
  const char* end = behindDigits(whole);
  const bool isWhole = end != whole && (*whole != '0' || end == whole + 1);
  if (*end == '.') {
    const char* fraction = end + 1;
    end = behindDigits(fraction);
    if (end == fraction) return false;
  }
  const auto size = static_cast<std::size_t>(end - begin);
  if (!isWhole || size >= longestToken || *end == 'e' || *end == 'E') return false;
  text_.pass(size);
  return true;
}

bool ShapeReader::literal(std::string_view word) {
  next();
  text_.require(longestToken);
  if (!text_.rest().starts_with(word)) return false;
  text_.pass(word.size());
  return true;
}

// The keys of a collection or set that begins.
KeySet& ShapeReader::keysOfNext() {
  if (open_ == keys_.size()) keys_.emplace_back();
  KeySet& keys = keys_[open_++];
  keys.clear();
  return keys;
}

// The byte that comes behind white space; a NUL at the end of the text.
char ShapeReader::next() {
  for (;;) {
    const char* at = text_.at();
    while (isSpace(*at)) ++at;
    text_.pass(static_cast<std::size_t>(at - text_.at()));
    if (*at != '\0' || !text_.isEnd(at) || !text_.more()) return *text_.at();
  }
}

bool ShapeReader::takes(char c) {
  if (next() != c) return false;
  text_.pass(1);
  return true;
}

// A string that is this name and has no escapes, if one is in front.
bool ShapeReader::takesName(std::string_view name) {
  const char* at = text_.at();
  const bool isName = text_.rest().size() >= name.size() + 2 && *at == '"' &&
                      at[name.size() + 1] == '"' &&
                      std::memcmp(at + 1, name.data(), name.size()) == 0;
  if (isName) text_.pass(name.size() + 2);
  return isName;
}

// Whether another member or element follows; nothing where neither a comma nor the end does.
std::optional<bool> ShapeReader::goesOn(char end) {
  const char c = next();
  if (c != ',' && c != end) return std::nullopt;
  text_.pass(1);
  return c == ',';
}

// A string; it stands until the next one is read.
std::optional<std::string_view> ShapeReader::string() {
  const std::optional<Written> written = this->written();
  if (!written) return std::nullopt;
  if (!written->hasEscapes) return written->text;
  if (!unescape(written->text, unescaped_)) return std::nullopt;
  return unescaped_;
}

// The same of which nothing is needed.
bool ShapeReader::text() {
  const std::optional<Written> written = this->written();
  return written && (!written->hasLongEscapes || unescape(written->text, unescaped_));
}

// The inside of a string as it is written.
std::optional<ShapeReader::Written> ShapeReader::written() {
  if (!takes('"')) return std::nullopt;
  Written written;
  bool isAscii = true;
  std::size_t size = 0;
  for (;;) {
    const ByteBlock block(text_.at() + size);
    const std::size_t plain = block.plainPrefix();
    isAscii = isAscii && block.isAscii();
    size += plain;
    if (plain == ByteBlock::size) continue;
    const char* at = text_.at() + size;
    if (*at == '"') break;
    if (*at == '\\' && !text_.isEnd(at + 1)) {
      written.hasEscapes = true;
      written.hasLongEscapes = written.hasLongEscapes || !isShortEscape(at[1]);
      size += 2;
    } else if ((*at != '\\' && !text_.isEnd(at)) || !text_.more()) {
      return std::nullopt;
    }
  }
  written.text = {text_.at(), size};
  text_.pass(size + 1);
  return isAscii || isUtf8(written.text) ? std::optional(written) : std::nullopt;
}

}  // namespace host
