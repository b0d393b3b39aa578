// The figures of a run, and how people read one.
#pragma once

#include <iosfwd>
#include <map>
#include <string>

namespace Bench {

// By the name of a benchmark, "event class-map-add/1000": nanoseconds; by that name and a
// counter's, "memory of a class map/1000 output bytes": the counter; by the name of an event,
// "instructions class-map-add/1000": their number.
using Figures = std::map<std::string, double>;

// The name of a benchmark's figure at a size.
template <class Size>
std::string at(const std::string& name, Size size) {
  return std::string(name).append("/").append(std::to_string(size));
}

// Null when it wasn't measured.
const double* find(const Figures& figures, const std::string& name);

// A figure as people read it; its name gives the unit.
std::string measure(const std::string& name, double value);
// A ratio or a limit, with three digits at least.
std::string ratio(double value);

// When and where a run took place.
struct Origin {
  std::string command;
  std::string date;
  std::string machine;
};

// A run as a text, so that its page can be written again without measuring.
void writeFigures(std::ostream& out, const Origin& origin, const Figures& figures);
// Ends the process when the text is no such.
void readFigures(std::istream& in, Origin& origin, Figures& figures);

}  // namespace Bench
