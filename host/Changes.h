// Applies a stream of changes to the native side, a line at a time. A line is checked as a whole
// before anything is written; then each of its operations becomes native writes, in order, and each
// write notifies at once. What a line costs depends on what it touches and not on what is
// configured.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>

#include "Dorpel/Export.h"
#include "host/CommentFaults.h"
#include "host/Fault.h"
#include "host/KeptRoots.h"
#include "host/Native.h"

namespace host {
class CommentGuard;
class NearbyRaises;
}  // namespace host

namespace QOS_EXPORT host {

class Changes {
 public:
  // What became of a line. One at which a handler raised is applied.
  enum class Outcome { blank, refused, applied };
  using Report = std::function<void(const std::string&)>;

  using BadComments = KeptRoots::BadComments;

  // `native` must outlive this. `report` gets a line for each refused line and each exception.
  Changes(const Native& native, Report report);
  // The same over `roots`, which must outlive this, too. After each line they are built again that
  // wait for what it changed. A line with which a root would read a comment that ends the process is
  // named before it is written or, with `refused`, refused.
  Changes(const Native& native, KeptRoots& roots, BadComments badComments, Report report);
  // What judges comments for a host without roots: badComment() names what a root would read.
  enum class Judging { comments };
  Changes(const Native& native, Judging judging, Report report);
  Changes(const Changes&) = delete;
  Changes& operator=(const Changes&) = delete;
  ~Changes();

  // Applies the next line of the stream.
  Outcome line(std::string_view text);
  // Why the last line that was refused was. Requires: one was.
  const Fault& refusal() const { return *refusal_; }
  // The comment that ends the process of a host that has all roots, when it applies the last line that
  // was applied. Empty for a host with roots.
  const std::optional<BadComment>& badComment() const { return badComment_; }
  // Whether nothing was reported so far.
  bool isClean() const { return clean_; }

 private:
  Outcome refuse(const Fault& fault);
  std::string culprits(std::span<const Rok::String> at, std::string_view what);
  void tell(const std::string& what);

  const Native& native_;
  KeptRoots* roots_ = nullptr;
  BadComments badComments_ = BadComments::named;
  std::unique_ptr<CommentGuard> guard_;   // null without roots
  std::unique_ptr<NearbyRaises> nearby_;  // null until a handler raised
  Report report_;
  std::optional<Fault> refusal_;
  std::optional<BadComment> badComment_;
  std::size_t number_ = 0;
  bool clean_ = true;
};

}  // namespace host
