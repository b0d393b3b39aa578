#include "host/CommentDocument.h"

#include "host/Text.h"

namespace host {
namespace {

// The parser's words, as part of a sentence.
std::string wordsOf(rapidjson::ParseErrorCode code) {
  std::string words = rapidjson::GetParseError_En(code);
  words[0] = lower(words[0]);
  if (words.ends_with('.')) words.pop_back();
  return words;
}

}  // namespace

CommentDocument::CommentDocument(std::string_view text) : text_(text) {
  if (text.find('\0') != text.npos) return;
  // Parse() would pass over a byte-order mark.
  rapidjson::MemoryStream stream(text.data(), text.size());
  document_.ParseStream<rapidjson::kParseIterativeFlag>(stream);
  isObject_ = !document_.HasParseError() && document_.IsObject();
}

const rapidjson::Value* CommentDocument::metaData() const {
  if (!isObject_) return nullptr;
  const auto found = document_.FindMember(metaDataKey.data());
  return found != document_.MemberEnd() ? &found->value : nullptr;
}

std::string CommentDocument::fault() const {
  if (const std::size_t nul = text_.find('\0'); nul != text_.npos)
    return "a NUL byte" + faultAt(nul);
  if (!document_.HasParseError()) return "it is no object";
  const std::size_t offset = document_.GetErrorOffset();
  const auto code = document_.GetParseError();
  const bool isControl = offset < text_.size() && static_cast<unsigned char>(text_[offset]) < ' ';
  if (isControl && code == rapidjson::kParseErrorStringEscapeInvalid)
    return "a control character in a string" + faultAt(offset);
  if (text_.starts_with("\xef\xbb\xbf")) return "a byte-order mark" + faultAt(0);
  return wordsOf(code) + faultAt(offset);
}

std::string CommentDocument::faultAt(std::size_t offset) const {
  return offset < text_.size() ? " at byte " + std::to_string(offset + 1) : " at its end";
}

}  // namespace host
