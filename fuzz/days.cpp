// Random days from a fuzzer's bytes, through all their checks: the first byte chooses the sections,
// the second how many steps make the document, how the other device walks and whether everything is
// removed at the end, and each further group of bytes is a step.
#include <algorithm>
#include <string>

#include "Fuzz.h"
#include "tests/days/Day.h"

namespace {

days::Plan planOf(std::string_view bytes) {
  days::Plan plan;
  const auto take = [&] {
    if (bytes.empty()) return std::uint8_t{0};
    const auto byte = static_cast<std::uint8_t>(bytes.front());
    bytes.remove_prefix(1);
    return byte;
  };
  plan.focus = static_cast<days::Focus>(take() % days::focuses);
  const std::uint8_t shape = take();
  plan.order = shape / 16;
  while (!bytes.empty() && plan.changes.size() < 24) {
    days::Step step{};
    std::generate(step.begin(), step.end(), take);
    (plan.before.size() < shape % 16u ? plan.before : plan.changes).push_back(step);
  }
  if (plan.order % 2 == 1 && !plan.changes.empty()) plan.closing.push_back(plan.changes.back());
  return plan;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const days::Plan plan = planOf(Fuzz::text(data, size));
  const days::Script script = days::scriptOf(plan);
  days::Tally tally;
  for (const days::Finding& finding : days::Day::of(script, plan.order, tally)) {
    std::fprintf(stderr, "%s\n", script.document.c_str());
    for (const std::string& line : script.lines) std::fprintf(stderr, "%s\n", line.c_str());
    Fuzz::require(false, finding.told().c_str());
  }
  return 0;
}
