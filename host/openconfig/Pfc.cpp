// Priority flow control of the whole device, which OpenConfig has no leaf for: it is in
// yang/qosoc-augments.yang.
#include <charconv>

#include "host/openconfig/Decimal64.h"
#include "host/openconfig/MakeKind.h"
#include "host/openconfig/Priorities.h"

namespace host {

using QosOc::Config::Pfc;
using QosOc::Config::PfcWatchdog;

namespace {

constexpr std::size_t fractionDigits = 9;

std::string printed(double v) {
  std::array<char, 32> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), v);
  return {buffer.data(), result.ptr};
}

template <auto field>
LeafValue time(const PfcWatchdog& watchdog, const Keys& /*keys*/, const Faults& faults) {
  const double v = watchdog.*field;
  if (auto text = decimal64(v)) return *std::move(text);
  faults.leftOut([&] {
    return printed(v) + " does not fit a decimal number with " + std::to_string(fractionDigits) +
           " fraction digits";
  });
  return {};
}

}  // namespace

std::optional<std::string> decimal64(double v) {
  if (v == 0) return "0.0";  // also when it is negative
  std::array<char, 512> buffer{};
  const auto [end, error] =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), v, std::chars_format::fixed);
  if (error != std::errc()) return std::nullopt;
  std::string text(buffer.data(), end);
  if (text.find('.') == std::string::npos) text += ".0";
  const std::size_t point = text.find('.');
  const std::string_view fraction = std::string_view(text).substr(point + 1);
  if (fraction.size() > fractionDigits) return std::nullopt;
  // What the leaf counts in has 64 bits.
  std::string count = text.substr(0, point) + std::string(fraction);
  count.append(fractionDigits - fraction.size(), '0');
  std::int64_t units = 0;
  const auto parsed = std::from_chars(count.data(), count.data() + count.size(), units);
  return parsed.ec == std::errc() ? std::optional(text) : std::nullopt;
}

bool isPriorities(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  if (text.empty() || text.find_first_not_of(digits) != std::string_view::npos) return false;
  return text.size() == 1 || (text.size() == 2 && text.front() != '0');
}

template <>
struct Table<PfcWatchdog> {
  static std::string native(const Keys& /*keys*/) { return "the PFC watchdog"; }
  // False while no setting is configured, before and after a translator wrote the defaults.
  static bool isThere(PfcWatchdog watchdog) {
    if (watchdog.priorities == "0") watchdog.priorities = "";
    return watchdog != PfcWatchdog();
  }
  static constexpr Leaf<PfcWatchdog> leaves[] = {
      {"config/action", at<&PfcWatchdog::action>},
      {"config/priorities",
       {LeafType::string, priorities<&PfcWatchdog::priorities>, prioritiesLimits}},
      {"config/time-a", {LeafType::decimal64, time<&PfcWatchdog::timeA>}},
      {"config/time-b", {LeafType::decimal64, time<&PfcWatchdog::timeB>}},
      {"config/time-c", {LeafType::decimal64, time<&PfcWatchdog::timeC>}},
  };
};

constinit const RecordKind kinds::pfcWatchdog =
    containerKind<PfcWatchdog, &Model::pfc, &Pfc::watchdog>("qosoc-augments:pfc/watchdog");

}  // namespace host
