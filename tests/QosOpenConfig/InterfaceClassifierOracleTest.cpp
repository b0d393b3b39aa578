// Random days of service policies, beside a model that walks all interfaces.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "tests/support/ServicePolicyDevice.h"
#include "tests/support/ServicePolicyFixture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::interfaceClassifierOracleTest {
namespace {

using support::BindingModel;
using support::intf;
using support::ServicePolicyDevice;
using support::WalkOrder;

using namespace support::servicePolicyCases;

// ===== Oracles

// A model of the rules without an index: every sweep walks all interfaces.
class Reference {
 public:
  using Pair = std::pair<std::string, std::string>;

  explicit Reference(BindingModel model) : bound_(std::move(model)) {}
  const BindingModel& model() const { return bound_; }

  void add(const std::string& id, const Pair& names) {
    Pair now = bound_.contains(id) ? read(bound_[id]) : Pair();
    if (!names.first.empty()) now.first = names.first;
    if (!names.second.empty()) now.second = names.second;
    bound_[id] = text(now);
  }
  void del(const std::string& id, const Pair& names) {
    if (!bound_.contains(id) || bound_[id] == "no input") return;
    if (read(bound_[id]) == names || read(bound_[id]) == Pair()) bound_[id] = "no input";
  }
  // A new machine: binds its interfaces, then takes from all others that hold its names.
  void start(const Pair& names, const std::vector<std::string>& ids) {
    for (const auto& id : ids) add(id, names);
    for (const auto& [id, bindings] : BindingModel(bound_)) {
      if (bindings == "no input" || read(bindings) != names) continue;
      if (std::ranges::find(ids, id) == ids.end()) del(id, names);
    }
  }

 private:
  static Pair read(const std::string& bindings) {
    Pair names;
    if (const auto at = bindings.find("v4 "); at != std::string::npos) {
      names.first = bindings.substr(at + 3, 1);
    }
    if (const auto at = bindings.find("v6 "); at != std::string::npos) {
      names.second = bindings.substr(at + 3, 1);
    }
    return names;
  }
  static std::string text(const Pair& names) {
    std::string result = names.first.empty() ? "" : "v4 " + names.first;
    if (!names.second.empty()) result += (result.empty() ? "v6 " : " v6 ") + names.second;
    return result.empty() ? "empty" : result;
  }

  BindingModel bound_;
};

// The device and the reference side by side.
class RandomDay : public ServicePolicyDevice {
 public:
  explicit RandomDay(std::uint32_t seed) : events_(seed), reference_(BindingModel{}) { start(); }

  void event() {
    const Reference::Pair& names = pairs()[events_() % pairs().size()];
    const Rok::String pmap = name(names);
    const std::string id = "Ethernet" + std::to_string(events_() % 4);
    const auto* policy = config->servicePolicyConfig().find(key(pmap));
    if (policy == nullptr) {
      add(pmap, {id.c_str(), "Ethernet1"});
      reference_.start(names, {id, "Ethernet1"});
    } else if (const unsigned what = events_() % 5; what == 0) {
      std::vector<std::string> ids;
      for (auto i = (*policy)->intfIds().iterator(); i; ++i) {
        ids.emplace_back(std::string_view(i.key().stringValue()));
      }
      remove(pmap);
      for (const auto& gone : ids) reference_.del(gone, names);
    } else {
      change(*policy, names, id, what);
    }
  }
  void expectAsTheReference() const { EXPECT_EQ(model(), reference_.model()); }

  static Rok::String name(const Reference::Pair& names) {
    std::string result = "__yang_";
    if (!names.first.empty()) result += "[IPV4__" + names.first + "]";
    if (!names.second.empty()) result += "[IPV6__" + names.second + "]";
    return result;
  }

 private:
  static const std::vector<Reference::Pair>& pairs() {
    static const std::vector<Reference::Pair> all = {{"a", ""}, {"", "b"}, {"a", "b"},
                                                     {"c", ""}, {"", ""},  {"c", "b"}};
    return all;
  }
  void change(const Rok::Ptr<Qos::ServicePolicyConfig>& policy, const Reference::Pair& names,
              const std::string& id, unsigned what) {
    const auto intfId = intf(id.c_str());
    const bool* had = policy->intfIds().find(intfId);
    const bool wants = what > 2;
    if (what == 1) {
      if (had == nullptr) return;
      policy->intfIdsDel(intfId);
    } else {
      if (had != nullptr && *had == wants) return;
      policy->intfIdsIs(intfId, wants);
    }
    if (what > 2) {
      reference_.add(id, names);
    } else {
      reference_.del(id, names);
    }
  }

  std::mt19937 events_;
  Reference reference_;
};

TEST(InterfaceClassifierOracle, RandomDaysGoAsAModelThatWalksAllInterfacesSays) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    for (const std::uint32_t walk : {0u, seed}) {
      const WalkOrder order(walk);
      RandomDay day(seed);
      for (int step = 0; step < 200; ++step) {
        day.event();
        day.expectAsTheReference();
        if (testing::Test::HasFailure()) FAIL() << "seed " << seed << ", step " << step;
      }
    }
  }
}

// What a restart may change: entries that hold false are bound by it, bindings of two policy maps
// that overlap are written again in walk order, and what one family of a removed policy left is
// swept. So here the service policies share no interface and hold true alone, and a restart changes
// nothing.
TEST(InterfaceClassifierOracle, WithoutOverlapARestartChangesNothing) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    const WalkOrder order(seed);
    std::mt19937 events(seed);
    ServicePolicyDevice device;
    device.start();
    const std::vector<const char*> maps = {mapA, mapB, mapAB, "__yang_", "plain"};
    for (int step = 0; step < 100; ++step) {
      const std::size_t n = events() % maps.size();
      const std::string id = "Ethernet" + std::to_string(n) + "/" + std::to_string(events() % 3);
      const auto* policy = device.config->servicePolicyConfig().find(device.key(maps[n]));
      if (policy == nullptr) {
        device.add(maps[n], {id.c_str()});
      } else if (events() % 6 == 0) {
        device.remove(maps[n]);
      } else if (events() % 3 == 0) {
        (*policy)->intfIdsDel(intf(id.c_str()));
      } else {
        (*policy)->intfIdsIs(intf(id.c_str()), true);
      }
      const BindingModel live = device.model();
      device.restart();
      ASSERT_EQ(device.model(), live) << "seed " << seed << ", step " << step;
    }
  }
}

}  // namespace
}  // namespace QosOc::interfaceClassifierOracleTest
