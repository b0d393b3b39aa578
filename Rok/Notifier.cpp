#include "Rok/Notifier.h"

#include "Rok/GenericIfImpl.h"

namespace Rok {

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

// More than one notifiee, or any keyed one. Places of notifiees that went are null until the list
// is compacted, which never happens during a walk: a walk goes by place.
struct NotifieeList::Many {
  using KeyedLists = HashMap2018<Hm2018NEI<0x3b61u, std::uint64_t, NotifieeList>>;

  std::vector<const Notifiee*> places;
  std::uint32_t live = 0;
  std::uint32_t walks = 0;
  std::unique_ptr<KeyedLists> keyed;
  Turn* turns = nullptr;

  void tell(std::size_t end, AttributeId id, const void* key, Errors& errors) const;
};

// The notifiees of one key, while a notification goes round those that watch the whole attribute:
// who is to be called is settled when the notification begins.
struct NotifieeList::Turn {
  Turn* next;
  const Notifiee* single;  // null once it has left the list
};

// The first exception of a walk.
struct NotifieeList::Errors {
  std::exception_ptr first;

  void tell(const Notifiee& notifiee, AttributeId id, const void* key) {
    if (!notifiee.hasNotificationActive()) return;
    try {
      const_cast<Notifiee&>(notifiee).onAttribute(id, key);
    } catch (...) {
      if (!first) first = std::current_exception();
    }
  }
};

void NotifieeList::Many::tell(std::size_t end, AttributeId id, const void* key,
                              Errors& errors) const {
  for (std::size_t i = 0; i < end; ++i) {
    if (const Notifiee* notifiee = places[i]) errors.tell(*notifiee, id, key);
  }
}

NotifieeList::~NotifieeList() { delete many(); }

std::size_t NotifieeList::notifiees() const {
  const Many* many = this->many();
  if (many == nullptr) return word_ != 0 ? 1 : 0;
  std::size_t sum = many->live;
  if (many->keyed) {
    for (auto i = many->keyed->iterator(); i; ++i) sum += i.currNodeNonStale()->value().notifiees();
  }
  return sum;
}

bool NotifieeList::hasKeyed() const {
  const Many* many = this->many();
  return many != nullptr && many->keyed != nullptr;
}

NotifieeList::Many& NotifieeList::manyIs() {
  if (Many* many = this->many()) return *many;
  auto grown = std::make_unique<Many>();
  if (const Notifiee* first = single()) {
    grown->places.push_back(first);
    grown->live = 1;
  }
  word_ = reinterpret_cast<std::uintptr_t>(grown.get()) | 1;
  return *grown.release();
}

void NotifieeList::append(const Notifiee& notifiee) {
  if (word_ == 0) {
    word_ = reinterpret_cast<std::uintptr_t>(&notifiee);
    notifiee.slot_ = 0;
    return;
  }
  Many& many = manyIs();
  many.places.push_back(&notifiee);
  notifiee.slot_ = static_cast<std::uint32_t>(many.places.size() - 1);
  ++many.live;
}

void NotifieeList::remove(const Notifiee& notifiee) noexcept {
  if (Many* many = this->many()) {
    many->places[notifiee.slot_] = nullptr;
    --many->live;
    compact();
  } else {
    word_ = 0;
  }
  notifiee.slot_ = Notifiee::unregistered;
}

void NotifieeList::notifieeNew(const Notifiee& notifiee) {
  const std::uint64_t interest = notifiee.interest();
  if (interest == 0) return append(notifiee);
  Many& many = manyIs();
  if (!many.keyed) many.keyed = std::make_unique<Many::KeyedLists>();
  many.keyed->newMember(interest, NotifieeList()).first->value().append(notifiee);
}

void NotifieeList::notifieeDel(const Notifiee& notifiee) noexcept {
  const std::uint64_t interest = notifiee.interest();
  if (interest == 0) return remove(notifiee);
  for (Turn* turn = many()->turns; turn != nullptr; turn = turn->next) {
    if (turn->single == &notifiee) turn->single = nullptr;
  }
  many()->keyed->find(interest)->remove(notifiee);
  dropEmptyKey(interest);
}

// A key that nobody wants any more leaves the index, unless its list is being walked.
void NotifieeList::dropEmptyKey(std::uint64_t interest) noexcept {
  Many* many = this->many();
  if (many == nullptr || !many->keyed) return;
  const NotifieeList* list = many->keyed->find(interest);
  if (list == nullptr || !list->empty()) return;
  many->keyed->deleteMember(interest);
  if (many->keyed->members() == 0) many->keyed.reset();
  compact();
}

void NotifieeList::compact() noexcept {
  Many* many = this->many();
  if (many == nullptr || many->walks > 0) return;
  if (many->live == 0 && !many->keyed) {
    delete many;
    word_ = 0;
    return;
  }
  // Half of the places may be empty: so a notifiee's going costs the same whatever their number.
  if (many->places.size() <= std::size_t{2} * many->live + 4) return;
  std::size_t kept = 0;
  for (const Notifiee* notifiee : many->places) {
    if (notifiee == nullptr) continue;
    notifiee->slot_ = static_cast<std::uint32_t>(kept);
    many->places[kept++] = notifiee;
  }
  many->places.resize(kept);
}

void NotifieeList::walk(AttributeId id, const void* key, Errors& errors) const {
  Many* many = this->many();
  if (many == nullptr) {
    // After the call, this list may be gone with the notifiee.
    if (const Notifiee* notifiee = single()) errors.tell(*notifiee, id, key);
    return;
  }
  ++many->walks;
  many->tell(many->places.size(), id, key, errors);
  --many->walks;
  const_cast<NotifieeList*>(this)->compact();
}

// The walk counts that go up here keep both lists in place, whatever a notifiee does meanwhile.
void NotifieeList::walkWithKeyed(AttributeId id, const void* key, NotifieeList& keyed,
                                 Errors& errors) const {
  Many& all = *many();
  Many* several = keyed.many();
  const std::size_t end = several != nullptr ? several->places.size() : 0;
  Turn turn{all.turns, keyed.single()};
  ++all.walks;
  if (several != nullptr) ++several->walks;
  all.turns = &turn;
  walk(id, key, errors);
  all.turns = turn.next;
  if (turn.single != nullptr) errors.tell(*turn.single, id, key);
  if (several != nullptr) {
    several->tell(end, id, key, errors);
    --several->walks;
    keyed.compact();
  }
  --all.walks;
}

void NotifieeList::notify(AttributeId id, const void* key, std::uint64_t interest) const {
  Errors errors;
  NotifieeList* keyed = interest != 0 ? many()->keyed->find(interest) : nullptr;
  if (keyed == nullptr) {
    walk(id, key, errors);
  } else {
    auto* self = const_cast<NotifieeList*>(this);
    walkWithKeyed(id, key, *keyed, errors);
    self->dropEmptyKey(interest);
    self->compact();
  }
  if (errors.first) std::rethrow_exception(errors.first);
}

}  // namespace Rok
