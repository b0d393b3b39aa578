#include "host/Changes.h"

#include <algorithm>
#include <optional>
#include <span>
#include <unordered_set>
#include <utility>
#include <vector>

#include "host/CommentGuard.h"
#include "host/Draft.h"
#include "host/Nearest.h"
#include "host/Patch.h"
#include "host/Pointer.h"
#include "host/Sections.h"
#include "host/Text.h"
#include "host/ValueDifference.h"
#include "host/ValueJson.h"
#include "host/check/NearbyRaises.h"

namespace host {
namespace {

[[noreturn]] void refuse(const std::string& reason) { throw Fault("", reason); }

bool isBlank(std::string_view line) { return line.find_first_not_of(" \t\r\n") == line.npos; }

// The key that was probably meant by one under which nothing stands. A collection with many keys is
// not searched: a line may be wrong a thousand times a second.
std::string keyHint(const Draft& draft, const std::string& token) {
  constexpr std::size_t many = 1000;
  if (draft.size() > many) return "";
  const std::vector<Rok::String> keys = draft.keys();
  const std::string_view key = nearest(token, {keys.begin(), keys.end()});
  if (key.empty()) return "";
  return ": did you mean " + shownPointer(Tokens{std::string(key)}).substr(1) + '?';
}

// What stands below the draft. `tokens` are the keys as the line has them.
// Throws: Fault when there is nothing under one of the keys.
Draft& follow(Draft& draft, std::span<const Rok::String> keys, const Tokens& tokens) {
  Draft* at = &draft;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    Draft* below = at->at(keys[i]);
    if (below == nullptr) {
      refuse("nothing is at " + shownPointer(std::span(tokens).first(i + 1)) +
             keyHint(*at, tokens[i]));
    }
    at = below;
  }
  return *at;
}

std::unique_ptr<Place> follow(const Native& native, std::span<const Rok::String> keys) {
  std::unique_ptr<Place> place = nativePlace(native);
  for (const Rok::String& key : keys) place = place->at(key);
  return place;
}

std::span<const Rok::String> withoutLast(const std::vector<Rok::String>& keys) {
  return std::span(keys).first(keys.size() - 1);
}

// How an operation is written.
enum class Manner {
  whole,       // by one write of the place: a scalar, a set, what is one native object
  entry,       // a keyed entry: what is there is removed first
  collection,  // by the same operation on each of its entries
};

Manner mannerOf(const Schema& container, const Rok::String& key) {
  const Schema& schema = container.below(key);
  if (!schema.isObject() || schema.isWhole()) return Manner::whole;
  if (container.initial(key) != nullptr) return Manner::collection;
  return container.kind() == Schema::Kind::keyed ? Manner::entry : Manner::whole;
}

struct Target {
  std::vector<Rok::String> keys;  // canonical, of the place
  Manner manner = Manner::whole;
  const Schema* schema = nullptr;  // of the value that the operation brings
  const Value* initial = nullptr;  // what a removal leaves there; null: nothing
  bool inSet = false;              // the value joins the set that stands at the place
};

struct Change {
  Target target;
  std::optional<Value> value;  // nothing: removed
  bool isChange = true;        // false for a scalar that stays what it was
};

// ===== Checking

class ChangeCheck {
 public:
  // Checks an operation and carries it out on the draft. Nothing for a `test`. Throws: Fault.
  static std::optional<Change> check(const Patch& patch, std::size_t operation, Draft& draft);

 private:
  static Target resolve(const Tokens& tokens, Draft& draft);
  static std::string slashHint(const Tokens& tokens, Draft& draft);
  static bool isLikelyName(const std::vector<Rok::String>& keys, std::size_t half, Draft& draft);
  static bool canDescend(Target& target, const std::string& token);
  static void descend(Target& target, const Schema& at, const std::string& token);
  static void descendRecord(Target& target, const Schema& record, const std::string& token);
  static void descendCollection(Target& target, const Schema& keyed, const std::string& token);
  static void descendSet(Target& target, const Schema& set, const std::string& token);
  static void step(Target& target, const Schema& container, const Rok::String& key);
  static void test(const Draft& there, const Patch& patch, std::size_t operation,
                   const Schema& schema);
  static Value joined(const Value& set, const Value& element);
};

Target ChangeCheck::resolve(const Tokens& tokens, Draft& draft) {
  if (tokens.empty()) {
    refuse("the document can't be changed or tested as a whole: name a place in it");
  }
  Target target;
  target.schema = &nativeSchema();
  try {
    for (const std::string& token : tokens) descend(target, *target.schema, token);
  } catch (const Fault& fault) {
    refuse(fault.what() + slashHint(tokens, draft));
  }
  return target;
}

// A "/" in a name that was not escaped makes two tokens of it. Where the pointer leaves the schema,
// the last two are taken for one name, if that is likely one. A pointer that still leads nowhere then
// is asked for as far as it leads.
std::string ChangeCheck::slashHint(const Tokens& tokens, Draft& draft) {
  Tokens joined;
  Target before, target;
  target.schema = &nativeSchema();
  bool isJoined = false;
  for (const std::string& token : tokens) {
    Target next = target;
    if (canDescend(next, token)) {
      before = std::exchange(target, next);
      joined.push_back(token);
      continue;
    }
    const std::string name = joined.empty() ? "" : joined.back() + '/' + token;
    if (joined.empty() || !canDescend(next = before, name)) break;
    if (!isLikelyName(next.keys, joined.back().size(), draft)) break;
    target = next;
    joined.back() = name;
    isJoined = true;
  }
  if (!isJoined) return "";
  return ": a \"/\" in a name is written \"~1\": did you mean " + shownPointer(joined) + '?';
}

// Whether a name with a "/" after `half` characters, the last of the keys, is one that stands in its
// collection, or may be that of an interface, as Ethernet1/1 is, or the key of its comment.
bool ChangeCheck::isLikelyName(const std::vector<Rok::String>& keys, std::size_t half,
                               Draft& draft) {
  const std::string_view name = keys.back();
  const std::string_view collection = keys[keys.size() - 2];
  const bool isNumbered = name.substr(half + 1).find_first_of("0123456789") == 0;
  if (isNumbered && collection == "interfaces") return true;
  if (isNumbered && collection == "comments" && name.starts_with("if-")) return true;
  Draft* at = &draft;
  for (std::size_t i = 0; i < keys.size() && at != nullptr; ++i) at = at->at(keys[i]);
  return at != nullptr;
}

bool ChangeCheck::canDescend(Target& target, const std::string& token) {
  try {
    descend(target, *target.schema, token);
    return true;
  } catch (const Fault&) {
    return false;
  }
}

void ChangeCheck::descend(Target& target, const Schema& at, const std::string& token) {
  if (target.inSet) refuse("nothing can stand below " + quoted("-"));
  switch (at.kind()) {
    case Schema::Kind::record:
      return descendRecord(target, at, token);
    case Schema::Kind::keyed:
      return descendCollection(target, at, token);
    case Schema::Kind::set:
      return descendSet(target, at, token);
    default:
      refuse("nothing can stand below " + quoted(target.keys.back()));
  }
}

void ChangeCheck::descendRecord(Target& target, const Schema& record, const std::string& token) {
  const Schema::Member* member = record.member(token);
  if (member == nullptr) refuse("unknown member " + quoted(token) + record.hint(token));
  step(target, record, token);
}

void ChangeCheck::descendCollection(Target& target, const Schema& keyed, const std::string& token) {
  const std::optional<Rok::String> key = keyed.key().canonical(token);
  if (!key) refuse(quoted(token) + " is not " + keyed.key().expected + keyed.key().hint(token));
  step(target, keyed, *key);
}

void ChangeCheck::step(Target& target, const Schema& container, const Rok::String& key) {
  target.keys.push_back(key);
  target.schema = &container.below(key);
  target.manner = mannerOf(container, key);
  target.initial = container.initial(key);
}

// The elements of a set have no places of their own, but one can be added.
void ChangeCheck::descendSet(Target& target, const Schema& set, const std::string& token) {
  if (token != "-") {
    refuse(quoted(target.keys.back()) +
           " is a set and its elements have no index: change it as a " +
           "whole, or add to it at \"-\"");
  }
  target.inSet = true;
  target.schema = &set.element();
}

Value ChangeCheck::joined(const Value& set, const Value& element) {
  Value::List list = set.list();
  if (std::find(list.begin(), list.end(), element) != list.end()) {
    refuse("the set holds this value already");
  }
  const auto behind = std::find_if(list.begin(), list.end(), [&](const Value& other) {
    return other.number() > element.number();
  });
  list.insert(behind, element);
  return Value(std::move(list));
}

void ChangeCheck::test(const Draft& there, const Patch& patch, std::size_t operation,
                       const Schema& schema) {
  const Value found = there.value();
  Value expected;
  try {
    expected = patch.value(operation, schema);
  } catch (const Fault& fault) {
    refuse("test failed: " + shown(valueJson(found, schema)) + " is there; " + fault.what());
  }
  const auto difference = firstDifference(expected, found, schema);
  if (difference) refuse("test failed: " + *difference);
}

std::optional<Change> ChangeCheck::check(const Patch& patch, std::size_t operation, Draft& draft) {
  const auto& [kind, path] = patch.operations()[operation];
  const Tokens tokens = *pointerTokens(path);
  try {
    Change change{resolve(tokens, draft), std::nullopt};
    const auto& [keys, manner, schema, initial, inSet] = change.target;
    if (inSet && kind != Patch::Kind::add) refuse("nothing stands at \"-\": it is only for add");
    Draft& parent = follow(draft, withoutLast(keys), tokens);
    const Draft* there = parent.at(keys.back());
    if (there == nullptr && kind != Patch::Kind::add) {
      refuse("nothing is there" + keyHint(parent, tokens.back()));
    }
    if (kind == Patch::Kind::test) {
      test(*there, patch, operation, *schema);
      return std::nullopt;
    }
    if (kind != Patch::Kind::remove) change.value = patch.value(operation, *schema);
    if (kind == Patch::Kind::remove && initial != nullptr) change.value = *initial;
    if (inSet) change.value = joined(there->value(), *change.value);
    const bool isScalar = schema->kind() == Schema::Kind::scalar && !inSet;
    change.isChange = !(isScalar && there && change.value && there->value() == *change.value);
    if (change.value) {
      parent.put(keys.back(), *change.value);
    } else {
      parent.erase(keys.back());
    }
    return change;
  } catch (const Fault& fault) {
    throw Fault(tokens, fault.what());
  }
}

// ===== Writing

class ChangeWrite {
 public:
  // `at` is where the writes of the moment are, for the reports of `writes`.
  ChangeWrite(const Native& native, Writes& writes, std::vector<Rok::String>& at)
      : native_(native), writes_(writes), at_(at) {}

  void write(const Change& change);

 private:
  void writeCollection(Place& place, const Schema& schema, const Value& value);
  void eraseMissing(Place& place, const Schema& schema, const Value& value);
  void putAll(Place& place, const Schema& schema, const Value& value);
  void put(Place& place, const Rok::String& key, const Value& value) {
    below(key, [&] { place.put(key, value, writes_); });
  }
  void erase(Place& place, const Rok::String& key) {
    below(key, [&] { place.erase(key, writes_); });
  }
  template <class Act>
  void below(const Rok::String& key, const Act& act) {
    at_.push_back(key);
    act();
    at_.pop_back();
  }

  const Native& native_;
  Writes& writes_;
  std::vector<Rok::String>& at_;
};

void ChangeWrite::write(const Change& change) {
  const auto& [keys, manner, schema, initial, inSet] = change.target;
  const Rok::String& key = keys.back();
  const std::unique_ptr<Place> parent = follow(native_, withoutLast(keys));
  at_.assign(keys.begin(), keys.end() - 1);
  if (manner == Manner::collection) {
    return below(key, [&] { writeCollection(*parent->at(key), *schema, *change.value); });
  }
  const bool goes = !change.value || (manner == Manner::entry && parent->has(key));
  if (goes) erase(*parent, key);
  if (change.value) put(*parent, key, *change.value);
}

// First the entries that are removed, then those that are added or replaced: through all mounted
// entries each time. A setting that is left at its default is removed.
void ChangeWrite::writeCollection(Place& place, const Schema& schema, const Value& value) {
  eraseMissing(place, schema, value);
  putAll(place, schema, value);
}

void ChangeWrite::eraseMissing(Place& place, const Schema& schema, const Value& value) {
  std::unordered_set<std::string_view> stay;
  for (const Member& entry : value.object()) stay.insert(entry.key);
  for (const Rok::String& key : place.keys()) {
    if (!stay.contains(key)) erase(place, key);
  }
  for (const auto& [key, entry] : value.object()) {
    const Value* initial = schema.initial(key);
    if (initial == nullptr) continue;
    if (mannerOf(schema, key) == Manner::collection) {
      below(key, [&, &key = key, &entry = entry] {
        eraseMissing(*place.at(key), schema.below(key), entry);
      });
    } else if (entry == *initial) {
      put(place, key, entry);
    }
  }
}

void ChangeWrite::putAll(Place& place, const Schema& schema, const Value& value) {
  for (const auto& [key, entry] : value.object()) {
    const Manner manner = mannerOf(schema, key);
    if (manner == Manner::collection) {
      below(key,
            [&, &key = key, &entry = entry] { putAll(*place.at(key), schema.below(key), entry); });
      continue;
    }
    if (manner == Manner::entry && place.has(key)) erase(place, key);
    put(place, key, entry);
  }
}

// A line that was read and checked.
struct Judged {
  std::vector<Change> changes;
  std::optional<BadComment> badComment;  // the first that the line has a root read
};

// `guard` may be null. Throws: Fault for a line that doesn't apply.
Judged judged(const Native& native, std::string_view text, CommentGuard* guard) {
  Judged line;
  const Patch patch(text);
  Draft draft(nativePlace(native));
  if (guard != nullptr) guard->lineBegins();
  for (std::size_t i = 0; i < patch.operations().size(); ++i) {
    std::optional<Change> change = ChangeCheck::check(patch, i, draft);
    if (!change) continue;
    if (guard != nullptr && !line.badComment) {
      const Value* value = change->value ? &*change->value : nullptr;
      line.badComment = guard->judge({change->target.keys, value, change->isChange}, draft);
    }
    line.changes.push_back(std::move(*change));
  }
  return line;
}

}  // namespace

Changes::Changes(const Native& native, Report report)
    : native_(native), report_(std::move(report)) {}

Changes::Changes(const Native& native, KeptRoots& roots, BadComments badComments, Report report)
    : native_(native),
      roots_(&roots),
      badComments_(badComments),
      guard_(std::make_unique<CommentGuard>(native, roots)),
      report_(std::move(report)) {}

Changes::Changes(const Native& native, Judging /*judging*/, Report report)
    : native_(native), guard_(std::make_unique<CommentGuard>(native)), report_(std::move(report)) {}

Changes::~Changes() = default;

Changes::Outcome Changes::line(std::string_view text) {
  ++number_;
  if (isBlank(text)) return Outcome::blank;
  Judged line;
  try {
    line = judged(native_, text, guard_.get());
  } catch (const Fault& fault) {
    return refuse(fault);
  }
  if (line.badComment && badComments_ == BadComments::refused) {
    return refuse(Fault(line.badComment->place(), line.badComment->reason()));
  }
  if (roots_ == nullptr) {
    badComment_ = std::move(line.badComment);
  } else if (line.badComment) {
    tell(line.badComment->text() + endsTheProgram);
  }
  std::vector<Rok::String> at;
  Writes writes([&](const std::string& what) { tell(what + culprits(at, what)); });
  for (const Change& change : line.changes) ChangeWrite(native_, writes, at).write(change);
  if (roots_ == nullptr) return Outcome::applied;
  for (const Change& change : line.changes) roots_->changed(change.target.keys);
  roots_->retry(badComments_, [this](const std::string& what) { tell(what); });
  return Outcome::applied;
}

Changes::Outcome Changes::refuse(const Fault& fault) {
  refusal_ = fault;
  tell("refused: " + fault.place() + ": " + fault.what());
  return Outcome::refused;
}

// Of service policies that share a policy map, the one that a line brings is refused.
std::string Changes::culprits(std::span<const Rok::String> at, std::string_view what) {
  if (!nearby_) nearby_ = std::make_unique<NearbyRaises>(native_);
  std::vector<Tokens> places;
  nearby_->at(at, [&](Raise raise) {
    const bool isOther = raise.root == "interface-classifier" &&
                         !std::ranges::equal(raise.place, at, {}, {}, [](const Rok::String& key) {
                           return std::string_view(key);
                         });
    if (explains(raise, what) && !isOther) places.push_back(std::move(raise.place));
  });
  return atPlaces(std::move(places));
}

void Changes::tell(const std::string& what) {
  clean_ = false;
  report_("line " + std::to_string(number_) + ": " + what);
}

}  // namespace host
