#include "host/openconfig/LeafText.h"

#include <algorithm>
#include <charconv>

#include "host/Text.h"
#include "host/openconfig/LeafTable.h"

namespace host {
namespace {

constexpr std::size_t fractionDigits = 9;

std::uint64_t most(LeafType type, const LeafLimits& limits) {
  const std::uint64_t all = type == LeafType::uint64   ? ~std::uint64_t{0}
                            : type == LeafType::uint32 ? 0xffffffffu
                                                       : 0xffu;
  return std::min(all, limits.most);
}

bool isOneOf(std::string_view text, std::span<const std::string_view> names) {
  return std::find(names.begin(), names.end(), text) != names.end();
}

std::string_view withoutZeros(std::string_view digits) {
  return digits.substr(std::min(digits.find_first_not_of('0'), digits.size()));
}

// Whole numbers of 64 bits are texts. YANG lets them have leading zeros.
std::optional<LeafValue> wholeNumber(std::string_view text, std::uint64_t max) {
  if (text.empty()) return std::nullopt;
  const std::string_view digits = withoutZeros(text);
  const auto number = digits.empty() ? std::optional<std::uint64_t>(0) : decimal(digits, max);
  return number ? std::optional<LeafValue>(*number) : std::nullopt;
}

bool isDigits(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// A sign, digits, and a fraction that may be left out; without the zeros that YANG's canonical form
// has not.
std::optional<LeafValue> decimalNumber(std::string_view text) {
  const bool isNegative = text.starts_with('-');
  if (isNegative || text.starts_with('+')) text.remove_prefix(1);
  const std::size_t point = std::min(text.find('.'), text.size());
  std::string_view whole = text.substr(0, point);
  std::string_view fraction = point < text.size() ? text.substr(point + 1) : "0";
  if (!isDigits(whole) || !isDigits(fraction)) return std::nullopt;
  whole = withoutZeros(whole);
  fraction = fraction.substr(0, fraction.find_last_not_of('0') + 1);
  if (fraction.size() > fractionDigits) return std::nullopt;
  // What the leaf counts in has 64 bits.
  std::string count = (isNegative ? "-" : "") + std::string(whole) + std::string(fraction);
  count.append(fractionDigits - fraction.size(), '0');
  std::int64_t units = 0;
  const auto parsed = std::from_chars(count.data(), count.data() + count.size(), units);
  if (parsed.ec != std::errc()) return std::nullopt;
  return (units < 0 ? "-" : "") + std::string(whole.empty() ? "0" : whole) + '.' +
         std::string(fraction.empty() ? "0" : fraction);
}

std::optional<LeafValue> textLeaf(std::string_view text, LeafType type, const LeafLimits& limits) {
  if (!isYangString(text)) return std::nullopt;
  if (!limits.names.empty() && !isOneOf(text, limits.names)) return std::nullopt;
  if (limits.fits != nullptr && !limits.fits(text)) return std::nullopt;
  if (type == LeafType::identityref) {
    const std::size_t colon = text.find(':');
    if (colon == 0 || colon >= text.size() - 1) return std::nullopt;
  }
  return text;
}

}  // namespace

void sortLeaves(std::vector<LeafText>& leaves) {
  std::sort(leaves.begin(), leaves.end(),
            [](const LeafText& a, const LeafText& b) { return a.path < b.path; });
}

const LeafText* findLeaf(const std::vector<LeafText>& leaves, std::string_view path) {
  const auto found =
      std::lower_bound(leaves.begin(), leaves.end(), path,
                       [](const LeafText& leaf, std::string_view p) { return leaf.path < p; });
  return found != leaves.end() && found->path == path ? &*found : nullptr;
}

std::optional<LeafValue> leafFrom(const JsonScalar& scalar, LeafType type,
                                  const LeafLimits& limits) {
  if (const auto* boolean = std::get_if<bool>(&scalar)) {
    return type == LeafType::boolean ? std::optional<LeafValue>(*boolean) : std::nullopt;
  }
  if (const auto* number = std::get_if<std::uint64_t>(&scalar)) {
    const bool fits =
        (type == LeafType::uint8 || type == LeafType::uint32) && *number <= most(type, limits);
    return fits ? std::optional<LeafValue>(*number) : std::nullopt;
  }
  const auto* text = std::get_if<std::string_view>(&scalar);
  if (text == nullptr) return std::nullopt;
  switch (type) {
    case LeafType::boolean:
    case LeafType::uint8:
    case LeafType::uint8List:
    case LeafType::uint32:
      return std::nullopt;
    case LeafType::decimal64:
      return decimalNumber(*text);
    case LeafType::uint64:
      return wholeNumber(*text, most(type, limits));
    case LeafType::enumeration:
    case LeafType::identityref:
    case LeafType::string:
      return textLeaf(*text, type, limits);
  }
  return std::nullopt;
}

std::string heldBy(LeafType type, const LeafLimits& limits) {
  const auto upTo = [&] { return " from 0 to " + std::to_string(most(type, limits)); };
  switch (type) {
    case LeafType::boolean:
      return "true or false";
    case LeafType::uint8:
    case LeafType::uint32:
      return "a whole number" + upTo();
    case LeafType::uint8List:
      return "an array of whole numbers" + upTo();
    case LeafType::uint64:
      return "a string with a whole number" + upTo();
    case LeafType::decimal64:
      return "a string with a decimal number of at most 64 bits and 9 fraction digits";
    case LeafType::enumeration:
    case LeafType::identityref:
    case LeafType::string:
      break;
  }
  if (limits.fits != nullptr) return "a string with " + std::string(limits.expected);
  if (limits.names.empty()) {
    return type == LeafType::identityref ? "MODULE:IDENTITY" : "a string that YANG can hold";
  }
  std::string names;
  for (const std::string_view name : limits.names) {
    if (!names.empty()) names += name == limits.names.back() ? " or " : ", ";
    names += quoted(name);
  }
  return names;
}

std::string shownScalar(const JsonScalar& scalar) {
  if (const auto* boolean = std::get_if<bool>(&scalar)) return *boolean ? "true" : "false";
  if (const auto* number = std::get_if<std::uint64_t>(&scalar)) return std::to_string(*number);
  if (const auto* number = std::get_if<std::int64_t>(&scalar)) return std::to_string(*number);
  if (const auto* text = std::get_if<std::string_view>(&scalar)) return quoted(*text);
  if (const auto* number = std::get_if<double>(&scalar)) {
    std::array<char, 32> buffer{};
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), *number).ptr;
    const std::string digits(buffer.data(), end);
    return digits.find_first_of(".e") == std::string::npos ? digits + ".0" : digits;
  }
  return "null";
}

}  // namespace host
