// OVERVIEW: the leaves of the OpenConfig document. Each record has one table of its leaves, as
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

#include <cstdint>
#include <functional>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>
#include <vector>

#include "Dorpel/Export.h"
#include "Rok/Rok.h"
#include "host/Text.h"
#include "models/openconfig/Fields.h"

namespace QOS_EXPORT host {

class JsonWriter;

// A leaf reference has the type of its target; a leaf-list of bytes has no order.
enum class LeafType : unsigned char {
  boolean,
  decimal64,
  enumeration,
  identityref,
  string,
  uint8,
  uint8List,
  uint32,
  uint64,
};

// Absent; true or false; a number; a text of the record; a text made for the document; a leaf-list.
using LeafValue = std::variant<std::monostate, bool, std::uint64_t, std::string_view, std::string,
                               std::vector<unsigned>>;
inline bool isAbsent(const LeafValue& value) { return value.index() == 0; }

// The keys of the list entries that lead to a record, the outermost first, as the document has
// them.
using Keys = std::vector<std::string_view>;

// Is called for what the leaf that is being read can't hold. Without `hear` no text is made.
struct Faults {
  std::function<void(const std::string& reason)> hear = nullptr;

  template <class Reason>
  void leftOut(const Reason& reason) const {
    if (hear) hear(reason());
  }
};

template <class Record>
using LeafReader = LeafValue (*)(const Record& record, const Keys& keys, const Faults& faults);

// What a leaf may hold, where its type allows more.
struct LeafLimits {
  std::uint64_t most = ~std::uint64_t{0};         // of a number, and of each in a leaf-list
  std::span<const std::string_view> names = {};   // of an enumeration, or identities
  bool (*fits)(std::string_view text) = nullptr;  // of a text
  std::string_view expected = {};                 // what fits, for messages
};

template <class Record>
struct LeafSource {
  LeafType type;
  LeafReader<Record> read;
  LeafLimits limits = {};
};

// Which consumers get a leaf.
enum class Shown : unsigned char { always, withInterfaceRef };

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

// The text that a value is, if it is one.
std::optional<std::string_view> textOf(const LeafValue& value);
// A value for a message. Requires: it is there.
std::string shownValue(const LeafValue& value);

// Writes a value as RFC 7951 has it. Requires: it is there.
void writeLeaf(JsonWriter& out, LeafType type, const LeafValue& value);
// The same as a text of its own, compact.
std::string leafText(LeafType type, const LeafValue& value);

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
