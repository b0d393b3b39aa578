// Native service policies: which policy map is bound to which interfaces.
#pragma once

#include <cstdint>

#include "Rok/Rok.h"
#include "models/native/Values.h"

namespace Qos {

// The key of a service policy: its policy map, and a tag that only keeps keys apart.
struct ServicePolicyKey {
  std::uint16_t keyTag = 0;  // nothing reads it apart from the rest of the key
  Rok::String pmapName;

  std::uint32_t hash(std::uint32_t seed) const {
    return Rok::hashSingleAttr(Rok::hashSingleAttr(seed, keyTag), pmapName);
  }
  friend auto operator<=>(const ServicePolicyKey&, const ServicePolicyKey&) = default;
  friend std::ostream& operator<<(std::ostream& out, const ServicePolicyKey& key) {
    return out << key.keyTag << ":" << key.pmapName;
  }
};

// One service policy.
class ServicePolicyConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> key{130};
    static constexpr Rok::Attribute<Nerit::IntfId> intfIds{131};
  };
  using Interfaces = Rok::HashMap2018<Rok::Hm2018NEI<0x923f82a4u, Nerit::IntfId, bool>>;

  explicit ServicePolicyConfig(const ServicePolicyKey& key) : key_(key) {}

  const ServicePolicyKey& key() const { return key_; }
  const Rok::String& pmapName() const { return key_.pmapName; }

  // The interfaces of the service policy. Notifies: intfIds, with the interface.
  const Interfaces& intfIds() const { return intfIds_; }
  bool intfIds(const Nerit::IntfId& intfId) const { return intfIds_.get(intfId); }
  void intfIdsIs(const Nerit::IntfId& intfId, bool v) {
    memberIs(intfIds_, intfId, v, Attr::intfIds);
  }
  void intfIdsDel(const Nerit::IntfId& intfId) { memberDel(intfIds_, intfId, Attr::intfIds); }

 private:
  ServicePolicyKey key_;
  Interfaces intfIds_;
};

}  // namespace Qos
