// What more than one translator needs, and no trace of their own.
#pragma once

#include <optional>
#include <string_view>

namespace QosOc::Helper {

// The classifiers in a policy map's name, each of them optional.
struct PmapClassifiers {
  std::string_view ipv4;
  std::string_view ipv6;
};

// Takes a name of the form "^__yang_(?:\[IPV4__([^\]]+)\])?(?:\[IPV6__([^\]]+)\])?$" apart, and
// returns nothing for any other. The order is fixed, with nothing between the two groups, and the
// bare
// `__yang_` has neither. The result points into `pmapName`.
std::optional<PmapClassifiers> pmapClassifiers(std::string_view pmapName);

}  // namespace QosOc::Helper
