// Priority flow control, which OpenConfig has no leaf for: it is in yang/qosoc-augments.yang.
#include <array>
#include <charconv>
#include <cstdio>
#include <optional>

#include "host/Text.h"
#include "host/openconfig/Lists.h"

namespace host {
namespace {

using QosOc::Config::PfcWatchdog;

constexpr const char* watchdogNative = "the PFC watchdog";
constexpr std::size_t fractionDigits = 9;

// Eight bits as a hexadecimal number, as the translators write it.
bool isPriorities(std::string_view text) {
  constexpr std::string_view digits = "0123456789abcdef";
  if (text.empty() || text.find_first_not_of(digits) != std::string_view::npos) return false;
  return text.size() == 1 || (text.size() == 2 && text.front() != '0');
}

// The decimal number that stands for `v` and no other; nothing when it has more digits than the
// leaf, before the point or behind it.
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

std::string printed(double v) {
  std::array<char, 32> buffer{};
  const auto result = std::to_chars(buffer.data(), buffer.data() + buffer.size(), v);
  return {buffer.data(), result.ptr};
}

void timeJson(Tree& tree, const char* leaf, double time) {
  if (const auto text = decimal64(time)) return tree.word(leaf, *text);
  tree.leftOut(leaf,
               printed(time) + " does not fit a decimal number with " +
                   std::to_string(fractionDigits) + " fraction digits",
               watchdogNative);
}

// What it is on a device where nobody has configured it, before and after a translator wrote it.
bool isConfigured(PfcWatchdog watchdog) {
  if (watchdog.priorities == "0") watchdog.priorities = "";
  return watchdog != PfcWatchdog();
}

}  // namespace

void prioritiesJson(Tree& tree, std::string_view priorities, const std::string& native) {
  if (priorities.empty()) return;
  if (isPriorities(priorities)) return tree.word("priorities", priorities);
  tree.leftOut("priorities", quoted(priorities) + " is not eight bits in hexadecimal", native);
}

void pfcJson(Tree& tree, const QosOc::Config::Pfc& pfc) {
  const PfcWatchdog& watchdog = pfc.watchdog();
  if (!isConfigured(watchdog)) return;
  tree.container("qosoc-augments:pfc", [&] {
    tree.container("watchdog", [&] {
      tree.container("config", [&] {
        tree.number("action", watchdog.action);
        prioritiesJson(tree, watchdog.priorities, watchdogNative);
        timeJson(tree, "time-a", watchdog.timeA);
        timeJson(tree, "time-b", watchdog.timeB);
        timeJson(tree, "time-c", watchdog.timeC);
      });
    });
  });
}

}  // namespace host
