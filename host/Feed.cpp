#include "host/Feed.h"

#include <algorithm>
#include <exception>
#include <optional>
#include <stdexcept>
#include <utility>

#include "host/feed/Images.h"
#include "host/feed/LeafDiffer.h"

namespace host {

struct Feed::Observer {
  OnLeaves onLeaves;
  OnRecords onRecords;
  std::optional<LeafDiffer> differ;  // of one that wants leaves
  bool isNew = true;                 // its next call brings everything
  bool hasEnded = false;
  bool isRunning = false;
};

Feed::Subscription& Feed::Subscription::operator=(Subscription&& other) noexcept {
  if (this == &other) return *this;
  end();
  observer_ = std::move(other.observer_);
  return *this;
}

void Feed::Subscription::end() {
  const auto observer = observer_.lock();
  observer_.reset();
  if (!observer) return;
  observer->hasEnded = true;
  if (observer->isRunning) return;  // what it holds goes with the next commit
  observer->onLeaves = nullptr;
  observer->onRecords = nullptr;
}

Feed::Feed(const Model& model) : model_(model), images_(std::make_unique<Images>()) {}

Feed::~Feed() {
  if (isAttached_) model_.journalIs(nullptr);
}

const Model& Feed::committed() const { return images_->model(); }

Feed::Subscription Feed::onLeaves(LeafRequest request, OnLeaves observer) {
  auto made = std::make_shared<Observer>();
  made->onLeaves = std::move(observer);
  made->differ.emplace(std::move(request));
  observers_.push_back(made);
  return Subscription(made);
}

Feed::Subscription Feed::onRecords(OnRecords observer) {
  auto made = std::make_shared<Observer>();
  made->onRecords = std::move(observer);
  observers_.push_back(made);
  return Subscription(made);
}

void Feed::commit() {
  if (isCommitting_) throw std::logic_error("a commit in a commit");
  if (!isAttached_ && model_.pfc->hasJournal()) throw std::logic_error("the model has a feed");
  isCommitting_ = true;
  struct End {
    bool& isCommitting;
    ~End() { isCommitting = false; }
  } const end{isCommitting_};
  std::erase_if(observers_, [](const auto& observer) { return observer->hasEnded; });
  // Without those that join during the calls. Made before the changes are taken: behind that, a call
  // that is missed is a hole.
  const std::vector<std::shared_ptr<Observer>> observers = observers_;
  const Taken taken = takeChanges();
  std::exception_ptr first;
  for (const auto& observer : observers) {
    if (observer->hasEnded) continue;
    observer->isRunning = true;
    try {
      call(*observer, taken);
    } catch (...) {
      if (!first) first = std::current_exception();
    }
    observer->isRunning = false;
  }
  if (first) std::rethrow_exception(first);
}

// While the images are not in step, all is compared and each observer begins anew.
Feed::Taken Feed::takeChanges() {
  const bool wasWhole = std::exchange(isWhole_, false);
  const std::vector<QosOc::Config::Journal::Mark> marks = journal_.taken();
  if (!wasWhole) {
    for (const auto& observer : observers_) observer->isNew = true;
    model_.journalIs(&journal_);
    isAttached_ = true;
  }
  Taken taken;
  taken.changes = wasWhole ? images_->update(model_, marks) : images_->updateAll(model_);
  const bool isAnyNew = std::any_of(observers_.begin(), observers_.end(),
                                    [](const auto& observer) { return observer->isNew; });
  if (isAnyNew) taken.allLeftOut = leftOutOf(model_);
  isWhole_ = true;
  return taken;
}

void Feed::call(Observer& observer, const Taken& taken) {
  const bool isNew = std::exchange(observer.isNew, true);
  if (observer.onLeaves) {
    const LeafChanges leaves = isNew ? observer.differ->all(images_->model(), taken.allLeftOut)
                                     : observer.differ->of(taken.changes, images_->model());
    observer.isNew = false;
    observer.onLeaves(leaves);
  } else if (isNew) {
    RecordChanges all = images_->all();
    all.leftOut = taken.allLeftOut;
    observer.isNew = false;
    observer.onRecords(all);
  } else {
    observer.isNew = false;
    observer.onRecords(taken.changes);
  }
}

}  // namespace host
