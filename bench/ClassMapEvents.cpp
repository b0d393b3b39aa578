// One class map comes, gets its match, goes: on a device of 1,000 and of 100,000, beside the floor.
//
// In each cycle a random half of the terms leaves and comes back. Each of the steps takes all of
// them in another random order, so that an event finds in the caches only what fits in there
// anyway; on the large device between one event of a class map and its next there are 45,000
// others.
#include <benchmark/benchmark.h>

#include <string>
#include <vector>

#include "support/Check.h"
#include "support/ClassMapDevice.h"
#include "support/Comparisons.h"
#include "support/Floor.h"
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

enum class Step { remove, add, match };

// Takes one step with all changes; each makes so many events on the clock.
template <class Act>
void step(benchmark::State& state, std::size_t eventsOnTheClock,
          std::vector<ClassMapDevice::Change>& changes, Random& random, const Act& act) {
  shuffle(changes, random);
  const auto all = [&] {
    for (const ClassMapDevice::Change& change : changes) act(change);
  };
  if (eventsOnTheClock != 0) {
    timed(state, eventsOnTheClock * changes.size(), all);
  } else {
    all();
  }
}

void oneStep(benchmark::State& state, Step measured) {
  const auto classMaps = static_cast<std::size_t>(state.range(0));
  ClassMapDevice device(classMaps);
  device.start();
  Random random(2);
  for (auto _ : state) {
    auto batch = changes<ClassMapDevice>(classMaps, random);
    step(state, measured == Step::remove ? 1 : 0, batch, random,
         [&](auto& c) { device.remove(c); });
    step(state, measured == Step::add ? 1 : 0, batch, random, [&](auto& c) { device.add(c); });
    step(state, measured == Step::match ? 1 : 0, batch, random, [&](auto& c) { device.match(c); });
  }
  device.check();
}

// All three, one class map after the other: what the first event brings into the caches, the others
// find there.
void roundTrip(benchmark::State& state) {
  const auto classMaps = static_cast<std::size_t>(state.range(0));
  ClassMapDevice device(classMaps);
  device.start();
  Random random(3);
  for (auto _ : state) {
    auto batch = changes<ClassMapDevice>(classMaps, random);
    step(state, 3, batch, random, [&](auto& change) {
      device.remove(change);
      device.add(change);
      device.match(change);
    });
  }
  device.check();
}

void floor(benchmark::State& state) {
  const auto classMaps = static_cast<std::size_t>(state.range(0));
  Floor floor(classMaps);
  Random random(4);
  std::uint64_t writes = 0;
  for (auto _ : state) {
    const auto batch = changes<Floor>(classMaps, random);
    timed(state, batch.size(), [&] {
      for (const Floor::Change& name : batch) floor.write(name);
    });
    writes += batch.size();
  }
  floor.check(writes);
}

template <class Function, class... Args>
void addAt(std::size_t size, const char* name, Function function, Args... args) {
  benchmark::RegisterBenchmark(name, function, args...)
      ->Arg(static_cast<std::int64_t>(size))
      ->Iterations(batches(halfTheTerms(size), eventsWanted))
      ->UseManualTime();
}

}  // namespace

void classMapEvents(Comparisons& comparisons) {
  for (const std::size_t size : sizes) {
    addAt(size, "event floor", floor);
    addAt(size, "class map added", oneStep, Step::add);
    addAt(size, "class map matched", oneStep, Step::match);
    addAt(size, "class map removed", oneStep, Step::remove);
    addAt(size, "class map event in a round trip", roundTrip);
    for (const char* name : {"class map added", "class map matched", "class map removed",
                             "class map event in a round trip"}) {
      comparisons.add(at(name, size), at("event floor", size));
    }
  }
}

}  // namespace Bench
