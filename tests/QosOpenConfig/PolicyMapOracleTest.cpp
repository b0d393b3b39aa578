// Random days of policy maps, which end in the model that a restart gives.
#include <gtest/gtest.h>

#include <random>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/PolicyDevice.h"
#include "tests/support/PolicyMapFixture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::policyMapOracleTest {
namespace {

using support::ActionModel;
using support::classAction;
using support::PolicyDevice;
using support::WalkOrder;

using namespace support::policyMapCases;

// ===== Oracles

// Random days on a device whose policy maps share no classifier: what the events leave is what a
// restart over the same output leaves, in any walk order, and what fresh roots build from the
// native side alone. Two things may differ in the course of a day, and each step ends in what
// levels them: a replaced map is read with its next change only, and so is a value that changed
// while the action's machine was gone. Fresh roots moreover have never heard of a policy map that
// went and left its terms as they are, so they are asked for the classifiers of the standing ones
// alone; and where the policy map came back without a class, the term that the sweep has blanked is
// one that they don't know.
class RandomDay : public PolicyDevice {
 public:
  explicit RandomDay(std::uint32_t seed) : events_(seed) { start(); }

  void event() {
    const Site& site = sites()[events_() % sites().size()];
    const std::uint32_t tc = tcs()[events_() % tcs().size()];
    const char* group = groupNames()[events_() % groupNames().size()];
    switch (events_() % 9) {
      case 0:
        return addGroup(group, static_cast<unsigned char>(tc));
      case 1:
        return removeGroup(group);
      case 2:
        return replaceGroups({{group, static_cast<unsigned char>(tc)}});
      case 3:
        return removeOrAddPolicyMap(site.pmap);
      case 4:
        return onClass(site, [&] { removeClass(site.pmap, site.cmap); });
      case 5:
        return onClass(site, [&] { removeTc(site.pmap, site.cmap); });
      default:
        return onClass(site, [&] { setTc(site.pmap, site.cmap, tc); });
    }
  }
  // A change in the map of names, which re-evaluates every class.
  void level() {
    addGroup("~", 99);
    removeGroup("~");
  }
  // What fresh roots make of the native side, and the same classifiers of this device.
  std::pair<ActionModel, ActionModel> besideFresh() const {
    PolicyDevice fresh{Names()};
    fresh.aclConfig = aclConfig;
    fresh.config = config;
    fresh.start();
    const ActionModel theirs = fresh.model();
    ActionModel ours = model();
    std::erase_if(ours, [&](const auto& entry) { return !theirs.contains(entry.first); });
    for (auto& [label, actions] : ours) {
      const support::Actions& known = theirs.at(label);
      std::erase_if(actions, [&](const auto& entry) {
        return entry.second == "blank" && !known.contains(entry.first);
      });
    }
    return {theirs, ours};
  }

 private:
  struct Site {
    const char* pmap;
    const char* cmap;
  };
  static const std::vector<Site>& sites() {
    static const std::vector<Site> all = {{both, voice},
                                          {both, video},
                                          {both, voice6},
                                          {both, foreign},
                                          {"__yang_[IPV6__x]", "__yang_[x]_[t]"},
                                          {both, "plain"},
                                          {"plain", "__yang_[y]_[t]"}};
    return all;
  }
  static const std::vector<std::uint32_t>& tcs() {
    static const std::vector<std::uint32_t> all = {0, 3, 5, 256};
    return all;
  }
  static const std::vector<const char*>& groupNames() {
    static const std::vector<const char*> all = {"a", "b", "c", ""};
    return all;
  }

  void removeOrAddPolicyMap(const char* pmap) {
    if (events_() % 4 != 0) {
      addPolicyMap(pmap);
    } else {
      removePolicyMap(pmap);
    }
  }
  // Does something with a class and its action, once they are there.
  template <class Do>
  void onClass(const Site& site, const Do& act) {
    const auto pmap = addPolicyMap(site.pmap);
    if (pmap->classAction().find(site.cmap) == nullptr) {
      addClass(site.pmap, site.cmap);
    } else {
      act();
    }
  }

  std::mt19937 events_;
};

TEST(PolicyMapActionOracle, RandomDaysEndInTheModelThatARestartGives) {
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    std::vector<ActionModel> models;
    for (const std::uint32_t walk : {0u, seed, seed + 100}) {
      const WalkOrder order(walk);
      RandomDay day(seed);
      for (int step = 0; step < 40; ++step) {
        for (int n = 0; n < 5; ++n) day.event();
        day.level();
        const ActionModel live = day.model();
        models.push_back(live);
        const auto [fresh, ours] = day.besideFresh();
        ASSERT_EQ(fresh, ours) << "seed " << seed << ", step " << step;
        day.restart();
        ASSERT_EQ(day.model(), live) << "seed " << seed << ", step " << step;
      }
    }
    for (int step = 0; step < 40; ++step) {
      ASSERT_EQ(models[step], models[step + 40]) << "seed " << seed << ", step " << step;
      ASSERT_EQ(models[step], models[step + 80]) << "seed " << seed << ", step " << step;
    }
  }
}

}  // namespace
}  // namespace QosOc::policyMapOracleTest
