// "forwarding-groups": {"<name>": <traffic class>}
// "queue-names": {"<name>": <tx queue id>}
#include "host/Sections.h"
#include "host/sections/Parts.h"

namespace host {
namespace {

using Qos::ForwardingGroupName;
using Qos::ForwardingGroupNameToTcMap;
using Qos::QueueName;
using Qos::QueueNameToTxQueueIdMap;

// The two maps, under names that they share.
struct ForwardingGroups {
  using Map = ForwardingGroupNameToTcMap;
  using Name = ForwardingGroupName;
  static const Rok::Ptr<Map>& map(const Native& native) {
    return native.qosConfig->forwardingGroupNameToTcMap();
  }
  static void mapIs(const Native& native, const Rok::Ptr<Map>& map) {
    native.qosConfig->forwardingGroupNameToTcMapIs(map);
  }
  static const Map::Map& entries(const Map& map) { return map.forwardingGroupNameToTc(); }
  static void entryIs(Map& map, const Name& name, unsigned char tc) {
    map.forwardingGroupNameToTcIs(name, tc);
  }
  static void entryDel(Map& map, const Name& name) { map.forwardingGroupNameToTcDel(name); }
};

struct QueueNames {
  using Map = QueueNameToTxQueueIdMap;
  using Name = QueueName;
  static const Rok::Ptr<Map>& map(const Native& native) {
    return native.qosConfig->queueNameToTxQueueIdMap();
  }
  static void mapIs(const Native& native, const Rok::Ptr<Map>& map) {
    native.qosConfig->queueNameToTxQueueIdMapIs(map);
  }
  static const Map::Map& entries(const Map& map) { return map.queueNameToTxQueueId(); }
  static void entryIs(Map& map, const Name& name, unsigned char id) {
    map.queueNameToTxQueueIdIs(name, id);
  }
  static void entryDel(Map& map, const Name& name) { map.queueNameToTxQueueIdDel(name); }
};

template <class Names>
class NameMapPlace final : public Place {
 public:
  using Name = typename Names::Name;

  explicit NameMapPlace(Rok::Ptr<typename Names::Map> map) : map_(std::move(map)) {}

  std::vector<Rok::String> keys() const override {
    return sortedKeys(Names::entries(*map_), [](const Name& name) { return textOf(name.name); });
  }
  std::unique_ptr<Place> at(const Rok::String& name) const override {
    const auto* found = Names::entries(*map_).find(Name(name));
    return found != nullptr ? std::make_unique<LeafPlace>(numberValue(found->value)) : nullptr;
  }
  void put(const Rok::String& name, const Value& value, Writes& writes) override {
    writes([&] { Names::entryIs(*map_, Name(name), byteOf(value)); });
  }
  void erase(const Rok::String& name, Writes& writes) override {
    writes([&] { Names::entryDel(*map_, Name(name)); });
  }

 private:
  Rok::Ptr<typename Names::Map> map_;
};

template <class Names>
std::unique_ptr<Place> nameMapPlace(const Native& native) {
  return std::make_unique<NameMapPlace<Names>>(Names::map(native));
}

template <class Names>
void installNameMap(const Native& native, const Value& value, Writes& writes) {
  const auto map = Rok::make<typename Names::Map>();
  NameMapPlace<Names> place(map);
  putEach(place, value, writes);
  writes([&] { Names::mapIs(native, map); });
}

template <class Names>
Section nameMapSection(std::string_view name) {
  return {name, Schema::keyed(Key::name(), Schema::number(largestByte)).whole(),
          nameMapPlace<Names>, installNameMap<Names>};
}

}  // namespace

Section forwardingGroupsSection() { return nameMapSection<ForwardingGroups>("forwarding-groups"); }
Section queueNamesSection() { return nameMapSection<QueueNames>("queue-names"); }

}  // namespace host
