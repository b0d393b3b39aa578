// The tx queues of a device's interfaces, found by comment key and by id, and what is kept of each:
// what the translators of comments share.
#pragma once

#include <cstdint>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "Rok/Rok.h"
#include "models/native/Values.h"
#include "models/openconfig/Interface.h"

namespace QosOc::Helper {

// What is attached to one tx queue: what its comment names, and the interface that it goes to. Both
// are remembered.
class Attachment {
 public:
  // The root's memo is asked first: of a comment that changes, the root hears before the tx queue.
  explicit Attachment(CommentMemo& ofRoot) : comment_(ofRoot) {}

  CommentMemo& comment() { return comment_; }
  // The interface in the output; null when there is none yet. Once made, it stays.
  const Rok::Ptr<Config::Interface>& interface(const Config::InterfacesDir& dir,
                                               const Nerit::IntfId& intfId) {
    if (!interface_) interface_ = dir.interface(intfId.stringValue());
    return interface_;
  }
  // The same, made if need be.
  const Rok::Ptr<Config::Interface>& interfaceIs(Config::InterfacesDir& dir,
                                                 const Nerit::IntfId& intfId) {
    if (!interface_) interface_ = dir.interfaceIs(intfId.stringValue());
    return interface_;
  }

 private:
  CommentMemo comment_;
  Rok::Ptr<Config::Interface> interface_;
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
    friend TxQueues;
    // The machine was seen in its tree. While no interface comes or goes, nor a tx queue of this
    // one, it still is.
    struct Seen {
      const Rok::PtrInterface* intfSm = nullptr;
      std::uint64_t intfSms = 0;  // the versions of the collections
      std::uint64_t txQueueSms = 0;
    };

    Seen seen_;
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
    index.each(key, [&](TxQueueSm& sm) {
      if (isInTree(intfSms, sm)) act(sm);
    });
  }
  // A machine outside the tree, made by a factory of its own or still held by somebody, is in the
  // index but not the root's affair.
  template <class IntfSms>
  static bool isInTree(const IntfSms& intfSms, TxQueueSm& sm) {
    using IntfSm = typename IntfSms::Map::Value::element_type;
    typename Entry::Seen& seen = sm.entry().seen_;
    if (seen.intfSm != nullptr && seen.intfSms == intfSms.map().version() &&
        seen.txQueueSms == static_cast<const IntfSm*>(seen.intfSm)->txQueueSm().map().version()) {
      return true;
    }
    const auto* intf = intfSms.map().find(sm.intfId());
    if (intf == nullptr) return false;
    const auto& txQueueSms = (*intf)->txQueueSm().map();
    const auto* found = txQueueSms.find(sm.txQueue());
    if (found == nullptr || found->get() != &sm) return false;
    seen = {intf->get(), intfSms.map().version(), txQueueSms.version()};
    return true;
  }
  template <class IntfSms, class Act>
  static void walk(const IntfSms& intfSms, const Velmo::String& key, const Act& act) {
    for (const auto& [intfId, intf] : intfSms.map()) {
      for (const auto& [txQueue, sm] : intf->txQueueSm().map()) {
        if (CommentHelper::commentKey(intfId, txQueue) == key) act(*sm);
      }
    }
  }

  Rok::Ptr<ByCommentKey> byCommentKey_ = Rok::make<ByCommentKey>();
  Rok::Ptr<ByTxQueueId> byTxQueueId_ = Rok::make<ByTxQueueId>();
};

}  // namespace QosOc::Helper
