// OpenConfig forwarding groups.
#pragma once

#include <ostream>

#include "Rok/Rok.h"
#include "models/openconfig/Records.h"

namespace QosOc::Config {

struct ForwardingGroupConfig {
  Rok::String name;
  Rok::String outputQueue;  // the queue of the group's traffic class; empty when there is none

  bool operator==(const ForwardingGroupConfig&) const = default;
  explicit operator bool() const { return *this != ForwardingGroupConfig(); }
  friend std::ostream& operator<<(std::ostream& out, const ForwardingGroupConfig& config) {
    return out << "{name " << config.name << ", outputQueue " << config.outputQueue << "}";
  }
};

class ForwardingGroup final : public Rok::PtrInterface {
 public:
  explicit ForwardingGroup(const Rok::String& name) : name_(name) {}

  const Rok::String& name() const { return name_; }
  const ForwardingGroupConfig& config() const { return config_; }
  void configIs(const ForwardingGroupConfig& config) { config_ = config; }

 private:
  Rok::String name_;
  ForwardingGroupConfig config_;
};

// All forwarding groups by name.
class ForwardingGroupsDir final : public Rok::PtrInterface {
 public:
  using Groups = ObjectMap<ForwardingGroup, 0x72be5d74u, &ForwardingGroup::name>;

  const Groups::Map& forwardingGroup() const { return groups_.map(); }
  Rok::Ptr<ForwardingGroup> forwardingGroup(const Rok::String& name) const {
    return groups_.get(name);
  }
  Rok::Ptr<ForwardingGroup> forwardingGroupIs(const Rok::String& name) { return groups_.is(name); }
  void forwardingGroupDel(const Rok::String& name) { groups_.del(name); }

 private:
  Groups groups_;
};

}  // namespace QosOc::Config
