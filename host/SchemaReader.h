// Builds a checked value from the events of a JSON text, a step at a time. What doesn't fit its
// schema is a fault and is passed over. So what is held is never more than the schema allows,
// however deep a text nests.
//
// A text of any length can be read through an EntrySink: the collections on the upper levels of the
// document, and those of members that hold collections, are then handed on entry by entry and not
// kept.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "host/Fault.h"
#include "host/Pointer.h"
#include "host/Schema.h"
#include "host/SharedTexts.h"
#include "host/Value.h"

namespace host {

class JsonStream;

// Takes the entries of a document as they are read. Keys are canonical, values checked.
class EntrySink {
 public:
  virtual ~EntrySink() = default;
  // A collection of collections hands its entries on one by one, between these two, and so does a
  // record that is a member of the document or of such a record and holds collections itself.
  virtual void collectionBegins(const Rok::String& key) = 0;
  virtual void collectionEnds() = 0;
  virtual void entry(const Rok::String& key, const Value& value) = 0;
  // Whether an entry of the collection that is open was handed on under the key.
  virtual bool has(const Rok::String& key) const = 0;
  // Whether it keeps what it is given: then strings of the same text share a buffer.
  virtual bool keepsTexts() const { return true; }
};

class SchemaReader {
 public:
  // With a sink, `schema` is the record of a whole document. Both must outlive the reader.
  explicit SchemaReader(const Schema& schema, EntrySink* sink = nullptr)
      : schema_(schema), sink_(sink) {}

  // The stream that the events come from: faults say where in it they are.
  void streamIs(const JsonStream* stream) { stream_ = stream; }
  // How many faults end the reading.
  void mostFaultsIs(std::size_t most) { most_ = most; }

  // The events, by the names that the parser calls. Each returns false once there are too many
  // faults.
  bool Null();
  bool Bool(bool v);
  bool Int(std::int32_t v) { return Int64(v); }
  bool Uint(std::uint32_t v) { return Uint64(v); }
  bool Int64(std::int64_t v);
  bool Uint64(std::uint64_t v);
  bool Double(double v);
  bool RawNumber(const char* text, unsigned size, bool /*copy*/) {
    return String(text, size, true);
  }
  bool String(const char* text, unsigned size, bool copy);
  bool StartObject();
  bool Key(const char* text, unsigned size, bool copy);
  bool EndObject(unsigned members);
  bool StartArray();
  bool EndArray(unsigned elements);

  // What is wrong so far, in the order of the text.
  const std::vector<Fault>& faults() const { return faults_; }
  // The place at which the reader stands.
  Tokens place() const;
  // The whole value. Requires: a text was read to its end without a fault, and there is no sink.
  Value take() { return std::move(result_); }

 private:
  struct TextHash {
    std::size_t operator()(const Rok::String& text) const noexcept { return text.hash(); }
  };
  using Keys = std::unordered_set<Rok::String, TextHash>;

  // An object or array that has begun.
  struct Frame {
    const Schema* schema;
    bool handedOn;                                      // its entries go to the sink
    Value value;                                        // what is built, unless handed on
    Rok::String key = {};                               // of the member being read, canonical
    std::optional<Rok::String> written = std::nullopt;  // the same in the text, if different
    const Schema* next = nullptr;                       // the schema of that member
    std::unique_ptr<Keys> seen = nullptr;               // of a collection, when they are many
    std::unique_ptr<Keys> leftOut = nullptr;            // of a collection, what has a fault
    std::uint64_t members = 0;  // those of a record that were seen, a bit each
    bool atMember = false;      // a key was read
    bool isFaulty = false;      // something below doesn't fit
    std::size_t elements = 0;   // that came
  };

  const Schema& expected() const;
  bool isFull() const { return faults_.size() >= most_; }
  void fault(const std::string& reason);
  bool refuseKey(const std::string& reason);
  bool refuse(const std::string& reason);
  std::string mismatch(const std::string& actual) const;
  bool passOver(const char* what);
  void leaveOut();
  bool isPassing() const { return passed_ > 0 || passesNext_; }
  bool beginPassing();
  bool endPassing();
  bool passScalar();
  bool scalar(Value&& value);
  void begin();
  bool isDivided(const Schema& schema) const;
  bool keyOfCollection(std::string_view key);
  bool isThere(Frame& frame, const Rok::String& key) const;
  bool keyOfRecord(std::string_view key);
  void end();
  void fillIn(Frame& frame) const;
  bool complete(Value&& value);
  bool element(Frame& frame, Value&& value);
  Rok::String textOf(std::string_view text);

  const Schema& schema_;
  EntrySink* sink_;
  SharedTexts texts_;  // of what goes to the sink
  std::vector<Frame> frames_;
  const JsonStream* stream_ = nullptr;
  std::size_t most_ = mostFaults;
  std::vector<Fault> faults_;
  bool passesNext_ = false;  // the value that comes is passed over
  std::size_t passed_ = 0;   // how many objects and arrays are open of what is passed over
  Value result_;
};

}  // namespace host
