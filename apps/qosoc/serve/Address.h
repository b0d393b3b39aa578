// Where a server listens.
#pragma once

#include <string>

namespace qosoc {

struct Address {
  // "HOST:PORT"; an address of IPv6 stands in brackets. Throws: UsageError.
  explicit Address(const std::string& text);

  std::string host;  // as it was given
  unsigned port;
  std::string withPort(unsigned other) const { return host + ':' + std::to_string(other); }
};

}  // namespace qosoc
