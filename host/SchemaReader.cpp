#include "host/SchemaReader.h"

#include <algorithm>
#include <sstream>
#include <utility>

#include "host/JsonStream.h"
#include "host/Text.h"

namespace host {
namespace {

// Not to be mistaken for a whole number.
std::string realText(double real) {
  std::ostringstream out;
  out << real;
  return out.str().find_first_of(".e") == std::string::npos ? out.str() + ".0" : out.str();
}

// A scalar as a message names it.
std::string described(const Value& value) {
  std::ostringstream out;
  if (const auto* v = value.as<bool>()) out << (*v ? "true" : "false");
  if (const auto* v = value.as<std::uint64_t>()) out << *v;
  if (const auto* v = value.as<std::int64_t>()) out << *v;
  if (const auto* v = value.as<double>()) out << realText(*v);
  if (const auto* v = value.as<Rok::String>()) out << quoted(*v);
  return out.str();
}

bool isArray(const Schema& schema) {
  return schema.kind() == Schema::Kind::set || schema.kind() == Schema::Kind::list;
}

constexpr std::size_t many = 16;  // entries of a collection

// A bit for each member of a record.
std::uint64_t bitOf(const Schema& record, const Schema::Member& member) {
  return std::uint64_t{1} << (&member - record.members().data());
}

bool holdsCollections(const Schema& record) {
  const auto isCollection = [](const Schema::Member& member) {
    return member.schema.kind() == Schema::Kind::keyed;
  };
  return std::any_of(record.members().begin(), record.members().end(), isCollection);
}

bool lessNumber(const Value& a, const Value& b) { return a.number() < b.number(); }

// An object that has room for the members of its record.
Value object(const Schema& schema) {
  Value::Object members;
  if (schema.kind() == Schema::Kind::record) members.reserve(schema.members().size());
  return Value(std::move(members));
}

}  // namespace

bool SchemaReader::Null() {
  if (isPassing()) return passScalar();
  if (expected().mayBeNull()) return complete(Value());
  return refuse("null is never a value here: expected " + expected().expected());
}
bool SchemaReader::Bool(bool v) { return scalar(Value(v)); }
bool SchemaReader::Int64(std::int64_t v) {
  return v >= 0 ? Uint64(static_cast<std::uint64_t>(v)) : scalar(Value(v));
}
bool SchemaReader::Uint64(std::uint64_t v) { return scalar(Value(v)); }
bool SchemaReader::Double(double v) { return scalar(Value(v)); }

bool SchemaReader::String(const char* text, unsigned size, bool /*copy*/) {
  if (isPassing()) return passScalar();
  const std::string_view view(text, size);
  if (!isUtf8(view)) return refuse("this string is not valid Unicode: " + quoted(view));
  return scalar(Value(textOf(view)));
}

bool SchemaReader::StartObject() {
  if (isPassing()) return beginPassing();
  if (!expected().isObject()) return passOver("an object");
  begin();
  return true;
}

bool SchemaReader::StartArray() {
  if (isPassing()) return beginPassing();
  if (!isArray(expected())) return passOver("an array");
  begin();
  return true;
}

bool SchemaReader::Key(const char* text, unsigned size, bool /*copy*/) {
  if (isPassing()) return true;
  const std::string_view key(text, size);
  Frame& frame = frames_.back();
  frame.atMember = isUtf8(key);
  if (!frame.atMember) return refuseKey("this key is not valid Unicode: " + quoted(key));
  return frame.schema->kind() == Schema::Kind::keyed ? keyOfCollection(key) : keyOfRecord(key);
}

bool SchemaReader::EndObject(unsigned /*members*/) {
  if (isPassing()) return endPassing();
  end();
  return !isFull();
}

bool SchemaReader::EndArray(unsigned elements) { return EndObject(elements); }

// The schema of the value that comes now.
const Schema& SchemaReader::expected() const {
  if (frames_.empty()) return schema_;
  const Frame& frame = frames_.back();
  return isArray(*frame.schema) ? frame.schema->element() : *frame.next;
}

void SchemaReader::fault(const std::string& reason) {
  const TextPosition position = stream_ != nullptr ? stream_->at(stream_->token()) : TextPosition();
  faults_.emplace_back(place(), reason, position);
}

// A key that can't stand here: the value under it is passed over.
bool SchemaReader::refuseKey(const std::string& reason) {
  fault(reason);
  frames_.back().isFaulty = true;
  passesNext_ = true;
  return !isFull();
}

// A value that can't stand here.
bool SchemaReader::refuse(const std::string& reason) {
  fault(reason);
  leaveOut();
  return !isFull();
}

std::string SchemaReader::mismatch(const std::string& actual) const {
  return "expected " + expected().expected() + ", not " + actual;
}

// An object or array that begins and can't stand here.
bool SchemaReader::passOver(const char* what) {
  fault(mismatch(what));
  ++passed_;
  return !isFull();
}

// The value that has come, or has ended, is not put into what is around it.
void SchemaReader::leaveOut() {
  if (frames_.empty()) return;
  Frame& frame = frames_.back();
  frame.isFaulty = true;
  ++frame.elements;
  if (frame.schema->kind() != Schema::Kind::keyed) return;
  if (frame.leftOut == nullptr) frame.leftOut = std::make_unique<Keys>();
  frame.leftOut->insert(frame.key);
}

bool SchemaReader::beginPassing() {
  ++passed_;
  return true;
}

bool SchemaReader::endPassing() {
  if (--passed_ > 0) return true;
  if (!passesNext_) leaveOut();
  passesNext_ = false;
  return true;
}

bool SchemaReader::passScalar() {
  passesNext_ = passesNext_ && passed_ > 0;
  return true;
}

bool SchemaReader::scalar(Value&& value) {
  if (isPassing()) return passScalar();
  const Schema& schema = expected();
  const bool fits = schema.kind() == Schema::Kind::scalar && schema.accept(value);
  if (fits) return complete(std::move(value));
  const auto* text = value.as<Rok::String>();
  return refuse(mismatch(described(value)) + (text != nullptr ? schema.hint(*text) : ""));
}

void SchemaReader::begin() {
  const Schema& schema = expected();
  const bool first = frames_.empty();
  const bool handedOn =
      sink_ != nullptr && (first || (frames_.back().handedOn && isDivided(schema)));
  if (handedOn && !first) sink_->collectionBegins(frames_.back().key);
  frames_.emplace_back(&schema, handedOn, isArray(schema) ? Value(Value::List()) : object(schema));
}

// Whether what is in the current frame hands its own entries on. A record among the entries of a
// collection does not: it is one native object.
bool SchemaReader::isDivided(const Schema& schema) const {
  if (schema.kind() == Schema::Kind::keyed) return true;
  const bool isMember = frames_.back().schema->kind() == Schema::Kind::record;
  return isMember && schema.kind() == Schema::Kind::record && holdsCollections(schema);
}

bool SchemaReader::keyOfCollection(std::string_view key) {
  Frame& frame = frames_.back();
  frame.next = &frame.schema->element();
  const Rok::String text = textOf(key);
  std::optional<Rok::String> canonical = frame.schema->key().canonical(text);
  frame.written = canonical == text ? std::nullopt : std::optional(text);
  if (!canonical) {
    const host::Key& legal = frame.schema->key();
    return refuseKey("this key is not " + legal.expected + legal.hint(key));
  }
  frame.key = std::move(*canonical);
  return !isThere(frame, frame.key) || refuseKey("the same key twice");
}

// Whether a key of a collection came before. The sink has what it was given, unless an entry may
// be mounted from the start; a few entries are compared faster than they are hashed.
bool SchemaReader::isThere(Frame& frame, const Rok::String& key) const {
  if (frame.leftOut != nullptr && frame.leftOut->contains(key)) return true;
  if (frame.handedOn && frame.schema->mounted().empty()) return sink_->has(key);
  const Value::Object& entries = frame.value.object();
  if (!frame.handedOn && entries.size() < many) return frame.value.find(key) != nullptr;
  if (frame.seen == nullptr) {
    frame.seen = std::make_unique<Keys>();
    for (const Member& entry : entries) frame.seen->insert(entry.key);
  }
  return !frame.seen->insert(key).second;
}

bool SchemaReader::keyOfRecord(std::string_view key) {
  Frame& frame = frames_.back();
  const Schema::Member* member = frame.schema->member(key);
  frame.key = member != nullptr ? member->name : Rok::String(key);
  if (member == nullptr) return refuseKey("unknown member" + frame.schema->hint(key));
  frame.next = &member->schema;
  const std::uint64_t bit = bitOf(*frame.schema, *member);
  if ((frame.members & bit) != 0) return refuseKey("the same member twice");
  frame.members |= bit;
  return true;
}

// Takes the finished object or array off the frames and gives it to the one around it.
void SchemaReader::end() {
  Frame& frame = frames_.back();
  if (frame.handedOn) {
    frames_.pop_back();
    if (!frames_.empty()) sink_->collectionEnds();
    return;
  }
  if (frame.isFaulty) {
    frames_.pop_back();
    return leaveOut();
  }
  fillIn(frame);
  Value value = std::move(frame.value);
  frames_.pop_back();
  complete(std::move(value));
}

// Puts in what was left out.
void SchemaReader::fillIn(Frame& frame) const {
  switch (frame.schema->kind()) {
    case Schema::Kind::record:
      for (const Schema::Member& member : frame.schema->members()) {
        if (member.initial && (frame.members & bitOf(*frame.schema, member)) == 0) {
          frame.value.object().push_back({member.name, *member.initial});
        }
      }
      return;
    case Schema::Kind::keyed:
      for (const Member& mounted : frame.schema->mounted()) {
        if (frame.value.find(mounted.key) == nullptr) frame.value.object().push_back(mounted);
      }
      return;
    case Schema::Kind::set:
      return std::sort(frame.value.list().begin(), frame.value.list().end(), lessNumber);
    default:
      return;
  }
}

bool SchemaReader::complete(Value&& value) {
  if (frames_.empty()) {
    result_ = std::move(value);
    return true;
  }
  Frame& frame = frames_.back();
  if (isArray(*frame.schema)) return element(frame, std::move(value));
  if (frame.handedOn) {
    try {
      sink_->entry(frame.key, value);
    } catch (const Fault& fault) {
      return refuse(fault.what());
    }
  } else {
    frame.value.object().emplace_back(frame.key, std::move(value));
  }
  return true;
}

bool SchemaReader::element(Frame& frame, Value&& value) {
  Value::List& list = frame.value.list();
  const bool twice = frame.schema->kind() == Schema::Kind::set &&
                     std::find(list.begin(), list.end(), value) != list.end();
  if (twice) return refuse("the same value twice");
  list.push_back(std::move(value));
  ++frame.elements;
  return true;
}

Tokens SchemaReader::place() const {
  Tokens tokens;
  for (const Frame& frame : frames_) {
    if (isArray(*frame.schema)) {
      tokens.push_back(std::to_string(frame.elements));
    } else if (frame.atMember) {
      tokens.emplace_back(frame.written.value_or(frame.key));
    }
  }
  return tokens;
}

// What goes to the sink shares its texts: a name is mostly there several times.
Rok::String SchemaReader::textOf(std::string_view text) {
  return sink_ != nullptr && sink_->keepsTexts() ? texts_.of(text) : Rok::String(text);
}

}  // namespace host
