// OVERVIEW
//   Remembers which records of the output model were written since the last commit, so that what
//   changed is found without a walk over the model. The directories of the model, and the objects
//   below them, hold a pointer to their journal; it is null at first, and then nothing is marked.
//
// RULES
//   - A record is marked before it is handed out for writing, inserted or removed. A mark names the
//     record by its keys. It doesn't say what changed, nor whether anything did.
//   - A record is marked once, however often it is written, until the marks are taken.
//   - The mark of an object that was removed, or lost a part, says that all below it may have
//     changed: what was below is not marked for that.
//   - A reference that is handed out for writing is good until the marks are taken. What is written
//     through it behind that isn't marked.
//   - Records are private to the directories and objects that hold them, inside RecordMap,
//     ObjectMap or Recorded: these mark, and give out nothing else that can be written.
//   - One journal for a model. It must be detached, by `journalIs(nullptr)`, before it dies.
//
// EXAMPLE
//   QosOc::Config::Journal journal;
//   const auto queues = Rok::make<QosOc::Config::QueuesDir>();
//   queues->journalIs(&journal);
//   queues->qContentIs("voice").config.strictPriority = true;
//   const auto marks = journal.taken();
//   assert(marks.size() == 1 && marks[0].keys.outer == "voice");
//   queues->journalIs(nullptr);
#pragma once

#include <cstdint>
#include <type_traits>
#include <vector>

#include "Rok/Rok.h"

namespace QosOc::Config {

// The records that have an entry or a container of their own in the OpenConfig tree.
enum class RecordId : unsigned char {
  classifier,
  term,
  forwardingGroup,
  interface,
  inputClassifier,
  outputPfc,
  outputQueue,
  outputSchedulerPolicy,
  pfcWatchdog,
  queueManagementProfile,
  queue,
  schedulerPolicy,
  scheduler,
  schedulerInput,
  schedulerRate,
};

// The keys that lead to a record. Those that it doesn't need are empty.
struct RecordKeys {
  Rok::String outer;         // of the outermost entry
  std::uint32_t number = 0;  // a scheduler's sequence, or the type of an input's classifier
  Rok::String below;         // of a term, an output's queue or a scheduler's input

  bool operator==(const RecordKeys&) const = default;
};

class QOS_EXPORT Journal {
 public:
  // A record that was written, or an object whose parts all may have changed.
  struct Mark {
    RecordId record;
    bool withAllBelow;
    RecordKeys keys;
  };

  Journal() = default;
  Journal(const Journal&) = delete;
  Journal& operator=(const Journal&) = delete;

  // Throws: std::bad_alloc; then nothing was marked.
  void mark(RecordId record, const RecordKeys& keys, bool withAllBelow = false) {
    mark(record, keys.outer, keys.number, keys.below, withAllBelow);
  }
  // The same, by the keys one by one.
  void mark(RecordId record, const Rok::String& outer, std::uint32_t number,
            const Rok::String& below, bool withAllBelow);

  // The marks since the last call, in the order in which they were made first.
  // Throws: std::bad_alloc; then they stay.
  std::vector<Mark> taken();

 private:
  void markWithRoom(RecordId record, const Rok::String& outer, std::uint32_t number,
                    const Rok::String& below, bool withAllBelow);

  // A record may stand here several times. That is put right when the marks are taken, or when the
  // room is full; it grows if more than a quarter of it is needed then.
  std::vector<Mark> marks_;
};

// An object's way to the journal, with the keys that lead to the object.
class QOS_EXPORT Marker {
 public:
  Marker() = default;
  explicit Marker(Journal* journal) : journal_(journal) {}

  bool isOn() const { return journal_ != nullptr; }
  // The marker of an object below, by its key.
  Marker below(const Rok::String& key) const { return {journal_, key, 0}; }
  Marker below(std::uint32_t key) const { return {journal_, outer_, key}; }

  // A record of the object itself; or that, and all that is below the object.
  void mark(RecordId record, bool withAllBelow = false) const {
    if (isOn()) [[unlikely]]
      markIn(record, {}, number_, withAllBelow);
  }
  // An entry of the object, by its key.
  void markEntry(RecordId record, const Rok::String& key, bool withAllBelow = false) const {
    if (isOn()) [[unlikely]]
      markIn(record, key, number_, withAllBelow);
  }
  template <class Number>
  requires std::is_integral_v<Number> || std::is_enum_v<Number>
  void markEntry(RecordId record, Number key, bool withAllBelow = false) const {
    if (isOn()) [[unlikely]]
      markIn(record, {}, static_cast<std::uint32_t>(key), withAllBelow);
  }

 private:
  Marker(Journal* journal, const Rok::String& outer, std::uint32_t number)
      : journal_(journal), number_(number) {
    if (journal != nullptr) outer_ = outer;
  }
  void markIn(RecordId record, const Rok::String& key, std::uint32_t number,
              bool withAllBelow) const;

  Journal* journal_ = nullptr;
  std::uint32_t number_ = 0;
  Rok::String outer_;
};

// Makes a part of an object, which marks by the object's marker.
template <class Part, class... Arguments>
void made(Rok::Ptr<Part>& part, const Marker& marker, const Arguments&... arguments) {
  part = Rok::make<Part>(arguments...);
  if (marker.isOn()) part->markerIs(marker);
}
// Takes a part of an object away: all that is below the object's record may change by that.
template <class Part>
void removed(Rok::Ptr<Part>& part, const Marker& marker, RecordId record) {
  marker.mark(record, true);
  if (marker.isOn() && part) part->markerIs({});
  part = nullptr;
}

// A record that an object holds beside its key; it may be an optional one.
template <class Held>
class Recorded {
 public:
  const Held& get() const { return held_; }
  // Marks the record, then replaces it.
  void is(const Marker& marker, const Held& record) {
    if constexpr (requires { Held::record; }) {
      marker.mark(Held::record);
    } else {
      marker.mark(Held::value_type::record);
    }
    held_ = record;
  }

 private:
  Held held_;
};

}  // namespace QosOc::Config
