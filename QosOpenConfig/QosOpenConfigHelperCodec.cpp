// The JSON form of comments.
#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>

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
      for (auto i = scheduler.inputs().iterator(); i; ++i) {
        writeInput(writer, i.currNodeNonStale()->value());
      }
    });
  });
}

// ===== Reading

using Pool = json::MemoryPoolAllocator<Heap>;
using Value = json::GenericValue<json::UTF8<>, Pool>;

// A comment, parsed. What it needs comes from buffers on the stack, and only a document that
// outgrows them reaches the heap: twice the profile of eight schedulers with eight inputs each
// fits.
class Document {
 public:
  explicit Document(const Velmo::String& comment) : isWhole_(parse(comment)) {}
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  // The member of the root that is ours. Null, with a trace, when there is none.
  const Value* metaData(const Velmo::String& comment) const;

 private:
  static constexpr std::size_t valueBytes = 16384;
  static constexpr std::size_t pendingValueBytes = 2048;
  static constexpr std::size_t parserBytes = 6144;

  bool parse(const Velmo::String& comment);

  alignas(8) std::array<char, valueBytes> values_;
  alignas(8) std::array<char, parserBytes> parser_;
  Pool valuePool_{values_.data(), values_.size()};
  Pool parserPool_{parser_.data(), parser_.size()};
  json::GenericDocument<json::UTF8<>, Pool, Pool> document_{&valuePool_, pendingValueBytes,
                                                            &parserPool_};
  bool isWhole_;
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

// Returns whether the parser came to the end of the comment, and not only to a NUL in it.
bool Document::parse(const Velmo::String& comment) {
  json::StringStream stream(comment.data());
  if (mayNestDeeply(comment)) {
    document_.ParseStream<json::kParseDefaultFlags | json::kParseIterativeFlag>(stream);
  } else {
    document_.ParseStream(stream);
  }
  return stream.Tell() == comment.size();
}

// Nobody asks whether parsing went well: when it didn't, the root is null and no object.
const Value* Document::metaData(const Velmo::String& comment) const {
  if (!document_.IsObject() || !isWhole_) {
    if (Rok::TraceHelper line{traceHandle, handler}) line << "Comment not json: " << comment;
    return nullptr;
  }
  const auto found = document_.FindMember(metaDataKey);
  if (found == document_.MemberEnd()) {
    if (Rok::TraceHelper line{traceHandle, handler}) {
      line << "Comment has no MetaData-OpenConfig: " << comment;
    }
    return nullptr;
  }
  return &found->value;
}

// Takes the "name" in a member of `metaData`; without such a member, `name` stays as it is. Returns
// false when the member has no name.
bool takeName(const Value& metaData, const char* key, Velmo::String& name) {
  const auto part = metaData.FindMember(key);
  if (part == metaData.MemberEnd()) return true;
  const auto found = part->value.FindMember(nameKey);
  if (found == part->value.MemberEnd()) return false;
  name = found->value.GetString();
  return true;
}

void traceNoName(const char* message) {
  if (Rok::TraceHelper line{traceHandle, handler}) line << "deserializeJsonComment " << message;
}

// Calls `act` with the key and the value of each member, in document order.
template <class Act>
void eachMember(const Value& object, const Act& act) {
  for (auto i = object.MemberBegin(); i != object.MemberEnd(); ++i) {
    act(std::string_view(i->name.GetString(), i->name.GetStringLength()), i->value);
  }
}

OneRateTwoColorCommentInfo rateFrom(const Value& object) {
  OneRateTwoColorCommentInfo rate;
  eachMember(object, [&](std::string_view key, const Value& value) {
    if (key == cirKey) rate.cirIs(value.GetUint64());
    // Only the low eight bits count, deliberately: whether the percentage makes sense is for the
    // one to say who uses it.
    if (key == cirPctKey) rate.cirPctIs(static_cast<std::uint8_t>(value.GetUint()));
  });
  return rate;
}

SchedulerInputCommentInfo inputFrom(const char* inputId, const Value& object) {
  SchedulerInputCommentInfo input{Velmo::String(inputId)};
  eachMember(object, [&](std::string_view key, const Value& value) {
    if (key == queueKey) input.qIs(value.GetString());
    if (key == weightKey) input.weightIs(value.GetUint64());
  });
  return input;
}

// The key isn't checked, deliberately: what doesn't begin with a number is scheduler 0.
SchedulerCommentInfo schedulerFrom(const char* sequence, const Value& object) {
  SchedulerCommentInfo scheduler(static_cast<std::uint32_t>(std::strtol(sequence, nullptr, 10)));
  eachMember(object, [&](std::string_view key, const Value& value) {
    // That the member is there is all that counts, deliberately: only STRICT is ever written.
    if (key == priorityKey) scheduler.priorityIs(QosOc::STRICT);
    if (key == rateKey) scheduler.oneRateTwoColorIs(rateFrom(value));
    if (key != inputsKey) return;
    eachMember(value, [&](std::string_view inputId, const Value& input) {
      scheduler.inputsIs(inputFrom(inputId.data(), input));
    });
  });
  return scheduler;
}

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
  Velmo::String schedulerPolicy;
  Velmo::String queueManagementProfile;
  const Document document(comment);
  const Value* metaData = document.metaData(comment);
  if (metaData == nullptr) return {};
  if (!takeName(*metaData, schedulerPolicyKey, schedulerPolicy)) {
    traceNoName("SP name not found");
    return {};
  }
  // This drops the scheduler policy's name too, deliberately: a document with a bad half counts as
  // no document.
  if (!takeName(*metaData, queueManagementProfileKey, queueManagementProfile)) {
    traceNoName("QMP name not found");
    return {};
  }
  return {SchedulerPolicyCommentInfo(schedulerPolicy),
          QueueManagementProfileCommentInfo(queueManagementProfile)};
}

Velmo::String serializeJsonProfileComment(SchedulerPolicyProfileCommentInfo info) {
  if (Rok::TraceHelper line{traceHandle, handler}) line << "serializeJsonProfileComment";
  const Velmo::String comment = document([&](Writer& writer) {
    for (auto i = info.schedulers().iterator(); i; ++i) {
      writeScheduler(writer, i.currNodeNonStale()->value());
    }
  });
  if (Rok::TraceHelper line{traceHandle, handler}) line << "Profile Comment: " << comment;
  return comment;
}

SchedulerPolicyProfileCommentInfo deserializeJsonProfileComment(const Velmo::String& comment) {
  if (Rok::TraceHelper line{traceHandle, handler}) {
    line << "deserializeJsonProfileComment "
         << "comment: " << comment;
  }
  SchedulerPolicyProfileCommentInfo info("");
  const Document document(comment);
  const Value* metaData = document.metaData(comment);
  if (metaData == nullptr) return info;
  eachMember(*metaData, [&](std::string_view key, const Value& value) {
    info.schedulersIs(schedulerFrom(key.data(), value));
  });
  return info;
}
