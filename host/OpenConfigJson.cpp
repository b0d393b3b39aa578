#include "host/OpenConfigJson.h"

#include "host/openconfig/LeafWalk.h"

namespace host {
namespace {

// The containers that are open in an object. One is written together with its first member, or not
// at all.
class Containers {
 public:
  explicit Containers(JsonWriter& out) : out_(out) {}

  // Opens those on the way to a leaf or list, given in up to three parts, and closes what is no
  // part of it. Returns the last name.
  std::string_view moveTo(std::string_view root, std::string_view prefix, std::string_view path) {
    std::size_t depth = 0;
    while (!root.empty()) open(depth++, takeName(root));
    while (!prefix.empty()) open(depth++, takeName(prefix));
    std::string_view name = takeName(path);
    for (; !path.empty(); name = takeName(path)) open(depth++, name);
    closeTo(depth);
    return name;
  }
  void open(std::size_t depth, std::string_view name) {
    if (depth < names_.size() && names_[depth] == name) return;
    closeTo(depth);
    out_.key(name);
    out_.beginObject();
    names_.push_back(name);
  }
  void closeTo(std::size_t depth) {
    for (; names_.size() > depth; names_.pop_back()) out_.endObject();
  }

 private:
  JsonWriter& out_;
  std::vector<std::string_view> names_;
};

// One document, written leaf by leaf.
class Document final : public LeafWalk {
 public:
  Document(Layout layout, const TextSink& sink, const View& view, const Warn& warn,
           const Subtree& only)
      : LeafWalk(view, warn, only), out_(layout, sink) {}

  std::string write(const Model& model) {
    out_.beginObject();
    objects_.emplace_back(out_);
    walk(model);
    // It stands there also when it is empty.
    objects_.back().open(0, qosRoot.member);
    objects_.back().closeTo(0);
    out_.endObject();
    return out_.take();
  }

 private:
  void listBegins(const RecordKind& kind) override {
    out_.key(objects_.back().moveTo(rootOf(kind), {}, kind.path));
    out_.beginArray();
  }
  void listEnds() override { out_.endArray(); }
  void entryBegins(const RecordKind& /*kind*/, std::string_view /*key*/) override {
    out_.beginObject();
    objects_.emplace_back(out_);
  }
  void entryEnds() override {
    objects_.back().closeTo(0);
    objects_.pop_back();
    out_.endObject();
  }
  void leaf(const RecordKind& kind, const View::Row& row, const LeafValue& value) override {
    out_.key(kind.isList() ? objects_.back().moveTo({}, {}, row.path)
                           : objects_.back().moveTo(rootOf(kind), kind.path, row.path));
    writeLeaf(out_, row.type, value);
  }
  // What stands around an outermost kind.
  static std::string_view rootOf(const RecordKind& kind) {
    return kind.parent == nullptr ? kind.root->member : std::string_view();
  }

  JsonWriter out_;
  std::vector<Containers> objects_;  // that of the document, and of each entry around the leaf
};

// What is left out of a document, without its text.
class Omissions final : public LeafWalk {
 public:
  using LeafWalk::LeafWalk;
  using LeafWalk::walk;

 private:
  void leaf(const RecordKind& /*kind*/, const View::Row& /*row*/,
            const LeafValue& /*value*/) override {}
};

}  // namespace

std::string OpenConfigJson::json(const Model& model, Layout layout, const TextSink& sink) {
  const Warn once = [this](const std::string& warning) { warnOnce(warning); };
  return Document(layout, sink, view_, once, only_).write(model);
}

void OpenConfigJson::warn(const Model& model) {
  const Warn once = [this](const std::string& warning) { warnOnce(warning); };
  Omissions(view_, once, only_).walk(model);
}

void OpenConfigJson::warnOnce(const std::string& warning) {
  if (warned_.insert(warning).second) warn_(warning);
}

}  // namespace host
