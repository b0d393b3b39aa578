#include "host/openconfig/Leaves.h"

#include "host/openconfig/LeafPath.h"
#include "host/openconfig/LeafWalk.h"

namespace host {
namespace {

// Holds the path of the entry that the walk is at.
class Flattening final : public LeafWalk {
 public:
  Flattening(const View& view, const LeafVisit& visit, const Warn& warn, const Subtree& only)
      : LeafWalk(view, warn, only), only_(only), visit_(visit) {}
  using LeafWalk::walk;

 private:
  void entryBegins(const RecordKind& kind, std::string_view key) override {
    sizes_.push_back(path_.size());
    appendEntry(path_, kind, key);
  }
  void entryEnds() override {
    path_.resize(sizes_.back());
    sizes_.pop_back();
  }
  void leaf(const RecordKind& kind, const View::Row& row, const LeafValue& value) override {
    const std::size_t size = path_.size();
    if (!kind.isList()) appendEntry(path_, kind, {});
    appendBelow(path_, row.path);
    // The keys of the entries around the subtree are no part of it.
    if (only_.within(path_)) visit_(path_, row.type, value);
    path_.resize(size);
  }

  const Subtree& only_;
  const LeafVisit& visit_;
  std::string path_;
  std::vector<std::size_t> sizes_;  // of the paths of the entries around it
};

}  // namespace

void eachLeaf(const Model& model, const View& view, const LeafVisit& visit, const Warn& warn,
              const Subtree& only) {
  Flattening(view, visit, warn, only).walk(model);
}

std::vector<LeafText> leavesOf(const Model& model, const View& view, const Warn& warn,
                               const Subtree& only) {
  std::vector<LeafText> leaves;
  eachLeaf(
      model, view,
      [&](const std::string& path, LeafType type, const LeafValue& value) {
        leaves.push_back({path, leafText(type, value)});
      },
      warn, only);
  sortLeaves(leaves);
  return leaves;
}

}  // namespace host
