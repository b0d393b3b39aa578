// Names of native objects that stand for objects of OpenConfig, and the maps of names that a host
// must have mounted.
#pragma once

#include <optional>
#include <string_view>

namespace Qos::Input {
class Config;
}

namespace QosOc::Helper {

// For a root that reads a map of names at its start: the host has mounted it.
// Throws: MutatorArgNullPointerException with the name of the attribute that holds the map.
void requireGroupNames(const Qos::Input::Config& config);
void requireQueueNames(const Qos::Input::Config& config);

// The classifiers in a policy map's name, each of them optional.
struct PmapClassifiers {
  std::string_view ipv4;
  std::string_view ipv6;
};

// Takes a name of the form "^__yang_(?:\[IPV4__([^\]]+)\])?(?:\[IPV6__([^\]]+)\])?$" apart, and
// returns nothing for any other. The order is fixed, with nothing between the two groups, and the
// bare `__yang_` has neither. The result points into `pmapName`.
std::optional<PmapClassifiers> pmapClassifiers(std::string_view pmapName);

// What stands between `opening`, which ends in "[", and the last "]" in the name of a QoS profile
// of the form "^<opening>(.+)\]$": any bytes but line terminators. Empty for any other name. The
// result points into `profileName`.
std::string_view nameInProfileName(std::string_view profileName, std::string_view opening);

}  // namespace QosOc::Helper
