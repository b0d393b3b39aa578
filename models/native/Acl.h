// Native access lists: what the ACL translator watches.
#pragma once

#include <cstdint>
#include <iosfwd>

#include "Rok/Rok.h"
#include "models/native/Values.h"

namespace Acl {

// The address family of an ACL.
enum class AclType : unsigned char { aclTypeIpv4 = 0, aclTypeIpv6 = 1 };
using enum AclType;
QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(AclType);
inline std::ostream& operator<<(std::ostream& out, AclType v) { return Rok::enumPrint(out, v); }

// ===== Rules. Of a rule, only the DSCP fields of its filter are read; the rest is copied with it.

// Of the packet within a tunnel, which nothing here reads.
struct InnerFilter {
  std::uint32_t source = 0;
  std::uint32_t destination = 0;
  bool operator==(const InnerFilter&) const = default;
};

// Of the tunnel, which nothing here reads.
struct TunnelData {
  std::uint32_t identifier = 0;
  std::uint8_t kind = 0;
  bool operator==(const TunnelData&) const = default;
};

// What IPv4 and IPv6 filters have in common, in the native order. Named by place and width: nothing
// in this system reads any of it.
struct IpFilterBase {
  IpFilterBase() = default;
  IpFilterBase(const IpFilterBase&) = default;
  IpFilterBase& operator=(const IpFilterBase&) = default;
  virtual ~IpFilterBase() = default;
  bool operator==(const IpFilterBase&) const = default;

  Rok::LimitedString<100> text1;
  std::uint64_t word2 = 0;
  Rok::String text3;
  std::uint8_t byte4 = 0;
  std::uint8_t byte5 = 0;
  std::uint16_t half6 = 0;
  std::uint8_t byte7 = 0;
  std::uint8_t byte8 = 0;
  Rok::DynOptional<InnerFilter> inner9;
  std::uint16_t half10 = 0;
  std::uint8_t byte11 = 0;
  Rok::String text12;
  std::uint8_t byte13 = 0;
  Rok::String text14;
  std::uint8_t byte15 = 0;
  Rok::String text16;
  std::uint8_t byte17 = 0;
  std::uint16_t half18 = 0;
  std::uint16_t half19 = 0;
  std::uint8_t byte20 = 0;
  std::uint32_t word21 = 0xffffffffu;
  Rok::DynOptional<TunnelData> tunnel22;
  std::uint64_t word23 = 0;
  std::uint8_t byte24 = 0;
  Rok::String text25;
  std::uint32_t word26 = 0;
  Rok::String text27;
  std::uint8_t byte28 = 0;
  std::uint16_t half29 = 0;
};

// What an IPv4 rule matches. Of it, only the DSCP is translated.
struct IpFilter : IpFilterBase {
  bool operator==(const IpFilter&) const = default;

  std::uint8_t dscp = 0;
  bool matchDscp = false;  // `dscp` is in force
};

// What an IPv6 rule matches. Of it, only the DSCP is translated.
struct Ip6Filter : IpFilterBase {
  bool operator==(const Ip6Filter&) const = default;

  std::uint8_t tc = 0;      // the traffic-class byte; its upper six bits are the DSCP
  std::uint8_t tcMask = 0;  // DSCP is matched only when the upper six bits are all set
};

// What IPv4 and IPv6 rules have in common beside the filter; nothing here reads it.
struct RuleConfig {
  RuleConfig() = default;
  RuleConfig(const RuleConfig&) = default;
  RuleConfig& operator=(const RuleConfig&) = default;
  virtual ~RuleConfig() = default;
  bool operator==(const RuleConfig&) const = default;

  std::uint8_t byte1 = 0;
  Rok::String text2;
  std::uint16_t half3 = 0;
};

// A rule of an IPv4 ACL.
struct IpRuleConfig : RuleConfig {
  bool operator==(const IpRuleConfig&) const = default;
  IpFilter filter;
};
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const IpRuleConfig& rule);

// A rule of an IPv6 ACL.
struct Ip6RuleConfig : RuleConfig {
  bool operator==(const Ip6RuleConfig&) const = default;
  Ip6Filter filter;
};
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const Ip6RuleConfig& rule);

// ===== Access lists

// The rules of one ACL. A rule is written first, then its place in the sequence.
class AclSubConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<std::uint32_t> ruleBySequence{130};
    static constexpr Rok::Attribute<Umb::UniqueId> ipRuleById{131};
    static constexpr Rok::Attribute<Umb::UniqueId> ip6RuleById{132};
  };
  using Sequence = Rok::OrderedMap<std::uint32_t, Umb::UniqueId>;
  using IpRules = Rok::HashMap2018<Rok::Hm2018NEI<0x428a2f98u, Umb::UniqueId, IpRuleConfig>>;
  using Ip6Rules = Rok::HashMap2018<Rok::Hm2018NEI<0x71374491u, Umb::UniqueId, Ip6RuleConfig>>;

  // Sequence number to the rule's identity, ascending. Notifies: ruleBySequence, with the number.
  const Sequence& ruleBySequence() const { return ruleBySequence_; }
  Umb::UniqueId ruleBySequence(std::uint32_t sequence) const {
    return ruleBySequence_.get(sequence);
  }
  void ruleBySequenceIs(std::uint32_t sequence, const Umb::UniqueId& id) {
    memberIs(ruleBySequence_, sequence, id, Attr::ruleBySequence);
  }
  void ruleBySequenceDel(std::uint32_t sequence) {
    memberDel(ruleBySequence_, sequence, Attr::ruleBySequence);
  }

  // Rules by identity. Notifies: the attribute, with the identity.
  const IpRules& ipRuleById() const { return ipRuleById_; }
  IpRuleConfig ipRuleById(const Umb::UniqueId& id) const { return ipRuleById_.get(id); }
  void ipRuleByIdIs(const Umb::UniqueId& id, const IpRuleConfig& rule) {
    memberIs(ipRuleById_, id, rule, Attr::ipRuleById);
  }
  void ipRuleByIdDel(const Umb::UniqueId& id) { memberDel(ipRuleById_, id, Attr::ipRuleById); }
  const Ip6Rules& ip6RuleById() const { return ip6RuleById_; }
  Ip6RuleConfig ip6RuleById(const Umb::UniqueId& id) const { return ip6RuleById_.get(id); }
  void ip6RuleByIdIs(const Umb::UniqueId& id, const Ip6RuleConfig& rule) {
    memberIs(ip6RuleById_, id, rule, Attr::ip6RuleById);
  }
  void ip6RuleByIdDel(const Umb::UniqueId& id) { memberDel(ip6RuleById_, id, Attr::ip6RuleById); }

 private:
  Sequence ruleBySequence_;
  IpRules ipRuleById_;
  Ip6Rules ip6RuleById_;
};

// One ACL: its name, its family and its rules.
class AclConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> name{130};
    static constexpr Rok::Attribute<> type{131};
    static constexpr Rok::Attribute<> aclSubConfig{132};
  };

  AclConfig(const Rok::String& name, AclType type) : type_(type), name_(name) {}

  const Rok::String& name() const { return name_; }
  AclType type() const { return type_; }

  // The rules in force; null while the ACL has none. Notifies: aclSubConfig.
  const Rok::Ptr<AclSubConfig>& aclSubConfig() const { return aclSubConfig_; }
  void aclSubConfigIs(const Rok::Ptr<AclSubConfig>& config) {
    attributeIs(aclSubConfig_, config, Attr::aclSubConfig);
  }

 private:
  AclType type_;
  Rok::String name_;
  Rok::Ptr<AclSubConfig> aclSubConfig_;
};

namespace Input {

// The ACLs of one type.
class AclTypeConfig final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> type{130};
    static constexpr Rok::Attribute<Rok::String> acl{131};
  };
  using Acls = Rok::OrderedMap<Rok::String, Rok::Ptr<AclConfig>>;

  explicit AclTypeConfig(AclType type) : type_(type) {}

  AclType type() const { return type_; }

  // ACLs by name, ascending. Notifies: acl, with the name.
  const Acls& acl() const { return acl_; }
  Rok::Ptr<AclConfig> acl(const Rok::String& name) const { return acl_.get(name); }
  void aclIs(const Rok::String& name, const Rok::Ptr<AclConfig>& acl) {
    memberIs(acl_, name, acl, Attr::acl);
  }
  void aclDel(const Rok::String& name) { memberDel(acl_, name, Attr::acl); }

 private:
  AclType type_;
  Acls acl_;
};

// The root of the native ACLs. Both types must be there when a translator is built on it.
class Config final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<AclType> config{130};
  };
  using Types = Rok::HashMap2018<Rok::Hm2018NEI<0xb5c0fbcfu, AclType, Rok::Ptr<AclTypeConfig>>>;

  // ACLs by type. Notifies: config, with the type.
  const Types& config() const { return config_; }
  Rok::Ptr<AclTypeConfig> config(AclType type) const { return config_.get(type); }
  void configIs(AclType type, const Rok::Ptr<AclTypeConfig>& config) {
    memberIs(config_, type, config, Attr::config);
  }
  void configDel(AclType type) { memberDel(config_, type, Attr::config); }

 private:
  Types config_;
};

}  // namespace Input
}  // namespace Acl
