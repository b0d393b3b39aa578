// Waits for change lines and for the signal that ends the server.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "Descriptor.h"
#include "Log.h"
#include "Writer.h"

namespace qosoc {

// Signals of the process wait from here on, until a Loop takes them. Is called before any thread is
// there.
void holdSignals();

class Loop {
 public:
  using Line = std::function<std::string(std::uint64_t number, std::string_view line)>;

  // Requires: holdSignals(). `changes` is a file, "-" or "unix:PATH"; nothing: none come. `line` gets
  // each of them; what it gives is the answer to a writer.
  // Throws: InputError, UsageError.
  Loop(const std::optional<std::string>& changes, const Log& log, Line line);

  // Until SIGTERM or SIGINT.
  void run();

 private:
  void readFile();

  const Log& log_;
  const Line line_;
  Descriptor signals_;
  Descriptor file_;  // none at its end
  std::unique_ptr<Writer> writer_;
  std::string in_;  // the beginning of a line, whose end wasn't read yet
  std::uint64_t number_ = 0;
};

}  // namespace qosoc
