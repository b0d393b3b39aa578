// Says by leaves what a commit changed by records.
#pragma once

#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/feed/LeafChanges.h"
#include "host/feed/RecordChange.h"

namespace host {

// Makes changes of leaves from changes of records.
class LeafDiffer {
 public:
  explicit LeafDiffer(LeafRequest request);
  LeafDiffer(const LeafDiffer&) = delete;
  LeafDiffer& operator=(const LeafDiffer&) = delete;

  // All leaves of a model. `leftOut` is what it can't hold.
  LeafChanges all(const Model& images, const std::vector<LeftOutEntry>& leftOut);
  // `images` is the model that the changes led to, with nothing but what the document holds.
  // Requires: what was given last was of the model before them.
  LeafChanges of(const RecordChanges& records, const Model& images);

 private:
  void keepWithin(LeafChanges& changes);
  void keepTops(const LeafChanges& changes);

  LeafRequest request_;
  View view_;
  Warn warnOnce_;
  std::unordered_set<std::string> warned_;
  // The top of the subtree, if it is there; of a list, its entries that are.
  std::set<std::string> tops_;
};

}  // namespace host
