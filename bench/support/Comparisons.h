// Which figures belong side by side, and who measures them.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "support/Figures.h"

namespace Bench {

// Which figures belong side by side, by subject.
class Comparisons {
 public:
  // A figure and what it is compared with; empty when there is nothing to compare.
  struct Line {
    std::string figure;
    std::string against;
  };
  struct Subject {
    std::string title;
    std::vector<Line> lines;
  };

  // What is added from now on is about this.
  void subject(const std::string& title) { subjects_.push_back({title, {}}); }
  void add(const std::string& figure, const std::string& against = "") {
    subjects_.back().lines.push_back({figure, against});
  }
  const std::vector<Subject>& subjects() const { return subjects_; }

 private:
  std::vector<Subject> subjects_;
};

// Every subject registers its benchmarks and what they are compared with.
void startUp(Comparisons& comparisons);
void eventTimes(Comparisons& comparisons);
void libyang(Comparisons& comparisons);
// Seconds of building a tree of so many class maps, divided by their number, in a process of its
// own: what class maps alone stand for, and terms with all that the whole path gives them.
double libyangTypedBuild(std::size_t classMaps);
double libyangWholeBuild(std::size_t classMaps);
void feed(Comparisons& comparisons);
void frames(Comparisons& comparisons);
void decoders(Comparisons& comparisons);
void comments(Comparisons& comparisons);
void notification(Comparisons& comparisons);
void hashMap(Comparisons& comparisons);
void documents(Comparisons& comparisons);

}  // namespace Bench
