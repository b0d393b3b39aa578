// The records of a model that the document holds, each with the keys that lead to it: for code that
// takes record after record, and some of them by their keys.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <string_view>

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
  // How its leaves are read, where it is no record of a model.
  LeafValue (*read)(const RecordAt& at, std::size_t leaf) = nullptr;

  // By the number in the kind's table.
  LeafValue leaf(std::size_t number) const {
    return read != nullptr ? read(*this, number) : kind.read(record, number, keys, {});
  }
};
using RecordVisit = std::function<void(const RecordAt& at)>;

// Calls visit for each record of a kind that the view shows. An entry comes before what it holds,
// and all that it holds before the next entry.
void eachRecord(const Model& model, const View& view, const RecordVisit& visit);

// Which entries of a kind a walk goes into: none, the one of a key, or all.
struct EntriesWanted {
  enum class Which : unsigned char { none, one, all };
  Which which = Which::none;
  std::string_view key = {};
};
// Is asked for each kind below an entry: `above` are the keys of the lists on the way to that.
using ChooseEntries =
    std::function<EntriesWanted(const RecordKind& kind, std::span<const std::string_view> above)>;
// The same for entries that are wanted. One that a key names is looked up.
void eachRecord(const Model& model, const View& view, const ChooseEntries& choose,
                const RecordVisit& visit);

}  // namespace host
