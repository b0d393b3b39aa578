// events: performs one kind of event many times on a device of a given size, so that callgrind
// counts the instructions of exactly the events. instructions.sh runs it.
//
//   events --list                         the names of the events
//   events --compiler                     what this program was compiled by
//   events EVENT SIZE REPEAT              REPEAT events on a device of SIZE class maps
//   events --journal EVENT SIZE REPEAT    the same with a journal; prints the marks of an event
//   events --commit EVENT SIZE REPEAT     what is counted is the commit after the event, of a feed
//                                         with one observer of leaves; prints the leaves of one
//   events --images TERMS                 prints the bytes a leaf that a feed keeps
//
// What is counted: the event alone, from the native object's mutator to its return. The counter is
// off while the device is built and between events, when what the event took is put back and what
// it put is taken away. So the size stays the same, no index grows and no chunk of memory is cut in
// a counted event, at any size; growth is measured by qosbench, as start-up and as the worst
// insert. One uncounted round comes first: free lists have then what the events need.
//
// A journal is empty before each event, so that none of its marks is there already.
#include <valgrind/callgrind.h>

#include <charconv>
#include <cstdint>
#include <iostream>
#include <memory>
#include <span>
#include <string_view>
#include <vector>

#include "support/EventKinds.h"
#include "support/Follower.h"
#include "support/Images.h"
#include "support/Order.h"
#include "support/OutputModel.h"

namespace Bench {
namespace {

// ===== Counting

// Terms in random order, as often as it takes.
std::vector<std::size_t> randomTerms(std::size_t size, std::size_t repeat) {
  Random random(8);
  std::vector<std::size_t> result;
  while (result.size() < repeat) {
    for (const std::size_t number : shuffledTerms(size, random)) result.push_back(number);
  }
  result.resize(repeat);
  return result;
}

template <auto event, class Device>
void countedEvent(Device& device, const typename Device::Change& change) {
  CALLGRIND_TOGGLE_COLLECT;
  event(device, change);
  CALLGRIND_TOGGLE_COLLECT;
}

template <class Device, auto before, auto event, auto after>
void run(std::size_t size, std::size_t repeat, Follower& follower) {
  Device device(size);
  device.start();
  follower.start(outputOf(device));
  const std::vector<std::size_t> terms = randomTerms(size, repeat);
  for (const bool isCounted : {false, true}) {
    if (isCounted) CALLGRIND_START_INSTRUMENTATION;
    for (const std::size_t number : terms) {
      const auto change = Device::change(number);
      before(device, change);
      follower.eventIsNext();
      const bool counts = isCounted && follower.countsEvents();
      counts ? countedEvent<event>(device, change) : event(device, change);
      follower.eventIsOver(isCounted);
      after(device, change);
    }
  }
  CALLGRIND_STOP_INSTRUMENTATION;
  device.check();
  follower.tell(repeat);
}

// ===== The events, by name

class Names {
 public:
  template <class Device, auto before, auto event, auto after>
  void kind(std::string_view name) const {
    std::cout << name << '\n';
  }
};

class Runner {
 public:
  Runner(std::string_view name, std::size_t size, std::size_t repeat, Follower& follower)
      : name_(name), size_(size), repeat_(repeat), follower_(follower) {}
  bool hasRun() const { return hasRun_; }

  template <class Device, auto before, auto event, auto after>
  void kind(std::string_view name) {
    if (name != name_) return;
    run<Device, before, event, after>(size_, repeat_, follower_);
    hasRun_ = true;
  }

 private:
  std::string_view name_;
  std::size_t size_;
  std::size_t repeat_;
  Follower& follower_;
  bool hasRun_ = false;
};

// ===== Arguments

// 0 for anything that isn't a number.
std::size_t number(std::string_view text) {
  std::size_t value = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  return error == std::errc() && end == text.data() + text.size() ? value : 0;
}

// By the name of an event, its SIZE and how often.
int run(std::span<const std::string_view> words, const std::unique_ptr<Follower>& follower) {
  const std::size_t size = number(words[1]);
  const std::size_t repeat = number(words[2]);
  // Whole classifiers of ten class maps each.
  if (size != 0 && size % 10 == 0 && repeat != 0) {
    Runner runner(words[0], size, repeat, *follower);
    eachEventKind(runner);
    if (runner.hasRun()) return 0;
  }
  std::cerr << "events: no event " << words[0] << ", or its SIZE is no multiple of 10\n";
  return 1;
}

int main(std::span<const std::string_view> arguments) {
  const std::string_view first = arguments.empty() ? "" : arguments[0];
  if (arguments.size() == 3) return run(arguments, std::make_unique<Follower>());
  if (arguments.size() == 4 && first == "--journal") {
    return run(arguments.subspan(1), journalFollower());
  }
  if (arguments.size() == 4 && first == "--commit") {
    return run(arguments.subspan(1), feedFollower());
  }
  if (arguments.size() == 2 && first == "--images" && number(arguments[1]) != 0) {
    std::cout << imageBytes(number(arguments[1])) << '\n';
    return 0;
  }
  if (arguments.size() == 1 && first == "--list") {
    Names names;
    eachEventKind(names);
    return 0;
  }
  if (arguments.size() == 1 && first == "--compiler") {
    std::cout << __VERSION__ << '\n';
    return 0;
  }
  std::cerr << "usage: events --list | --compiler | [--journal|--commit] EVENT SIZE REPEAT |\n"
               "              --images TERMS\n";
  return 1;
}

}  // namespace
}  // namespace Bench

int main(int argc, char** argv) {
  return Bench::main(std::vector<std::string_view>(argv + 1, argv + argc));
}
