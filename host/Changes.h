// Applies a stream of changes to the native side, a line at a time. A line is checked as a whole
// before anything is written; then each of its operations becomes native writes, in order, and each
// write notifies at once. What a line costs depends on what it touches and not on what is
// configured.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "host/Draft.h"
#include "host/Native.h"
#include "host/Patch.h"
#include "host/Pointer.h"
#include "host/Schema.h"

namespace host {

class Changes {
 public:
  enum class Outcome { blank, refused, applied };
  using Report = std::function<void(const std::string&)>;

  // `native` must outlive this. `report` gets a line for each refused line and each exception.
  Changes(const Native& native, Report report) : native_(native), report_(std::move(report)) {}

  // Applies the next line of the stream.
  Outcome line(std::string_view text);
  // Whether nothing was reported so far.
  bool isClean() const { return clean_; }

 private:
  // How an operation is written.
  enum class Manner {
    whole,       // by one write of the place: a scalar, a set, what is one native object
    entry,       // a keyed entry: what is there is removed first
    collection,  // by the same operation on each of its entries
  };
  struct Target {
    std::vector<Rok::String> keys;  // canonical, of the place
    Manner manner = Manner::whole;
    const Schema* schema = nullptr;  // of the value that the operation brings
    const Value* initial = nullptr;  // what a removal leaves there; null: nothing
    bool inSet = false;              // the value joins the set that stands at the place
  };
  struct Change {
    Target target;
    std::optional<Value> value;  // nothing: removed
  };

  static Target resolve(const Tokens& tokens);
  static std::string slashHint(const Tokens& tokens);
  static bool canDescend(Target& target, const std::string& token);
  static void descend(Target& target, const Schema& at, const std::string& token);
  static void descendRecord(Target& target, const Schema& record, const std::string& token);
  static void descendCollection(Target& target, const Schema& keyed, const std::string& token);
  static void descendSet(Target& target, const Schema& set, const std::string& token);
  static void step(Target& target, const Schema& container, const Rok::String& key);
  static Manner mannerOf(const Schema& container, const Rok::String& key);
  static std::optional<Change> check(const Patch& patch, std::size_t operation, Draft& draft);
  static void test(const Draft& there, const Patch& patch, std::size_t operation,
                   const Schema& schema);
  static Value joined(const Value& set, const Value& element);

  void write(const Change& change, Writes& writes) const;
  static void writeCollection(Place& place, const Schema& schema, const Value& value,
                              Writes& writes);
  static void eraseMissing(Place& place, const Schema& schema, const Value& value, Writes& writes);
  static void putAll(Place& place, const Schema& schema, const Value& value, Writes& writes);
  void tell(const std::string& what);

  const Native& native_;
  Report report_;
  std::size_t number_ = 0;
  bool clean_ = true;
};

}  // namespace host
