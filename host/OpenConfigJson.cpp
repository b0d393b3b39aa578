#include "host/OpenConfigJson.h"

#include "host/openconfig/RecordKind.h"
#include "host/openconfig/Tree.h"

namespace host {
namespace {

// One document, written record by record along the kinds.
class Document {
 public:
  Document(Layout layout, const TextSink& sink, OpenConfigJson::Warn warn)
      : tree_("openconfig-qos:qos", layout, sink),
        warn_(std::move(warn)),
        faults_{[this](const std::string& reason) { leafLeftOut(reason); }} {}

  std::string write(const Model& model) {
    const std::size_t depth = tree_.depth();
    for (const RecordKind* kind : outermostKinds()) entries(*kind, &model, depth);
    return tree_.end();
  }

 private:
  // What the tree stands at while a record is written.
  struct Record {
    const RecordKind* kind;
    const void* record;
    std::size_t depth;
    std::size_t leaf;
  };

  // Leaves the tree where the next kind below the same holder may go on.
  void entries(const RecordKind& kind, const void* holder, std::size_t depth) {
    if (!kind.isList()) {
      tree_.moveTo(depth, kind.path);
      kind.each(holder,
                [&](auto /*key*/, auto /*misfit*/, const void* entry) { record(kind, entry); });
      return;
    }
    const auto [containers, name] = pathEnd(kind.path);
    tree_.moveTo(depth, containers);
    tree_.enterList(name);
    kind.each(holder, [&](std::string_view key, std::string_view misfit, const void* entry) {
      listEntry(kind, key, misfit, entry);
    });
  }

  void listEntry(const RecordKind& kind, std::string_view key, std::string_view misfit,
                 const void* entry) {
    const std::size_t depth = tree_.depth();
    keys_.push_back(key);
    if (misfit.empty()) {
      tree_.enterEntry(kind.key, key);
      record(kind, entry);
      tree_.leaveTo(depth);
    } else if (kind.record(entry) != nullptr) {
      const std::string path = tree_.path(depth) + Tree::predicate(kind.key, key);
      leftOut(path, std::string(misfit), kind.native(keys_));
    }
    keys_.pop_back();
  }

  void record(const RecordKind& kind, const void* entry) {
    const void* record = kind.record(entry);
    if (record == nullptr) return;
    const std::size_t depth = tree_.depth();
    auto child = kind.children.begin();
    for (std::size_t i = 0; i < kind.leaves.size(); ++i) {
      while (child != kind.children.end() && pathLess((*child)->path, kind.leaves[i].path)) {
        entries(**child++, entry, depth);
      }
      leaf({&kind, record, depth, i});
    }
    while (child != kind.children.end()) entries(**child++, entry, depth);
  }

  void leaf(const Record& at) {
    at_ = at;
    const auto [path, type] = at.kind->leaves[at.leaf];
    const LeafValue value = at.kind->read(at.record, at.leaf, keys_, faults_);
    if (isAbsent(value)) return;
    const auto [containers, name] = pathEnd(path);
    tree_.moveTo(at.depth, containers);
    tree_.leaf(name, type, value);
  }

  void leafLeftOut(const std::string& reason) {
    const std::string path =
        tree_.path(at_.depth) + '/' + std::string(at_.kind->leaves[at_.leaf].path);
    leftOut(path, reason, at_.kind->nativeOfLeaf(at_.record, at_.leaf, keys_));
  }
  void leftOut(const std::string& path, const std::string& reason, const std::string& native) {
    warn_(path + ": " + reason + ": left out (from " + native + ')');
  }

  Tree tree_;
  OpenConfigJson::Warn warn_;
  Faults faults_;
  Keys keys_;
  Record at_{};
};

}  // namespace

std::string OpenConfigJson::json(const Model& model, Layout layout, const TextSink& sink) {
  const Warn warnOnce = [this](const std::string& warning) {
    if (warned_.insert(warning).second) warn_(warning);
  };
  return Document(layout, sink, warnOnce).write(model);
}

}  // namespace host
