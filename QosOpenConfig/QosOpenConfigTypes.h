// What comments say, in memory: the intent behind native configuration that native objects can't
// hold. A transmit queue's comment gives a CommentInfo, a QoS profile's comment a whole scheduler
// tree. These are values and know nothing of the models; QosOpenConfigHelper.h has their JSON form.
//
// Each class has a text form, valueToStrep, that serves traces and generic access (Rok/Strep.h). It
// reads back, except for the two classes with a collection: their text leaves the entries out.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <ostream>
#include <string>
#include <string_view>

#include "Rok/Rok.h"
#include "Rok/Strep.h"

namespace QosOc {

// ===== Schedulers

// The priority of a scheduler, as a comment has it.
enum class SchedulerPriorityCommentInfo : unsigned char { NONE = 0, STRICT = 1 };
using enum SchedulerPriorityCommentInfo;
QOS_EXPORT const Rok::EnumType<unsigned char>& rokEnumType(SchedulerPriorityCommentInfo);
inline std::ostream& operator<<(std::ostream& out, SchedulerPriorityCommentInfo v) {
  return Rok::enumPrint(out, v);
}
// The enumerator's name; the decimal number for a value without one.
QOS_EXPORT std::string stringValue(SchedulerPriorityCommentInfo value);
QOS_EXPORT std::string valueToStrep(SchedulerPriorityCommentInfo value);
// Takes an enumerator's text off the front of the range. Throws: RangeException for other text.
QOS_EXPORT void sequenceToValue(Rok::CharRange& range, SchedulerPriorityCommentInfo& out);
// The value of that number, or of that text. Throws: RangeException for a number above 255, and for
// a text that is neither an enumerator's name nor the decimal number of a byte.
QOS_EXPORT SchedulerPriorityCommentInfo SchedulerPriorityCommentInfoInstance(unsigned value);
QOS_EXPORT SchedulerPriorityCommentInfo
SchedulerPriorityCommentInfoInstance(const Rok::String& text);

// One input of a scheduler.
class SchedulerInputCommentInfo {
 public:
  static constexpr std::string_view rokTypeName = "QosOc::SchedulerInputCommentInfo";

  SchedulerInputCommentInfo() = default;
  explicit SchedulerInputCommentInfo(const Rok::String& inputId) : inputId_(inputId) {}
  // Throws, like every parser below: RangeException for anything but the text form.
  QOS_EXPORT explicit SchedulerInputCommentInfo(Rok::CharRange& range);

  // The key within the scheduler.
  const Rok::String& inputId() const { return inputId_; }

  // The queue's name; empty when the comment names none.
  const Rok::String& q() const { return q_; }
  void qIs(const Rok::String& v) { q_ = v; }

  // 0 when the comment gives none.
  std::uint64_t weight() const { return weight_; }
  void weightIs(std::uint64_t v) { weight_ = v; }

  bool operator==(const SchedulerInputCommentInfo&) const = default;
  explicit operator bool() const { return *this != SchedulerInputCommentInfo(); }

 private:
  Rok::String inputId_;
  Rok::String q_;
  std::uint64_t weight_ = 0;
};
QOS_EXPORT Rok::String valueToStrep(const SchedulerInputCommentInfo& value);
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const SchedulerInputCommentInfo& value);

// The rate of a scheduler.
class OneRateTwoColorCommentInfo {
 public:
  static constexpr std::string_view rokTypeName = "QosOc::OneRateTwoColorCommentInfo";

  OneRateTwoColorCommentInfo() = default;
  OneRateTwoColorCommentInfo(std::uint64_t cir, std::uint8_t cirPct) : cir_(cir), cirPct_(cirPct) {}
  QOS_EXPORT explicit OneRateTwoColorCommentInfo(Rok::CharRange& range);

  // The committed rate; 0 when absent.
  std::uint64_t cir() const { return cir_; }
  void cirIs(std::uint64_t v) { cir_ = v; }

  // The committed rate in percent, of any size; 0 when absent.
  std::uint8_t cirPct() const { return cirPct_; }
  void cirPctIs(std::uint8_t v) { cirPct_ = v; }

  bool operator==(const OneRateTwoColorCommentInfo&) const = default;
  explicit operator bool() const { return cir_ != 0 || cirPct_ != 0; }

 private:
  std::uint64_t cir_ = 0;
  std::uint8_t cirPct_ = 0;
};
QOS_EXPORT Rok::String valueToStrep(const OneRateTwoColorCommentInfo& value);
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const OneRateTwoColorCommentInfo& value);

// One scheduler of a policy.
class SchedulerCommentInfo {
 public:
  static constexpr std::string_view rokTypeName = "QosOc::SchedulerCommentInfo";
  struct InputsKeyFunktor {
    const Rok::String& operator()(const SchedulerInputCommentInfo& input) const {
      return input.inputId();
    }
  };
  using Inputs = Rok::HashMap2018<
      Rok::Hm2018NII<0x3c6ef372u, Rok::String, SchedulerInputCommentInfo, InputsKeyFunktor>>;

  explicit SchedulerCommentInfo(std::uint32_t sequence) : sequence_(sequence) {}
  // Aborts: the text form lacks the inputs, so there is nothing to build one from.
  [[noreturn]] QOS_EXPORT explicit SchedulerCommentInfo(Rok::CharRange& range);

  // The sequence number, and the key within the policy.
  std::uint32_t sequence() const { return sequence_; }

  SchedulerPriorityCommentInfo priority() const { return priority_; }
  void priorityIs(SchedulerPriorityCommentInfo v) { priority_ = v; }

  const OneRateTwoColorCommentInfo& oneRateTwoColor() const { return oneRateTwoColor_; }
  void oneRateTwoColorIs(const OneRateTwoColorCommentInfo& v) { oneRateTwoColor_ = v; }

  const Inputs& inputs() const { return inputs_; }
  // A copy; the default value, with an empty id, when there is none.
  QOS_EXPORT SchedulerInputCommentInfo inputs(const Rok::String& inputId) const;
  // Inserts, or overwrites the input of that id.
  QOS_EXPORT void inputsIs(SchedulerInputCommentInfo input);
  // Removes. Returns what was there, or the default value.
  QOS_EXPORT SchedulerInputCommentInfo inputsDel(const Rok::String& inputId);
  void inputsDelAll() { inputs_._memberDelAll(); }

  QOS_EXPORT bool operator==(const SchedulerCommentInfo& other) const;
  explicit operator bool() const { return *this != SchedulerCommentInfo(0); }

 private:
  std::uint32_t sequence_ = 0;
  SchedulerPriorityCommentInfo priority_ = NONE;
  OneRateTwoColorCommentInfo oneRateTwoColor_;
  Inputs inputs_;
};
QOS_EXPORT Rok::String valueToStrep(const SchedulerCommentInfo& value);
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const SchedulerCommentInfo& value);

// Everything that a QoS profile's comment says: the schedulers of a policy.
class SchedulerPolicyProfileCommentInfo {
 public:
  static constexpr std::string_view rokTypeName = "QosOc::SchedulerPolicyProfileCommentInfo";
  struct SchedulersKeyFunktor {
    std::uint32_t operator()(const SchedulerCommentInfo& scheduler) const {
      return scheduler.sequence();
    }
  };
  using Schedulers = Rok::HashMap2018<
      Rok::Hm2018NII<0xa54ff53au, std::uint32_t, SchedulerCommentInfo, SchedulersKeyFunktor>>;

  explicit SchedulerPolicyProfileCommentInfo(const Rok::String& name) : name_(name) {}
  // Aborts, as SchedulerCommentInfo does.
  [[noreturn]] QOS_EXPORT explicit SchedulerPolicyProfileCommentInfo(Rok::CharRange& range);

  // The JSON form doesn't carry it: the name of a decoded value is empty.
  const Rok::String& name() const { return name_; }
  void nameIs(const Rok::String& v) { name_ = v; }

  const Schedulers& schedulers() const { return schedulers_; }
  // A copy; SchedulerCommentInfo(0) when there is none.
  QOS_EXPORT SchedulerCommentInfo schedulers(std::uint32_t sequence) const;
  // Inserts, or overwrites the scheduler of that sequence number, its inputs included.
  QOS_EXPORT void schedulersIs(SchedulerCommentInfo scheduler);
  // Removes. Returns what was there, or SchedulerCommentInfo(0).
  QOS_EXPORT SchedulerCommentInfo schedulersDel(std::uint32_t sequence);
  void schedulersDelAll() { schedulers_._memberDelAll(); }

  QOS_EXPORT bool operator==(const SchedulerPolicyProfileCommentInfo& other) const;
  explicit operator bool() const { return *this != SchedulerPolicyProfileCommentInfo(""); }

 private:
  Rok::String name_;
  Schedulers schedulers_;
};
QOS_EXPORT Rok::String valueToStrep(const SchedulerPolicyProfileCommentInfo& value);
QOS_EXPORT std::ostream& operator<<(std::ostream& out,
                                    const SchedulerPolicyProfileCommentInfo& value);

// ===== Attachments

// The name of the scheduler policy of a queue; empty means none.
class SchedulerPolicyCommentInfo {
 public:
  static constexpr std::string_view rokTypeName = "QosOc::SchedulerPolicyCommentInfo";

  SchedulerPolicyCommentInfo() = default;
  explicit SchedulerPolicyCommentInfo(const Rok::String& schedulerPolicy)
      : schedulerPolicy_(schedulerPolicy) {}
  QOS_EXPORT explicit SchedulerPolicyCommentInfo(Rok::CharRange& range);

  const Rok::String& schedulerPolicy() const { return schedulerPolicy_; }
  void schedulerPolicyIs(const Rok::String& v) { schedulerPolicy_ = v; }

  bool operator==(const SchedulerPolicyCommentInfo&) const = default;
  explicit operator bool() const { return *this != SchedulerPolicyCommentInfo(); }

 private:
  Rok::String schedulerPolicy_;
};
QOS_EXPORT Rok::String valueToStrep(const SchedulerPolicyCommentInfo& value);
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const SchedulerPolicyCommentInfo& value);

// The name of the queue-management profile of a queue; empty means none.
class QueueManagementProfileCommentInfo {
 public:
  static constexpr std::string_view rokTypeName = "QosOc::QueueManagementProfileCommentInfo";

  QueueManagementProfileCommentInfo() = default;
  explicit QueueManagementProfileCommentInfo(const Rok::String& queueManagementProfile)
      : queueManagementProfile_(queueManagementProfile) {}
  QOS_EXPORT explicit QueueManagementProfileCommentInfo(Rok::CharRange& range);

  const Rok::String& queueManagementProfile() const { return queueManagementProfile_; }
  void queueManagementProfileIs(const Rok::String& v) { queueManagementProfile_ = v; }

  bool operator==(const QueueManagementProfileCommentInfo&) const = default;
  explicit operator bool() const { return *this != QueueManagementProfileCommentInfo(); }

 private:
  Rok::String queueManagementProfile_;
};
QOS_EXPORT Rok::String valueToStrep(const QueueManagementProfileCommentInfo& value);
QOS_EXPORT std::ostream& operator<<(std::ostream& out,
                                    const QueueManagementProfileCommentInfo& value);

// What a transmit queue's comment says.
class CommentInfo {
 public:
  static constexpr std::string_view rokTypeName = "QosOc::CommentInfo";

  CommentInfo() = default;
  CommentInfo(const SchedulerPolicyCommentInfo& sPInfo,
              const QueueManagementProfileCommentInfo& qMPInfo)
      : sPInfo_(sPInfo), qMPInfo_(qMPInfo) {}
  QOS_EXPORT explicit CommentInfo(Rok::CharRange& range);

  const SchedulerPolicyCommentInfo& sPInfo() const { return sPInfo_; }
  void sPInfoIs(const SchedulerPolicyCommentInfo& v) { sPInfo_ = v; }

  const QueueManagementProfileCommentInfo& qMPInfo() const { return qMPInfo_; }
  void qMPInfoIs(const QueueManagementProfileCommentInfo& v) { qMPInfo_ = v; }

  bool operator==(const CommentInfo&) const = default;
  explicit operator bool() const { return *this != CommentInfo(); }

 private:
  SchedulerPolicyCommentInfo sPInfo_;
  QueueManagementProfileCommentInfo qMPInfo_;
};
QOS_EXPORT Rok::String valueToStrep(const CommentInfo& value);
QOS_EXPORT std::ostream& operator<<(std::ostream& out, const CommentInfo& value);

}  // namespace QosOc
