// "access-lists": {"ipv4": {"<name>": {"rules": {"<sequence>": {"dscp": n}}}},
//                  "ipv6": {"<name>": {"rules": {"<sequence>": {"tc": n, "tc-mask": n}}}}}
#include "host/Sections.h"
#include "host/sections/Parts.h"

namespace host {
namespace {

using Acl::AclConfig;
using Acl::AclSubConfig;
using Acl::Input::AclTypeConfig;
using Umb::UniqueId;

constexpr const char* rulesMember = "rules";
constexpr const char* dscpMember = "dscp";
constexpr const char* tcMember = "tc";
constexpr const char* tcMaskMember = "tc-mask";

// No rule ever gets an identity that another one had, on any device of this process.
UniqueId freshId() {
  static std::uint64_t last = 0;
  const std::uint64_t id = ++last;
  return UniqueId(static_cast<std::uint32_t>(id >> 32), static_cast<std::uint16_t>(id >> 16),
                  static_cast<std::uint16_t>(id));
}

// ===== Address families

// What tells the two families apart. A rule is told whole each time.
struct Family {
  const char* member;
  Acl::AclType type;
  Value (*rule)(const AclSubConfig& config, const UniqueId& id);
  void (*ruleIs)(AclSubConfig& config, const UniqueId& id, const Value& rule);
  void (*ruleDel)(AclSubConfig& config, const UniqueId& id);
};

Value ipRule(const AclSubConfig& config, const UniqueId& id) {
  const Acl::IpFilter& filter = config.ipRuleById().find(id)->filter;
  Value::Object rule;
  if (filter.matchDscp) rule.push_back({dscpMember, numberValue(filter.dscp)});
  return Value(std::move(rule));
}
void ipRuleIs(AclSubConfig& config, const UniqueId& id, const Value& rule) {
  Acl::IpRuleConfig native;
  const Value* dscp = rule.find(dscpMember);
  native.filter.matchDscp = dscp != nullptr;
  if (dscp != nullptr) native.filter.dscp = byteOf(*dscp);
  config.ipRuleByIdIs(id, native);
}
void ipRuleDel(AclSubConfig& config, const UniqueId& id) { config.ipRuleByIdDel(id); }

Value ip6Rule(const AclSubConfig& config, const UniqueId& id) {
  const Acl::Ip6Filter& filter = config.ip6RuleById().find(id)->filter;
  return Value(Value::Object{{tcMember, numberValue(filter.tc)},
                             {tcMaskMember, numberValue(filter.tcMask)}});
}
void ip6RuleIs(AclSubConfig& config, const UniqueId& id, const Value& rule) {
  Acl::Ip6RuleConfig native;
  native.filter.tc = byteOf(rule.at(tcMember));
  native.filter.tcMask = byteOf(rule.at(tcMaskMember));
  config.ip6RuleByIdIs(id, native);
}
void ip6RuleDel(AclSubConfig& config, const UniqueId& id) { config.ip6RuleByIdDel(id); }

constexpr Family families[] = {
    {"ipv4", Acl::aclTypeIpv4, ipRule, ipRuleIs, ipRuleDel},
    {"ipv6", Acl::aclTypeIpv6, ip6Rule, ip6RuleIs, ip6RuleDel},
};

// ===== Rules

class RulesPlace final : public Place {
 public:
  RulesPlace(Rok::Ptr<AclSubConfig> config, const Family& family)
      : config_(std::move(config)), family_(family) {}

  std::vector<Rok::String> keys() const override {
    return sortedKeys(config_->ruleBySequence(), decimalOf<std::uint32_t>);
  }
  std::unique_ptr<Place> at(const Rok::String& sequence) const override;
  // The rule record first, its place in the sequence second: who hears of the place finds the
  // rule. What the place held before is dropped once nothing leads to it any more.
  void put(const Rok::String& sequence, const Value& rule, Writes& writes) override {
    const auto number = numberOf<std::uint32_t>(sequence);
    const UniqueId* found = config_->ruleBySequence().find(number);
    const UniqueId old = found != nullptr ? *found : UniqueId();
    const UniqueId id = freshId();
    writes([&] { family_.ruleIs(*config_, id, rule); });
    writes([&] { config_->ruleBySequenceIs(number, id); });
    writes([&] { family_.ruleDel(*config_, old); });
  }
  void erase(const Rok::String& sequence, Writes& writes) override {
    const auto number = numberOf<std::uint32_t>(sequence);
    const UniqueId old = *config_->ruleBySequence().find(number);
    writes([&] { config_->ruleBySequenceDel(number); });
    writes([&] { family_.ruleDel(*config_, old); });
  }

 private:
  Rok::Ptr<AclSubConfig> config_;
  const Family& family_;
};

// A rule never changes: a change of a member is another rule.
class RulePlace final : public Place {
 public:
  RulePlace(RulesPlace rules, Rok::String sequence, Value rule)
      : rules_(std::move(rules)), sequence_(std::move(sequence)), rule_(std::move(rule)) {}

  Value value() const override { return rule_; }
  std::vector<Rok::String> keys() const override { return keysOf(rule_); }
  std::unique_ptr<Place> at(const Rok::String& member) const override {
    const Value* value = rule_.find(member);
    return value != nullptr ? std::make_unique<LeafPlace>(*value) : nullptr;
  }
  void put(const Rok::String& member, const Value& value, Writes& writes) override {
    rule_.put(member, value);
    rules_.put(sequence_, rule_, writes);
  }
  void erase(const Rok::String& member, Writes& writes) override {
    std::erase_if(rule_.object(), [&](const Member& other) { return other.key == member; });
    rules_.put(sequence_, rule_, writes);
  }

 private:
  RulesPlace rules_;
  Rok::String sequence_;
  Value rule_;
};

std::unique_ptr<Place> RulesPlace::at(const Rok::String& sequence) const {
  const UniqueId* id = config_->ruleBySequence().find(numberOf<std::uint32_t>(sequence));
  if (id == nullptr) return nullptr;
  return std::make_unique<RulePlace>(*this, sequence, family_.rule(*config_, *id));
}

Rok::Ptr<AclSubConfig> newRules(const Value& rules, const Family& family, Writes& writes) {
  auto config = Rok::make<AclSubConfig>();
  RulesPlace place(config, family);
  putEach(place, rules, writes);
  return config;
}

// ===== ACLs

class AclPlace final : public Place {
 public:
  AclPlace(Rok::Ptr<AclConfig> acl, const Family& family) : acl_(std::move(acl)), family_(family) {}

  std::vector<Rok::String> keys() const override {
    if (!acl_->aclSubConfig()) return {};
    return {rulesMember};
  }
  std::unique_ptr<Place> at(const Rok::String& /*rules*/) const override {
    if (!acl_->aclSubConfig()) return nullptr;
    return std::make_unique<RulesPlace>(acl_->aclSubConfig(), family_);
  }
  void put(const Rok::String& /*rules*/, const Value& value, Writes& writes) override {
    const auto config = newRules(value, family_, writes);
    writes([&] { acl_->aclSubConfigIs(config); });
  }
  void erase(const Rok::String& /*rules*/, Writes& writes) override {
    writes([&] { acl_->aclSubConfigIs(nullptr); });
  }

 private:
  Rok::Ptr<AclConfig> acl_;
  const Family& family_;
};

class AclTypePlace final : public Place {
 public:
  AclTypePlace(Rok::Ptr<AclTypeConfig> type, const Family& family)
      : type_(std::move(type)), family_(family) {}

  std::vector<Rok::String> keys() const override { return sortedKeys(type_->acl(), textOf); }
  std::unique_ptr<Place> at(const Rok::String& name) const override {
    const auto* acl = type_->acl().find(name);
    return acl != nullptr ? std::make_unique<AclPlace>(*acl, family_) : nullptr;
  }
  void put(const Rok::String& name, const Value& value, Writes& writes) override {
    const auto acl = Rok::make<AclConfig>(name, family_.type);
    if (const Value* rules = value.find(rulesMember)) {
      acl->aclSubConfigIs(newRules(*rules, family_, writes));
    }
    writes([&] { type_->aclIs(acl->name(), acl); });
  }
  void erase(const Rok::String& name, Writes& writes) override {
    writes([&] { type_->aclDel(name); });
  }

 private:
  Rok::Ptr<AclTypeConfig> type_;
  const Family& family_;
};

// Both families are mounted, always.
class AccessListsPlace final : public Place {
 public:
  explicit AccessListsPlace(Rok::Ptr<Acl::Input::Config> config) : config_(std::move(config)) {}

  std::vector<Rok::String> keys() const override {
    std::vector<Rok::String> keys;
    for (const Family& family : families) keys.emplace_back(family.member);
    return keys;
  }
  std::unique_ptr<Place> at(const Rok::String& member) const override {
    const auto* family = std::find_if(std::begin(families), std::end(families),
                                      [&](const Family& f) { return f.member == member; });
    return std::make_unique<AclTypePlace>(*config_->config().find(family->type), *family);
  }

 private:
  Rok::Ptr<Acl::Input::Config> config_;
};

std::unique_ptr<Place> accessListsPlace(const Native& native) {
  return std::make_unique<AccessListsPlace>(native.acls);
}

// ===== Schema

// The ACLs of a family, by name.
Schema aclsSchema(const Schema& rule) {
  const Key sequence = Key::number("a sequence number", largestWord);
  const Schema rules = Schema::keyed(sequence, rule.whole());
  return Schema::keyed(Key::name(), Schema::record({{rulesMember, rules}}));
}

}  // namespace

Section accessListsSection() {
  const Schema byte = Schema::number(largestByte);
  const Schema ipv4 = aclsSchema(Schema::record({{dscpMember, byte}}));
  const Schema ipv6 = aclsSchema(
      Schema::record({{tcMember, byte, numberValue(0)}, {tcMaskMember, byte, numberValue(0)}}));
  return {"access-lists",
          Schema::record(
              {{families[0].member, ipv4, ipv4.empty()}, {families[1].member, ipv6, ipv6.empty()}}),
          accessListsPlace};
}

}  // namespace host
