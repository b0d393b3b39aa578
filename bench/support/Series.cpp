#include "support/Series.h"

#include <benchmark/benchmark.h>

#include <memory>
#include <optional>

#include "support/Check.h"
#include "support/Comparisons.h"

namespace Bench {
namespace {

class Together {
 public:
  explicit Together(std::function<Measured()> measure) : measure_(std::move(measure)) {}

  const Series& series(const std::string& name) {
    if (!measured_) measured_ = measure_();
    const auto found = measured_->find(name);
    require(found != measured_->end() && !found->second.seconds.empty(), name + " has no figures");
    return found->second;
  }

 private:
  std::function<Measured()> measure_;
  std::optional<Measured> measured_;
};

// Each of them once, or so often that a repetition is a mean.
void takeTurns(const std::vector<Timing>& timings, std::size_t size, std::size_t rounds,
               Measured& measured) {
  std::vector<double> sums(timings.size());
  for (std::size_t round = 0; round < rounds; ++round) {
    for (std::size_t i = 0; i < timings.size(); ++i) sums[i] += timings[i].seconds(size);
  }
  for (std::size_t i = 0; i < timings.size(); ++i) {
    measured[at(timings[i].name, size)].seconds.push_back(sums[i] / static_cast<double>(rounds));
  }
}

}  // namespace

void registerInTurns(const std::vector<Timing>& timings, std::size_t size, std::size_t rounds) {
  std::vector<std::string> names;
  for (const Timing& timing : timings) names.push_back(timing.name);
  registerTogether(names, size, [=] {
    Measured measured;
    for (std::size_t i = 0; i < repetitions; ++i) takeTurns(timings, size, rounds, measured);
    return measured;
  });
}

void registerTogether(const std::vector<std::string>& names, std::size_t size,
                      const std::function<Measured()>& measure) {
  const auto together = std::make_shared<Together>(measure);
  for (const std::string& name : names) {
    const auto tell = [=, next = std::make_shared<std::size_t>(0)](benchmark::State& state) {
      const Series& series = together->series(at(name, size));
      for (auto _ : state) {
        state.SetIterationTime(series.seconds[(*next)++ % series.seconds.size()]);
      }
      for (const auto& [counter, value] : series.counters) state.counters[counter] = value;
    };
    benchmark::RegisterBenchmark(name.c_str(), tell)
        ->Arg(static_cast<std::int64_t>(size))
        ->Iterations(1)
        ->UseManualTime();
  }
}

}  // namespace Bench
