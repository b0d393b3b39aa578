#include "QosOpenConfig/QosOpenConfigHelperNames.h"

#include "Rok/Rok.h"
#include "models/native/QosInput.h"

namespace QosOc::Helper {
namespace {

using Attr = Qos::Input::Config::Attr;

constexpr Rok::FwkType configType{"Qos::Input::Config", {}};

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

void requireGroupNames(const Qos::Input::Config& config) {
  if (config.forwardingGroupNameToTcMap()) return;
  Rok::throwMutatorArgNullPointerException("forwardingGroupNameToTcMap", configType,
                                           Attr::forwardingGroupNameToTcMap.id);
}

void requireQueueNames(const Qos::Input::Config& config) {
  if (config.queueNameToTxQueueIdMap()) return;
  Rok::throwMutatorArgNullPointerException("queueNameToTxQueueIdMap", configType,
                                           Attr::queueNameToTxQueueIdMap.id);
}

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

std::string_view nameInProfileName(std::string_view profileName, std::string_view opening) {
  if (!profileName.starts_with(opening) || !profileName.ends_with(']')) return {};
  const std::string_view name =
      profileName.substr(opening.size(), profileName.size() - opening.size() - 1);
  return name.find_first_of("\n\r") == std::string_view::npos ? name : std::string_view();
}

}  // namespace QosOc::Helper
