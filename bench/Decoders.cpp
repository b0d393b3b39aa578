// Derived names, decoded by hand and by the regular expressions that define them.
#include <benchmark/benchmark.h>

#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "support/Check.h"
#include "support/ClassMapDevice.h"
#include "support/Comparisons.h"

namespace Bench {
namespace {

using Key = std::pair<Velmo::String, Velmo::String>;

constexpr const char* keyExpression = R"(^__yang_\[([^\]]+)\]_\[([^\]]+)\]$)";
constexpr const char* classifierExpression = R"(^__yang_\[([^\]]+)\]_\[\]$)";

Velmo::String group(const std::cmatch& match, std::size_t n) {
  return std::string_view(match[n].first, static_cast<std::size_t>(match[n].length()));
}

Key keyBy(const std::regex& expression, const Velmo::String& name) {
  std::cmatch match;
  const char* text = name.data();
  if (!std::regex_search(text, text + name.size(), match, expression)) return {};
  return {group(match, 1), group(match, 2)};
}

Velmo::String classifierBy(const std::regex& expression, const Velmo::String& name) {
  std::cmatch match;
  const char* text = name.data();
  if (!std::regex_search(text, text + name.size(), match, expression)) return {};
  return group(match, 1);
}

Key keyByNewRegex(const Velmo::String& name) { return keyBy(std::regex(keyExpression), name); }

Key keyByStaticRegex(const Velmo::String& name) {
  static const std::regex expression(keyExpression);
  return keyBy(expression, name);
}

Velmo::String classifierByNewRegex(const Velmo::String& name) {
  return classifierBy(std::regex(classifierExpression), name);
}

Velmo::String classifierByStaticRegex(const Velmo::String& name) {
  static const std::regex expression(classifierExpression);
  return classifierBy(expression, name);
}

// Terms, a placeholder among ten, and one name in sixteen that an operator gave by hand.
std::vector<Velmo::String> names() {
  std::vector<Velmo::String> result;
  for (std::size_t number = 0; number < 1024; ++number) {
    const std::string name = classMapName(number);
    result.emplace_back(number % 16 == 15 ? "voice-" + std::to_string(number) : name);
  }
  for (const char* odd : {"", "__yang_[]_[]", "__yang_[a]_[b]c", "__yang_[a]b]_[c]",
                          "x__yang_[a]_[b]", "__yang_[a[]_[[]", "__yang_[a]_[b]]", "__yang_[a]"}) {
    result.emplace_back(odd);
  }
  return result;
}

template <auto decode, auto judge>
void decoder(benchmark::State& state) {
  const std::vector<Velmo::String> all = names();
  for (const Velmo::String& name : all) {
    require(decode(name) == judge(name), "decoded " + std::string(name.data()));
  }
  std::size_t next = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(decode(all[next]));
    next = (next + 1) % all.size();
  }
}

template <auto byHand, auto byNewRegex, auto byStaticRegex>
void subject(Comparisons& comparisons, const std::string& what) {
  const auto add = [&](const char* how, auto function) {
    benchmark::RegisterBenchmark((what + how).c_str(), function);
  };
  add(", by hand", decoder<byHand, byStaticRegex>);
  add(", static regex", decoder<byStaticRegex, byHand>);
  add(", regex a call", decoder<byNewRegex, byHand>);
  comparisons.add(what + ", static regex", what + ", by hand");
  comparisons.add(what + ", regex a call", what + ", by hand");
}

}  // namespace

void decoders(Comparisons& comparisons) {
  comparisons.subject("Decoders");
  subject<&QosOc::classifierKeyFromConfigObjName, &keyByNewRegex, &keyByStaticRegex>(comparisons,
                                                                                     "decode key");
  subject<&QosOc::classifierNameFromClassName, &classifierByNewRegex, &classifierByStaticRegex>(
      comparisons, "decode placeholder");
}

}  // namespace Bench
