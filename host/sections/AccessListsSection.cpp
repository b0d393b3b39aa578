// "access-lists": {"ipv4": {"<name>": {"rules": {"<sequence>": {"dscp": n}}}},
//                  "ipv6": {"<name>": {"rules": {"<sequence>": {"tc": n, "tc-mask": n}}}}}
#include "host/sections/Forms.h"
#include "host/sections/Plain.h"

namespace host {

template <>
struct KeyForm<std::uint32_t> : NumberKeyForm<std::uint32_t> {
  static Key key() { return Key::number("a sequence number", 0xffffffff); }
};

namespace {

using Acl::AclSubConfig;
using Acl::Input::AclTypeConfig;
using Umb::UniqueId;

// ===== Rules

using IpRule = Plain<Acl::IpRuleConfig>;
using Ip6Rule = Plain<Acl::Ip6RuleConfig>;
using Dscp = ScalarForm<std::uint8_t>;

// The DSCP is there while it is in force.
constexpr Setting<IpRule> ipRuleSettings[] = {
    {"dscp", [](const Rok::Ptr<IpRule>& /*fresh*/) { return Dscp::schema(); },
     [](const Rok::Ptr<IpRule>& rule) -> std::unique_ptr<Place> {
       const Acl::IpFilter& filter = rule->record.filter;
       return filter.matchDscp ? std::make_unique<LeafPlace>(Dscp::value(filter.dscp)) : nullptr;
     },
     [](const Rok::Ptr<IpRule>& rule, const Value& value, Writes& /*writes*/) {
       Acl::IpFilter& filter = rule->record.filter;
       filter.matchDscp = !value.isNull();
       filter.dscp = filter.matchDscp ? Dscp::native(value) : 0;
     }},
};
constexpr Setting<Ip6Rule> ip6RuleSettings[] = {
    field<&Acl::Ip6RuleConfig::filter, &Acl::Ip6Filter::tc>("tc"),
    field<&Acl::Ip6RuleConfig::filter, &Acl::Ip6Filter::tcMask>("tc-mask"),
};

// No rule ever gets an identity that another one had, on any device of this process.
UniqueId freshId() {
  static std::uint64_t last = 0;
  const std::uint64_t id = ++last;
  return UniqueId(static_cast<std::uint32_t>(id >> 32), static_cast<std::uint16_t>(id >> 16),
                  static_cast<std::uint16_t>(id));
}

using Sequence = Collected<all(&AclSubConfig::ruleBySequence), &AclSubConfig::ruleBySequenceIs,
                           &AclSubConfig::ruleBySequenceDel>;

// The rules of a family, with the records by identity.
template <const auto& settings, auto map, auto is, auto del>
class Rules final : public Sequence {
  using Form = PlainPlace<settings>;
  using Rule = typename Takes<decltype(is)>::Argument;

 public:
  using Sequence::Sequence;

  static Schema schema(const Rok::Ptr<AclSubConfig>& /*fresh*/) {
    return Schema::keyed(Keys::key(), Form::schema().whole());
  }
  std::unique_ptr<Place> at(const Rok::String& key) const override {
    const std::uint32_t sequence = Keys::native(key);
    const UniqueId* id = find(sequence);
    if (id == nullptr) return nullptr;
    return std::make_unique<Form>(*std::invoke(map, owner()).find(*id),
                                  [rules = *this, sequence](const Rule& rule, Writes& writes) {
                                    rules.write(sequence, rule, writes);
                                  });
  }
  void put(const Rok::String& sequence, const Value& value, Writes& writes) override {
    write(Keys::native(sequence), plain<settings>(value, writes)->record, writes);
  }
  void erase(const Rok::String& sequence, Writes& writes) override {
    const UniqueId old = *find(Keys::native(sequence));
    Sequence::erase(sequence, writes);
    writes([&] { std::invoke(del, owner(), old); });
  }

 private:
  // The rule record first, its place in the sequence second: a machine that is notified of
  // the place finds the rule. The old rule is removed once the place doesn't lead to it any more.
  void write(std::uint32_t sequence, const Rule& rule, Writes& writes) const {
    const UniqueId* found = find(sequence);
    const auto old = found != nullptr ? std::optional(*found) : std::nullopt;
    const UniqueId id = freshId();
    writes([&] { std::invoke(is, owner(), id, rule); });
    insert(sequence, id, writes);
    if (old) writes([&] { std::invoke(del, owner(), *old); });
  }
};

using IpRules = Rules<ipRuleSettings, all(&AclSubConfig::ipRuleById), &AclSubConfig::ipRuleByIdIs,
                      &AclSubConfig::ipRuleByIdDel>;
using Ip6Rules = Rules<ip6RuleSettings, all(&AclSubConfig::ip6RuleById),
                       &AclSubConfig::ip6RuleByIdIs, &AclSubConfig::ip6RuleByIdDel>;

// ===== ACLs

template <class Rules>
constexpr Setting<Acl::AclConfig> aclSettings[] = {
    object<&Acl::AclConfig::aclSubConfig, &Acl::AclConfig::aclSubConfigIs, Rules>("rules"),
};

template <class Rules>
using Acls = Objects<all(&AclTypeConfig::acl), &AclTypeConfig::aclIs, &AclTypeConfig::aclDel,
                     Record<aclSettings<Rules>>>;

// Both families are mounted, always.
template <Acl::AclType type, class Rules>
constexpr Setting<Acl::Input::Config> family(std::string_view name) {
  using Config = Rok::Ptr<Acl::Input::Config>;
  return {name,
          [](const Config& fresh) { return Acls<Rules>::schema(*fresh->config().find(type)); },
          [](const Config& config) -> std::unique_ptr<Place> {
            return std::make_unique<Acls<Rules>>(*config->config().find(type));
          },
          [](const Config& config, const Value& value, Writes& writes) {
            fill<Acls<Rules>>(*config->config().find(type), value, writes);
          }};
}

constexpr Setting<Acl::Input::Config> families[] = {
    family<Acl::aclTypeIpv4, IpRules>("ipv4"),
    family<Acl::aclTypeIpv6, Ip6Rules>("ipv6"),
};

}  // namespace

Section accessListsSection() {
  return section(&Native::acls, part<Record<families>>("access-lists"));
}

}  // namespace host
