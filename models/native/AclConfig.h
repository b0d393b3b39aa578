// The root of the native classification: class maps and policy maps.
#pragma once

#include "Rok/Rok.h"
#include "models/native/ClassMap.h"
#include "models/native/PolicyMap.h"

namespace Qos::Input {

// It is not an access list, in spite of its name.
class AclConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<MapType> cmapType{130};
    static constexpr Rok::Attribute<MapType> pmapType{131};
  };
  using ClassMapTypes =
      Rok::HashMap2018<Rok::Hm2018NEI<0x3c6ef372u, MapType, Rok::Ptr<ClassMapTypeConfig>>>;
  using PolicyMapTypes =
      Rok::HashMap2018<Rok::Hm2018NEI<0x59f111f1u, MapType, Rok::Ptr<PolicyMapTypeConfig>>>;

  // The class maps by map type. Notifies: cmapType, with the map type.
  const ClassMapTypes& cmapType() const { return cmapType_; }
  Rok::Ptr<ClassMapTypeConfig> cmapType(MapType type) const { return cmapType_.get(type); }
  void cmapTypeIs(MapType type, const Rok::Ptr<ClassMapTypeConfig>& config) {
    memberIs(cmapType_, type, config, Attr::cmapType);
  }
  void cmapTypeDel(MapType type) { memberDel(cmapType_, type, Attr::cmapType); }

  // The policy maps by map type. Notifies: pmapType, with the map type.
  const PolicyMapTypes& pmapType() const { return pmapType_; }
  Rok::Ptr<PolicyMapTypeConfig> pmapType(MapType type) const { return pmapType_.get(type); }
  void pmapTypeIs(MapType type, const Rok::Ptr<PolicyMapTypeConfig>& config) {
    memberIs(pmapType_, type, config, Attr::pmapType);
  }
  void pmapTypeDel(MapType type) { memberDel(pmapType_, type, Attr::pmapType); }

 private:
  ClassMapTypes cmapType_;
  PolicyMapTypes pmapType_;
};

}  // namespace Qos::Input
