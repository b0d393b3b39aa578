// Random days of ACLs, beside plain maps.
#include <gtest/gtest.h>

#include <map>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/AclDevice.h"
#include "tests/support/AclFixture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::aclOracleTest {
namespace {

using support::AclDevice;
using support::addRule;
using support::dscp;
using support::Model;
using support::noDscp;
using support::removeRule;
using support::trafficClass;

using namespace support::aclCases;

// ===== Oracles

// The translator told again in plain maps, with the history of each sub-configuration.
//
// A restart may differ from the incremental model, on purpose: it forgets the values of rules that
// went or changed, puts the rest in the order of their sequence numbers, resets the terms whose
// family's ACL has gone, and gives a classifier the type of the last ACL of the replay.
class PlainModel {
 public:
  enum Family { four, six };
  using Values = std::vector<int>;  // -1 stands for a rule without a DSCP
  struct PlainAcl {
    bool hasRules = false;  // there is a sub-configuration
    std::map<unsigned, int> rules;
    Values collected;
  };

  PlainAcl& acl(Family family, const std::string& name) { return acls_[family][name]; }
  bool has(Family family, const std::string& name) const { return acls_[family].contains(name); }

  void add(Family family, const std::string& name) { acls_[family][name] = {}; }
  void remove(Family family, const std::string& name) {
    reset(name);
    acls_[family].erase(name);
  }
  void subConfigNone(Family family, const std::string& name) { acls_[family][name] = {}; }
  void subConfigNew(Family family, const std::string& name, std::map<unsigned, int> rules) {
    PlainAcl& acl = acls_[family][name];
    acl.hasRules = true;
    acl.rules = std::move(rules);
    replay(family, name, acl);
  }
  void rule(Family family, const std::string& name, unsigned sequence, int dscp) {
    acls_[family][name].rules[sequence] = dscp;
    event(family, name, dscp);
  }
  void ruleDel(Family family, const std::string& name, unsigned sequence) {
    acls_[family][name].rules.erase(sequence);
    event(family, name, -1);
  }

  void restart() {
    for (const Family family : {four, six}) {
      for (auto& [name, acl] : acls_[family]) {
        if (acl.hasRules) replay(family, name, acl);
      }
      for (auto& [classifier, value] : classifiers_) {
        if (value.first != family) continue;
        for (auto& [term, text] : value.second) {
          if (!has(family, "__yang_[" + classifier + "]_[" + term + "]")) text = "default";
        }
      }
    }
  }

  Model model() const {
    Model result;
    for (const auto& [name, classifier] : classifiers_) {
      auto& terms = result[name + (classifier.first == four ? "/v4" : "/v6")];
      for (const auto& [term, text] : classifier.second) terms.push_back(term + ": " + text);
    }
    return result;
  }

 private:
  void replay(Family family, const std::string& name, PlainAcl& acl) {
    acl.collected.clear();
    for (const auto& [sequence, dscp] : acl.rules) event(family, name, dscp);
    if (acl.rules.empty()) reset(name);
  }
  void event(Family family, const std::string& name, int dscp) {
    const auto [classifier, term] = classifierKeyFromConfigObjName(name);
    if (term.empty()) return;
    Values& collected = acls_[family][name].collected;
    if (dscp >= 0) collected.push_back(dscp);
    std::string text;
    for (const int value : collected) text += (text.empty() ? "" : ", ") + std::to_string(value);
    if (collected.size() > 1) text = "[" + text + "]";
    if (!text.empty()) text = (family == four ? "ipv4 " : "ipv6 ") + text;
    auto& written = classifiers_[std::string(std::string_view(classifier))];
    written.first = family;
    written.second[std::string(std::string_view(term))] = text.empty() ? "default" : text;
  }
  void reset(const std::string& name) {
    const auto [classifier, term] = classifierKeyFromConfigObjName(name);
    const auto found = classifiers_.find(std::string(std::string_view(classifier)));
    if (found == classifiers_.end()) return;
    const auto text = found->second.second.find(std::string(std::string_view(term)));
    if (text != found->second.second.end()) text->second = "default";
  }

  std::map<std::string, PlainAcl> acls_[2];
  std::map<std::string, std::pair<Family, std::map<std::string, std::string>>> classifiers_;
};

class RandomDay {
 public:
  explicit RandomDay(std::uint32_t seed) : random_(seed) { device.start(); }

  void step() {
    static const std::vector<std::string> names = {"__yang_[a]_[x]", "__yang_[a]_[y]",
                                                   "__yang_[b]_[x]", "__yang_[b]_[]", "plain"};
    const auto family = pick(2) == 0 ? PlainModel::four : PlainModel::six;
    const std::string& name = names[pick(names.size())];
    auto& type = *(family == PlainModel::four ? device.ipv4 : device.ipv6);
    if (!plain.has(family, name)) {
      type.aclIs(name, Rok::make<Acl::AclConfig>(name, type.type()));
      return plain.add(family, name);
    }
    const Rok::Ptr<Acl::AclConfig> acl = *type.acl().find(name);
    const Rok::Ptr<Acl::AclSubConfig> sub = acl->aclSubConfig();
    const unsigned what = pick(20);
    if (what == 0) {
      plain.remove(family, name);
      type.aclDel(name);
    } else if (what == 1) {
      plain.subConfigNone(family, name);
      acl->aclSubConfigIs(nullptr);
    } else if (what <= 4 || !sub) {
      std::map<unsigned, int> rules;
      const auto made = Rok::make<Acl::AclSubConfig>();
      for (unsigned n = pick(4); n > 0; --n) {
        const unsigned sequence = pick(8);
        rules[sequence] = newRule(*made, sequence, family);
      }
      plain.subConfigNew(family, name, rules);
      acl->aclSubConfigIs(made);
    } else {
      const unsigned sequence = pick(8);
      if (what <= 8 && sub->ruleBySequence().find(sequence) != nullptr) {
        plain.ruleDel(family, name, sequence);
        removeRule(*sub, sequence);
      } else {
        plain.rule(family, name, sequence, newRule(*sub, sequence, family));
      }
    }
  }

  AclDevice device;
  PlainModel plain;

 private:
  unsigned pick(std::size_t n) { return static_cast<unsigned>(random_() % n); }
  int newRule(Acl::AclSubConfig& sub, unsigned sequence, PlainModel::Family family) {
    const auto value = static_cast<unsigned char>(pick(64));
    const bool matches = pick(4) != 0;
    if (family == PlainModel::four) {
      addRule(sub, sequence, matches ? dscp(value) : noDscp());
    } else {
      addRule(sub, sequence,
              trafficClass(static_cast<unsigned char>(value << 2), matches ? 0xfc : 0xf8));
    }
    return matches ? value : -1;
  }

  std::mt19937 random_;
};

TEST(AclOracle, RandomDaysAgreeWithPlainMapsAfterEachStepAndEachRestartInAnyWalkOrder) {
  for (std::uint32_t seed = 1; seed <= 40; ++seed) {
    for (const std::uint32_t order : {0u, seed, seed * 7919u}) {
      const support::WalkOrder walk(order);
      RandomDay day(seed);
      for (int step = 1; step <= 300; ++step) {
        day.step();
        ASSERT_EQ(day.device.model(), day.plain.model()) << "seed " << seed << ", step " << step;
        if (step % 100 != 0) continue;
        day.device.restart();
        day.plain.restart();
        const Model once = day.device.model();
        ASSERT_EQ(once, day.plain.model()) << "restart, seed " << seed << ", step " << step;
        day.device.restart();
        ASSERT_EQ(day.device.model(), once) << "a second restart changes nothing, seed " << seed;
      }
    }
  }
}

}  // namespace
}  // namespace QosOc::aclOracleTest
