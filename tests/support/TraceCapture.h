// Collects trace lines for a test, and leaves the trace as it found it: silent.
#pragma once

#include <algorithm>
#include <cstddef>
#include <functional>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "Rok/Trace.h"

namespace support {

class TraceCapture {
 public:
  explicit TraceCapture(std::initializer_list<unsigned> levels) {
    for (const unsigned level : levels) Rok::TraceFacility::levelIs(level, true);
    before_ = Rok::TraceFacility::sinkIs([this](const Rok::TraceFacility::Line& line) {
      lines_.push_back(std::to_string(line.level) + " " + std::string(line.text));
      handles_.emplace_back(line.handle);
    });
  }
  TraceCapture(const TraceCapture&) = delete;
  TraceCapture& operator=(const TraceCapture&) = delete;
  ~TraceCapture() {
    Rok::TraceFacility::sinkIs(before_);
    Rok::TraceFacility::levelDelAll();
  }

  // Each line as its level, a blank and its text.
  const std::vector<std::string>& lines() const { return lines_; }
  const std::vector<std::string>& handles() const { return handles_; }
  // The lines, without the addresses with which those of a machine begin that prints as one.
  std::vector<std::string> linesWithoutAddresses() const {
    std::vector<std::string> result;
    for (std::string line : lines_) {
      if (line.compare(1, 3, " 0x") == 0) line.erase(2, line.find(' ', 2) - 1);
      result.push_back(line);
    }
    return result;
  }
  void clear() {
    lines_.clear();
    handles_.clear();
  }
  // The lines in which a text occurs.
  std::vector<std::string> linesWith(const std::string& text) const {
    std::vector<std::string> found;
    std::ranges::copy_if(lines_, std::back_inserter(found), [&](const std::string& line) {
      return line.find(text) != std::string::npos;
    });
    return found;
  }

 private:
  Rok::TraceFacility::Sink before_;
  std::vector<std::string> lines_;
  std::vector<std::string> handles_;
};

// Calls a function while each line of a level is traced, and leaves the trace silent. The function
// may read anything and change nothing.
class AtEachLine {
 public:
  using Look = std::function<void(std::string_view text)>;

  AtEachLine(unsigned level, Look look) : look_(std::move(look)) {
    Rok::TraceFacility::levelIs(level, true);
    before_ = Rok::TraceFacility::sinkIs([this](const Rok::TraceFacility::Line& line) {
      ++lines_;
      look_(line.text);
    });
  }
  AtEachLine(const AtEachLine&) = delete;
  AtEachLine& operator=(const AtEachLine&) = delete;
  ~AtEachLine() {
    Rok::TraceFacility::sinkIs(before_);
    Rok::TraceFacility::levelDelAll();
  }

  std::size_t lines() const { return lines_; }

 private:
  Look look_;
  std::size_t lines_ = 0;
  Rok::TraceFacility::Sink before_;
};

}  // namespace support
