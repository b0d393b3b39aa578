#include "host/feed/RecordChange.h"

#include <utility>

namespace host {

using QosOc::Config::RecordId;
using QosOc::Config::RecordKeys;

namespace {

void addKinds(std::span<const RecordKind* const> kinds, std::vector<const RecordKind*>& byRecord) {
  for (const RecordKind* kind : kinds) {
    const auto place = static_cast<std::size_t>(kind->store.id);
    if (byRecord.size() <= place) byRecord.resize(place + 1);
    byRecord[place] = kind;
    addKinds(kind->children, byRecord);
  }
}

void addLeftOut(const RecordKind& kind, const void* holder, const RecordKeys& above,
                std::vector<LeftOutEntry>& all) {
  kind.store.each(holder, above, [&](const RecordKeys& keys) {
    std::string misfit = kind.store.misfit(holder, keys, kind.key);
    if (!misfit.empty()) all.push_back({&kind, keys, std::move(misfit)});
    const void* entry = kind.store.at(holder, keys);
    if (entry == nullptr) return;
    for (const RecordKind* child : kind.children) addLeftOut(*child, entry, keys, all);
  });
}

}  // namespace

std::vector<LeftOutEntry> leftOutOf(const Model& model) {
  std::vector<LeftOutEntry> all;
  for (const RecordKind* kind : outermostKinds()) addLeftOut(*kind, &model, {}, all);
  return all;
}

const RecordKind& kindOf(RecordId record) {
  static const std::vector<const RecordKind*> byRecord = [] {
    std::vector<const RecordKind*> kinds;
    addKinds(outermostKinds(), kinds);
    return kinds;
  }();
  return *byRecord[static_cast<std::size_t>(record)];
}

std::vector<std::string> keyTexts(const RecordKind& kind, const RecordKeys& keys) {
  std::vector<std::string> texts;
  if (kind.parent != nullptr) texts = keyTexts(*kind.parent, keys);
  if (kind.isList()) texts.push_back(kind.store.keyText(keys));
  return texts;
}

const void* entryIn(const Model& model, const RecordKind* kind, const RecordKeys& keys) {
  if (kind == nullptr) return &model;
  const void* holder = entryIn(model, kind->parent, keys);
  return holder != nullptr ? kind->store.at(holder, keys) : nullptr;
}

}  // namespace host
