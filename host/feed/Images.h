// The model as the last commit left it, record by record, with the texts shared. Marked records are
// compared with their images, so a commit costs what was marked and not what is there.
#pragma once

#include <span>

#include "host/feed/RecordChange.h"
#include "models/openconfig/Journal.h"

namespace host {

class Images {
 public:
  // Only entries and records that the document holds.
  const Model& model() const { return images_; }

  // Brings the images of marked records in step with `now`, and says what changed. When it throws,
  // only `updateAll` brings them in step again.
  RecordChanges update(const Model& now, std::span<const QosOc::Config::Journal::Mark> marks);
  // The same for all records.
  RecordChanges updateAll(const Model& now);

  // Each record that is there, as one that came.
  RecordChanges all() const;

 private:
  using Keys = QosOc::Config::RecordKeys;
  struct Holders {
    const void* now;
    void* image;
  };

  void updateBelow(const RecordKind& kind, const Holders& holders, const Keys& above,
                   RecordChanges& changes);
  void updateEntry(const RecordKind& kind, const Holders& holders, const Keys& keys,
                   bool withAllBelow, RecordChanges& changes);
  static bool updateRecord(const RecordKind& kind, const Holders& holders, const Keys& keys,
                           RecordChanges& changes);

  Model images_;
};

}  // namespace host
