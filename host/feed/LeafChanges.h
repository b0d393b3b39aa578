// What a commit changed, leaf by leaf, as one consumer sees it.
#pragma once

#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include "Dorpel/Export.h"
#include "host/feed/RecordChange.h"
#include "host/openconfig/LeafWalk.h"
#include "host/openconfig/Subtree.h"
#include "host/openconfig/View.h"

namespace QOS_EXPORT host {

struct LeafUpdate {
  std::string path;
  LeafType type;
  LeafValue value;  // it is there, and a text is its own
};

struct LeafChanges {
  // The updates are all leaves that there are; what was known before is void.
  bool isWhole = false;
  // The nodes that went, each the highest one: no leaf is left at it or below. No node is above the
  // outermost entry of a list, and outside lists none is above a child of the root. In bytewise
  // order; they go before the updates come.
  std::vector<std::string> deleted;
  // The leaves that came or changed, in bytewise order of their paths.
  std::vector<LeafUpdate> updated;
};

// Which leaves a consumer wants.
struct LeafRequest {
  ViewOptions view = {};
  Subtree only = {};
  // Gets a line for what the document can't hold, each once.
  LeafWalk::Warn warn = nullptr;
};

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
  LeafWalk::Warn warnOnce_;
  std::unordered_set<std::string> warned_;
  // The top of the subtree, if it is there; of a list, its entries that are.
  std::set<std::string> tops_;
};

}  // namespace host
