#include "host/check/Positions.h"

#include <cerrno>
#include <cstring>
#include <map>
#include <memory>

#include "host/Fault.h"
#include "host/JsonStream.h"
#include "host/Sections.h"

namespace host {
namespace {

// The places that are looked for, by their tokens.
struct Wanted {
  std::map<std::string, Wanted, std::less<>> below;
  TextPosition position = {};  // once it is found
};

// Follows the text along the places that are wanted, and passes over all others.
class Locator : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, Locator> {
 public:
  Locator(const JsonStream& stream, Wanted& document)
      : stream_(stream), next_{&document, &nativeSchema()} {}

  bool Default() { return value(false); }
  bool StartObject() { return value(true); }
  bool StartArray() { return value(true); }
  bool EndObject(unsigned /*members*/) { return end(); }
  bool EndArray(unsigned /*elements*/) { return end(); }

  bool Key(const char* text, unsigned size, bool /*copy*/) {
    key_ = stream_.token();
    const auto& [wanted, schema] = open_.back();
    next_ = {};
    if (wanted == nullptr) return true;
    std::string token(text, size);
    if (schema->kind() == Schema::Kind::keyed) {
      // A file may have become another one since it was judged.
      const auto canonical = schema->key().canonical(Rok::String(token));
      if (!canonical) return true;
      token = std::string_view(schema->key().spelled(*canonical));
    }
    if (const auto found = wanted->below.find(token); found != wanted->below.end()) {
      next_ = {&found->second, &schema->below(token)};
    }
    return true;
  }

 private:
  struct At {
    Wanted* wanted = nullptr;
    const Schema* schema = nullptr;
  };

  bool value(bool isOpening) {
    if (next_.wanted != nullptr) {
      const bool isMember = isOpening && !open_.empty();
      next_.wanted->position = stream_.at(isMember ? key_ : stream_.token());
    }
    if (isOpening) open_.push_back(std::exchange(next_, {}));
    return true;
  }
  bool end() {
    open_.pop_back();
    next_ = {};
    return true;
  }

  const JsonStream& stream_;
  std::vector<At> open_;
  At next_;
  std::size_t key_ = 0;  // where the last key began
};

std::vector<TextPosition> positions(JsonStream& stream, std::span<const Tokens> places) {
  Wanted document;
  for (const Tokens& place : places) {
    Wanted* at = &document;
    for (const std::string& token : place) at = &at->below[token];
  }
  Locator locator(stream, document);
  parseJson(stream, locator);

  std::vector<TextPosition> found;
  for (const Tokens& place : places) {
    const Wanted* at = &document;
    TextPosition position = document.position;
    for (const std::string& token : place) {
      at = &at->below.find(token)->second;
      if (at->position != TextPosition()) position = at->position;
    }
    found.push_back(position);
  }
  return found;
}

}  // namespace

std::vector<TextPosition> positionsOfText(std::string_view text, std::span<const Tokens> places) {
  JsonStream stream(text);
  return positions(stream, places);
}

std::vector<TextPosition> positionsOfFile(const std::string& path, std::span<const Tokens> places) {
  struct Close {
    void operator()(std::FILE* file) const { std::fclose(file); }
  };
  const std::unique_ptr<std::FILE, Close> file(std::fopen(path.c_str(), "rb"));
  if (!file) throw Refusal({"", std::string("cannot be read: ") + std::strerror(errno)});
  JsonStream stream(file.get());
  return positions(stream, places);
}

}  // namespace host
