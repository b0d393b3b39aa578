#include "models/native/Acl.h"

#include <ostream>

namespace Acl {

const Rok::EnumType<unsigned char>& rokEnumType(AclType) {
  static const Rok::EnumType<unsigned char> type("Acl::AclType",
                                                 {{0, "aclTypeIpv4"}, {1, "aclTypeIpv6"}});
  return type;
}

std::ostream& operator<<(std::ostream& out, const IpRuleConfig& rule) {
  return out << "{dscp " << static_cast<unsigned>(rule.filter.dscp) << ", matchDscp "
             << (rule.filter.matchDscp ? "true" : "false") << "}";
}

std::ostream& operator<<(std::ostream& out, const Ip6RuleConfig& rule) {
  return out << "{tc " << static_cast<unsigned>(rule.filter.tc) << ", tcMask "
             << static_cast<unsigned>(rule.filter.tcMask) << "}";
}

}  // namespace Acl
