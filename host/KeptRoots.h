// Roots that come back. A root that raised when it was built is left out; here it is built again once
// what it raised over has changed. host::Changes says what changes, a line at a time.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Dorpel/Export.h"
#include "host/Roots.h"

namespace host {
class NearbyRaises;
}

namespace QOS_EXPORT host {

class KeptRoots {
 public:
  using Report = std::function<void(const std::string&)>;
  // What becomes of a root that raised.
  enum class LeftOut { stays, returns };

  // Builds the roots of those names, and reports, as buildRoots does. `native` and `model` must outlive
  // this.
  KeptRoots(std::span<const std::string> names, const Native& native, const Model& model,
            LeftOut leftOut, const Report& report);
  KeptRoots(const KeptRoots&) = delete;
  KeptRoots& operator=(const KeptRoots&) = delete;
  ~KeptRoots();

  // Whether the root of that name is there.
  bool isBuilt(std::string_view root) const;
  // Whether it is, or was left out and may return.
  bool isKept(std::string_view root) const;

  // Something was written at or below a place of the native document. `keys` lead there, canonical.
  void changed(std::span<const Rok::String> keys);

  // What is done about a comment with a value of the wrong type that a returning root would read.
  enum class BadComments { named, refused };
  // Builds each root again of which changed() said, since the last call, that a place has changed over
  // which it raised. Reports "root <name>: built", or what it raised again. With `refused`, a root for
  // which a comment is bad isn't built before that comment has changed.
  void retry(BadComments badComments, const Report& report);

 private:
  struct Slot;

  void changed(Slot& slot, std::span<const Rok::String> keys);
  void retry(Slot& slot, BadComments badComments, const Report& report);
  bool mayBuild(Slot& slot, BadComments badComments, const Report& report);
  void build(Slot& slot, const Report& report);
  const Slot* find(std::string_view root) const;

  const Native& native_;
  const Model& model_;
  std::vector<Slot> slots_;
  std::unique_ptr<NearbyRaises> nearby_;  // null: a root that was left out stays so
  std::size_t out_ = 0;                   // roots that were left out
};

}  // namespace host
