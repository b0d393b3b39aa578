#include "tests/days/check/Document.h"

#include <cstdlib>

namespace days {
namespace {

namespace json = host::rapidjson;

json::Value::StringRefType reference(const std::string& text) {
  return {text.data(), static_cast<json::SizeType>(text.size())};
}

// The value one step below; null when there is none.
const json::Value* step(const json::Value& value, const std::string& token) {
  if (value.IsObject()) {
    const auto found = value.FindMember(json::Value(reference(token)));
    return found != value.MemberEnd() ? &found->value : nullptr;
  }
  if (!value.IsArray()) return nullptr;
  const auto index = static_cast<json::SizeType>(std::strtoul(token.c_str(), nullptr, 10));
  return index < value.Size() ? &value[index] : nullptr;
}

}  // namespace

void Document::put(const host::Tokens& place, std::string_view json) {
  const Json value = parsed(json);
  join(made(place), value);
}

void Document::include(const host::Tokens& place, std::string_view json) {
  Json element = parsed(json);
  Json& list = made(place);
  if (!list.IsArray()) list.SetArray();
  for (const Json& other : list.GetArray()) {
    if (other == element) return;
  }
  list.PushBack(element, tree_.GetAllocator());
}

void Document::remove(const host::Tokens& place) {
  const host::Tokens above(place.begin(), place.end() - 1);
  auto* parent = const_cast<Json*>(find(above));
  if (parent == nullptr || step(*parent, place.back()) == nullptr) return;
  if (parent->IsObject()) {
    parent->EraseMember(parent->FindMember(Json(reference(place.back()))));
  } else {
    parent->Erase(parent->Begin() + std::strtol(place.back().c_str(), nullptr, 10));
  }
}

Document Document::without(const host::Tokens& place) const {
  Document copy(*this);
  copy.remove(place);
  return copy;
}

Document Document::with(const host::Tokens& place, std::string_view json) const {
  Document copy(without(place));
  copy.put(place, json);
  return copy;
}

const json::Value* Document::find(const host::Tokens& place) const {
  const Json* value = &tree_;
  for (const std::string& token : place) {
    if (value != nullptr) value = step(*value, token);
  }
  return value;
}

std::vector<std::string> Document::below(const host::Tokens& place) const {
  const Json* value = find(place);
  std::vector<std::string> tokens;
  if (value != nullptr && value->IsObject()) {
    for (const auto& [key, member] : value->GetObject())
      tokens.emplace_back(key.GetString(), key.GetStringLength());
  } else if (value != nullptr && value->IsArray()) {
    for (json::SizeType i = 0; i < value->Size(); ++i) tokens.push_back(std::to_string(i));
  }
  return tokens;
}

std::string Document::text(const host::Tokens& place) const {
  json::StringBuffer buffer;
  json::Writer<json::StringBuffer> writer(buffer);
  find(place)->Accept(writer);
  return {buffer.GetString(), buffer.GetSize()};
}

json::Value& Document::made(const host::Tokens& place) {
  Json* value = &tree_;
  for (const std::string& token : place) {
    if (!value->IsObject()) value->SetObject();
    if (step(*value, token) == nullptr) {
      Json key(token.data(), static_cast<json::SizeType>(token.size()), tree_.GetAllocator());
      value->AddMember(key, Json(), tree_.GetAllocator());
    }
    value = const_cast<Json*>(step(*value, token));
  }
  return *value;
}

void Document::join(Json& into, const Json& from) {
  if (!into.IsObject() || !from.IsObject()) {
    into.CopyFrom(from, tree_.GetAllocator());
    return;
  }
  for (const auto& [key, value] : from.GetObject()) {
    const auto found = into.FindMember(key);
    if (found != into.MemberEnd()) {
      join(found->value, value);
    } else {
      into.AddMember(Json(key, tree_.GetAllocator()), Json(value, tree_.GetAllocator()),
                     tree_.GetAllocator());
    }
  }
}

json::Value Document::parsed(std::string_view json) {
  json::Document document(&tree_.GetAllocator());
  document.Parse(json.data(), json.size());
  return Json(document, tree_.GetAllocator());
}

}  // namespace days
