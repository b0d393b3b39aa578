// The records of a model that the document holds, each with the keys that lead to it: for code that
// takes record after record, and some of them by their keys.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "host/Model.h"
#include "host/openconfig/View.h"

namespace host {

// Some of the rows that a view has of a kind: the bit of each is that of its number.
using RowSet = std::uint64_t;
inline constexpr RowSet allRows = ~RowSet{0};

struct RecordAt {
  const RecordKind& kind;
  const Keys& keys;  // of the lists on the way, its own included; good during the call alone
  const void* record;
};
using RecordVisit = std::function<void(const RecordAt& at)>;

// Calls visit for each record of a kind that the view shows. An entry comes before what it holds,
// and all that it holds before the next entry.
void eachRecord(const Model& model, const View& view, const RecordVisit& visit);

// Which entries are wanted of the lists on the way to a kind, its own included: one, or all.
using WantedKeys = std::span<const std::optional<std::string>>;
// The same for the records of one kind under some keys. What a key names is looked up.
void eachRecordOf(const Model& model, const RecordKind& kind, WantedKeys wanted,
                  const RecordVisit& visit);

}  // namespace host
