// A native document as a tree that can be put together, and taken apart, by places.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "host/Json.h"
#include "host/Pointer.h"

namespace days {

class Document {
 public:
  Document() { tree_.SetObject(); }
  // Requires: the text is JSON.
  explicit Document(std::string_view text) { tree_.Parse(text.data(), text.size()); }
  Document(const Document& other) { tree_.CopyFrom(other.tree_, tree_.GetAllocator()); }
  Document& operator=(const Document&) = delete;

  // Makes `json` stand at a place, and objects above it. An object is joined with one that is there.
  void put(const host::Tokens& place, std::string_view json);
  // Adds an element to the list at a place, unless it is there.
  void include(const host::Tokens& place, std::string_view json);
  // Of a list the tokens are indices. Nothing happens where nothing stands.
  void remove(const host::Tokens& place);
  // The same document without a place, or with another value there.
  Document without(const host::Tokens& place) const;
  Document with(const host::Tokens& place, std::string_view json) const;

  // Null when nothing stands there.
  const host::rapidjson::Value* find(const host::Tokens& place) const;
  // The members or indices below a place.
  std::vector<std::string> below(const host::Tokens& place) const;
  // Of all, or of what stands at a place.
  std::string text(const host::Tokens& place = {}) const;

 private:
  using Json = host::rapidjson::Value;

  Json& made(const host::Tokens& place);
  void join(Json& into, const Json& from);
  Json parsed(std::string_view json);

  host::rapidjson::Document tree_;
};

}  // namespace days
