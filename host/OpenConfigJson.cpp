#include "host/OpenConfigJson.h"

#include "host/openconfig/RecordKind.h"

namespace host {
namespace {

// Takes the first of the names that a path joins by slashes.
std::string_view takeName(std::string_view& path) {
  const std::string_view name = path.substr(0, path.find('/'));
  path.remove_prefix(std::min(path.size(), name.size() + 1));
  return name;
}

// The containers that are open in an object. One is written together with its first member, or not
// at all.
class Containers {
 public:
  explicit Containers(JsonWriter& out) : out_(out) {}

  // Opens those of a prefix and a path, and closes what is no part of it. Returns the path's last
  // name.
  std::string_view moveTo(std::string_view path, std::string_view prefix = {}) {
    std::size_t depth = 0;
    while (!prefix.empty()) open(depth++, takeName(prefix));
    std::string_view name = takeName(path);
    for (; !path.empty(); name = takeName(path)) open(depth++, name);
    closeTo(depth);
    return name;
  }
  void closeTo(std::size_t depth) {
    for (; names_.size() > depth; names_.pop_back()) out_.endObject();
  }

 private:
  void open(std::size_t depth, std::string_view name) {
    if (depth < names_.size() && names_[depth] == name) return;
    closeTo(depth);
    out_.key(name);
    out_.beginObject();
    names_.push_back(name);
  }

  JsonWriter& out_;
  std::vector<std::string_view> names_;
};

// One document, written record by record along the kinds.
class Document {
 public:
  Document(Layout layout, const TextSink& sink, const OpenConfigJson::Warn& warn)
      : out_(layout, sink), warn_(warn), faults_{[this](const std::string& reason) {
          leafLeftOut(reason);
        }} {}

  std::string write(const Model& model) {
    out_.beginObject();
    out_.key(qosRoot.member);
    out_.beginObject();
    Containers containers(out_);
    for (const RecordKind* kind : outermostKinds()) entries(*kind, &model, containers);
    containers.closeTo(0);
    out_.endObject();
    out_.endObject();
    return out_.take();
  }

 private:
  void entries(const RecordKind& kind, const void* holder, Containers& around) {
    bool isFirst = true;
    kind.each(holder, [&](std::string_view key, std::string_view misfit, const void* entry) {
      const void* record = kind.record(entry);
      if (record == nullptr) return;
      if (!kind.isList()) return container(kind, record, around);
      keys_.push_back(key);
      if (misfit.empty()) {
        if (isFirst) beginList(kind, around);
        isFirst = false;
        listEntry(kind, entry, record);
      } else {
        leftOut(pathOf(kind, keys_.size()), misfit, kind.native(keys_));
      }
      keys_.pop_back();
    });
    if (!isFirst) out_.endArray();
  }
  void beginList(const RecordKind& kind, Containers& around) {
    out_.key(around.moveTo(kind.path));
    out_.beginArray();
  }

  // Leaves and what is below the entry, in the order of their paths.
  void listEntry(const RecordKind& kind, const void* entry, const void* record) {
    out_.beginObject();
    Containers containers(out_);
    auto child = kind.children.begin();
    for (std::size_t i = 0; i < kind.leaves.size(); ++i) {
      while (child != kind.children.end() && pathLess((*child)->path, kind.leaves[i].path)) {
        entries(**child++, entry, containers);
      }
      leaf({&kind, record, i}, {}, containers);
    }
    while (child != kind.children.end()) entries(**child++, entry, containers);
    containers.closeTo(0);
    out_.endObject();
  }
  void container(const RecordKind& kind, const void* record, Containers& around) {
    for (std::size_t i = 0; i < kind.leaves.size(); ++i) {
      leaf({&kind, record, i}, kind.path, around);
    }
  }

  struct Current {
    const RecordKind* kind;
    const void* record;
    std::size_t leaf;
  };
  void leaf(const Current& at, std::string_view prefix, Containers& around) {
    at_ = at;
    const auto& [path, type] = at.kind->leaves[at.leaf];
    const LeafValue value = at.kind->read(at.record, at.leaf, keys_, faults_);
    if (isAbsent(value)) return;
    out_.key(around.moveTo(path, prefix));
    writeLeaf(out_, type, value);
  }

  // ===== What is left out

  // The path of a container, or of the entry under the first `depth` keys.
  std::string pathOf(const RecordKind& kind, std::size_t depth) const {
    const std::size_t above = kind.isList() ? depth - 1 : depth;
    std::string path =
        kind.parent != nullptr ? pathOf(*kind.parent, above) : '/' + std::string(kind.root->member);
    path += '/' + std::string(kind.path);
    if (!kind.isList()) return path;
    const std::string_view key = keys_[above];
    const char* quote = key.find('\'') == std::string_view::npos ? "'" : "\"";
    return path + '[' + std::string(kind.key) + '=' + quote + shown(key) + quote + ']';
  }
  void leafLeftOut(const std::string& reason) {
    const auto& [kind, record, leaf] = at_;
    const std::string path =
        pathOf(*kind, keys_.size()) + '/' + std::string(kind->leaves[leaf].path);
    leftOut(path, reason, kind->nativeOfLeaf(record, leaf, keys_));
  }
  void leftOut(const std::string& path, std::string_view reason, const std::string& native) {
    warn_(path + ": " + std::string(reason) + ": left out (from " + native + ')');
  }

  JsonWriter out_;
  const OpenConfigJson::Warn& warn_;
  Faults faults_;
  Keys keys_;
  Current at_{};  // what `faults_` is reported for
};

}  // namespace

std::string OpenConfigJson::json(const Model& model, Layout layout, const TextSink& sink) {
  const Warn warnOnce = [this](const std::string& warning) {
    if (warned_.insert(warning).second) warn_(warning);
  };
  return Document(layout, sink, warnOnce).write(model);
}

}  // namespace host
