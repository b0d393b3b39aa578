// Every kind of event, on a device of 1,000 and of 100,000 class maps, beside the floor.
//
// Each batch is a random half of the terms. Each step of an event, what comes before it, itself and
// what comes after, takes all of them in another random order, so that an event finds in the caches
// only what fits in there anyway; on the large device between one step of a term and its next there
// are 45,000 others.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "support/Comparisons.h"
#include "support/EventKinds.h"
#include "support/Order.h"
#include "support/Timed.h"

namespace Bench {
namespace {

constexpr std::size_t sizes[] = {1000, 100'000};
constexpr std::size_t eventsWanted = 200'000;

std::size_t halfTheTerms(std::size_t classMaps) { return classMaps * 9 / 20; }

// Random changes, each of another term.
template <class Device>
std::vector<typename Device::Change> changes(std::size_t classMaps, Random& random) {
  std::vector<std::size_t> terms = shuffledTerms(classMaps, random);
  terms.resize(halfTheTerms(classMaps));
  std::vector<typename Device::Change> result;
  result.reserve(terms.size());
  for (const std::size_t number : terms) result.push_back(Device::change(number));
  return result;
}

template <class Device, auto before, auto event, auto after>
void measure(benchmark::State& state) {
  const auto classMaps = static_cast<std::size_t>(state.range(0));
  Device device(classMaps);
  device.start();
  Random random(2);
  for (auto _ : state) {
    auto batch = changes<Device>(classMaps, random);
    for (const auto& change : batch) before(device, change);
    shuffle(batch, random);
    timed(state, batch.size(), [&] {
      for (const auto& change : batch) event(device, change);
    });
    shuffle(batch, random);
    for (const auto& change : batch) after(device, change);
  }
  device.check();
}

std::string titleOf(const std::string& kind) { return "event " + kind; }

class Registration {
 public:
  explicit Registration(Comparisons& comparisons) : comparisons_(comparisons) {}

  template <class Device, auto before, auto event, auto after>
  void kind(const std::string& name) {
    for (const std::size_t size : sizes) {
      benchmark::RegisterBenchmark(titleOf(name).c_str(), measure<Device, before, event, after>)
          ->Arg(static_cast<std::int64_t>(size))
          ->Iterations(batches(halfTheTerms(size), eventsWanted))
          ->UseManualTime();
      if (name == floorEvent) continue;
      comparisons_.add(at(titleOf(name), size), at(titleOf(floorEvent), size));
    }
  }

 private:
  Comparisons& comparisons_;
};

}  // namespace

void eventTimes(Comparisons& comparisons) {
  Registration registration(comparisons);
  eachEventKind(registration);
}

}  // namespace Bench
