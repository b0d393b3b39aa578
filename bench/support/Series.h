// Benchmarks that share what takes long to build, such as a device of a million objects.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace Bench {

// Every figure is the median of this many.
inline constexpr std::size_t repetitions = 5;

// What one benchmark measured.
struct Series {
  std::vector<double> seconds;             // one for each repetition
  std::map<std::string, double> counters;  // "bytes", "allocations"
};
using Measured = std::map<std::string, Series>;  // by name and size, as at() puts them

// Registers a benchmark of each name. `measure` runs once, when the first of them is asked for,
// and measures all; each then reports its own values, one a repetition.
void registerTogether(const std::vector<std::string>& names, std::size_t size,
                      const std::function<Measured()>& measure);

// Seconds by a way to measure them.
struct Timing {
  std::string name;
  double (*seconds)(std::size_t size);
};
// Registers them together. They take turns, so that a machine that slows down slows down all;
// `rounds` gives each repetition the mean of so many.
void registerInTurns(const std::vector<Timing>& timings, std::size_t size, std::size_t rounds);

}  // namespace Bench
