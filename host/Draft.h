// What the operations of one line would make of the document. It stands over the native objects,
// reads of them only what is asked for, and never writes.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/Place.h"
#include "host/Value.h"

namespace host {

class Draft {
 public:
  // What stands at a native place.
  explicit Draft(std::unique_ptr<Place> place) : native_(std::move(place)) {}
  // A value that the line brings.
  explicit Draft(const Value& value);

  // What stands below; null when nothing does.
  Draft* at(const Rok::String& key);
  void put(const Rok::String& key, const Value& value);
  void erase(const Rok::String& key);
  Value value() const;
  // The keys under which something stands.
  std::vector<Rok::String> keys() const;
  // About how many there are.
  std::size_t size() const { return (native_ ? native_->size() : 0) + touched_.size(); }

 private:
  std::unique_ptr<Place> native_;  // null for what the line brings
  std::optional<Value> leaf_;      // of what the line brings, if nothing can stand below it
  std::map<Rok::String, std::unique_ptr<Draft>> touched_;  // null for what the line removes
};

}  // namespace host
