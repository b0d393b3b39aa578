#include "host/feed/Images.h"

namespace host {

using QosOc::Config::Journal;

namespace {

const void* recordAt(const RecordKind& kind, const void* entry) {
  return entry != nullptr ? kind.record(entry) : nullptr;
}

void addAll(const RecordKind& kind, const void* holder, const RecordStore::Keys& above,
            RecordChanges& all) {
  kind.store.each(holder, above, [&](const RecordStore::Keys& keys) {
    const void* entry = kind.store.at(holder, keys);
    const void* record = recordAt(kind, entry);
    if (record == nullptr) return;
    all.changes.push_back({&kind, keys, nullptr, record});
    for (const RecordKind* child : kind.children) addAll(*child, entry, keys, all);
  });
}

}  // namespace

RecordChanges Images::update(const Model& now, std::span<const Journal::Mark> marks) {
  RecordChanges changes;
  for (const Journal::Mark& mark : marks) {
    const RecordKind& kind = kindOf(mark.record);
    const void* holder = entryIn(now, kind.parent, mark.keys);
    // The images are ours: only the view of them that readers get is const.
    void* image = const_cast<void*>(entryIn(images_, kind.parent, mark.keys));
    // What holds a record is marked before it: a holder that went, or came, took it along.
    if (holder == nullptr || image == nullptr) continue;
    updateEntry(kind, {holder, image}, mark.keys, mark.withAllBelow, changes);
  }
  return changes;
}

RecordChanges Images::updateAll(const Model& now) {
  RecordChanges changes;
  for (const RecordKind* kind : outermostKinds()) {
    updateBelow(*kind, {&now, &images_}, {}, changes);
  }
  return changes;
}

RecordChanges Images::all() const {
  RecordChanges all;
  all.isWhole = true;
  for (const RecordKind* kind : outermostKinds()) addAll(*kind, &images_, {}, all);
  return all;
}

// All entries of a kind below a holder: those that are there, and those that were.
void Images::updateBelow(const RecordKind& kind, const Holders& holders, const Keys& above,
                         RecordChanges& changes) {
  std::vector<Keys> gone;
  kind.store.each(holders.image, above, [&](const Keys& keys) {
    if (kind.store.at(holders.now, keys) == nullptr) gone.push_back(keys);
  });
  for (const Keys& keys : gone) updateEntry(kind, holders, keys, false, changes);
  kind.store.each(holders.now, above,
                  [&](const Keys& keys) { updateEntry(kind, holders, keys, true, changes); });
}

void Images::updateEntry(const RecordKind& kind, const Holders& holders, const Keys& keys,
                         bool withAllBelow, RecordChanges& changes) {
  const bool isNew = kind.store.at(holders.image, keys) == nullptr;
  if (!updateRecord(kind, holders, keys, changes)) return;
  if (!isNew && !withAllBelow) return;
  const Holders below{kind.store.at(holders.now, keys),
                      const_cast<void*>(kind.store.at(holders.image, keys))};
  for (const RecordKind* child : kind.children) updateBelow(*child, below, keys, changes);
}

// Returns whether the record is there.
bool Images::updateRecord(const RecordKind& kind, const Holders& holders, const Keys& keys,
                          RecordChanges& changes) {
  const RecordStore& store = kind.store;
  const void* now = recordAt(kind, store.at(holders.now, keys));
  const void* image = recordAt(kind, store.at(holders.image, keys));
  if (now == nullptr) {
    std::string misfit = store.misfit(holders.now, keys, kind.key);
    if (!misfit.empty()) changes.leftOut.push_back({&kind, keys, std::move(misfit)});
    if (image == nullptr) return false;
    changes.changes.push_back({&kind, keys, store.copy(image), nullptr});
    store.drop(holders.image, keys);
    return false;
  }
  if (image != nullptr && store.areEqual(now, image)) return true;
  std::shared_ptr<const void> before = image != nullptr ? store.copy(image) : nullptr;
  store.put(holders.image, keys, now);
  image = kind.record(store.at(holders.image, keys));
  changes.changes.push_back({&kind, keys, std::move(before), image});
  return true;
}

}  // namespace host
