// Notifying observers, beside a plain vector of virtual calls; and what their number costs.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "Rok/Rok.h"
#include "support/Check.h"
#include "support/Comparisons.h"

namespace Bench {
namespace {

// A notifier with a scalar and a collection.
class Bell final : public Rok::Notifier {
 public:
  struct Attr {
    static constexpr Rok::Attribute<> ring{130};
    static constexpr Rok::Attribute<Velmo::String> port{131};
  };
  void ring() const { notify(Attr::ring); }
  void portIs(const Velmo::String& port) const { notify(Attr::port, port); }
};

// ===== Plain notifiees

class Listener final : public Rok::PtrInterface::NotifieeConst {
 public:
  explicit Listener(const Bell& bell) {
    notifierIs(&bell);
    isRegisteredNotifieeIs(true);
    hasNotificationActiveIs(true);
  }
  void onAttribute(Rok::AttributeId /*id*/, const void* /*key*/) override { ++calls; }

  std::uint64_t calls = 0;
};

class Called {
 public:
  virtual ~Called() = default;
  virtual void onAttribute(Rok::AttributeId id, const void* key) = 0;
};
// As large as a listener, so that both sides touch as many cache lines.
class CalledListener final : public Called {
 public:
  void onAttribute(Rok::AttributeId /*id*/, const void* /*key*/) override { ++calls; }

 private:
  [[maybe_unused]] char likeAListener_[sizeof(Listener) - sizeof(Called) - sizeof(std::uint64_t)];

 public:
  std::uint64_t calls = 0;
};
static_assert(sizeof(CalledListener) == sizeof(Listener));

std::vector<Rok::Ptr<Listener>> listeners(const Bell& bell, std::int64_t count) {
  std::vector<Rok::Ptr<Listener>> result;
  for (std::int64_t i = 0; i < count; ++i) result.push_back(Rok::make<Listener>(bell));
  return result;
}

void checkCalls(const benchmark::State& state, std::uint64_t calls) {
  require(calls == static_cast<std::uint64_t>(state.iterations()), "number of calls");
}

void notifyAll(benchmark::State& state) {
  const auto bell = Rok::make<Bell>();
  const auto all = listeners(*bell, state.range(0));
  for (auto _ : state) bell->ring();
  for (const auto& one : all) checkCalls(state, one->calls);
}

void callAll(benchmark::State& state) {
  // One after another in memory, in the order of the calls, as fresh blocks of a slab are.
  std::vector<CalledListener> all(static_cast<std::size_t>(state.range(0)));
  std::vector<Called*> called;
  for (CalledListener& one : all) called.push_back(&one);
  for (auto _ : state) {
    for (Called* one : called) one->onAttribute(Bell::Attr::ring.id, nullptr);
    benchmark::ClobberMemory();
  }
  for (const CalledListener& one : all) checkCalls(state, one.calls);
}

// ===== Coming and going, always another one, with others there

void subscribe(benchmark::State& state) {
  const auto bell = Rok::make<Bell>();
  const auto all = listeners(*bell, state.range(0));
  std::size_t next = 0;
  for (auto _ : state) {
    all[next]->isRegisteredNotifieeIs(false);
    all[next]->isRegisteredNotifieeIs(true);
    next = (next + 1) % all.size();
  }
  bell->ring();
  for (const auto& one : all) require(one->calls == 1, "calls after coming and going");
}

void subscribeVector(benchmark::State& state) {
  std::vector<CalledListener> all(static_cast<std::size_t>(state.range(0)));
  std::vector<Called*> called;
  for (CalledListener& one : all) called.push_back(&one);
  std::size_t next = all.size() / 2;
  for (auto _ : state) {
    called.erase(std::find(called.begin(), called.end(), &all[next]));
    called.push_back(&all[next]);
    next = (next + 1) % all.size();
  }
  require(called.size() == all.size(), "number of listeners");
}

// ===== One key of many

std::string portName(std::int64_t port) { return "Ethernet" + std::to_string(port); }

// Two machines that watch one port: one by a keyed watch, the other by a comparison.
class PortSm {
 public:
  std::uint64_t calls = 0;
};

class KeyedSm final : public Rok::StateMachine<KeyedSm>, public PortSm {
 public:
  static constexpr std::string_view rokTypeName = "KeyedSm";
  static constexpr auto rokArguments() { return std::tuple{Rok::Argument{"bell", &KeyedSm::bell}}; }
  Rok::Ptr<Bell const> bell() const { return bell_.ptr(); }
  void handlePort(const Velmo::String& /*port*/) { ++calls; }

 private:
  friend Rok::StateMachine<KeyedSm>;
  using RokBell = Rok::KeyedWatch<KeyedSm, Bell, Rok::On<Bell::Attr::port, &KeyedSm::handlePort>>;
  KeyedSm(const Rok::Ptr<Bell const>& bell, const Velmo::String& port) : bell_(*this, bell, port) {}
  auto parts() { return std::tie(bell_); }

  RokBell bell_;
};

class ComparingSm final : public Rok::StateMachine<ComparingSm>, public PortSm {
 public:
  static constexpr std::string_view rokTypeName = "ComparingSm";
  static constexpr auto rokArguments() {
    return std::tuple{Rok::Argument{"bell", &ComparingSm::bell}};
  }
  Rok::Ptr<Bell const> bell() const { return bell_.ptr(); }
  void handlePort(const Velmo::String& port) {
    if (port == port_) ++calls;
  }

 private:
  friend Rok::StateMachine<ComparingSm>;
  using RokBell =
      Rok::Watch<ComparingSm, Bell, Rok::On<Bell::Attr::port, &ComparingSm::handlePort>>;
  ComparingSm(const Rok::Ptr<Bell const>& bell, const Velmo::String& port)
      : bell_(*this, bell), port_(port) {}
  auto parts() { return std::tie(bell_); }

  RokBell bell_;
  Velmo::String port_;
};

// Each event names another port.
template <class Sm>
void portEvent(benchmark::State& state) {
  const auto bell = Rok::make<Bell>();
  std::vector<Rok::Ptr<Sm>> all;
  std::vector<Velmo::String> ports;
  for (std::int64_t i = 0; i < state.range(0); ++i) {
    all.push_back(Sm::create(Rok::Ptr<Bell const>(bell), Velmo::String(portName(i))));
    ports.emplace_back(portName(i));
  }
  std::size_t next = 0;
  for (auto _ : state) {
    bell->portIs(ports[next]);
    next = (next + 1) % ports.size();
  }
  std::uint64_t calls = 0;
  for (const auto& sm : all) calls += sm->calls;
  require(calls == static_cast<std::uint64_t>(state.iterations()), "calls by key");
}

}  // namespace

void notification(Comparisons& comparisons) {
  const auto add = [](const char* name, void (*function)(benchmark::State&),
                      const std::vector<std::int64_t>& sizes) {
    auto* added = benchmark::RegisterBenchmark(name, function);
    for (const std::int64_t size : sizes) added->Arg(size);
  };
  comparisons.subject("Notification");
  add("notify", notifyAll, {1, 100, 10'000, 1'000'000});
  add("virtual calls", callAll, {1, 100, 10'000, 1'000'000});
  add("unsubscribe and subscribe", subscribe, {10, 10'000, 1'000'000});
  add("erase from a vector and push", subscribeVector, {10, 10'000});
  add("event for one keyed watch", portEvent<KeyedSm>, {10, 10'000, 1'000'000});
  add("event that each watch compares", portEvent<ComparingSm>, {10, 10'000});
  for (const int size : {1, 100, 10'000, 1'000'000}) {
    comparisons.add(at("notify", size), at("virtual calls", size));
  }
  for (const int size : {10, 10'000}) {
    comparisons.add(at("unsubscribe and subscribe", size),
                    at("erase from a vector and push", size));
  }
  for (const int size : {10'000, 1'000'000}) {
    comparisons.add(at("unsubscribe and subscribe", size), "unsubscribe and subscribe/10");
    comparisons.add(at("event for one keyed watch", size), "event for one keyed watch/10");
  }
  comparisons.add("event for one keyed watch/10000", "event that each watch compares/10000");
}

}  // namespace Bench
