#include "QosOpenConfig/QosOpenConfigHelper.h"

namespace QosOc::Helper {
namespace {

// Takes "[IPV4__A]" off the front of `rest` and returns A; leaves `rest` alone and returns an empty
// text when it doesn't begin so. A name is any bytes but "]", and at least one.
std::string_view takeFamily(std::string_view& rest, std::string_view opening) {
  if (!rest.starts_with(opening)) return {};
  const std::size_t end = rest.find(']', opening.size());
  if (end == opening.size() || end == std::string_view::npos) return {};
  const std::string_view name = rest.substr(opening.size(), end - opening.size());
  rest.remove_prefix(end + 1);
  return name;
}

}  // namespace

std::optional<PmapClassifiers> pmapClassifiers(std::string_view pmapName) {
  constexpr std::string_view prefix = "__yang_";
  if (!pmapName.starts_with(prefix)) return {};
  std::string_view rest = pmapName.substr(prefix.size());
  PmapClassifiers found;
  found.ipv4 = takeFamily(rest, "[IPV4__");
  found.ipv6 = takeFamily(rest, "[IPV6__");
  if (!rest.empty()) return {};
  return found;
}

}  // namespace QosOc::Helper
