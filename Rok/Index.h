// OVERVIEW
//   Finds objects by something that several of them may share: the machines of all tx queues with
//   one id, say. What a walk over all objects with a comparison would find, at a cost that depends
//   only on what is found.
//
// RULES
//   - An Entry is a member of what it stands for: it is in the index from its construction to its
//     destruction. Its key does not change.
//   - The index is counted and lives as long as an entry is in it.
//   - `each` visits the objects of a key in the order in which they came. A visit may remove any
//     object, itself included; a removed one is not visited. One that joins meanwhile is visited
//     or not. The walk holds no object: a visit that releases its own must not use it after that.
//
// EXAMPLE
//   class PortSm {
//    public:
//     using BySpeed = Rok::Index<unsigned, PortSm, 0x5eedu>;
//     PortSm(const Rok::Ptr<BySpeed>& bySpeed, unsigned speed) : entry_(bySpeed, speed, *this) {}
//     void reset() { ++resets; }
//     int resets = 0;
//
//    private:
//     BySpeed::Entry entry_;
//   };
#pragma once

#include <cstdint>

#include "Rok/FwkType.h"
#include "Rok/HashMap2018.h"
#include "Rok/Ptr.h"

namespace Rok {

template <class Key, class Object, std::uint32_t seed>
class Index final : public PtrInterface {
  class List;

 public:
  class Entry {
   public:
    Entry(const Ptr<Index>& index, const Key& key, Object& object)
        : index_(index), object_(object), list_(index->listIs(key)) {
      list_->append(*this);
    }
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;
    ~Entry() {
      list_->remove(*this);
      if (list_->first_ == nullptr) index_->lists_.deleteMember(list_->key_);
    }

   private:
    friend class Index;
    Ptr<Index> index_;
    Object& object_;
    Ptr<List> list_;
    Entry* previous_ = nullptr;
    Entry* next_ = nullptr;
  };

  const FwkType& fwkType() const override {
    static const FwkType type{"Index", {}};
    return type;
  }

  // The number of keys that objects have.
  std::uint32_t keys() const { return lists_.members(); }

  // Calls visit(object) for each object of the key, in the order in which they entered.
  template <class Visit>
  void each(const Key& key, const Visit& visit) const {
    const Ptr<List>* found = lists_.find(key);
    if (found == nullptr) return;
    const Ptr<List> list = *found;
    Walk walk{list->walks_, list->first_};
    list->walks_ = &walk;
    const Leave leave{*list, walk};
    while (walk.next != nullptr) {
      Entry& entry = *walk.next;
      walk.next = entry.next_;
      visit(entry.object_);
    }
  }

 private:
  // One walk over a list, and its next entry. Nested ones form a stack.
  struct Walk {
    Walk* outer;
    Entry* next;
  };

  // The objects of one key.
  class List final : public PtrInterface {
   public:
    explicit List(const Key& key) : key_(key) {}
    const FwkType& fwkType() const override {
      static const FwkType type{"Index::List", {}};
      return type;
    }

   private:
    friend class Index;
    void append(Entry& entry) {
      entry.previous_ = last_;
      (last_ != nullptr ? last_->next_ : first_) = &entry;
      last_ = &entry;
    }
    void remove(Entry& entry) {
      for (Walk* walk = walks_; walk != nullptr; walk = walk->outer) {
        if (walk->next == &entry) walk->next = entry.next_;
      }
      (entry.previous_ != nullptr ? entry.previous_->next_ : first_) = entry.next_;
      (entry.next_ != nullptr ? entry.next_->previous_ : last_) = entry.previous_;
    }

    Key key_;
    Entry* first_ = nullptr;
    Entry* last_ = nullptr;
    Walk* walks_ = nullptr;
  };

  // Takes a walk off the stack, also when a visit throws.
  struct Leave {
    List& list;
    Walk& walk;
    ~Leave() { list.walks_ = walk.outer; }
  };

  struct KeyOfList {
    const Key& operator()(const Ptr<List>& list) const { return list->key_; }
  };

  Ptr<List> listIs(const Key& key) {
    if (const Ptr<List>* found = lists_.find(key)) return *found;
    Ptr<List> made = make<List>(key);
    lists_.newMember(key, made);
    return made;
  }

  HashMap2018<Hm2018NII<seed, Key, Ptr<List>, KeyOfList>> lists_;
};

}  // namespace Rok
