// OVERVIEW
//   Says what changed in an output model since the last commit, to any number of observers: leaf by
//   leaf, as paths and values, or record by record. The roots write the model as ever; the host
//   calls `commit` where a change is complete (after each change line, or each transaction).
//   A commit costs what was written since the last one and not what is there.
//
// RULES
//   - The first call of an observer brings everything that is there, as whole changes; each later
//     one the difference to the call before. So an observer may join at any commit, and has no hole.
//   - Every observer is called at every commit, also when nothing changed.
//   - What came and went between two commits is in neither. What went and came back is there as the
//     difference alone. The removal of an entry covers what was below it.
//   - Observers are called in the order in which they joined. An observer may end subscriptions,
//     its own included: an ended one isn't called any more. One that joins during a commit is
//     called from the next one on. A `commit` from an observer throws std::logic_error.
//   - An observer may write native objects. What that changes belongs to the next commit.
//   - An exception that leaves an observer keeps nothing from the others: they are called first,
//     and the first exception then leaves `commit`. The changes count as delivered.
//   - When memory runs out in `commit`, the exception leaves it, and the next call of each observer
//     brings everything again.
//   - One feed for a model: the first commit of a second one throws std::logic_error.
//   - A subscription may outlive the feed. No observer may end the feed's life.
//   - The feed holds the model's directories. What it gives of them, `committed` too, is to be read
//     and not to be written.
//
// EXAMPLE
//   host::Feed feed(model);
//   std::map<std::string, std::string> known;  // leaves, by their paths
//   const auto leaves = feed.onLeaves({}, [&](const host::LeafChanges& changes) {
//     if (changes.isWhole) known.clear();
//     for (const std::string& node : changes.deleted) {
//       std::erase_if(known, [&](const auto& leaf) {
//         return leaf.first == node || leaf.first.starts_with(node + '/');
//       });
//     }
//     for (const auto& [path, type, value] : changes.updated) {
//       known[path] = host::leafText(type, value);
//     }
//   });
//   std::vector<std::string> newQueues;
//   const auto records = feed.onRecords([&](const host::RecordChanges& changes) {
//     for (const host::RecordChange& change : changes.changes) {
//       const auto* queue = change.is<QosOc::Config::Queue>();
//       if (queue != nullptr && change.before == nullptr) newQueues.push_back(queue->name.data());
//     }
//   });
//   feed.commit();
//   model.queues->qIs(QosOc::Config::Queue("voice"));  // as a root would
//   feed.commit();
//   assert(known["/qos/queues/queue[name=voice]/name"] == "\"voice\"");
//   assert(newQueues == std::vector<std::string>{"voice"});
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Dorpel/Export.h"
#include "host/Model.h"
#include "host/feed/LeafChanges.h"
#include "host/feed/RecordChange.h"
#include "models/openconfig/Journal.h"

namespace QOS_EXPORT host {

class Images;

class Feed {
  struct Observer;

 public:
  using OnLeaves = std::function<void(const LeafChanges& changes)>;
  using OnRecords = std::function<void(const RecordChanges& changes)>;

  // Ends with its life: the observer isn't called any more.
  class [[nodiscard]] Subscription {
   public:
    Subscription() = default;
    ~Subscription() { end(); }
    Subscription(Subscription&&) = default;
    Subscription& operator=(Subscription&& other) noexcept;
    void end();

   private:
    friend class Feed;
    explicit Subscription(std::weak_ptr<Observer> observer) : observer_(std::move(observer)) {}
    std::weak_ptr<Observer> observer_;
  };

  // The model may hold something already.
  explicit Feed(const Model& model);
  ~Feed();
  Feed(const Feed&) = delete;
  Feed& operator=(const Feed&) = delete;

  // From the next commit on, until the subscription ends. `request` says which leaves.
  Subscription onLeaves(LeafRequest request, OnLeaves observer);
  // The same by records, all of them.
  Subscription onRecords(OnRecords observer);

  // Throws: what left an observer; std::bad_alloc.
  void commit();

  // The model as the last commit left it: entries and records that the document holds, and no
  // other. Empty before the first commit.
  const Model& committed() const;

 private:
  struct Taken {
    RecordChanges changes;
    std::vector<LeftOutEntry> allLeftOut;  // for those whose call brings everything
  };

  Taken takeChanges();
  void call(Observer& observer, const Taken& taken);

  const Model model_;  // the directories, which others hold too
  QosOc::Config::Journal journal_;
  const std::unique_ptr<Images> images_;
  bool isAttached_ = false;  // to the model, since the first commit
  bool isCommitting_ = false;
  bool isWhole_ = false;  // the images hold all that the journal doesn't mark
  std::vector<std::shared_ptr<Observer>> observers_;
};

}  // namespace host
