#include "tests/days/Follower.h"

#include <algorithm>
#include <optional>

#include "host/feed/Images.h"
#include "host/openconfig/Leaves.h"

namespace days {

using host::LeafChanges;
using host::RecordChange;
using host::RecordChanges;

namespace {

// The paths of the nodes from the outermost entry of a list down to a leaf; without a list, from
// the child of the root.
std::vector<std::string> nodesOf(const std::string& path) {
  std::vector<std::string> nodes;
  std::size_t ofList = 0;
  bool isInKey = false;
  for (std::size_t i = 1; i <= path.size(); ++i) {
    const char c = i < path.size() ? path[i] : '/';
    if (isInKey && c == '\\') {
      ++i;
    } else if (isInKey) {
      isInKey = c != ']';
    } else if (c == '[') {
      isInKey = true;
      if (ofList == 0) ofList = nodes.size() + 1;
    } else if (c == '/') {
      nodes.push_back(path.substr(0, i));
    }
  }
  const std::size_t above = ofList != 0 ? ofList - 1 : 1;
  nodes.erase(nodes.begin(), nodes.begin() + static_cast<std::ptrdiff_t>(above));
  return nodes;
}

bool isBelow(const std::string& path, const std::string& node) {
  return path == node || path.starts_with(node + '/');
}

bool isThere(const Leaves& leaves, const std::string& node) {
  if (leaves.contains(node)) return true;
  const auto below = leaves.lower_bound(node + '/');
  return below != leaves.end() && isBelow(below->first, node);
}

Leaves leavesOf(const host::Model& model, const host::View& view, const host::Subtree& only) {
  Leaves leaves;
  for (auto& [path, value] : host::leavesOf(model, view, nullptr, only)) {
    leaves.emplace(std::move(path), std::move(value));
  }
  return leaves;
}

std::string told(const std::vector<std::string>& deleted, const Leaves& updated) {
  std::string text;
  for (const std::string& node : deleted) text += "\n  - " + node;
  for (const auto& [path, value] : updated) text += "\n  + " + path + ' ' + value;
  return text;
}

}  // namespace

Expected::Expected(const Leaves& before, const Leaves& after, const host::Subtree& only) {
  for (const auto& [path, value] : before) {
    if (after.contains(path)) continue;
    for (const std::string& node : nodesOf(path)) {
      if (!only.within(node) || isThere(after, node)) continue;
      if (deleted.empty() || deleted.back() != node) deleted.push_back(node);
      break;
    }
  }
  std::sort(deleted.begin(), deleted.end());
  deleted.erase(std::unique(deleted.begin(), deleted.end()), deleted.end());
  for (const auto& [path, value] : after) {
    const auto was = before.find(path);
    if (was == before.end() || was->second != value) updated.emplace(path, value);
  }
}

// ===== Leaves

class Follower::LeafConsumer {
 public:
  LeafConsumer(host::Feed& feed, const host::LeafRequest& request)
      : request_(request),
        view_(request.view),
        subscription_(feed.onLeaves(request, [this](const auto& changes) {
          ++calls_;
          hear(changes);
        })) {}

  std::string check(const host::Model& model) {
    if (std::exchange(calls_, 0) != 1) return "an observer was not called once in a commit";
    const Leaves now = ::days::leavesOf(model, view_, request_.only);
    if (std::exchange(wasWhole_, false)) {
      known_ = now;
      return updated_ == now ? "" : "the whole is" + told({}, updated_) + "\nnot" + told({}, now);
    }
    const Expected expected(known_, now, request_.only);
    known_ = now;
    if (deleted_ == expected.deleted && updated_ == expected.updated) return {};
    return "the feed says" + told(deleted_, updated_) + "\nnot" +
           told(expected.deleted, expected.updated);
  }

 private:
  void hear(const LeafChanges& changes) {
    wasWhole_ = changes.isWhole;
    deleted_ = changes.deleted;
    updated_.clear();
    for (const auto& [path, type, value] : changes.updated) {
      updated_.emplace(path, host::leafText(type, value));
    }
  }

  host::LeafRequest request_;
  host::View view_;
  Leaves known_;
  std::vector<std::string> deleted_;
  Leaves updated_;
  bool wasWhole_ = false;
  int calls_ = 0;
  host::Feed::Subscription subscription_;
};

// ===== Records

class Follower::RecordConsumer {
 public:
  explicit RecordConsumer(host::Feed& feed)
      : subscription_(feed.onRecords([this](const auto& changes) { hear(changes); })) {}

  std::string check(const host::Model& model) {
    host::Images fresh;
    fresh.updateAll(model);
    const RecordChanges all = fresh.all();
    for (const RecordChange& record : all.changes) {
      const auto known = known_.find(pathOf(record));
      if (known == known_.end()) return "a record is not known: " + pathOf(record);
      if (!record.kind->store.areEqual(known->second.get(), record.after)) {
        return "a record is known as another one: " + pathOf(record);
      }
    }
    if (known_.size() != all.changes.size()) return "a record that went is still known";
    return wrong_;
  }

 private:
  void hear(const RecordChanges& changes) {
    if (changes.isWhole) known_.clear();
    for (const RecordChange& change : changes.changes) apply(change);
  }
  void apply(const RecordChange& change) {
    const std::string path = pathOf(change);
    const auto known = known_.find(path);
    const bool agree = known == known_.end() ? change.before == nullptr
                                             : change.before != nullptr &&
                                                   change.kind->store.areEqual(known->second.get(),
                                                                               change.before.get());
    if (!agree) wrong_ = "a change begins with another record than is known: " + path;
    if (change.after != nullptr) {
      known_[path] = change.kind->store.copy(change.after);
    } else {
      std::erase_if(known_, [&](const auto& record) { return isBelow(record.first, path); });
    }
  }
  static std::string pathOf(const RecordChange& change) {
    std::string path;
    for (const RecordKind* kind = change.kind; kind != nullptr; kind = kind->parent) {
      path = '/' + std::string(kind->path) + '[' + kind->store.keyText(change.keys) + ']' + path;
    }
    return path;
  }

  using RecordKind = host::RecordKind;
  std::map<std::string, std::shared_ptr<const void>> known_;
  std::string wrong_;
  host::Feed::Subscription subscription_;
};

// ===== All

Follower::Follower(const host::Model& model)
    : model_(model), feed_(model), records_(std::make_unique<RecordConsumer>(feed_)) {
  const host::ViewOptions other{.augments = false, .state = true, .interfaceRef = true};
  const auto add = [&](const host::LeafRequest& request) {
    consumers_.push_back(std::make_unique<LeafConsumer>(feed_, request));
  };
  add({});
  add({.view = other});
  add({.only = host::Subtree("/qos/classifiers/classifier[name=edge-in]/terms")});
  add({.only = host::Subtree("/qos/classifiers/classifier[name=edge-in]/terms/term")});
  add({.only = host::Subtree("/qos/interfaces/interface[interface-id=Ethernet1]/output")});
}

Follower::~Follower() = default;

std::string Follower::commit() {
  feed_.commit();
  std::string wrong = records_->check(model_);
  for (const auto& consumer : consumers_) {
    if (wrong.empty()) wrong = consumer->check(model_);
  }
  // Another one takes the place of the late consumer now and then: it is checked at its first commit
  // and at those behind it.
  constexpr std::size_t commitsOfALateOne = 3;
  if (++commits_ % commitsOfALateOne == 0) {
    late_ = std::make_unique<LeafConsumer>(feed_, host::LeafRequest{});
  } else if (late_ && wrong.empty()) {
    wrong = late_->check(model_);
  }
  return wrong;
}

}  // namespace days
