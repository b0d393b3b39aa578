// What is known of a day so far: the native document after each step, and the operations between.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/Patch.h"
#include "host/Value.h"
#include "tests/days/Device.h"

namespace days {

// An operation of a line that was applied. Its place has canonical keys.
struct Event {
  std::size_t step;
  host::Patch::Kind kind;
  host::Tokens place;
};

// Step 0 is the document; each line is a step. All places are of the native document.
class Facts {
 public:
  // `leftOut` are what the roots raised that are out.
  explicit Facts(host::Value document, Reports leftOut);
  // A line that was applied, and what was raised then.
  void stepIs(std::string_view line, host::Value document, Reports reports, Reports leftOut);

  std::size_t now() const { return documents_.size() - 1; }
  // What stands at a place now, or after a step; null when nothing does.
  const host::Value* find(const host::Tokens& place) const { return find(now(), place); }
  const host::Value* find(std::size_t step, const host::Tokens& place) const;
  bool has(const host::Tokens& place) const { return find(place) != nullptr; }
  // Whether it stood there after any step.
  bool everHad(const host::Tokens& place) const;
  // The keys of the object there; none when nothing is there.
  std::vector<std::string> keys(const host::Tokens& place) const { return keys(now(), place); }
  std::vector<std::string> keys(std::size_t step, const host::Tokens& place) const;
  // All that stood there after any step.
  std::vector<std::string> everKeys(const host::Tokens& place) const;

  // The last step at which what stood at the place went, or was put in anew; 0 when it never did.
  // Operations on places of fewer tokens than `depth` don't count.
  std::size_t lastGone(const host::Tokens& place, std::size_t depth = 0) const;
  // The last step at which anything happened at, above or below the place but its going; 0 when
  // nothing did.
  std::size_t lastTold(const host::Tokens& place) const;
  // The last step at which what stands there was put in, or something above it; 0 when it never
  // was.
  std::size_t lastPut(const host::Tokens& place) const;
  // The last step with an operation at exactly this place; 0 when there was none.
  std::size_t lastSet(const host::Tokens& place) const;
  // Whether a handler raised at a step that touched the place, and what was touched stands since.
  bool raisedAbout(const host::Tokens& place) const;
  // The same at any step, also when what was touched has gone since.
  bool everRaisedAbout(const host::Tokens& place) const;
  // The number of operations in the line of a step; none at the start.
  std::size_t operations(std::size_t step) const;
  // What the roots raised that are out.
  const Reports& leftOut() const { return leftOut_.back(); }
  // Whether a root was out after any step.
  bool wasOut(std::string_view root) const;

 private:
  bool isHeard(const Event& event) const;
  bool hasRaised(const Event& event, const host::Tokens& place) const;

  std::vector<host::Value> documents_;
  std::vector<Reports> reports_;
  std::vector<Reports> leftOut_;
  std::vector<Event> events_;
};

}  // namespace days
