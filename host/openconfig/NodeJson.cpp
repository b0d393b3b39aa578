#include "host/openconfig/NodeJson.h"

#include "host/Text.h"

namespace host {
namespace {

// Most texts hold nothing that JSON escapes.
void appendText(std::string& out, std::string_view text) {
  if (plainPrefix(text) == text.size()) {
    out += '"';
    out += text;
    out += '"';
  } else {
    JsonWriter writer(Layout::compact);
    writer.text(text);
    out += writer.take();
  }
}

void appendList(std::string& out, const std::vector<unsigned>& list) {
  char before = '[';
  for (const unsigned element : list) {
    out += before;
    out += std::to_string(element);
    before = ',';
  }
  out += ']';
}

void appendNumber(std::string& out, bool isText, std::uint64_t number) {
  if (isText) out += '"';
  out += std::to_string(number);
  if (isText) out += '"';
}

}  // namespace

std::string_view identityName(std::string_view identity) {
  return identity.substr(identity.find(':') + 1);
}

void appendLeaf(std::string& out, JsonStyle style, LeafType type, const LeafValue& value) {
  const bool isIetf = style == JsonStyle::ietf;
  if (const auto* boolean = std::get_if<bool>(&value)) {
    out += *boolean ? "true" : "false";
  } else if (const auto* number = std::get_if<std::uint64_t>(&value)) {
    appendNumber(out, isIetf && type == LeafType::uint64, *number);
  } else if (const auto* list = std::get_if<std::vector<unsigned>>(&value)) {
    appendList(out, *list);
  } else if (isIetf || (type != LeafType::decimal64 && type != LeafType::identityref)) {
    appendText(out, *textOf(value));
  } else if (type == LeafType::decimal64) {
    out += *textOf(value);
  } else {
    appendText(out, identityName(*textOf(value)));
  }
}

NodeJson::NodeJson(const View& view, JsonStyle style, std::size_t depth)
    : view_(view), style_(style), depth_(depth) {
  out_.beginObject();
}

void NodeJson::add(const RecordAt& at, RowSet rows) {
  steps_.clear();
  addSteps(at.kind, at.keys);
  const std::size_t record = steps_.size();
  const auto all = view_.rows(at.kind);
  for (std::size_t i = 0; i < all.size(); ++i) {
    if ((rows >> i & 1) == 0) continue;
    const LeafValue value = at.leaf(all[i].leaf);
    if (isAbsent(value)) continue;
    std::string_view path = all[i].path;
    while (!path.empty()) addStep(takeName(path));
    openTo(steps_.size() - 1);
    key(steps_.back(), steps_.size() - 1);
    text_.clear();
    appendLeaf(text_, style_, all[i].type, value);
    out_.raw(text_);
    steps_.resize(record);
    isEmpty_ = false;
  }
}

std::string NodeJson::take() {
  closeTo(0);
  out_.endObject();
  return out_.take();
}

void NodeJson::addSteps(const RecordKind& kind, std::span<const std::string_view> keys) {
  const auto above = kind.isList() ? keys.first(keys.size() - 1) : keys;
  if (kind.parent != nullptr) {
    addSteps(*kind.parent, above);
  } else {
    const std::string_view member = kind.root->member;
    steps_.push_back({identityName(member), member.substr(0, member.find(':'))});
  }
  std::string_view path = kind.path;
  while (!path.empty()) addStep(takeName(path));
  if (!kind.isList()) return;
  steps_.back().isEntry = true;
  steps_.back().key = keys.back();
}

void NodeJson::addStep(std::string_view name) {
  const std::size_t colon = name.find(':');
  if (colon == std::string_view::npos) {
    steps_.push_back({name, {}});
  } else {
    steps_.push_back({name.substr(colon + 1), name.substr(0, colon)});
  }
}

// Closes what the leaf is not in, and opens what it is in.
void NodeJson::openTo(std::size_t depth) {
  std::size_t level = depth_;
  const auto isOpen = [&] {
    if (level - depth_ >= open_.size() || level >= depth) return false;
    const Open& open = open_[level - depth_];
    return open.name == steps_[level].name && open.key == steps_[level].key;
  };
  while (isOpen()) ++level;
  const std::size_t shared = level - depth_;
  if (level < depth && shared < open_.size() && open_[shared].isEntry &&
      open_[shared].name == steps_[level].name) {
    // The next entry of the same list.
    closeTo(shared + 1);
    out_.endObject();
    out_.beginObject();
    open_.back().key = steps_[level++].key;
  } else {
    closeTo(shared);
  }
  for (; level < depth; ++level) open(steps_[level], level);
}

void NodeJson::open(const Step& step, std::size_t level) {
  key(step, level);
  if (step.isEntry) out_.beginArray();
  out_.beginObject();
  open_.push_back({step.name, step.isEntry, std::string(step.key)});
}

void NodeJson::closeTo(std::size_t level) {
  for (; open_.size() > level; open_.pop_back()) {
    out_.endObject();
    if (open_.back().isEntry) out_.endArray();
  }
}

void NodeJson::key(const Step& step, std::size_t level) {
  const std::string_view module = level == depth_ ? moduleAt(level) : step.module;
  if (style_ == JsonStyle::plain || module.empty()) return out_.key(step.name);
  text_ = module;
  text_ += ':';
  text_ += step.name;
  out_.key(text_);
}

// The module that an element is of: the one that the last name before it carries, or its own.
std::string_view NodeJson::moduleAt(std::size_t level) const {
  while (steps_[level].module.empty()) --level;
  return steps_[level].module;
}

}  // namespace host
