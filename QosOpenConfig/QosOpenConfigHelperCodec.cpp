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
#include "QosOpenConfig/QosOpenConfigHelperSax.h"

constinit Rok::TraceHandle QosOc::HelperUnit::traceHandle("OpenConfigQos", false);

namespace QosOc::Helper {

void jsonAssertionFailed(const char* expression) {
  Rok::SassertHelper(expression) << "a comment holds a JSON value of the wrong type";
}

}  // namespace QosOc::Helper

namespace {

using namespace QosOc::Helper;
using namespace QosOc::HelperUnit;

using QosOc::CommentInfo;
using QosOc::OneRateTwoColorCommentInfo;
using QosOc::QueueManagementProfileCommentInfo;
using QosOc::SchedulerCommentInfo;
using QosOc::SchedulerInputCommentInfo;
using QosOc::SchedulerPolicyCommentInfo;
using QosOc::SchedulerPolicyProfileCommentInfo;

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

// ===== Reading

// The types that values must have. They are enforced at the end, since a text that turns out to be
// no document may hold anything. Of several values of the wrong type the first counts.
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
    // This drops the scheduler policy's name too: a document with a bad half counts
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
    Rok::traceLine(handler, "deserializeJsonComment ", otherwise);
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
        // The key isn't checked: what doesn't begin with a number is scheduler 0.
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
      // That the member is there is all that counts: the writers write nothing but STRICT.
      case Place::priority:
        return scheduler_.priorityIs(QosOc::STRICT);
      case Place::cir:
        required_.number64(found);
        return rate_.cirIs(found.value);
      case Place::cirPct:
        required_.number32(found);
        // Only the low eight bits count: the translator that uses the percentage checks it.
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
  Rok::traceLine(handler, "serializeJsonComment");
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
  Rok::traceLine(handler, "Comment: ", comment);
  return comment;
}

CommentInfo deserializeJsonComment(const Velmo::String& comment) {
  Rok::traceLine(handler, "deserializeJsonComment comment: ", comment);
  AttachmentReader reader;
  return read(comment, reader) ? reader.info() : CommentInfo();
}

Velmo::String serializeJsonProfileComment(SchedulerPolicyProfileCommentInfo info) {
  Rok::traceLine(handler, "serializeJsonProfileComment");
  const Velmo::String comment = document([&](Writer& writer) {
    for (const auto& [sequence, scheduler] : info.schedulers()) writeScheduler(writer, scheduler);
  });
  Rok::traceLine(handler, "Profile Comment: ", comment);
  return comment;
}

SchedulerPolicyProfileCommentInfo deserializeJsonProfileComment(const Velmo::String& comment) {
  Rok::traceLine(handler, "deserializeJsonProfileComment comment: ", comment);
  ProfileReader reader;
  return read(comment, reader) ? reader.info() : SchedulerPolicyProfileCommentInfo("");
}
