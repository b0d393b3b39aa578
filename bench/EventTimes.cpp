// Every kind of event, on devices of every size, beside the floor.
//
// A device is built once for all kinds of events that it has, in a process of its own. Each batch
// is a random half of the terms, or 45,000 of them. Each step of an event, what comes before it,
// itself and what comes after, takes all of them in another random order, so that an event finds
// in the caches only what fits in there anyway. One batch that isn't counted comes first; what its
// events took from the heap is there for the next ones. Before each repetition one of the floor is
// measured, so that a machine that slows down slows down both.
#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "support/Check.h"
#include "support/Child.h"
#include "support/Comparisons.h"
#include "support/EventKinds.h"
#include "support/Heap.h"
#include "support/Order.h"
#include "support/Seconds.h"
#include "support/Series.h"
#include "support/Sizes.h"

namespace Bench {
namespace {

constexpr std::size_t largestBatch = 45'000;
constexpr std::size_t smallestBatch = 450;
constexpr std::size_t eventsWanted = 40'000;  // in each repetition
constexpr double secondsWanted = 0.2;         // for each repetition, if its events take long
constexpr std::size_t mostKinds = 12;         // of one device

struct Taken {
  double seconds = 0;  // by the events
  double inAll = 0;
  std::uint64_t allocations = 0;  // by the events
  std::size_t events = 0;

  void operator+=(const Taken& other) {
    seconds += other.seconds;
    inAll += other.inAll;
    allocations += other.allocations;
    events += other.events;
  }
};

// ===== A batch

// Random changes, each of another term.
template <class Device>
std::vector<typename Device::Change> changes(std::size_t size, std::size_t count, Random& random) {
  std::vector<std::size_t> terms = shuffledTerms(size, random);
  terms.resize(count);
  std::vector<typename Device::Change> result;
  result.reserve(count);
  for (const std::size_t number : terms) result.push_back(Device::change(number));
  return result;
}

template <class Device, auto before, auto event, auto after>
Taken perform(Device& device, std::vector<typename Device::Change>& batch, Random& random) {
  Taken taken;
  taken.events = batch.size();
  const double begin = threadSeconds();
  for (const auto& change : batch) before(device, change);
  shuffle(batch, random);
  const std::uint64_t allocated = heapAllocations();
  const double start = threadSeconds();
  for (const auto& change : batch) event(device, change);
  taken.seconds = threadSeconds() - start;
  taken.allocations = heapAllocations() - allocated;
  shuffle(batch, random);
  for (const auto& change : batch) after(device, change);
  taken.inAll = threadSeconds() - begin;
  return taken;
}

// ===== A device, with all its kinds of events

template <class Device>
struct Kind {
  std::string name;
  Taken (*perform)(Device& device, std::vector<typename Device::Change>& batch, Random& random);
};

template <class Device>
std::vector<Kind<Device>> kinds;

// Of one event.
struct KindFigures {
  double seconds[repetitions];
  double floorSeconds[repetitions];
  double allocations;
};
struct DeviceFigures {
  KindFigures kinds[mostKinds];
};

// One kind of events on its device.
template <class Device>
class Measurement {
 public:
  Measurement(std::size_t size, Device& device, const Kind<Device>& kind)
      : size_(size), device_(device), kind_(kind) {
    chooseBatch();
    perform(batch_);
  }

  Taken repetition() {
    Taken taken;
    while (taken.events < eventsWanted && taken.inAll < secondsWanted) taken += perform(batch_);
    return taken;
  }

 private:
  Taken perform(std::size_t events) {
    auto batch = changes<Device>(size_, events, random_);
    return kind_.perform(device_, batch, random_);
  }

  // Half of the terms, or fewer if that took too long.
  void chooseBatch() {
    const std::size_t half = std::min(size_ * 9 / 20, largestBatch);
    const Taken few = perform(std::min(half, smallestBatch));
    const double affordable = secondsWanted / few.inAll * static_cast<double>(few.events);
    batch_ = std::clamp(static_cast<std::size_t>(affordable), std::min(half, smallestBatch), half);
  }

  std::size_t size_;
  Device& device_;
  const Kind<Device>& kind_;
  Random random_{2};
  std::size_t batch_ = 0;
};

double each(const Taken& taken, double all) { return all / static_cast<double>(taken.events); }

template <class Device>
KindFigures measure(Measurement<Device> measured, Measurement<Floor>& floor) {
  KindFigures figures{};
  for (std::size_t i = 0; i < repetitions; ++i) {
    const Taken below = floor.repetition();
    figures.floorSeconds[i] = each(below, below.seconds);
    const Taken taken = measured.repetition();
    figures.seconds[i] = each(taken, taken.seconds);
    figures.allocations += each(taken, static_cast<double>(taken.allocations)) / repetitions;
  }
  return figures;
}

constexpr auto writeFloor =
    perform<Floor, Steps::nothing, Steps::call<&Floor::write>, Steps::nothing>;

template <class Device>
DeviceFigures measureDevice(std::size_t size) {
  DeviceFigures figures{};
  Floor floorDevice(size);
  const Kind<Floor> floorKind{floorEvent, writeFloor};
  Measurement<Floor> floor(size, floorDevice, floorKind);
  Device device(size);
  device.start();
  for (std::size_t i = 0; i < kinds<Device>.size(); ++i) {
    figures.kinds[i] = measure(Measurement<Device>(size, device, kinds<Device>[i]), floor);
  }
  device.check();
  return figures;
}

double median(const double* values) {
  std::vector<double> sorted(values, values + repetitions);
  std::sort(sorted.begin(), sorted.end());
  return sorted[repetitions / 2];
}

std::string titleOf(const std::string& kind) { return "event " + kind; }

template <class Device>
void registerDevice() {
  if (kinds<Device>.empty()) return;
  require(kinds<Device>.size() <= mostKinds, "too many kinds of events of one device");
  std::vector<std::string> names;
  for (const Kind<Device>& kind : kinds<Device>) names.push_back(titleOf(kind.name));
  for (const std::size_t size : sizes()) {
    registerTogether(names, size, [=] {
      const DeviceFigures figures = inChild<measureDevice<Device>>(size);
      Measured measured;
      for (std::size_t i = 0; i < names.size(); ++i) {
        const KindFigures& kind = figures.kinds[i];
        measured[at(names[i], size)] = {
            {kind.seconds, kind.seconds + repetitions},
            {{"allocations", kind.allocations}, {"floor", median(kind.floorSeconds) * 1e9}}};
      }
      return measured;
    });
  }
}

// ===== All of them

class Registration {
 public:
  explicit Registration(Comparisons& comparisons) : comparisons_(comparisons) {}

  template <class Device, auto before, auto event, auto after>
  void kind(const std::string& name) {
    if (kinds<Device>.empty()) registerers_.push_back(&registerDevice<Device>);
    kinds<Device>.push_back({name, &perform<Device, before, event, after>});
    if (name == floorEvent) return;
    for (const std::size_t size : sizes()) {
      comparisons_.add(at(titleOf(name), size), at(titleOf(name), size) + " floor");
    }
  }

  void registerAll() const {
    for (const auto registerer : registerers_) registerer();
  }

 private:
  Comparisons& comparisons_;
  std::vector<void (*)()> registerers_;
};

}  // namespace

void eventTimes(Comparisons& comparisons) {
  comparisons.subject("Events");
  Registration registration(comparisons);
  eachEventKind(registration);
  registration.registerAll();
}

}  // namespace Bench
