#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSmBindings.h"

namespace QosOc {

// An interface's entry, which goes again unless both halves of it are there.
struct BindingIndex::Entry {
  Entry(BindingIndex& of, const Velmo::String& id, const ClassifierNames& boundTo)
      : index(of), interfaceId(id), names(boundTo) {}
  Entry(const Entry&) = delete;
  Entry& operator=(const Entry&) = delete;
  ~Entry() {
    if (!whole) index.removeFrom(names, interfaceId);
  }
  void make() {
    auto& interfaces = index.interfacesByNames_.newMember(names, Interfaces()).first->value();
    interfaces.newMember(interfaceId, true);
    index.namesByInterface_.newMember(interfaceId, names);
    whole = true;
  }

  BindingIndex& index;
  const Velmo::String& interfaceId;
  const ClassifierNames& names;
  bool whole = false;
};

void BindingIndex::is(const Velmo::String& interfaceId, const ClassifierNames& names) {
  const ClassifierNames* old = namesByInterface_.find(interfaceId);
  if (old != nullptr && *old == names) return;
  if (old != nullptr) del(interfaceId);
  Entry(*this, interfaceId, names).make();
}

void BindingIndex::del(const Velmo::String& interfaceId) {
  ClassifierNames names;
  if (namesByInterface_.deleteMember(interfaceId, &names)) removeFrom(names, interfaceId);
}

void BindingIndex::removeFrom(const ClassifierNames& names, const Velmo::String& interfaceId) {
  Interfaces* interfaces = interfacesByNames_.find(names);
  if (interfaces == nullptr) return;
  interfaces->deleteMember(interfaceId);
  if (interfaces->members() == 0) interfacesByNames_.deleteMember(names);
}

}  // namespace QosOc
