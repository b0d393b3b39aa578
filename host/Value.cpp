#include "host/Value.h"

namespace host {
namespace {

std::vector<const Member*> byKey(const Value::Object& object) {
  std::vector<const Member*> members;
  members.reserve(object.size());
  for (const Member& member : object) members.push_back(&member);
  std::sort(members.begin(), members.end(),
            [](const Member* a, const Member* b) { return a->key < b->key; });
  return members;
}

bool sameMembers(const Value::Object& a, const Value::Object& b) {
  const auto same = [](const Member* x, const Member* y) {
    return x->key == y->key && x->value == y->value;
  };
  const std::vector<const Member*> left = byKey(a);
  const std::vector<const Member*> right = byKey(b);
  return std::equal(left.begin(), left.end(), right.begin(), right.end(), same);
}

}  // namespace

void Value::put(const Rok::String& key, Value value) {
  for (Member& member : object()) {
    if (member.key != key) continue;
    member.value = std::move(value);
    return;
  }
  object().push_back({key, std::move(value)});
}

bool operator==(const Value& a, const Value& b) {
  const auto* left = a.as<Value::Object>();
  const auto* right = b.as<Value::Object>();
  return left != nullptr && right != nullptr ? sameMembers(*left, *right) : a.data_ == b.data_;
}

}  // namespace host
