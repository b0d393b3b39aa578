// What a commit changed, record by record.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Dorpel/Export.h"
#include "host/Model.h"
#include "host/openconfig/RecordKind.h"

namespace QOS_EXPORT host {

// A record that came, changed or went. When an entry of a list went, all below it went too, and has
// no changes of its own.
struct RecordChange {
  const RecordKind* kind;
  QosOc::Config::RecordKeys keys;
  std::shared_ptr<const void> before;  // null: it came
  const void* after;                   // null: it went. It stands until the next commit

  // The record, by its type, as in `was<QosOc::Config::Term>()`. Null where there is none, or one of
  // another type.
  template <class Record>
  const Record* was() const {
    return hasType<Record>() ? static_cast<const Record*>(before.get()) : nullptr;
  }
  template <class Record>
  const Record* is() const {
    return hasType<Record>() ? static_cast<const Record*>(after) : nullptr;
  }
  template <class Record>
  bool hasType() const {
    static_assert(std::is_copy_constructible_v<Record>, "an object is no record: its config is");
    return Record::record == kind->store.id;
  }
};

// An entry that is in the model and can't be in the document.
struct LeftOutEntry {
  const RecordKind* kind;
  QosOc::Config::RecordKeys keys;
  std::string misfit;  // why
};

// What a commit changed, record by record.
struct RecordChanges {
  // They are all records that there are, each as one that came; what was known before is void.
  bool isWhole = false;
  std::vector<RecordChange> changes;
  std::vector<LeftOutEntry> leftOut;
};

// All such entries of a model.
std::vector<LeftOutEntry> leftOutOf(const Model& model);

// The kind of the record that a journal marks.
const RecordKind& kindOf(QosOc::Config::RecordId record);

// The keys of the lists on the way to an entry, its own included, as the document has them.
std::vector<std::string> keyTexts(const RecordKind& kind, const QosOc::Config::RecordKeys& keys);

// The entry of a kind under its keys; null when there is none. For an outermost kind's parent, the
// model itself.
const void* entryIn(const Model& model, const RecordKind* kind,
                    const QosOc::Config::RecordKeys& keys);

}  // namespace host
