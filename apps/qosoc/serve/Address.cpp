#include "Address.h"

#include "apps/qosoc/Arguments.h"
#include "host/Text.h"

namespace qosoc {

Address::Address(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  const auto number =
      colon == std::string::npos ? std::nullopt : host::decimal(text.substr(colon + 1), 65'535);
  host = text.substr(0, colon);
  const bool isBracketed = host.size() > 2 && host.front() == '[' && host.back() == ']';
  const bool isName = !host.empty() && host.find_first_of(":/[] ") == std::string::npos;
  if (!number || (!isBracketed && !isName)) {
    throw UsageError("--listen: expected HOST:PORT, not " + host::quoted(text));
  }
  port = static_cast<unsigned>(*number);
}

}  // namespace qosoc
