// Building the root over a device that is there, and what everything takes in memory. Each
// measurement has a process of its own, since a start-up finds fresh memory.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/BytesInUse.h"
#include "support/Child.h"
#include "support/ClassMapDevice.h"
#include "support/ClassificationDevice.h"
#include "support/Comparisons.h"
#include "support/Floor.h"
#include "support/QueueDevice.h"
#include "support/Seconds.h"
#include "support/Series.h"
#include "support/Sizes.h"

namespace Bench {
namespace {

constexpr std::size_t classesOfPolicyMap = 10;

// Seconds of an object's start.
template <class Device>
double startOf(Device& device, std::size_t objects) {
  const double start = threadSeconds();
  device.start();
  const double seconds = threadSeconds() - start;
  device.check();
  return seconds / static_cast<double>(objects);
}

double classMapStart(std::size_t classMaps) {
  ClassMapDevice device(classMaps);
  return startOf(device, classMaps);
}

// All five translators of the classification path.
double roadStart(std::size_t classMaps) {
  ClassificationDevice device(classMaps);
  return startOf(device, classMaps);
}

// Comments on half of the tx queues.
double queueStart(std::size_t txQueues) {
  QueueDevice device(txQueues);
  return startOf(device, txQueues);
}

// Policy maps of ten classes each over as many classifiers, half of them bound to an interface:
// the policy-map and the service-policy translator.
double policyStart(std::size_t terms) {
  const std::size_t policyMaps = terms / classesOfPolicyMap;
  PolicyDevice device(policyMaps, classesOfPolicyMap, policyMaps / 2);
  return startOf(device, terms);
}

double floorStart(std::size_t classMaps) {
  const std::vector<std::string> names = Floor::names(classMaps);
  const double start = threadSeconds();
  const Floor floor(names);
  const double seconds = threadSeconds() - start;
  floor.check();
  return seconds / static_cast<double>(classMaps);
}

// Bytes an object.
struct Memory {
  double native;
  double machines;
  double output;
  double floor;
};

// What goes with the machines is theirs, and what goes with the output after them is its own.
template <class Device>
Memory memory(std::size_t size) {
  const auto each = [&](std::uint64_t more, std::uint64_t less) {
    return static_cast<double>(more - less) / static_cast<double>(size);
  };
  const std::uint64_t empty = bytesInUse();
  Device device(size);
  const std::uint64_t native = bytesInUse();
  device.start();
  device.check();
  const std::uint64_t all = bytesInUse();
  device.machinesDel();
  const std::uint64_t withoutMachines = bytesInUse();
  device.outputDel();
  const std::uint64_t withoutOutput = bytesInUse();
  const Floor floor(size);
  const std::uint64_t withFloor = bytesInUse();
  return {each(native, empty), each(all, withoutMachines), each(withoutMachines, withoutOutput),
          each(withFloor, withoutOutput)};
}

template <class Device>
void memoryUse(benchmark::State& state) {
  Memory use{};
  for (auto _ : state) use = inChild<memory<Device>>(static_cast<std::size_t>(state.range(0)));
  state.counters["native bytes"] = use.native;
  state.counters["machines bytes"] = use.machines;
  state.counters["output bytes"] = use.output;
  state.counters["whole bytes"] = use.native + use.machines + use.output;
  state.counters["floor bytes"] = use.floor;
}

// The same number of bytes every time, so once is enough.
template <class Device>
void addMemory(Comparisons& comparisons, const std::string& name, std::size_t size) {
  benchmark::RegisterBenchmark(name.c_str(), memoryUse<Device>)
      ->Arg(static_cast<std::int64_t>(size))
      ->Repetitions(1)
      ->Iterations(1);
  const std::string title = at(name, size);
  for (const char* part : {" native bytes", " machines bytes", " output bytes", " whole bytes"}) {
    comparisons.add(title + part, title + " floor bytes");
  }
}

void addStarts(Comparisons& comparisons, const std::vector<Timing>& timings, std::size_t size) {
  registerInTurns(timings, size, size < 10'000 ? 10 : 1);
  for (const Timing& timing : timings) {
    comparisons.add(at(timing.name, size), at("start-up floor", size));
  }
}

}  // namespace

void startUp(Comparisons& comparisons) {
  comparisons.subject("Start-up");
  std::vector<Timing> timings = {{"start-up floor", &inChild<floorStart>},
                                 {"start-up of a class map", &inChild<classMapStart>},
                                 {"start-up of a tx queue", &inChild<queueStart>},
                                 {"start-up of a policy map's term", &inChild<policyStart>}};
#ifdef QOS_BENCH_LIBYANG
  timings.push_back({"libyang build, typed", &libyangTypedBuild});
#endif
  std::vector<Timing> roads = {{"start-up of a term's whole road", &inChild<roadStart>}};
#ifdef QOS_BENCH_LIBYANG
  roads.push_back({"libyang build of whole terms, typed", &libyangWholeBuild});
#endif
  for (const std::size_t size : sizes()) {
    addStarts(comparisons, timings, size);
    if (size <= 100'000) addStarts(comparisons, roads, size);  // a million takes minutes to mount
  }
  comparisons.subject("Memory");
  for (const std::size_t size : sizes()) {
    addMemory<ClassMapDevice>(comparisons, "memory of a class map", size);
    addMemory<ClassificationDevice>(comparisons, "memory of a term's whole road", size);
  }
}

}  // namespace Bench
