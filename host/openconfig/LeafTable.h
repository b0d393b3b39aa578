// OVERVIEW: the tables of the leaves of the OpenConfig document. Each record has one of its leaves, as
// data: the path below the record, the YANG type, how to read the leaf from the record. The
// document is written from these tables, along the kinds of records in RecordKind.h.
//
// RULES
// - Rows stand in the order of their paths, container by container: in that order they are printed.
// - A reader gives a value or, where the leaf is absent, none. An empty text is none.
// - What a leaf can't hold is left out: the reader reports a reason that names the value. Names
//   that YANG strings can't hold are reported by `leafValue`, for every row of a string.
//
// EXAMPLE
//   template <> struct Table<ForwardingGroupConfig> {
//     static std::string native(const Keys& keys) { return "the forwarding group " + ...; }
//     static constexpr Leaf<ForwardingGroupConfig> leaves[] = {
//         {"config/name", entryKey},
//         {"config/output-queue", at<&ForwardingGroupConfig::outputQueue>},
//         {"name", entryKey},
//     };
//   };
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

#include "Rok/Rok.h"
#include "host/Text.h"
#include "host/openconfig/Leaf.h"
#include "models/openconfig/Fields.h"

namespace host {

template <class Record>
using LeafReader = LeafValue (*)(const Record& record, const Keys& keys, const Faults& faults);

template <class Record>
struct LeafSource {
  LeafType type;
  LeafReader<Record> read;
  LeafLimits limits = {};
};

template <class Record>
struct Leaf {
  // Of a leaf that may stand only beside another one: YANG's `when`.
  struct When {
    bool (*holds)(const Record& record);
    std::string_view otherwise;  // what a value is then: " is no queue, by its input-type"
  };

  std::string_view path;  // below the record, "conditions/ipv4/config/dscp"
  LeafSource<Record> source;
  // The native object that the value comes from, for messages. Null: the one that the entry is
  // from.
  std::string (*native)(const Record& record, const Keys& keys) = nullptr;
  When when = {};
  Shown shown = Shown::always;
};

// The leaves of a record. Each table has `leaves` and `native(keys)`, and may have
// `isThere(record)` for records that are sometimes bookkeeping alone.
template <class Record>
struct Table;

// ===== Readers

// What some steps lead to: members, or operations that read. Null where a pointer or an optional on
// the way is.
template <auto step, auto... steps, class T>
const auto* follow(const T& from) {
  static_assert(std::is_reference_v<decltype(std::invoke(step, from))>, "it must stay");
  const auto* next = QosOc::Config::reached(std::invoke(step, from));
  if constexpr (sizeof...(steps) == 0) {
    return next;
  } else {
    using Last = decltype(follow<steps...>(*next));
    return next != nullptr ? follow<steps...>(*next) : Last{};
  }
}

template <class T>
constexpr LeafType typeOf() {
  if (std::is_same_v<T, bool>) return LeafType::boolean;
  if (std::is_same_v<T, Rok::String>) return LeafType::string;
  static_assert(sizeof(T) != 2, "no leaf has 16 bits yet");
  return sizeof(T) == 1 ? LeafType::uint8 : sizeof(T) == 4 ? LeafType::uint32 : LeafType::uint64;
}
template <class T>
constexpr LeafLimits limitsOf() {
  if constexpr (requires { T::max; }) return {.most = T::max};
  return {};
}
template <class T>
LeafValue valueOf(const T& v) {
  if constexpr (std::is_same_v<T, Rok::String>) {
    return std::string_view(v);
  } else if constexpr (requires { v.value(); }) {
    return std::uint64_t{v.value()};
  } else if constexpr (std::is_same_v<T, bool>) {
    return v;
  } else {
    return std::uint64_t{v};
  }
}

// The leaf at the end of some steps, whatever the record, with the type of what stands there.
template <auto... steps>
struct At {
  template <class Record>
  static LeafValue read(const Record& record, const Keys& /*keys*/, const Faults& /*faults*/) {
    const auto* value = follow<steps...>(record);
    return value != nullptr ? valueOf(*value) : LeafValue();
  }
  template <class Record>
  constexpr operator LeafSource<Record>() const {
    using T = std::remove_cvref_t<decltype(*follow<steps...>(std::declval<const Record&>()))>;
    return {typeOf<T>(), read<Record>, limitsOf<T>()};
  }
};
template <auto... steps>
inline constexpr At<steps...> at;

// The key of the record's own entry.
template <class Record>
LeafValue keyOf(const Record& /*record*/, const Keys& keys, const Faults& /*faults*/) {
  return keys.back();
}
// The same as a leaf, where it is a name.
struct EntryKey {
  template <class Record>
  constexpr operator LeafSource<Record>() const {
    return {LeafType::string, keyOf<Record>};
  }
};
inline constexpr EntryKey entryKey;

// ===== Values that the document holds

// Neither noncharacters nor most control characters.
bool isYangString(std::string_view text);

// A value for a message. Requires: it is there.
std::string shownValue(const LeafValue& value);

// What the document holds at a leaf. What it can't hold is reported, and absent.
template <class Record>
LeafValue leafValue(const Leaf<Record>& leaf, const Record& record, const Keys& keys,
                    const Faults& faults) {
  LeafValue value = leaf.source.read(record, keys, faults);
  const std::optional<std::string_view> text = textOf(value);
  if (isAbsent(value) || (text && text->empty())) return {};
  if (leaf.when.holds != nullptr && !leaf.when.holds(record)) {
    faults.leftOut([&] { return shownValue(value) + std::string(leaf.when.otherwise); });
    return {};
  }
  if (!text || leaf.source.type != LeafType::string || isYangString(*text)) return value;
  faults.leftOut([&] { return quoted(*text) + " is a name that YANG strings can't hold"; });
  return {};
}

}  // namespace host
