// OpenConfig forwarding groups.
#pragma once

#include <ostream>

#include "Rok/Rok.h"
#include "models/openconfig/Records.h"

namespace QosOc::Config {

// What a forwarding group is called, and where its packets go.
struct ForwardingGroupConfig {
  static constexpr RecordId record = RecordId::forwardingGroup;
  Rok::String name;
  Rok::String outputQueue;  // the queue of the group's traffic class; empty when there is none

  static constexpr auto fields() {
    return std::tuple{Field{"name", &ForwardingGroupConfig::name},
                      Field{"outputQueue", &ForwardingGroupConfig::outputQueue}};
  }

  bool operator==(const ForwardingGroupConfig&) const = default;
  explicit operator bool() const { return *this != ForwardingGroupConfig(); }
};

class ForwardingGroup final : public Rok::PtrInterface {
 public:
  static constexpr RecordId record = ForwardingGroupConfig::record;

  explicit ForwardingGroup(const Rok::String& name) : name_(name) {}

  // A group has nothing but its config.
  static constexpr auto attributes() {
    return Wrapped{attribute("config", &ForwardingGroup::config, &ForwardingGroup::configIs)};
  }

  const Rok::String& name() const { return name_; }
  const ForwardingGroupConfig& config() const { return config_.get(); }
  void configIs(const ForwardingGroupConfig& config) { config_.is(marker_, config); }

  void markerIs(const Marker& marker) { marker_ = marker; }

 private:
  Rok::String name_;
  Recorded<ForwardingGroupConfig> config_;
  Marker marker_;
};

// All forwarding groups by name.
class ForwardingGroupsDir final : public Rok::PtrInterface {
 public:
  using Groups = ObjectMap<ForwardingGroup, 0x72be5d74u, &ForwardingGroup::name>;

  static constexpr auto entries() {
    return Objects{&ForwardingGroupsDir::forwardingGroup, &ForwardingGroupsDir::forwardingGroupIs,
                   &ForwardingGroupsDir::forwardingGroupDel};
  }

  const Groups::Map& forwardingGroup() const { return groups_.map(); }
  Rok::Ptr<ForwardingGroup> forwardingGroup(const Rok::String& name) const {
    return groups_.get(name);
  }
  Rok::Ptr<ForwardingGroup> forwardingGroupIs(const Rok::String& name) { return groups_.is(name); }
  void forwardingGroupDel(const Rok::String& name) { groups_.del(name); }

  void journalIs(Journal* journal) { groups_.markerIs(Marker(journal)); }

 private:
  Groups groups_;
};

}  // namespace QosOc::Config
