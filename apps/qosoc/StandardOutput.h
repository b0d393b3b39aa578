// Standard output: all that the program prints there goes through here, so that a write that fails
// is never missed.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "host/JsonWriter.h"

namespace qosoc {

class StandardOutput {
 public:
  using Report = std::function<void(const std::string&)>;
  // Throws OutputError from flush() when a write fails.
  StandardOutput();
  // Hands the first failure to `report`, once, and goes on without writing.
  explicit StandardOutput(Report report);

  void write(std::string_view piece);
  // Hands on what was written, and reports the failure of this or of a write before it.
  void flush();

 private:
  Report report_;
  bool isFile_ = false;
  int error_ = 0;  // that of the first write that failed
  bool hasFailed_ = false;
};

// Prints a whole text, or what `text` hands to the sink. Throws: OutputError.
void print(std::string_view text);
void print(const std::function<void(const host::TextSink& sink)>& text);

}  // namespace qosoc
