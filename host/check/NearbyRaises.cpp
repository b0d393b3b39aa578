#include "host/check/NearbyRaises.h"

#include <algorithm>
#include <memory>

#include "QosOpenConfig/QosOpenConfigHelperComments.h"
#include "host/check/CommentKey.h"
#include "host/check/KeyIndex.h"
#include "host/sections/TxQueues.h"

namespace host {
namespace {

template <class Index, class Owner>
const Index& made(Rok::Ptr<Index>& index, const Owner& owner) {
  if (!index) index = Rok::make<Index>(owner);
  return *index;
}

}  // namespace

struct NearbyRaises::Indexes {
  // The short name as the keys of comments have it: up to a NUL.
  static std::string shortName(const Nerit::IntfId& interface) {
    const Rok::String name = interface.shortName();
    const std::string_view text = name;
    return std::string(text.substr(0, text.find('\0')));
  }
  static std::string policyMap(const Qos::ServicePolicyKey& key) {
    return std::string(std::string_view(key.pmapName));
  }
  static std::string commentKey(const Rok::String& profile) {
    return std::string(std::string_view(QosOc::Helper::profileCommentKey(profile)));
  }
  using Config = Qos::Input::Config;
  using Directory = Qos::QosProfileConfigDir;

  Rok::Ptr<KeyIndex<Config, all(&Config::intfConfig), Config::Attr::intfConfig, &shortName>>
      interfaces;
  Rok::Ptr<KeyIndex<Config, all(&Config::servicePolicyConfig), Config::Attr::servicePolicyConfig,
                    &policyMap>>
      servicePolicies;
  Rok::Ptr<KeyIndex<Directory, all(&Directory::config), Directory::Attr::config, &commentKey>>
      profiles;
};

NearbyRaises::NearbyRaises(const Native& native, const Model* model)
    : native_(native), raises_(native, model), indexes_(std::make_unique<Indexes>()) {}

NearbyRaises::~NearbyRaises() = default;

void NearbyRaises::at(std::span<const Rok::String> keys, const Raises::Found& found) {
  if (keys.empty()) return raises_.all(found);
  const std::string_view section = keys[0];
  const bool isWhole = keys.size() == 1;
  if (section == "interfaces") {
    isWhole ? raises_.of("queue", found) : atInterface(keys, found);
  } else if (section == "comments") {
    if (!isWhole) return atComment(keys[1], found);
    raises_.of("queue", found);
    raises_.of("scheduler-policy", found);
  } else if (section == "qos-profiles") {
    if (!isWhole) return atProfile(keys, found);
    raises_.of("queue-management", found);
    raises_.of("scheduler-policy", found);
  } else if (section == "forwarding-groups") {
    isWhole ? raises_.of("forwarding-group", found) : atGroup(keys[1], found);
  } else if (section == "service-policies") {
    if (isWhole) return raises_.of("interface-classifier", found);
    if (keys.size() == 2) atServicePolicy(keys[1], found);
  }
}

void NearbyRaises::atInterface(Keys keys, const Raises::Found& found) const {
  const Nerit::IntfId id(keys[1]);
  const auto config = native_.qosConfig->intfConfig(id);
  const bool isOfPort = keys.size() > 2 && keys[2] != "tx-queues";
  if (!config || isOfPort) return;
  if (keys.size() > 3) {
    const auto queue = config->txQueueConfig(*KeyForm<Qos::TxQueue>::parse(keys[3]));
    if (queue) atQueue(id, *queue, keys.subspan(4), found);
    return;
  }
  for (auto q = config->txQueueConfig().unsafeIterator(); q; ++q) {
    if (q->value()) atQueue(id, *q->value(), {}, found);
  }
}

void NearbyRaises::atQueue(const Nerit::IntfId& interface, const Qos::TxQueueConfig& queue,
                           Keys settings, const Raises::Found& found) const {
  const auto concerns = [&](std::string_view name) {
    return settings.empty() || settings[0] == name;
  };
  if (concerns("ecn")) raises_.ecn(interface, queue, found);
  // A handler reads both.
  if (concerns("bandwidth") || concerns("priority")) raises_.bandwidth(interface, queue, found);
}

// The tx queues and the profiles that have this comment: interfaces may share a short name, and the
// names of profiles may go on behind a NUL, which their comment's key doesn't.
void NearbyRaises::atComment(const Rok::String& key, const Raises::Found& found) {
  if (const auto parsed = CommentKey::parse(key)) {
    const auto& interfaces = made(indexes_->interfaces, *native_.qosConfig);
    for (const Nerit::IntfId& id : interfaces.keys(parsed->shortName)) {
      const auto config = native_.qosConfig->intfConfig(id);
      const auto queue = config ? config->txQueueConfig(parsed->queue) : nullptr;
      if (queue) atQueue(id, *queue, {}, found);
    }
  }
  const auto& profiles = made(indexes_->profiles, *native_.qosProfiles);
  for (const Rok::String& name : profiles.keys(std::string(std::string_view(key)))) {
    raises_.rates(name, found);
  }
}

void NearbyRaises::atProfile(Keys keys, const Raises::Found& found) const {
  const auto profile = native_.qosProfiles->config(keys[1]);
  if (!profile) return;
  if (keys.size() == 2) raises_.rates(keys[1], found);
  // A write of one block has both read.
  const bool isRead = keys.size() < 5 || keys[4] == "ecn" || keys[4] == "wred";
  if (!isRead) return;
  raises_.settings(*profile, [&](Raise raise) {
    if (keys.size() < 4 || raise.place[3] == keys[3]) found(std::move(raise));
  });
}

void NearbyRaises::atGroup(const Rok::String& name, const Raises::Found& found) const {
  const Qos::ForwardingGroupName group(name);
  const auto& map = native_.qosConfig->forwardingGroupNameToTcMap();
  const Qos::TrafficClass* tc = map ? map->forwardingGroupNameToTc().find(group) : nullptr;
  if (tc != nullptr) raises_.group(group, *tc, found);
}

void NearbyRaises::atServicePolicy(std::string_view key, const Raises::Found& found) {
  const std::string policyMap(key.substr(key.find(':') + 1));
  const auto& all = made(indexes_->servicePolicies, *native_.qosConfig).keys(policyMap);
  raises_.servicePolicies({all.begin(), all.end()}, found);
}

std::string atPlaces(std::vector<Tokens> places) {
  constexpr std::size_t most = 20;
  std::sort(places.begin(), places.end());
  places.erase(std::unique(places.begin(), places.end()), places.end());
  std::string text;
  for (std::size_t i = 0; i < places.size() && i < most; ++i) {
    text += (i == 0 ? " at " : ", ") + shownPointer(places[i]);
  }
  if (places.size() > most) text += ", and " + std::to_string(places.size() - most) + " more";
  return text;
}

bool explains(const Raise& raise, std::string_view what) {
  const bool isOfServicePolicies = raise.root == "interface-classifier";
  return what.starts_with(isOfServicePolicies ? "reinstantiating:" : "range:");
}

}  // namespace host
