// The decoders of derived names, held against the regular expressions that define them.
#include <regex>
#include <string>

#include "Fuzz.h"
#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigQueueManagementProfileKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"

namespace {

// Longer texts overflow the stack of std::regex.
constexpr std::size_t longest = 2000;

const std::regex placeholderForm(R"(^__yang_\[([^\]]+)\]_\[\]$)");
const std::regex termForm(R"(^__yang_\[([^\]]+)\]_\[([^\]]+)\]$)");
const std::regex pmapForm(R"(^__yang_(?:\[IPV4__([^\]]+)\])?(?:\[IPV6__([^\]]+)\])?$)");
const std::regex qmpForm(R"(^__YANG_QMP_\[(.+)\]$)");
const std::regex spForm(R"(^__YANG_SP_\[(.+)\]$)");

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size > longest) return 0;
  using Pair = std::pair<std::string, std::string>;
  const std::string text(Fuzz::text(data, size));
  const Velmo::String name{std::string_view(text)};
  std::smatch match;

  const bool isPlaceholder = std::regex_match(text, match, placeholderForm);
  Fuzz::require(std::string_view(QosOc::classifierNameFromClassName(name)) ==
                    (isPlaceholder ? match[1].str() : ""),
                "another classifier of a placeholder");

  const bool isTerm = std::regex_match(text, match, termForm);
  const auto [classifier, term] = QosOc::classifierKeyFromConfigObjName(name);
  Fuzz::require(Pair(classifier, term) == (isTerm ? Pair(match[1], match[2]) : Pair()),
                "another classifier and term");

  Pair expected;
  if (std::regex_search(text, match, pmapForm)) expected = {match[1].str(), match[2].str()};
  for (const auto& [ipv4, ipv6] :
       {QosOc::classifiersFromPmapName(name), QosOc::classifierGroupFromPmapName(name)}) {
    Fuzz::require(std::string_view(ipv4) == expected.first, "another IPv4 classifier");
    Fuzz::require(std::string_view(ipv6) == expected.second, "another IPv6 classifier");
  }

  using Decode = Velmo::String (*)(Velmo::String);
  const std::pair<const std::regex*, Decode> profiles[] = {{&qmpForm, decodeQMPProfileName},
                                                           {&spForm, decodeSPProfileName}};
  for (const auto& [form, decode] : profiles) {
    const bool isProfile = std::regex_search(text, match, *form);
    Fuzz::require(std::string_view(decode(name)) == (isProfile ? match[1].str() : ""),
                  "another name in a QoS profile's");
  }
  return 0;
}
