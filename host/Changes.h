// Applies a stream of changes to the native side, a line at a time. A line is checked as a whole
// before anything is written; then each of its operations becomes native writes, in order, and each
// write notifies at once. What a line costs depends on what it touches and not on what is
// configured.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "Dorpel/Export.h"
#include "host/Fault.h"
#include "host/Native.h"

namespace QOS_EXPORT host {

class Changes {
 public:
  // What became of a line. One at which a handler raised is applied.
  enum class Outcome { blank, refused, applied };
  using Report = std::function<void(const std::string&)>;

  // `native` must outlive this. `report` gets a line for each refused line and each exception.
  Changes(const Native& native, Report report) : native_(native), report_(std::move(report)) {}

  // Applies the next line of the stream.
  Outcome line(std::string_view text);
  // Why the last line that was refused was. Requires: one was.
  const Fault& refusal() const { return *refusal_; }
  // Whether nothing was reported so far.
  bool isClean() const { return clean_; }

 private:
  void tell(const std::string& what);

  const Native& native_;
  Report report_;
  std::optional<Fault> refusal_;
  std::size_t number_ = 0;
  bool clean_ = true;
};

}  // namespace host
