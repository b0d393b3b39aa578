// OVERVIEW: several paths as one: what a subscription takes in of the images of a store.
//
// RULES
// - A leaf that several of the paths take in is taken in once.
// - The ranges are where to look: the names of all records that it takes in begin with one of them.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "gnmi/Path.h"
#include "host/publish/WindowWalk.h"

namespace server {

class Filter {
 public:
  // Filters of the same id take in the same.
  Filter(std::vector<Path> paths, std::string id);

  const std::string& id() const { return id_; }
  // In the order of a walk. None begins with another one.
  std::span<const std::string> ranges() const { return ranges_; }

  RowSet rows(const host::RecordKind& kind, std::span<const std::string_view> keys) const;
  // Whether it takes in an entry, or something of it or below it.
  bool leadsTo(const host::RecordKind& kind, std::span<const std::string_view> keys) const;
  host::WindowWalk::Wanted wanted() const;

 private:
  std::vector<Path> paths_;
  std::string id_;
  std::vector<std::string> ranges_;
};

}  // namespace server
