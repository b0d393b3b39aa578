// OVERVIEW: the socket on which a writer sends change lines, one writer at a time, and the answers.
//
// RULES
// - The socket is readable and writable by its owner alone, and goes with this.
// - A second writer gets `busy`. The next one is served once the first is gone.
// - What a writer doesn't read of its answers isn't kept without end: it is read no further then.
#pragma once

#include <poll.h>

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "Descriptor.h"
#include "Log.h"

namespace qosoc {

class Writer {
 public:
  // Gets a line, without its end, and gives the answer.
  using Answer = std::function<std::string(std::uint64_t number, std::string_view line)>;

  // Throws: UsageError when the path can't be a socket's, or another server has it.
  Writer(std::string path, const Log& log, Answer answer);
  ~Writer();
  Writer(const Writer&) = delete;
  Writer& operator=(const Writer&) = delete;

  // What is to be waited for.
  std::vector<pollfd> waits() const;
  // Does what can be done without waiting. Some lines at a time, so that others have their turn.
  void serve();

 private:
  void listen();
  void accept();
  void read();
  void answerLines();
  void write();
  void leave();

  const std::string path_;
  const Log& log_;
  const Answer answer_;
  Descriptor socket_;
  Descriptor writer_;  // none while no writer is there
  std::uint64_t number_ = 0;
  std::string in_;  // the beginning of a line, whose end wasn't read yet
  std::string out_;
  bool hasEnded_ = false;  // the writer sends no more
};

}  // namespace qosoc
