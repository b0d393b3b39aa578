// OVERVIEW: what it takes to keep a copy of a model in step with it, for the entries of one kind:
// to find them by the keys that a journal marks, to compare their records, to put them into another
// model and to take them out of it.
//
// RULES
// - An entry is what the document has one of: one without a key, or with a key that the document
//   can't hold, isn't found.
// - A container is there while its record isn't the default one.
// - `put` makes what is missing on the way from the holder to the entry.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "Dorpel/Export.h"
#include "models/openconfig/Journal.h"

namespace QOS_EXPORT host {

struct RecordStore {
  using Keys = QosOc::Config::RecordKeys;
  using EachKey = std::function<void(const Keys& keys)>;

  QosOc::Config::RecordId id;
  // Null when there is none.
  const void* (*at)(const void* holder, const Keys& keys);
  // Why the document can't hold an entry that is there; empty if it can.
  std::string (*misfit)(const void* holder, const Keys& keys, std::string_view keyLeaf);
  // The entry's own key as the document has it; empty for a container.
  std::string (*keyText)(const Keys& keys);
  // The keys of all entries, in no order; `above` are those of the holder.
  void (*each)(const void* holder, const Keys& above, const EachKey& visit);
  bool (*isEmpty)(const void* holder);

  bool (*areEqual)(const void* record, const void* other) = nullptr;
  std::shared_ptr<const void> (*copy)(const void* record) = nullptr;
  void (*put)(void* holder, const Keys& keys, const void* record) = nullptr;
  void (*drop)(void* holder, const Keys& keys) = nullptr;
};

}  // namespace host
