#include "Rok/Notifier.h"

#include <exception>
#include <memory>
#include <vector>

#include "Rok/FwkType.h"
#include "Rok/HashMap2018.h"

namespace Rok {
namespace {

bool isOfKey(std::uint64_t interest) { return (interest & 0xffffffffu) != 0; }

}  // namespace

// ===== NotifieeConst

PtrInterface::NotifieeConst::~NotifieeConst() { isRegisteredNotifieeIs(false); }

void PtrInterface::NotifieeConst::hasNotificationActiveIs(bool v) { flagIs(activeFlag, v); }

void PtrInterface::NotifieeConst::zeroReferencesIs(bool v) {
  if (v) onZeroReferences();
}

const FwkType& PtrInterface::NotifieeConst::fwkType() const {
  static const FwkType type{"NotifieeConst", {}};
  return type;
}

void PtrInterface::NotifieeConst::onZeroReferences() { isRegisteredNotifieeIs(false); }

void PtrInterface::NotifieeConst::rokDoZombieReactors(bool v) {
  if (rokMarkedForDeletion() == v) return;
  if (notifier_) hasNotificationActiveIs(!v);
  rokMarkedForDeletionIs(v);
}

void PtrInterface::NotifieeConst::notifierIs(const PtrInterface* notifier) {
  if (notifier == notifier_.get()) return;
  isRegisteredNotifieeIs(false);
  notifier_ = Ptr<const PtrInterface>(notifier);
}

void PtrInterface::NotifieeConst::isRegisteredNotifieeIs(bool v) const {
  if (v == isRegisteredNotifiee()) return;
  NotifieeList* list = notifier_ ? notifier_->notifieeList() : nullptr;
  if (list == nullptr) return;
  if (v) {
    list->notifieeNew(*this);
  } else {
    list->notifieeDel(*this);
  }
}

// ===== NotifieeList

// More than one notifiee, or any keyed one. Places of notifiees that have left are null until the
// list is compacted, which never happens during a walk: a walk goes by place.
//
// Notifiees of one key always stand in the index, by their interest. Those of one attribute do so
// when they are many: for a few, the index would cost more than the calls that it saves.
struct NotifieeList::Many {
  struct Errors;
  struct Turn;
  struct Room;
  using Index = HashMap2018<Hm2018NEI<0x3b61u, std::uint64_t, NotifieeList>>;
  static constexpr std::uint32_t crowd = 16;

  // These do their work on a list of any size, also on one that has no Many.
  static Many& manyIs(NotifieeList& list);
  static bool goesByInterest(const NotifieeList& list, std::uint64_t interest);
  static void append(NotifieeList& list, const Notifiee& notifiee);
  static void remove(NotifieeList& list, const Notifiee& notifiee) noexcept;
  static void compact(NotifieeList& list) noexcept;
  static void walk(NotifieeList& list, AttributeId id, const void* key, Errors& errors);

  // Requires: the list has a Many.
  static void dropIfEmpty(NotifieeList& list, std::uint64_t interest) noexcept;
  static void dropEmptyIndex(NotifieeList& list) noexcept;
  static void notifyIndexed(NotifieeList& list, AttributeId id, const void* key,
                            std::uint64_t interest, Errors& errors);

  NotifieeList* at(std::uint64_t interest) const {
    return interest != 0 && index ? index->find(interest) : nullptr;
  }
  void callPlaces(std::size_t end, AttributeId id, const void* key, Errors& errors) const;

  std::vector<const Notifiee*> places;
  std::uint32_t live = 0;
  std::uint32_t walks = 0;
  std::uint32_t keys = 0;  // notifiees in the index that watch one key
  std::unique_ptr<Index> index;
  Turn* turns = nullptr;
};

// The first exception of a walk.
struct NotifieeList::Many::Errors {
  std::exception_ptr first;

  void keep() {
    if (!first) first = std::current_exception();
  }
  void tryCall(const Notifiee& notifiee, AttributeId id, const void* key) {
    try {
      callIfActive(notifiee, id, key);
    } catch (...) {
      keep();
    }
  }
  static void callIfActive(const Notifiee& notifiee, AttributeId id, const void* key) {
    if (notifiee.hasNotificationActive()) const_cast<Notifiee&>(notifiee).onAttribute(id, key);
  }
};

void NotifieeList::Many::callPlaces(std::size_t end, AttributeId id, const void* key,
                                    Errors& errors) const {
  for (std::size_t i = 0; i < end; ++i) {
    try {
      for (; i < end; ++i) {
        if (const Notifiee* notifiee = places[i]) Errors::callIfActive(*notifiee, id, key);
      }
    } catch (...) {
      errors.keep();
    }
  }
}

// A list of the index whose turn in a notification is still to come. Its notifiees of that time are
// the ones to be called, and the list stays in place until its turn is over.
struct NotifieeList::Many::Turn {
  Turn(Many& all, NotifieeList* list)
      : all_(all),
        list_(list),
        several_(list != nullptr ? list->many() : nullptr),
        end_(several_ != nullptr ? several_->places.size() : 0),
        single_(list != nullptr ? list->single() : nullptr),
        next_(all.turns) {
    if (several_ != nullptr) ++several_->walks;
    all.turns = this;
  }
  Turn(const Turn&) = delete;
  Turn& operator=(const Turn&) = delete;

  // Turns are taken in the opposite order of their construction. Returns whether the list is empty
  // by now, and was kept in place by this turn.
  bool take(AttributeId id, const void* key, Errors& errors) {
    all_.turns = next_;
    if (single_ != nullptr) errors.tryCall(*single_, id, key);
    if (several_ == nullptr) return false;
    several_->callPlaces(end_, id, key, errors);
    --several_->walks;
    compact(*list_);
    return list_->empty();
  }
  // A notifiee that has left is not called, also if another one stands at its address by then.
  static void forget(Turn* first, const Notifiee& notifiee) {
    for (Turn* turn = first; turn != nullptr; turn = turn->next_) {
      if (turn->single_ == &notifiee) turn->single_ = nullptr;
    }
  }

 private:
  Many& all_;
  NotifieeList* list_;
  Many* several_;
  std::size_t end_;
  const Notifiee* single_;  // alone in its list; null once it has left
  Turn* next_;
};

// Removes the index again when it was made for a notifiee that then couldn't be entered.
struct NotifieeList::Many::Room {
  explicit Room(NotifieeList& madeIn) : list(&madeIn) {}
  Room(const Room&) = delete;
  Room& operator=(const Room&) = delete;
  ~Room() {
    if (list != nullptr) dropEmptyIndex(*list);
  }
  void taken() { list = nullptr; }

  NotifieeList* list;
};

NotifieeList::Many& NotifieeList::Many::manyIs(NotifieeList& list) {
  if (Many* many = list.many()) return *many;
  auto grown = std::make_unique<Many>();
  if (const Notifiee* first = list.single()) {
    grown->places.push_back(first);
    grown->live = 1;
  }
  list.word_ = reinterpret_cast<std::uintptr_t>(grown.get()) | 1;
  return *grown.release();
}

bool NotifieeList::Many::goesByInterest(const NotifieeList& list, std::uint64_t interest) {
  if (interest == 0) return false;
  if (isOfKey(interest)) return true;
  const Many* many = list.many();
  return many != nullptr && (many->live >= crowd || many->at(interest) != nullptr);
}

void NotifieeList::Many::append(NotifieeList& list, const Notifiee& notifiee) {
  std::uint32_t place = 0;
  if (list.word_ == 0) {
    list.word_ = reinterpret_cast<std::uintptr_t>(&notifiee);
  } else {
    Many& many = manyIs(list);
    many.places.push_back(&notifiee);
    place = static_cast<std::uint32_t>(many.places.size() - 1);
    ++many.live;
  }
  notifiee.slot_ = place;
}

void NotifieeList::Many::remove(NotifieeList& list, const Notifiee& notifiee) noexcept {
  if (Many* many = list.many()) {
    many->places[notifiee.slot_ & ~Notifiee::indexed] = nullptr;
    --many->live;
    compact(list);
  } else {
    list.word_ = 0;
  }
  notifiee.slot_ = Notifiee::unregistered;
}

void NotifieeList::Many::compact(NotifieeList& list) noexcept {
  Many* many = list.many();
  if (many == nullptr || many->walks > 0) return;
  if (many->live == 0 && !many->index) {
    delete many;
    list.word_ = 0;
    return;
  }
  // Half of the places may be empty, so that a removal costs the same whatever their number.
  if (many->places.size() <= std::size_t{2} * many->live + 4) return;
  std::size_t kept = 0;
  for (const Notifiee* notifiee : many->places) {
    if (notifiee == nullptr) continue;
    notifiee->slot_ = (notifiee->slot_ & Notifiee::indexed) | static_cast<std::uint32_t>(kept);
    many->places[kept++] = notifiee;
  }
  many->places.resize(kept);
}

void NotifieeList::Many::walk(NotifieeList& list, AttributeId id, const void* key, Errors& errors) {
  Many* many = list.many();
  if (many == nullptr) {
    // The call may destroy the notifiee, and this list with it.
    if (const Notifiee* notifiee = list.single()) errors.tryCall(*notifiee, id, key);
    return;
  }
  ++many->walks;
  many->callPlaces(many->places.size(), id, key, errors);
  --many->walks;
  compact(list);
}

// An interest without notifiees leaves the index, unless its list is being walked.
void NotifieeList::Many::dropIfEmpty(NotifieeList& list, std::uint64_t interest) noexcept {
  const NotifieeList* ofInterest = list.many()->at(interest);
  if (ofInterest == nullptr || !ofInterest->empty()) return;
  list.many()->index->deleteMember(interest);
  dropEmptyIndex(list);
}

void NotifieeList::Many::dropEmptyIndex(NotifieeList& list) noexcept {
  Many* many = list.many();
  if (many->index && many->index->members() == 0) many->index.reset();
  compact(list);
}

// Notifiees of everything come first, then those of the attribute, then those of the key.
// While the walk count is up, this list and its index stay in place, whatever a notifiee does.
void NotifieeList::Many::notifyIndexed(NotifieeList& list, AttributeId id, const void* key,
                                       std::uint64_t interest, Errors& errors) {
  Many& all = *list.many();
  ++all.walks;
  bool isEmpty = false;
  {
    Turn ofKey(all, all.at(interest));
    Turn ofAttribute(all, all.at(interestIn(id)));
    walk(list, id, key, errors);
    isEmpty = ofAttribute.take(id, key, errors);
    isEmpty = ofKey.take(id, key, errors) || isEmpty;
  }
  --all.walks;
  if (isEmpty) {
    dropIfEmpty(list, interestIn(id));
    if (list.many() != nullptr) dropIfEmpty(list, interest);
  }
  if (list.many() != nullptr) compact(list);
}

// ----- The members

NotifieeList::~NotifieeList() { delete many(); }

std::size_t NotifieeList::notifiees() const {
  const Many* many = this->many();
  if (many == nullptr) return word_ != 0 ? 1 : 0;
  std::size_t sum = many->live;
  if (many->index) {
    for (const auto& [interest, list] : *many->index) sum += list.notifiees();
  }
  return sum;
}

bool NotifieeList::manyHaveKeys() const { return many()->keys != 0; }

void NotifieeList::notifieeNew(const Notifiee& notifiee) {
  const std::uint64_t interest = notifiee.interest();
  if (!Many::goesByInterest(*this, interest)) return Many::append(*this, notifiee);
  Many& many = Many::manyIs(*this);
  Many::Room room(*this);
  if (!many.index) many.index = std::make_unique<Many::Index>();
  Many::append(many.index->newMember(interest, NotifieeList()).first->value(), notifiee);
  room.taken();
  notifiee.slot_ |= Notifiee::indexed;
  if (isOfKey(interest)) ++many.keys;
}

void NotifieeList::notifieeDel(const Notifiee& notifiee) noexcept {
  if ((notifiee.slot_ & Notifiee::indexed) == 0) return Many::remove(*this, notifiee);
  Many& many = *this->many();
  const std::uint64_t interest = notifiee.interest();
  Many::Turn::forget(many.turns, notifiee);
  Many::remove(*many.index->find(interest), notifiee);
  if (isOfKey(interest)) --many.keys;
  Many::dropIfEmpty(*this, interest);
}

void NotifieeList::notifySeveral(AttributeId id, const void* key, std::uint64_t interest) const {
  Many::Errors errors;
  auto& list = const_cast<NotifieeList&>(*this);
  if (many()->index) {
    Many::notifyIndexed(list, id, key, interest, errors);
  } else {
    Many::walk(list, id, key, errors);
  }
  if (errors.first) std::rethrow_exception(errors.first);
}

}  // namespace Rok
