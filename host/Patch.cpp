#include "host/Patch.h"

#include <optional>

#include "host/JsonStream.h"
#include "host/Nearest.h"
#include "host/Pointer.h"
#include "host/SchemaReader.h"
#include "host/Text.h"

namespace host {
namespace {

using Json = rapidjson::Value;

constexpr unsigned deepest = 32;  // more than any value of the document needs

// Hands events on to the document that is built, up to a depth: a deeper one could not be walked.
class Shallow {
 public:
  explicit Shallow(rapidjson::Document& document) : document_(document) {}

  bool Null() { return document_.Null(); }
  bool Bool(bool v) { return document_.Bool(v); }
  bool Int(int v) { return document_.Int(v); }
  bool Uint(unsigned v) { return document_.Uint(v); }
  bool Int64(std::int64_t v) { return document_.Int64(v); }
  bool Uint64(std::uint64_t v) { return document_.Uint64(v); }
  bool Double(double v) { return document_.Double(v); }
  bool RawNumber(const char* text, unsigned size, bool copy) {
    return document_.RawNumber(text, size, copy);
  }
  bool String(const char* text, unsigned size, bool copy) {
    return document_.String(text, size, copy);
  }
  bool Key(const char* text, unsigned size, bool copy) { return document_.Key(text, size, copy); }
  bool StartObject() { return ++depth_ <= deepest && document_.StartObject(); }
  bool StartArray() { return ++depth_ <= deepest && document_.StartArray(); }
  bool EndObject(unsigned members) { return --depth_, document_.EndObject(members); }
  bool EndArray(unsigned elements) { return --depth_, document_.EndArray(elements); }

  bool isTooDeep() const { return depth_ > deepest; }

 private:
  rapidjson::Document& document_;
  unsigned depth_ = 0;
};

[[noreturn]] void refuseLine(const std::string& reason) { throw Fault("(line)", reason); }

std::string_view textOf(const Json& json) { return {json.GetString(), json.GetStringLength()}; }

// In these, `place()` makes the text by which messages name the operation: only a line with a fault
// needs it.

// The member of an operation; null when there is none.
template <class Place>
const Json* member(const Json& operation, std::string_view name, const Place& place) {
  const Json* found = nullptr;
  for (auto m = operation.MemberBegin(); m != operation.MemberEnd(); ++m) {
    if (textOf(m->name) != name) continue;
    if (found != nullptr) throw Fault(place(), "the member \"" + std::string(name) + "\" twice");
    found = &m->value;
  }
  return found;
}

template <class Place>
std::string_view stringMember(const Json& operation, std::string_view name, const Place& place) {
  const Json* found = member(operation, name, place);
  const auto shownName = [&] { return "\"" + std::string(name) + "\""; };
  if (found == nullptr) throw Fault(place(), "the member " + shownName() + " is missing");
  if (!found->IsString()) throw Fault(place(), "the member " + shownName() + " is not a string");
  if (!isUtf8(textOf(*found))) throw Fault(place(), shownName() + " is not valid Unicode");
  return textOf(*found);
}

template <class Place>
Patch::Kind kindOf(std::string_view name, const Place& place) {
  if (name == "add") return Patch::Kind::add;
  if (name == "replace") return Patch::Kind::replace;
  if (name == "remove") return Patch::Kind::remove;
  if (name == "test") return Patch::Kind::test;
  if (name == "move" || name == "copy") {
    throw Fault(place(), std::string(name) + " is not supported: use remove and add");
  }
  throw Fault(place(), "unknown operation " + quoted(name) +
                           didYouMeanOf(name, {"add", "replace", "remove", "test"}));
}

Patch::Operation operationOf(const Json& json, std::size_t number) {
  const auto inLine = [&] { return "(operation " + std::to_string(number) + ")"; };
  if (!json.IsObject()) throw Fault(inLine(), "not an object");
  Patch::Operation operation{Patch::Kind::test, std::string(stringMember(json, "path", inLine))};
  const std::optional<Tokens> tokens = pointerTokens(operation.path);
  const auto place = [&] { return tokens ? shownPointer(*tokens) : shown(operation.path); };
  operation.kind = kindOf(stringMember(json, "op", place), place);
  if (!tokens) throw Fault(place(), "not a JSON Pointer");
  if (operation.kind != Patch::Kind::remove && member(json, "value", place) == nullptr) {
    throw Fault(place(), "the member \"value\" is missing");
  }
  return operation;
}

}  // namespace

struct Patch::Text {
  rapidjson::Document document;
};

Patch::Patch(std::string_view line) : text_(std::make_unique<Text>()) {
  JsonStream stream(line);
  Shallow shallow(text_->document);
  SyntaxFault syntax;
  auto generate = [&](rapidjson::Document& /*document*/) {
    syntax = parseJson(stream, shallow);
    return syntax.reason.empty() && !shallow.isTooDeep();
  };
  text_->document.Populate(generate);
  if (shallow.isTooDeep()) refuseLine("nested too deep");
  if (!syntax.reason.empty()) {
    refuseLine("not JSON: at byte " + std::to_string(syntax.offset + 1) + ": " + syntax.reason);
  }
  if (!text_->document.IsArray()) refuseLine("not an array of operations");
  for (const Json& json : text_->document.GetArray()) {
    operations_.push_back(operationOf(json, operations_.size() + 1));
  }
}

Patch::~Patch() = default;

Value Patch::value(std::size_t operation, const Schema& schema) const {
  const Json& json = text_->document[static_cast<rapidjson::SizeType>(operation)];
  SchemaReader reader(schema);
  reader.mostFaultsIs(1);
  json["value"].Accept(reader);
  if (reader.faults().empty()) return reader.take();
  const Fault& fault = reader.faults().front();
  const bool whole = fault.place() == shownPointer({});
  throw Fault("", whole ? fault.what() : "at " + fault.place() + ": " + fault.what());
}

}  // namespace host
