#include "host/Draft.h"

namespace host {

Draft::Draft(const Value& value) {
  if (value.as<Value::Object>() == nullptr) {
    leaf_ = value;
    return;
  }
  for (const Member& member : value.object()) put(member.key, member.value);
}

Draft* Draft::at(const Rok::String& key) {
  if (const auto found = touched_.find(key); found != touched_.end()) return found->second.get();
  std::unique_ptr<Place> place = native_ ? native_->at(key) : nullptr;
  if (!place) return nullptr;
  return (touched_[key] = std::make_unique<Draft>(std::move(place))).get();
}

void Draft::put(const Rok::String& key, const Value& value) {
  touched_[key] = std::make_unique<Draft>(value);
}

void Draft::erase(const Rok::String& key) { touched_[key] = nullptr; }

Value Draft::value() const {
  if (leaf_) return *leaf_;
  if (touched_.empty() && native_) return native_->value();
  Value::Object members;
  for (const Rok::String& key : keys()) {
    const auto touched = touched_.find(key);
    members.push_back(
        {key, touched != touched_.end() ? touched->second->value() : native_->at(key)->value()});
  }
  return Value(std::move(members));
}

std::vector<Rok::String> Draft::keys() const {
  std::vector<Rok::String> keys;
  if (native_) keys = native_->keys();
  std::erase_if(keys, [&](const Rok::String& key) { return touched_.contains(key); });
  for (const auto& [key, draft] : touched_) {
    if (draft) keys.push_back(key);
  }
  return keys;
}

}  // namespace host
