// The tx queues of a device's interfaces, found by comment key and by id, and what is kept of each:
// what the translators of comments share.
#pragma once

#include <algorithm>
#include <cstdint>
#include <tuple>
#include <vector>

#include "QosOpenConfig/QosOpenConfigHelperComments.h"
#include "Rok/Rok.h"
#include "models/native/Values.h"
#include "models/openconfig/Interface.h"

namespace QosOc::Helper {

// What is kept of one tx queue: the key of its comment, what that named last, and the interface in
// the output that it writes to.
class TxQueueMemo {
 public:
  // ofRoot: see CommentMemo.
  TxQueueMemo(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue, CommentMemo& ofRoot)
      : interfaceId_(intfId.stringValue()),
        commentKey_(Helper::commentKey(intfId, txQueue)),
        comment_(ofRoot) {}

  const Velmo::String& commentKey() const { return commentKey_; }
  // What the queue's comment names, kept while its text stays the same.
  CommentMemo& comment() { return comment_; }
  // The interface, or null when there is none.
  Config::Interface* interface(const Config::InterfacesDir& dir) {
    const auto* found = foundInterface_.in(dir.interface(), interfaceId_);
    return found != nullptr ? found->get() : nullptr;
  }
  // The same, made if there is none.
  Config::Interface& interfaceIs(Config::InterfacesDir& dir) {
    Config::Interface* found = interface(dir);
    return found != nullptr ? *found : *dir.interfaceIs(interfaceId_);
  }

 private:
  Velmo::String interfaceId_;
  Velmo::String commentKey_;
  CommentMemo comment_;
  Rok::Found foundInterface_;
};

// All machines of tx queues below one root. It finds what a walk over all interfaces and their tx
// queues would find, at a cost that doesn't depend on the others.
//
// TxQueueSm: the machine of a tx queue, with intfId(), txQueue() and entry().
template <class TxQueueSm, std::uint32_t keySeed, std::uint32_t idSeed>
class TxQueues {
 public:
  using ByCommentKey = Rok::Index<Velmo::String, TxQueueSm, keySeed>;
  using ByTxQueueId = Rok::Index<Qos::TxQueueId, TxQueueSm, idSeed>;

  // A machine's place here, a member of it.
  class Entry {
   public:
    Entry(TxQueues& all, const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue, TxQueueSm& sm)
        : memo_(intfId, txQueue, all.commentMemo_),
          byCommentKey_(all.byCommentKey_, memo_.commentKey(), sm),
          byTxQueueId_(all.byTxQueueId_, txQueue.id, sm) {}

    // What is kept of the tx queue.
    TxQueueMemo& memo() { return memo_; }
    const TxQueueMemo& memo() const { return memo_; }

   private:
    friend TxQueues;

    TxQueueMemo memo_;
    // Its place in the tree.
    Rok::Found foundIntf_;
    Rok::Found foundTxQueue_;
    typename ByCommentKey::Entry byCommentKey_;
    typename ByTxQueueId::Entry byTxQueueId_;
  };

  const Rok::Ptr<ByCommentKey>& byCommentKey() const { return byCommentKey_; }
  const Rok::Ptr<ByTxQueueId>& byTxQueueId() const { return byTxQueueId_; }
  // The comment that the root read last. The memos of the tx queues look here first, since the root
  // is notified of a comment before them.
  CommentMemo& commentMemo() { return commentMemo_; }

  // Calls act(machine) for each tx queue whose comment has that key, in the order of a walk over
  // all: several have it where interfaces share a short name. Such a walk computes the key of each
  // tx queue, and a trace shows that. The call removes no tx queue.
  template <class IntfSms, class Act>
  void eachOfComment(const IntfSms& intfSms, const Velmo::String& key, const Act& act) const {
    TxQueueSm* first = nullptr;
    bool several = false;
    eachIn(*byCommentKey_, intfSms, key, [&](TxQueueSm& sm) {
      several = several || first != nullptr;
      first = &sm;
    });
    if (several || keysAreTraced()) return eachInWalk(intfSms, key, act);
    if (first != nullptr) act(*first);
  }
  // Calls act(machine) for each tx queue of that id, of either type.
  template <class IntfSms, class Act>
  void eachOfId(const IntfSms& intfSms, Qos::TxQueueId id, const Act& act) const {
    eachIn(*byTxQueueId_, intfSms, id, act);
  }

 private:
  template <class Index, class IntfSms, class Key, class Act>
  static void eachIn(const Index& index, const IntfSms& intfSms, const Key& key, const Act& act) {
    index.each(key, [&](TxQueueSm& sm) {
      if (isInTree(intfSms, sm)) act(sm);
    });
  }
  // A machine outside the tree, made by a factory of its own or held after the tree released it, is
  // in the index, but the root doesn't call it.
  template <class IntfSms>
  static bool isInTree(const IntfSms& intfSms, TxQueueSm& sm) {
    Entry& entry = sm.entry();
    const auto* intf = entry.foundIntf_.in(intfSms.map(), sm.intfId());
    if (intf == nullptr) return false;
    const auto* found = entry.foundTxQueue_.in((*intf)->txQueueSm().map(), sm.txQueue());
    return found != nullptr && found->get() == &sm;
  }

  // Calls act for what the index finds, in the order of the walk, and traces its lines in between.
  template <class IntfSms, class Act>
  void eachInWalk(const IntfSms& intfSms, const Velmo::String& key, const Act& act) const {
    const TxQueueSm* last = nullptr;
    for (TxQueueSm* sm : inWalkOrder(intfSms, key)) {
      traceWalk(intfSms, last, sm);
      last = sm;
      act(*sm);
    }
    traceWalk(intfSms, last, nullptr);
  }
  template <class IntfSms>
  std::vector<TxQueueSm*> inWalkOrder(const IntfSms& intfSms, const Velmo::String& key) const {
    std::vector<TxQueueSm*> found;
    eachIn(*byCommentKey_, intfSms, key, [&](TxQueueSm& sm) { found.push_back(&sm); });
    std::ranges::sort(found, {}, [&](const TxQueueSm* sm) {
      const auto& intf = intfSms.child(sm->intfId());
      return std::tuple{intfSms.map().walkPlace(sm->intfId()),
                        intf->txQueueSm().map().walkPlace(sm->txQueue())};
    });
    return found;
  }
  // Traces the walk from behind one tx queue up to another; null stands for its ends.
  template <class IntfSms>
  static void traceWalk(const IntfSms& intfSms, const TxQueueSm* from, const TxQueueSm* to) {
    if (!keysAreTraced()) return;
    bool isBehind = from == nullptr;
    for (const auto& [intfId, intf] : intfSms.map()) {
      for (const auto& [txQueue, sm] : intf->txQueueSm().map()) {
        if (isBehind) traceCommentKey(intfId, txQueue);
        if (isBehind && sm.get() == to) return;
        isBehind = isBehind || sm.get() == from;
      }
    }
  }

  Rok::Ptr<ByCommentKey> byCommentKey_ = Rok::make<ByCommentKey>();
  Rok::Ptr<ByTxQueueId> byTxQueueId_ = Rok::make<ByTxQueueId>();
  CommentMemo commentMemo_;
};

}  // namespace QosOc::Helper
