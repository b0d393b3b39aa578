#include "host/ValueDifference.h"

#include <map>

#include "host/Pointer.h"
#include "host/Text.h"
#include "host/ValueJson.h"

namespace host {
namespace {

// What stands at a place of two values; null where nothing does.
struct Sides {
  const Value* expected = nullptr;
  const Value* found = nullptr;
};

bool isObject(const Value* value) {
  return value != nullptr && value->as<Value::Object>() != nullptr;
}

bool isSame(const Sides& at) {
  if (at.expected == nullptr || at.found == nullptr) return at.expected == at.found;
  return *at.expected == *at.found;
}

std::map<Rok::String, Sides> below(const Sides& at) {
  std::map<Rok::String, Sides> members;
  for (const Member& member : at.expected->object()) members[member.key].expected = &member.value;
  for (const Member& member : at.found->object()) members[member.key].found = &member.value;
  return members;
}

std::string text(const Value* value, const Schema& schema) {
  return value != nullptr ? shown(valueJson(*value, schema)) : "nothing";
}

// Follows the first difference down to where one side is no object. Requires: they differ.
std::string difference(const Sides& at, const Schema& schema, Tokens& place) {
  if (isObject(at.expected) && isObject(at.found)) {
    for (const auto& [key, member] : below(at)) {
      if (isSame(member)) continue;
      const bool isEntry = schema.kind() == Schema::Kind::keyed;
      place.emplace_back(isEntry ? schema.key().spelled(key) : key);
      return difference(member, schema.below(key), place);
    }
  }
  const std::string where = place.empty() ? "" : "at " + shownPointer(place) + ": ";
  return where + "expected " + text(at.expected, schema) + ", and " + text(at.found, schema) +
         " is there";
}

}  // namespace

std::optional<std::string> firstDifference(const Value& expected, const Value& found,
                                           const Schema& schema) {
  if (expected == found) return std::nullopt;
  Tokens place;
  return difference({&expected, &found}, schema, place);
}

}  // namespace host
