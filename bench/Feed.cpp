// What one change of a leaf costs a consumer that wants to know what changed: a line of the feed,
// beside a differ that gets the whole document after each change, and beside a data tree of libyang
// that is compared with its copy. The same change in all: a term gets another target group.
#include "host/Feed.h"

#include <rapidjson/document.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "host/OpenConfigJson.h"
#include "host/feed/FeedLine.h"
#include "support/Check.h"
#include "support/Child.h"
#include "support/ClassificationDevice.h"
#include "support/Comparisons.h"
#include "support/Order.h"
#include "support/OutputModel.h"
#include "support/Seconds.h"
#include "support/Series.h"
#include "support/Sizes.h"
#ifdef QOS_BENCH_LIBYANG
#include "support/LibyangTree.h"
#endif

namespace Bench {
namespace {

constexpr std::size_t largestSize = 100'000;   // a differ takes a second there
constexpr std::size_t linesWanted = 10'000;    // in each repetition
constexpr std::size_t leavesWanted = 300'000;  // that a differ compares in each repetition

// Seconds of one change.
struct Costs {
  double alone[repetitions];
  double commit[repetitions];  // with the change
  double line[repetitions];    // the same, and the line of the feed
  double differ[repetitions];
  double libyang[repetitions];
};

// ===== The differ

using Json = rapidjson::Value;

std::size_t differences(const Json& a, const Json& b);

std::size_t memberDifferences(const Json& a, const Json& b) {
  require(a.MemberCount() == b.MemberCount(), "a change of members");
  std::size_t count = 0;
  for (auto i = a.MemberBegin(), j = b.MemberBegin(); i != a.MemberEnd(); ++i, ++j) {
    require(i->name == j->name, "a change of members");
    count += differences(i->value, j->value);
  }
  return count;
}

std::size_t elementDifferences(const Json& a, const Json& b) {
  require(a.Size() == b.Size(), "a change of entries");
  std::size_t count = 0;
  for (rapidjson::SizeType i = 0; i < a.Size(); ++i) count += differences(a[i], b[i]);
  return count;
}

// Of two documents with the same entries in the same order: a differ that has to look for an entry
// takes longer.
std::size_t differences(const Json& a, const Json& b) {
  if (a.IsObject() && b.IsObject()) return memberDifferences(a, b);
  if (a.IsArray() && b.IsArray()) return elementDifferences(a, b);
  return a == b ? 0 : 1;
}

// Gets the whole document after each change.
class Differ {
 public:
  explicit Differ(const host::Model& model) : model_(model), known_(parsed()) {}

  std::size_t changedLeaves() {
    std::unique_ptr<rapidjson::Document> now = parsed();
    const std::size_t count = differences(*known_, *now);
    known_ = std::move(now);
    return count;
  }

 private:
  std::unique_ptr<rapidjson::Document> parsed() {
    const std::string text = json_.json(model_, host::Layout::compact);
    auto document = std::make_unique<rapidjson::Document>();
    document->Parse(text.data(), text.size());
    require(!document->HasParseError(), "a document of the model");
    return document;
  }

  const host::Model& model_;
  host::OpenConfigJson json_{[](const std::string& /*warning*/) {}};
  std::unique_ptr<rapidjson::Document> known_;
};

// ===== All ways, on one device

class FeedTimes {
 public:
  explicit FeedTimes(std::size_t classMaps) : size_(classMaps), device_(classMaps) {
    device_.start();
    model_ = outputOf(device_);
    changes_ = std::clamp<std::size_t>(leavesWanted / (4 * classMaps), 1, 100);
#ifdef QOS_BENCH_LIBYANG
    tree_.buildTyped(classMaps, LibyangTree::Terms::whole);
    tree_.keep();
    paths_ = tree_.groupPaths(classMaps);
#endif
  }

  Costs run() {
    Costs costs{};
    for (std::size_t i = 0; i < repetitions; ++i) {
      costs.alone[i] = perChange(linesWanted, [&](const auto& change) { alone(change); });
      follow([&] {
        costs.commit[i] = perChange(linesWanted, [&](const auto& change) { commit(change); });
        costs.line[i] = perChange(linesWanted, [&](const auto& change) { line(change); });
      });
      Differ differ(model_);
      costs.differ[i] = perChange(changes_, [&](const auto& change) {
        device_.changeAction(change);
        require(differ.changedLeaves() == 1, "what a differ finds");
      });
#ifdef QOS_BENCH_LIBYANG
      costs.libyang[i] = libyangDiff();
#endif
    }
    device_.check();
    return costs;
  }

 private:
  // Random terms, as often as it takes.
  template <class Perform>
  double perChange(std::size_t count, const Perform& perform) {
    std::vector<ClassificationDevice::Change> changes;
    changes.reserve(count);
    while (changes.size() < count) {
      for (const std::size_t number : shuffledTerms(size_, random_)) {
        if (changes.size() < count) changes.push_back(ClassificationDevice::change(number));
      }
    }
    const double start = threadSeconds();
    for (const auto& change : changes) perform(change);
    return (threadSeconds() - start) / static_cast<double>(changes.size());
  }

  template <class Act>
  void follow(const Act& act) {
    host::Feed feed(model_);
    feed_ = &feed;
    const auto subscription =
        feed.onLeaves({}, [this](const host::LeafChanges& changes) { received(changes); });
    feed.commit();
    act();
    feed_ = nullptr;
  }
  void received(const host::LeafChanges& changes) {
    if (changes.isWhole) return;
    require(changes.deleted.empty() && changes.updated.size() == 1, "what a feed says");
    if (isWriting_) text_ = host::feedLine({1}, changes);
  }

  void alone(const ClassificationDevice::Change& change) { device_.changeAction(change); }
  void commit(const ClassificationDevice::Change& change) {
    device_.changeAction(change);
    feed_->commit();
  }
  void line(const ClassificationDevice::Change& change) {
    text_.clear();
    isWriting_ = true;
    commit(change);
    isWriting_ = false;
    require(text_.find("/config/target-group\":\"") != std::string::npos, "a line of the feed");
  }

#ifdef QOS_BENCH_LIBYANG
  // The change of the tree, and the diff. The copy follows uncounted.
  double libyangDiff() {
    double seconds = 0;
    for (std::size_t i = 0; i < changes_; ++i) {
      const std::string& path = paths_[next_++ % paths_.size()];
      const char* group = next_ / paths_.size() % 2 == 0 ? "group-1" : "group-2";
      const double start = threadSeconds();
      tree_.change(path, group);
      const std::size_t changed = tree_.changedSinceKept();
      seconds += threadSeconds() - start;
      require(changed == 1, "what libyang finds");
      tree_.changeKept(path, group);
    }
    return seconds / static_cast<double>(changes_);
  }

  LibyangTree tree_;
  std::vector<std::string> paths_;
  std::size_t next_ = 0;
#endif

  std::size_t size_;
  std::size_t changes_;  // that a differ finds in each repetition
  ClassificationDevice device_;
  host::Model model_;
  host::Feed* feed_ = nullptr;
  bool isWriting_ = false;
  std::string text_;
  Random random_{5};
};

Costs costs(std::size_t classMaps) { return FeedTimes(classMaps).run(); }

constexpr const char* alone = "change of a leaf";
constexpr const char* commit = "change and commit";
constexpr const char* line = "change and line of the feed";
constexpr const char* differ = "change, whole document and differ";
constexpr const char* libyangDiff = "libyang edit and diff";

}  // namespace

void feed(Comparisons& comparisons) {
  comparisons.subject("Feed");
  for (const std::size_t size : sizes()) {
    if (size > largestSize) continue;
    std::vector<std::string> names = {alone, commit, line, differ};
#ifdef QOS_BENCH_LIBYANG
    names.push_back(libyangDiff);
#endif
    registerTogether(names, size, [=] {
      const Costs all = inChild<costs>(size);
      Measured measured;
      const auto add = [&](const char* name, const double* seconds) {
        measured[at(name, size)].seconds = {seconds, seconds + repetitions};
      };
      add(alone, all.alone);
      add(commit, all.commit);
      add(line, all.line);
      add(differ, all.differ);
      add(libyangDiff, all.libyang);
      return measured;
    });
    comparisons.add(at(commit, size), at(alone, size));
    comparisons.add(at(line, size), at(line, 1000));
    for (const char* rival : {differ, libyangDiff}) {
      comparisons.add(at(rival, size), at(line, size));
    }
  }
}

}  // namespace Bench
