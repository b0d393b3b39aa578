// OVERVIEW: the timestamps of commits: the time of day in nanoseconds, and always greater than the one
// before, also when that clock is set back.
//
// RULES
// - With a file, timestamps also grow over restarts, whatever way the process ended: the file holds a
//   time up to which the process may go, ten seconds ahead, and is written before a timestamp is given
//   that is beyond it. The next process begins behind that time.
// - When the file can't be written any more, timestamps go on without it.
// - The file is replaced by another one that is written beside it, so it is never half written.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace host {

class Clock {
 public:
  static constexpr std::int64_t reserve = 10'000'000'000;
  using Now = std::function<std::int64_t()>;
  using Report = std::function<void(const std::string&)>;

  // The time of day.
  static std::int64_t now();

  explicit Clock(Now now = Clock::now) : now_(std::move(now)) {}
  // With a file, which need not be there yet. `report` gets what is wrong when that can't be written
  // later, once in the time that it would have reserved.
  // Throws: std::runtime_error when it can't be read or written, or holds no time.
  Clock(std::string stampFile, Report report, Now now = Clock::now);

  std::int64_t next();

 private:
  void reserveUpTo(std::int64_t time) const;

  Now now_;
  std::string file_;
  Report report_;
  std::int64_t last_ = 0;
  std::int64_t reserved_ = 0;
};

}  // namespace host
