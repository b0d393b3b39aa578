// Building the root over a device that is there, and what everything takes in memory. Each
// measurement has a process of its own, since a start-up finds fresh memory.
#include <benchmark/benchmark.h>
#include <malloc.h>

#include <cstdint>
#include <string>
#include <vector>

#include "Dorpel/Slab.h"
#include "support/Child.h"
#include "support/ClassMapDevice.h"
#include "support/ClassificationDevice.h"
#include "support/Comparisons.h"
#include "support/Floor.h"
#include "support/QueueDevice.h"
#include "support/Timed.h"

namespace Bench {
namespace {

// Seconds a class map.
double rootBuild(std::size_t classMaps) {
  ClassMapDevice device(classMaps);
  const double start = threadSeconds();
  device.start();
  const double seconds = threadSeconds() - start;
  device.check();
  return seconds / static_cast<double>(classMaps);
}

// 1,000 policy maps of so many classes each, over as many classifiers, bound to 500 interfaces:
// the policy-map and the service-policy translator. Seconds a term.
double policyBuild(std::size_t classes) {
  constexpr std::size_t policyMaps = 1000;
  PolicyDevice device(policyMaps, classes, 500);
  const double start = threadSeconds();
  device.start();
  const double seconds = threadSeconds() - start;
  device.check();
  return seconds / static_cast<double>(policyMaps * classes);
}

// Seconds a tx queue, comments on half of them.
double queueBuild(std::size_t txQueues) {
  QueueDevice device(txQueues);
  const double start = threadSeconds();
  device.start();
  const double seconds = threadSeconds() - start;
  device.check();
  return seconds / static_cast<double>(txQueues);
}

double floorBuild(std::size_t classMaps) {
  const std::vector<std::string> names = Floor::names(classMaps);
  const double start = threadSeconds();
  const Floor floor(names);
  const double seconds = threadSeconds() - start;
  floor.check();
  return seconds / static_cast<double>(classMaps);
}

// Bytes in use: the blocks that the slabs handed out, and everything of malloc that is not a
// slab's.
std::uint64_t bytesInUse() {
  const Dorpel::SlabUse slabs = Dorpel::slabUse();
  const struct mallinfo2 heap = mallinfo2();
  return slabs.bytes + heap.uordblks + heap.hblkhd - slabs.chunks;
}

// Bytes a class map.
struct Memory {
  double native;
  double machines;
  double output;
  double floor;
};

// What goes with the machines is theirs, and what goes with the output after them is its own.
Memory memory(std::size_t classMaps) {
  const auto each = [&](std::uint64_t more, std::uint64_t less) {
    return static_cast<double>(more - less) / static_cast<double>(classMaps);
  };
  const std::uint64_t empty = bytesInUse();
  ClassMapDevice device(classMaps);
  const std::uint64_t native = bytesInUse();
  device.start();
  device.check();
  const std::uint64_t all = bytesInUse();
  device.machinesDel();
  const std::uint64_t withoutMachines = bytesInUse();
  device.outputDel();
  const std::uint64_t withoutOutput = bytesInUse();
  const Floor floor(classMaps);
  const std::uint64_t withFloor = bytesInUse();
  return {each(native, empty), each(all, withoutMachines), each(withoutMachines, withoutOutput),
          each(withFloor, withoutOutput)};
}

template <auto measure>
void build(benchmark::State& state) {
  for (auto _ : state) {
    state.SetIterationTime(inChild<measure>(static_cast<std::size_t>(state.range(0))));
  }
}

void memoryUse(benchmark::State& state) {
  Memory use{};
  for (auto _ : state) use = inChild<memory>(static_cast<std::size_t>(state.range(0)));
  state.counters["native bytes"] = use.native;
  state.counters["machines bytes"] = use.machines;
  state.counters["output bytes"] = use.output;
  state.counters["floor bytes"] = use.floor;
}

}  // namespace

void startUp(Comparisons& comparisons) {
  for (const std::int64_t classes : {10, 100}) {
    benchmark::RegisterBenchmark("start-up of a policy map's term", build<policyBuild>)
        ->Arg(classes)
        ->Iterations(1)
        ->UseManualTime();
    comparisons.add(at("start-up of a policy map's term", classes), "start-up floor/100000");
  }
  for (const std::int64_t size : {1000, 100'000}) {
    benchmark::RegisterBenchmark("start-up floor", build<floorBuild>)
        ->Arg(size)
        ->Iterations(size < 10'000 ? 10 : 1)
        ->UseManualTime();
    benchmark::RegisterBenchmark("start-up of a class map", build<rootBuild>)
        ->Arg(size)
        ->Iterations(size < 10'000 ? 10 : 1)
        ->UseManualTime();
    benchmark::RegisterBenchmark("start-up of a tx queue", build<queueBuild>)
        ->Arg(size)
        ->Iterations(size < 10'000 ? 10 : 1)
        ->UseManualTime();
    benchmark::RegisterBenchmark("memory of a class map", memoryUse)->Arg(size)->Iterations(1);
    comparisons.add(at("start-up of a class map", size), at("start-up floor", size));
    comparisons.add(at("start-up of a tx queue", size), at("start-up floor", size));
    const std::string memory = at("memory of a class map", size);
    for (const char* part : {" native bytes", " machines bytes", " output bytes"}) {
      comparisons.add(memory + part, memory + " floor bytes");
    }
  }
}

}  // namespace Bench
