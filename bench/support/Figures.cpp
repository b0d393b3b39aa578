#include "support/Figures.h"

#include <cstdio>
#include <istream>
#include <limits>
#include <ostream>
#include <sstream>

#include "support/Check.h"

namespace Bench {
namespace {

std::string formatted(const char* format, double value) {
  char text[40];
  std::snprintf(text, sizeof(text), format, value);
  return text;
}

}  // namespace

const double* find(const Figures& figures, const std::string& name) {
  const auto found = figures.find(name);
  return found != figures.end() ? &found->second : nullptr;
}

std::string measure(const std::string& name, double value) {
  if (name.starts_with("instructions ")) return formatted("%.0f", value);
  if (name.ends_with(" peak bytes") || name.ends_with(" file bytes")) {
    return formatted("%.1f MB", value / 1e6);
  }
  if (name.ends_with(" bytes")) return formatted("%.0f B", value);
  if (name.ends_with(" allocations")) return formatted(value < 0.1 ? "%.2g" : "%.2f", value);
  if (value < 10) return formatted("%.2f ns", value);
  if (value < 10e3) return formatted("%.0f ns", value);
  if (value < 10e6) return formatted("%.0f us", value / 1e3);
  return formatted("%.0f ms", value / 1e6);
}

std::string ratio(double value) {
  return formatted(value < 10 ? "%.2f" : value < 100 ? "%.1f" : "%.0f", value);
}

void writeFigures(std::ostream& out, const Origin& origin, const Figures& figures) {
  out << origin.command << '\n' << origin.date << '\n' << origin.machine << '\n';
  out.precision(std::numeric_limits<double>::max_digits10);
  for (const auto& [name, value] : figures) out << value << ' ' << name << '\n';
}

void readFigures(std::istream& in, Origin& origin, Figures& figures) {
  std::getline(in, origin.command);
  std::getline(in, origin.date);
  std::getline(in, origin.machine);
  require(bool(in), "no figures: three lines of origin are missing");
  for (std::string line; std::getline(in, line);) {
    std::istringstream words(line);
    double value = 0;
    std::string name;
    require(words >> value >> std::ws && std::getline(words, name), "no figure: " + line);
    figures[name] = value;
  }
}

}  // namespace Bench
