#include "host/openconfig/RecordWalk.h"

namespace host {
namespace {

// The entries of a kind that the document holds, with `keys` being that of each during its call.
template <class Act>
void eachEntry(const RecordKind& kind, const void* holder, Keys& keys, const Act& act) {
  kind.each(holder, [&](std::string_view key, std::string_view misfit, const void* entry) {
    if (!misfit.empty()) return;
    if (kind.isList()) keys.push_back(key);
    act(entry);
    if (kind.isList()) keys.pop_back();
  });
}

void walk(const View& view, const RecordKind& kind, const void* holder, Keys& keys,
          const RecordVisit& visit) {
  eachEntry(kind, holder, keys, [&](const void* entry) {
    const void* record = kind.record(entry);
    if (record == nullptr) return;
    visit({kind, keys, record});
    for (const RecordKind* child : view.children(kind)) walk(view, *child, entry, keys, visit);
  });
}

// From the outermost kind on: `way` ends with the kind that is wanted.
void walkTo(std::span<const RecordKind* const> way, const void* holder, WantedKeys wanted,
            Keys& keys, const RecordVisit& visit) {
  const RecordKind& kind = *way.front();
  const auto go = [&](const void* entry) {
    const void* record = kind.record(entry);
    if (record == nullptr) return;
    if (way.size() == 1) return visit({kind, keys, record});
    walkTo(way.subspan(1), entry, wanted.subspan(kind.isList() ? 1 : 0), keys, visit);
  };
  if (!kind.isList() || !wanted.front()) return eachEntry(kind, holder, keys, go);
  const void* entry = kind.find(holder, *wanted.front());
  if (entry == nullptr) return;
  keys.push_back(*wanted.front());
  go(entry);
  keys.pop_back();
}

}  // namespace

void eachRecord(const Model& model, const View& view, const RecordVisit& visit) {
  Keys keys;
  for (const RecordKind* kind : view.outermost()) walk(view, *kind, &model, keys, visit);
}

void eachRecordOf(const Model& model, const RecordKind& kind, WantedKeys wanted,
                  const RecordVisit& visit) {
  std::vector<const RecordKind*> way;
  for (const RecordKind* on = &kind; on != nullptr; on = on->parent) way.insert(way.begin(), on);
  Keys keys;
  walkTo(way, &model, wanted, keys, visit);
}

}  // namespace host
