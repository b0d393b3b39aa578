#include "host/openconfig/DocumentReader.h"

#include <unordered_set>

#include "host/JsonStream.h"
#include "host/Nearest.h"
#include "host/Text.h"
#include "host/openconfig/LeafPath.h"
#include "host/openconfig/ShownLeaves.h"

namespace host {
namespace {

// Where a byte of a text is.
TextPosition position(std::string_view text, std::size_t offset) {
  const std::string_view before = text.substr(0, offset);
  const auto lines = std::count(before.begin(), before.end(), '\n');
  const std::size_t start = before.rfind('\n') + 1;
  return {static_cast<std::size_t>(lines) + 1, offset - start + 1};
}

std::string plainText(const LeafValue& value) {
  if (const auto text = textOf(value)) return std::string(*text);
  return leafText(LeafType::uint32, value);
}

// What the document holds while it is read: leaves and faults, and the entries around them. The key
// of an entry may come behind what is below it, so paths begin at the innermost entry until that
// ends.
class Findings {
 public:
  struct Entry {
    const RecordKind* kind;
    std::string path;            // of the list
    std::size_t offset;          // of the entry in the text
    std::size_t leaves, faults;  // how many came before
    bool hasKey = false;
    std::optional<std::string> key = {};
    std::optional<std::string> configKey = {};  // the leaf below `config` that repeats it
  };

  // Below the innermost entry.
  std::string path;

  bool isFull() const { return faults_.size() >= mostFaults; }
  Entry& entry() { return entries_.back(); }
  bool hasEntries() const { return !entries_.empty(); }

  void open(const RecordKind& kind, std::size_t offset) {
    entries_.push_back(
        {&kind, std::exchange(path, {}), offset, read_.leaves.size(), faults_.size()});
  }
  // Gives all that was found below the entry a longer path.
  void close() {
    const Entry& entry = entries_.back();
    path = entry.path;
    std::string prefix = entry.path;
    if (entry.key) appendKey(prefix, entry.kind->key, *entry.key);
    for (std::size_t i = entry.leaves; i < read_.leaves.size(); ++i) {
      read_.leaves[i].leaf.path.insert(0, prefix);
    }
    for (std::size_t i = entry.faults; i < faults_.size(); ++i) faults_[i].path.insert(0, prefix);
    if (entry.key && entry.kind == &kinds::interface) read_.interfaces.push_back(*entry.key);
    entries_.pop_back();
  }
  // Requires: it is a leaf of the innermost entry, or of the document.
  void leaf(const Node& node, const LeafValue& value) {
    read_.leaves.push_back({{path, leafText(node.leaf->type, value)}, &node});
    appendBelow(read_.leaves.back().leaf.path, node.name);
  }
  void fault(std::string_view name, std::string reason, TextPosition position) {
    faults_.push_back({path, std::move(reason), position});
    if (!name.empty()) appendBelow(faults_.back().path, name);
  }

  ReadLeaves takeLeaves() { return std::move(read_); }
  std::vector<Fault> faults() const {
    std::vector<Fault> faults;
    faults.reserve(faults_.size());
    for (const Found& found : faults_) {
      faults.emplace_back(found.path.empty() ? "(document)" : shownWhole(found.path), found.reason,
                          found.position);
    }
    return faults;
  }

 private:
  struct Found {
    std::string path;
    std::string reason;
    TextPosition position;
  };

  std::vector<Entry> entries_;
  ReadLeaves read_;
  std::vector<Found> faults_;
};

// Goes through the events of a document along the nodes. What a fault is about is passed over, and
// the rest is read on.
class Reading {
 public:
  explicit Reading(std::string_view text) : text_(text), stream_(text) {}

  Findings read() {
    const SyntaxFault syntax = parseJson(stream_, *this);
    // A text that ends early leaves entries open.
    while (found_.hasEntries()) found_.close();
    if (!syntax.reason.empty() && !found_.isFull()) {
      found_.path.clear();
      found_.fault("", "not JSON: " + syntax.reason, position(text_, syntax.offset));
    }
    return std::move(found_);
  }

  // ===== The events, by the names that the parser calls. Each returns false once there are too many
  // faults.

  bool Null() { return scalar({}); }
  bool Bool(bool v) { return scalar(v); }
  bool Int(std::int32_t v) { return Int64(v); }
  bool Uint(std::uint32_t v) { return Uint64(v); }
  bool Int64(std::int64_t v) { return v < 0 ? scalar(v) : scalar(static_cast<std::uint64_t>(v)); }
  bool Uint64(std::uint64_t v) { return scalar(v); }
  bool Double(double v) { return scalar(v); }
  bool RawNumber(const char* text, unsigned size, bool copy) { return String(text, size, copy); }
  bool String(const char* text, unsigned size, bool /*copy*/) {
    return scalar(std::string_view(text, size));
  }
  bool Key(const char* text, unsigned size, bool /*copy*/) {
    return passed_ > 0 || member({text, size});
  }
  bool StartObject() {
    if (passed_ > 0 || !fits(Shape::object)) return passOver("an object");
    beginObject();
    return true;
  }
  bool EndObject(unsigned /*members*/) {
    if (passed_ > 0) return endPassing();
    endObject();
    return !found_.isFull();
  }
  bool StartArray() {
    if (passed_ > 0 || !fits(Shape::array)) return passOver("an array");
    const Node& node = *next();
    frames_.push_back({&node, found_.path.size(), true});
    if (node.list != nullptr) appendBelow(found_.path, node.name);
    elements_.clear();
    return true;
  }
  bool EndArray(unsigned /*elements*/) {
    if (passed_ > 0) return endPassing();
    const Node& node = *frames_.back().node;
    found_.path.resize(frames_.back().pathSize);
    frames_.pop_back();
    // A leaf-list without an element is one that isn't there.
    if (node.leaf != nullptr && !elements_.empty()) found_.leaf(node, elements_);
    return true;
  }

 private:
  enum class Shape { object, array, scalar };

  // An object or array that is open.
  struct Frame {
    const Node* node;
    std::size_t pathSize;  // of what is around it
    bool isArray = false;
    bool isEntry = false;
    const Node* member = nullptr;               // whose value comes; null: it is passed over
    std::uint64_t seen = 0;                     // the members that came
    std::unordered_set<std::string> keys = {};  // of a list
  };

  bool isInList() const { return frames_.back().isArray && frames_.back().node->list != nullptr; }
  bool isInLeafList() const { return frames_.back().isArray && !isInList(); }
  // What the value that comes belongs to.
  const Node* next() const {
    if (frames_.empty()) return &nodeTree();
    return frames_.back().isArray ? frames_.back().node : frames_.back().member;
  }
  Shape expected() const {
    if (frames_.empty() || isInList()) return Shape::object;
    if (isInLeafList()) return Shape::scalar;
    const Node& node = *next();
    if (node.list != nullptr) return Shape::array;
    if (node.leaf == nullptr) return Shape::object;
    return node.leaf->type == LeafType::uint8List ? Shape::array : Shape::scalar;
  }
  bool fits(Shape shape) const { return next() != nullptr && expected() == shape; }

  // ===== Objects

  void beginObject() {
    const Node& node = *next();
    const bool isEntry = !frames_.empty() && isInList();
    if (isEntry) found_.open(*node.list, stream_.Tell());
    frames_.push_back({&node, found_.path.size(), false, isEntry});
    if (!isEntry && &node != &nodeTree()) appendBelow(found_.path, node.name);
  }
  void endObject() {
    const bool isEntry = frames_.back().isEntry;
    found_.path.resize(frames_.back().pathSize);
    frames_.pop_back();
    if (!isEntry) return;
    checkKey();
    found_.close();
  }
  void checkKey() {
    const Findings::Entry& entry = found_.entry();
    if (!entry.hasKey) {
      faultAt(entry.offset, "", "the key " + quoted(entry.kind->key) + " is missing");
    } else if (entry.key && !frames_.back().keys.insert(*entry.key).second) {
      faultAt(entry.offset, "", "the same entry twice");
    }
  }
  bool member(std::string_view name) {
    Frame& frame = frames_.back();
    const bool isTop = frame.node == &nodeTree();
    frame.member = isTop ? rootNode(name) : frame.node->child(name);
    if (frame.member == nullptr) {
      return fault(
          shown(name),
          "unknown member" + didYouMeanOf(name, isTop ? rootMembers() : frame.node->childNames()));
    }
    const std::uint64_t bit = std::uint64_t{1} << frame.member->number;
    const bool isTwice = (frame.seen & bit) != 0;
    frame.seen |= bit;
    if (!isTwice) return true;
    frame.member = nullptr;
    return fault(shown(name), "the same member twice");
  }

  // ===== Values

  bool scalar(const JsonScalar& scalar) {
    if (passed_ > 0) return true;
    if (next() == nullptr) return true;
    const Node& node = *next();
    if (!fits(Shape::scalar)) return mismatch(shownScalar(scalar));
    const LeafLimits& limits = node.kind->leaves[node.leaf->leaf].limits;
    const LeafType type = isInLeafList() ? LeafType::uint8 : node.leaf->type;
    const std::optional<LeafValue> value = leafFrom(scalar, type, limits);
    if (!isInLeafList()) return leaf(node, value, scalar);
    return value ? element(static_cast<unsigned>(std::get<std::uint64_t>(*value)))
                 : mismatch(shownScalar(scalar));
  }
  bool leaf(const Node& node, const std::optional<LeafValue>& value, const JsonScalar& scalar) {
    const bool isOfEntry = found_.hasEntries() && node.kind == found_.entry().kind;
    const std::string_view key = isOfEntry ? node.kind->key : std::string_view();
    const bool isKey = isOfEntry && node.leaf->path == key;
    if (isKey) found_.entry().hasKey = true;
    if (!value) return mismatch(shownScalar(scalar));
    found_.leaf(node, *value);
    if (isKey) return keyIs(found_.entry().key, plainText(*value));
    if (isOfEntry && node.leaf->path == "config/" + std::string(key)) {
      return keyIs(found_.entry().configKey, plainText(*value));
    }
    return true;
  }
  // The key of an entry, or the leaf that repeats it: they are the same.
  bool keyIs(std::optional<std::string>& key, std::string text) {
    key = std::move(text);
    const Findings::Entry& entry = found_.entry();
    if (!entry.key || !entry.configKey || *entry.key == *entry.configKey) return true;
    return fault(next()->name, "the entry has the key " + quoted(*entry.key) + " and config/" +
                                   std::string(entry.kind->key) + ' ' + quoted(*entry.configKey));
  }
  bool element(unsigned value) {
    if (std::find(elements_.begin(), elements_.end(), value) != elements_.end()) {
      return fault(next()->name, "the same value twice: " + std::to_string(value));
    }
    elements_.push_back(value);
    return true;
  }

  // ===== Faults

  bool mismatch(const std::string& actual) {
    const bool isNamed = !frames_.empty() && !isInList();
    return fault(isNamed ? std::string_view(next()->name) : "",
                 "expected " + heldHere() + ", not " + actual);
  }
  std::string heldHere() const {
    switch (expected()) {
      case Shape::object:
        return "an object";
      case Shape::array:
        if (next()->list != nullptr) return "an array of objects";
        [[fallthrough]];
      case Shape::scalar:
        break;
    }
    const LeafType type = isInLeafList() ? LeafType::uint8 : next()->leaf->type;
    return heldBy(type, next()->kind->leaves[next()->leaf->leaf].limits);
  }
  bool fault(std::string_view name, std::string reason) {
    return faultAt(stream_.token(), name, std::move(reason));
  }
  bool faultAt(std::size_t offset, std::string_view name, std::string reason) {
    if (!found_.isFull()) found_.fault(name, std::move(reason), position(text_, offset));
    return !found_.isFull();
  }

  // ===== Passing over

  bool passOver(const char* what) {
    const bool isFirst = passed_ == 0;
    ++passed_;
    return !isFirst || next() == nullptr || mismatch(what);
  }
  bool endPassing() {
    --passed_;
    return true;
  }

  std::string_view text_;
  JsonStream stream_;
  Findings found_;
  std::vector<Frame> frames_;
  std::vector<unsigned> elements_;  // of the leaf-list that is open
  std::size_t passed_ = 0;          // how many objects and arrays are open of what is passed over
};

// Stops at the first member that decides.
struct RootFinder : rapidjson::BaseReaderHandler<rapidjson::UTF8<>, RootFinder> {
  bool StartObject() {
    ++depth;
    return true;
  }
  bool EndObject(unsigned /*members*/) {
    --depth;
    return true;
  }
  bool StartArray() { return StartObject(); }
  bool EndArray(unsigned elements) { return EndObject(elements); }
  bool Key(const char* text, unsigned size, bool /*copy*/) {
    const std::string_view name(text, size);
    if (depth != 1) return true;
    isFound = name == qosRoot.member;
    // Members of a native document have no colon.
    return !isFound && name.find(':') != std::string_view::npos;
  }

  int depth = 0;
  bool isFound = false;
};

}  // namespace

DocumentLeaves readDocument(std::string_view text, const ViewOptions& shown) {
  Findings found = Reading(text).read();
  DocumentLeaves document{{}, found.faults()};
  if (document.faults.empty()) document.leaves = shownLeaves(found.takeLeaves(), shown);
  return document;
}

bool isOpenConfig(std::string_view text) {
  JsonStream stream(text);
  RootFinder finder;
  parseJson(stream, finder);
  return finder.isFound;
}

}  // namespace host
