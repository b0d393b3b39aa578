// A comment as its readers take it: a JSON object, in which one member holds what is ours.
#pragma once

#include <string>
#include <string_view>

#include "host/Json.h"

namespace host {

inline constexpr std::string_view metaDataKey = "MetaData-OpenConfig";

class CommentDocument {
 public:
  // The text must outlive this.
  explicit CommentDocument(std::string_view text);

  // Null when the text is no JSON object. Nothing is passed over before it, such as a byte-order mark,
  // and a text with a NUL in it is none.
  const rapidjson::Value* object() const { return isObject_ ? &document_ : nullptr; }
  // What our member has; null when it is not there.
  const rapidjson::Value* metaData() const;
  // Why the text is no object, as part of a sentence. Requires: it is none.
  std::string fault() const;

 private:
  std::string faultAt(std::size_t offset) const;

  std::string_view text_;
  rapidjson::Document document_;
  bool isObject_ = false;
};

}  // namespace host
