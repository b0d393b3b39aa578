// Which interfaces are bound to which classifiers.
#pragma once

#include <cstdint>

#include "Rok/Rok.h"

namespace QosOc {

// The names of an interface's classifiers; empty where there is none.
struct ClassifierNames {
  Velmo::String ipv4;
  Velmo::String ipv6;

  std::uint32_t hash(std::uint32_t seed) const {
    return Rok::hashSingleAttr(Rok::hashSingleAttr(seed, ipv4), ipv6);
  }
  friend auto operator<=>(const ClassifierNames&, const ClassifierNames&) = default;
};

// Finds the interfaces that are bound to given classifiers without a walk over all interfaces. It
// follows the output, which has no other writer.
class QOS_EXPORT BindingIndex {
 public:
  // The interface is bound to these from now on. One that was bound to them already keeps its
  // place, since a walk over the interfaces of these names may be under way.
  // Throws: std::bad_alloc; the interface is then bound to nothing.
  void is(const Velmo::String& interfaceId, const ClassifierNames& names);
  // The interface is bound to nothing from now on.
  void del(const Velmo::String& interfaceId);

  // Calls visit(interface id) for each interface that is bound to exactly these. A visit may bind
  // and unbind any.
  template <class Visit>
  void each(const ClassifierNames& names, const Visit& visit) const {
    const Interfaces* interfaces = interfacesByNames_.find(names);
    if (interfaces == nullptr) return;
    for (const auto& [interfaceId, isBound] : *interfaces) visit(interfaceId);
  }

 private:
  using Interfaces = Rok::HashMap2018<Rok::Hm2018NEI<0xae5f9156u, Velmo::String, bool>>;
  struct Entry;

  void removeFrom(const ClassifierNames& names, const Velmo::String& interfaceId);

  Rok::HashMap2018<Rok::Hm2018NEI<0xcf6c85d3u, ClassifierNames, Interfaces>> interfacesByNames_;
  Rok::HashMap2018<Rok::Hm2018NEI<0x2f73477du, Velmo::String, ClassifierNames>> namesByInterface_;
};

}  // namespace QosOc
