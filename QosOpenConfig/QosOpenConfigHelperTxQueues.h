// The tx queues of a device's interfaces, found by comment key and by id: what the translators of
// comments share.
#pragma once

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "Rok/Rok.h"
#include "models/native/Values.h"

namespace QosOc::Helper {

// All machines of tx queues below one root. It finds what a walk over all interfaces and their tx
// queues would find, at a cost that doesn't depend on the others.
//
// TxQueueSm: the machine of a tx queue, with intfId() and txQueue().
template <class TxQueueSm, std::uint32_t keySeed, std::uint32_t idSeed>
class TxQueues {
 public:
  using ByCommentKey = Rok::Index<Velmo::String, TxQueueSm, keySeed>;
  using ByTxQueueId = Rok::Index<Qos::TxQueueId, TxQueueSm, idSeed>;

  // A machine's place here, a member of it, which keeps the key of its comment.
  class Entry {
   public:
    Entry(const TxQueues& all, const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue,
          TxQueueSm& sm)
        : commentKey_(Helper::commentKey(intfId, txQueue)),
          byCommentKey_(all.byCommentKey_, commentKey_, sm),
          byTxQueueId_(all.byTxQueueId_, txQueue.id, sm) {}

    const Velmo::String& commentKey() const { return commentKey_; }

   private:
    Velmo::String commentKey_;
    typename ByCommentKey::Entry byCommentKey_;
    typename ByTxQueueId::Entry byTxQueueId_;
  };

  const Rok::Ptr<ByCommentKey>& byCommentKey() const { return byCommentKey_; }
  const Rok::Ptr<ByTxQueueId>& byTxQueueId() const { return byTxQueueId_; }

  // Calls act(machine) for each tx queue whose comment has that key. Several may: interfaces may
  // share a short name. A walk computes the key of each tx queue, and traces that; where it is to
  // be seen, the walk is made.
  template <class IntfSms, class Act>
  void eachOfComment(const IntfSms& intfSms, const Velmo::String& key, const Act& act) const {
    if (keysAreTraced()) return walk(intfSms, key, act);
    eachIn(*byCommentKey_, intfSms, key, act);
  }
  // Calls act(machine) for each tx queue of that id, of either type.
  template <class IntfSms, class Act>
  void eachOfId(const IntfSms& intfSms, Qos::TxQueueId id, const Act& act) const {
    eachIn(*byTxQueueId_, intfSms, id, act);
  }

 private:
  template <class Index, class IntfSms, class Key, class Act>
  static void eachIn(const Index& index, const IntfSms& intfSms, const Key& key, const Act& act) {
    index.each(key, [&](const TxQueueSm& sm) {
      if (isInTree(intfSms, sm)) act(sm);
    });
  }
  // A machine outside the tree, made by a factory of its own or still held by somebody, is in the
  // index but not the root's affair.
  template <class IntfSms>
  static bool isInTree(const IntfSms& intfSms, const TxQueueSm& sm) {
    const auto intf = intfSms.child(sm.intfId());
    return intf && intf->txQueueSm().child(sm.txQueue()).get() == &sm;
  }
  template <class IntfSms, class Act>
  static void walk(const IntfSms& intfSms, const Velmo::String& key, const Act& act) {
    for (auto i = intfSms.iterator(); i; ++i) {
      const auto intf = intfSms.child(i.key());
      for (auto q = intf->txQueueSm().iterator(); q; ++q) {
        if (CommentHelper::commentKey(i.key(), q.key()) != key) continue;
        if (const auto sm = intf->txQueueSm().child(q.key())) act(*sm);
      }
    }
  }

  Rok::Ptr<ByCommentKey> byCommentKey_ = Rok::make<ByCommentKey>();
  Rok::Ptr<ByTxQueueId> byTxQueueId_ = Rok::make<ByTxQueueId>();
};

}  // namespace QosOc::Helper
