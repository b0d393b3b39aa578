// The JSON form of comments.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigHelperJson.h"

namespace QosOc::Helper {

void jsonAssertionFailed(const char* expression) {
  Rok::SassertHelper(expression) << "a comment holds a JSON value of the wrong type";
}

}  // namespace QosOc::Helper

namespace {

namespace json = QosOc::Helper::rapidjson;

using QosOc::CommentInfo;
using QosOc::OneRateTwoColorCommentInfo;
using QosOc::QueueManagementProfileCommentInfo;
using QosOc::SchedulerCommentInfo;
using QosOc::SchedulerInputCommentInfo;
using QosOc::SchedulerPolicyCommentInfo;
using QosOc::SchedulerPolicyProfileCommentInfo;

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceFacility::FacilityLevel handler = 2;

constexpr const char* metaDataKey = "MetaData-OpenConfig";
constexpr const char* schedulerPolicyKey = "scheduler-policy";
constexpr const char* queueManagementProfileKey = "queue-management-profile";
constexpr const char* nameKey = "name";
constexpr const char* priorityKey = "priority";
constexpr const char* rateKey = "one-rate-two-color";
constexpr const char* cirKey = "cir";
constexpr const char* cirPctKey = "cir-pct";
constexpr const char* inputsKey = "inputs";
constexpr const char* queueKey = "queue";
constexpr const char* weightKey = "weight";

// The heap as RapidJSON asks for it. RapidJSON doesn't look whether it got a block, so the end of
// memory is an exception, as everywhere.
struct Heap {
  [[maybe_unused]] static const bool kNeedFree = true;
  static void* Malloc(std::size_t size) { return size != 0 ? ::operator new(size) : nullptr; }
  static void* Realloc(void* block, std::size_t oldSize, std::size_t size) {
    void* moved = Malloc(size);
    if (block != nullptr && moved != nullptr) std::memcpy(moved, block, std::min(oldSize, size));
    Free(block);
    return moved;
  }
  static void Free(void* block) { ::operator delete(block); }
};

// ===== Writing

using Buffer = json::GenericStringBuffer<json::UTF8<>, Heap>;
using Writer = json::Writer<Buffer, json::UTF8<>, json::UTF8<>, Heap>;

// A name ends at its first NUL.
void writeString(Writer& writer, const char* key, const Velmo::String& text) {
  writer.Key(key);
  writer.String(text.data());
}

template <class Members>
void writeObject(Writer& writer, const char* key, const Members& members) {
  writer.Key(key);
  writer.StartObject();
  members();
  writer.EndObject();
}

// The document: the one member of the root, with what `members` writes in it.
template <class Members>
Velmo::String document(const Members& members) {
  Buffer buffer;
  Writer writer(buffer);
  writer.StartObject();
  writeObject(writer, metaDataKey, [&] { members(writer); });
  writer.EndObject();
  return std::string_view(buffer.GetString(), buffer.GetSize());
}

void writeRate(Writer& writer, const OneRateTwoColorCommentInfo& rate) {
  if (!rate) return;
  writeObject(writer, rateKey, [&] {
    if (rate.cir() != 0) {
      writer.Key(cirKey);
      writer.Uint64(rate.cir());
    }
    if (rate.cirPct() != 0) {
      writer.Key(cirPctKey);
      writer.Uint(rate.cirPct());
    }
  });
}

void writeInput(Writer& writer, const SchedulerInputCommentInfo& input) {
  writeObject(writer, input.inputId().data(), [&] {
    if (!input.q().empty()) writeString(writer, queueKey, input.q());
    if (input.weight() != 0) {
      writer.Key(weightKey);
      writer.Uint64(input.weight());
    }
  });
}

void writeScheduler(Writer& writer, const SchedulerCommentInfo& scheduler) {
  std::array<char, 11> sequence{};  // ten digits and a NUL
  std::to_chars(sequence.begin(), sequence.end() - 1, scheduler.sequence());
  writeObject(writer, sequence.data(), [&] {
    if (scheduler.priority() == QosOc::STRICT) writeString(writer, priorityKey, "STRICT");
    writeRate(writer, scheduler.oneRateTwoColor());
    writeObject(writer, inputsKey, [&] {
      for (const auto& [id, input] : scheduler.inputs()) writeInput(writer, input);
    });
  });
}

// ===== Parsing

// Where a value stands that a reader asks for; any other is foreign.
enum class Place : unsigned char {
  foreign,
  root,
  metaData,
  // in an attachment document
  part,
  name,
  // in a profile document
  scheduler,
  priority,
  rate,
  cir,
  cirPct,
  inputs,
  input,
  queue,
  weight
};

// A value, as far as anybody asks for it.
struct Found {
  enum Kind : unsigned char { object, string, number, other };

  Kind kind = other;
  const char* text = nullptr;  // of a string
  std::uint64_t value = 0;     // of a number, which is whole and not negative
};

// Leads RapidJSON's parser through a document, and tells the reader what stands at its places, from
// the member of the root that is ours on:
//   Place memberOf(Place object, std::string_view key)   where the member of an object stands
//   void found(Place, const Found&)                      what stands there
//   void ends(Place object)                              that was all of it
// What is below a foreign value or in an array is passed over.
template <class Reader>
class Guide : public json::BaseReaderHandler<json::UTF8<>, Guide<Reader>> {
 public:
  explicit Guide(Reader& reader) : reader_(reader) {}

  bool isObject() const { return isObject_; }        // the root
  bool hasMetaData() const { return hasMetaData_; }  // the root has the member

  // ---- what the parser calls; Default stands for all other values
  bool Default() { return tell({}); }
  bool Int(int value) { return value == 0 ? Uint64(0) : Default(); }  // -0 is not negative
  bool Uint(unsigned value) { return Uint64(value); }
  bool Uint64(std::uint64_t value) { return tell({Found::number, nullptr, value}); }
  bool String(const char* text, json::SizeType /*size*/, bool /*copy*/) {
    return tell({Found::string, text});
  }
  bool StartObject() {
    tell({Found::object});
    if (next_ != Place::foreign) {
      objects_[depth_++] = next_;
    } else {
      ++foreign_;
    }
    return true;
  }
  bool Key(const char* text, json::SizeType size, bool /*copy*/) {
    if (foreign_ == 0) next_ = memberOf(objects_[depth_ - 1], std::string_view(text, size));
    return true;
  }
  bool EndObject(json::SizeType /*members*/) {
    if (foreign_ == 0) {
      reader_.ends(objects_[--depth_]);
    } else {
      --foreign_;
    }
    return true;
  }
  bool StartArray() {
    tell({});
    next_ = Place::foreign;
    ++foreign_;
    return true;
  }
  bool EndArray(json::SizeType /*elements*/) {
    --foreign_;
    return true;
  }

 private:
  bool tell(const Found& found) {
    if (next_ == Place::root) {
      isObject_ = found.kind == Found::object;
    } else if (next_ != Place::foreign) {
      reader_.found(next_, found);
    }
    return true;
  }
  Place memberOf(Place object, std::string_view key) {
    if (object != Place::root) return reader_.memberOf(object, key);
    if (key != metaDataKey || hasMetaData_) return Place::foreign;
    hasMetaData_ = true;
    return Place::metaData;
  }

  Reader& reader_;
  Place next_ = Place::root;  // of the next value
  bool isObject_ = false;
  bool hasMetaData_ = false;
  // The objects that the parser is in: those at places, and the number of foreign ones, and of
  // arrays, below them.
  std::array<Place, 8> objects_;
  unsigned depth_ = 0;
  unsigned foreign_ = 0;
};

// Whether a text may nest so deeply that a parser by recursion is at the end of its stack. It
// counts more than there is, brackets in strings included; but the two parsers give one result.
bool mayNestDeeply(std::string_view text) {
  constexpr std::size_t deep = 1000;
  if (text.size() <= deep) return false;
  std::size_t brackets = 0;
  for (; !text.empty(); text.remove_prefix(std::min<std::size_t>(text.size(), 255))) {
    unsigned char inBlock = 0;  // a byte, so that the compiler counts in vectors of bytes
    for (const char c : text.substr(0, 255)) inBlock += (c | 0x20) == '{';  // either bracket
    brackets += inBlock;
  }
  return brackets > deep;
}

// A text for the parser to write in: it unescapes strings where they stand. Twice the profile of
// eight schedulers with eight inputs each fits on the stack; what is longer takes the heap.
class Scratch {
 public:
  explicit Scratch(std::string_view text) {
    if (text.size() >= onStack_.size()) onHeap_.resize(text.size() + 1);
    *std::ranges::copy(text, this->text()).out = '\0';
  }
  char* text() { return onHeap_.empty() ? onStack_.data() : onHeap_.data(); }

 private:
  std::array<char, 12288> onStack_;
  std::string onHeap_;
};

// Shows a comment to the reader. Returns whether it has something of ours; a trace says why not.
// Nobody asks what went wrong with the parsing: a text that isn't one document from end to end, and
// not only up to a NUL in it, is none.
template <class Reader>
bool read(const Velmo::String& comment, Reader& reader) {
  constexpr unsigned flags = json::kParseDefaultFlags | json::kParseInsituFlag;
  Scratch scratch(comment);
  json::InsituStringStream stream(scratch.text());
  json::GenericReader<json::UTF8<>, json::UTF8<>, Heap> parser;
  Guide<Reader> guide(reader);
  if (mayNestDeeply(comment)) {
    parser.template Parse<flags | json::kParseIterativeFlag>(stream, guide);
  } else {
    parser.template Parse<flags>(stream, guide);
  }
  if (parser.HasParseError() || stream.Tell() != comment.size() || !guide.isObject()) {
    if (Rok::TraceHelper line{traceHandle, handler}) line << "Comment not json: " << comment;
    return false;
  }
  if (!guide.hasMetaData()) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line << "Comment has no MetaData-OpenConfig: " << comment;
    }
  }
  return guide.hasMetaData();
}

// ===== Reading

// What is required of values. It is judged at the end: a text that turns out to be no document may
// hold anything. Of several values of the wrong type the first counts.
class Requirements {
 public:
  void object(const Found& found) { need(found.kind == Found::object, "IsObject()"); }
  void string(const Found& found) { need(found.kind == Found::string, "IsString()"); }
  void number64(const Found& found) { need(found.kind == Found::number, wide); }
  void number32(const Found& found) {
    need(found.kind == Found::number && found.value <= 0xffffffffu, narrow);
  }

  // Ends the process unless all were met.
  void enforce() const {
    if (broken_ != nullptr) QosOc::Helper::jsonAssertionFailed(broken_);
  }

 private:
  // What a RapidJSON value asserts when it is asked for a number that it doesn't hold.
  static constexpr const char* wide = "data_.f.flags & kUint64Flag";
  static constexpr const char* narrow = "data_.f.flags & kUintFlag";

  void need(bool met, const char* requirement) {
    if (!met && broken_ == nullptr) broken_ = requirement;
  }

  const char* broken_ = nullptr;
};

// Of two members of one key the first counts.
class AttachmentReader {
 public:
  Place memberOf(Place object, std::string_view key) {
    if (object == Place::metaData) return partOf(key);
    if (object != Place::part || key != nameKey || part_->hasName) return Place::foreign;
    part_->hasName = true;
    return Place::name;
  }
  void found(Place place, const Found& found) {
    if (place == Place::metaData) return required_.object(found);
    if (place == Place::part) return part_->required.object(found);
    part_->required.string(found);
    if (found.kind == Found::string) part_->name = found.text;
  }
  void ends(Place /*object*/) {}

  CommentInfo info() const {
    required_.enforce();
    if (!isGood(schedulerPolicy_, "SP name not found")) return {};
    // This drops the scheduler policy's name too, deliberately: a document with a bad half counts
    // as no document.
    if (!isGood(queueManagementProfile_, "QMP name not found")) return {};
    return {SchedulerPolicyCommentInfo(schedulerPolicy_.name),
            QueueManagementProfileCommentInfo(queueManagementProfile_.name)};
  }

 private:
  struct Part {
    bool isThere = false;
    bool hasName = false;
    Requirements required;
    Velmo::String name;
  };

  Place partOf(std::string_view key) {
    part_ = key == schedulerPolicyKey          ? &schedulerPolicy_
            : key == queueManagementProfileKey ? &queueManagementProfile_
                                               : nullptr;
    if (part_ == nullptr || part_->isThere) return Place::foreign;
    part_->isThere = true;
    return Place::part;
  }
  static bool isGood(const Part& part, const char* otherwise) {
    part.required.enforce();
    if (!part.isThere || part.hasName) return true;
    if (Rok::TraceHelper line{traceHandle, handler}) line << "deserializeJsonComment " << otherwise;
    return false;
  }

  Requirements required_;
  Part schedulerPolicy_;
  Part queueManagementProfile_;
  Part* part_ = nullptr;  // where the parser is
};

// Of two members of one key the later counts, except that inputs add up.
class ProfileReader {
 public:
  Place memberOf(Place object, std::string_view key) {
    switch (object) {
      case Place::metaData:
        // The key isn't checked, deliberately: what doesn't begin with a number is scheduler 0.
        scheduler_ =
            SchedulerCommentInfo(static_cast<std::uint32_t>(std::strtol(key.data(), nullptr, 10)));
        return Place::scheduler;
      case Place::scheduler:
        return key == priorityKey ? Place::priority
               : key == rateKey   ? Place::rate
               : key == inputsKey ? Place::inputs
                                  : Place::foreign;
      case Place::rate:
        return key == cirKey ? Place::cir : key == cirPctKey ? Place::cirPct : Place::foreign;
      case Place::inputs:
        input_ = SchedulerInputCommentInfo(Velmo::String(key.data()));
        return Place::input;
      case Place::input:
        return key == queueKey ? Place::queue : key == weightKey ? Place::weight : Place::foreign;
      default:
        return Place::foreign;
    }
  }
  void found(Place place, const Found& found) {
    switch (place) {
      // That the member is there is all that counts, deliberately: only STRICT is ever written.
      case Place::priority:
        return scheduler_.priorityIs(QosOc::STRICT);
      case Place::cir:
        required_.number64(found);
        return rate_.cirIs(found.value);
      case Place::cirPct:
        required_.number32(found);
        // Only the low eight bits count, deliberately: whether the percentage makes sense is for
        // the one to say who uses it.
        return rate_.cirPctIs(static_cast<std::uint8_t>(found.value));
      case Place::queue:
        required_.string(found);
        if (found.kind == Found::string) input_.qIs(found.text);
        return;
      case Place::weight:
        required_.number64(found);
        return input_.weightIs(found.value);
      default:
        required_.object(found);
    }
  }
  void ends(Place object) {
    if (object == Place::rate) scheduler_.oneRateTwoColorIs(std::exchange(rate_, {}));
    if (object == Place::input) scheduler_.inputsIs(std::move(input_));
    if (object == Place::scheduler) info_.schedulersIs(std::move(scheduler_));
  }

  SchedulerPolicyProfileCommentInfo info() {
    required_.enforce();
    return std::move(info_);
  }

 private:
  Requirements required_;
  SchedulerPolicyProfileCommentInfo info_{""};
  // Where the parser is.
  SchedulerCommentInfo scheduler_{0};
  OneRateTwoColorCommentInfo rate_;
  SchedulerInputCommentInfo input_;
};

}  // namespace

Velmo::String serializeJsonComment(CommentInfo info) {
  if (Rok::TraceHelper line{traceHandle, handler}) line << "serializeJsonComment";
  if (!info) return {};
  const Velmo::String comment = document([&](Writer& writer) {
    if (info.sPInfo()) {
      writeObject(writer, schedulerPolicyKey,
                  [&] { writeString(writer, nameKey, info.sPInfo().schedulerPolicy()); });
    }
    if (info.qMPInfo()) {
      writeObject(writer, queueManagementProfileKey,
                  [&] { writeString(writer, nameKey, info.qMPInfo().queueManagementProfile()); });
    }
  });
  if (Rok::TraceHelper line{traceHandle, handler}) line << "Comment: " << comment;
  return comment;
}

CommentInfo deserializeJsonComment(const Velmo::String& comment) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "deserializeJsonComment "
         << "comment: " << comment;
  }
  AttachmentReader reader;
  return read(comment, reader) ? reader.info() : CommentInfo();
}

Velmo::String serializeJsonProfileComment(SchedulerPolicyProfileCommentInfo info) {
  if (Rok::TraceHelper line{traceHandle, handler}) line << "serializeJsonProfileComment";
  const Velmo::String comment = document([&](Writer& writer) {
    for (const auto& [sequence, scheduler] : info.schedulers()) writeScheduler(writer, scheduler);
  });
  if (Rok::TraceHelper line{traceHandle, handler}) line << "Profile Comment: " << comment;
  return comment;
}

SchedulerPolicyProfileCommentInfo deserializeJsonProfileComment(const Velmo::String& comment) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "deserializeJsonProfileComment "
         << "comment: " << comment;
  }
  ProfileReader reader;
  return read(comment, reader) ? reader.info() : SchedulerPolicyProfileCommentInfo("");
}
