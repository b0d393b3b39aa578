#include "QosOpenConfig/QosOpenConfigHelperComments.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigHelperUnit.h"

namespace QosOc::Helper {

using namespace HelperUnit;

namespace {

constexpr std::string_view profileKeyOpening = "qos-profile-";

std::string_view upToNul(std::string_view name) { return name.substr(0, name.find('\0')); }

std::string_view queueWord(Qos::QueueType type) {
  switch (type) {
    case Qos::unicast:
      return "-uc-txq-";
    case Qos::multicast:
      return "-mc-txq-";
  }
  // A type of any other byte has keys too, apart from those of the two.
  return "-txq-";
}

// The last part of a key, "-uc-txq-3", in a buffer of its own: keys are made for every queue of the
// device, and printf would cost six times as much.
class QueuePart {
 public:
  explicit QueuePart(const Qos::TxQueue& txQueue) {
    const std::string_view word = queueWord(txQueue.type);
    char* const number = std::ranges::copy(word, text_.begin()).out;
    end_ = std::to_chars(number, text_.end(), unsigned{txQueue.id.value}).ptr;
  }
  std::string_view text() const {
    return {text_.data(), static_cast<std::size_t>(end_ - text_.data())};
  }

 private:
  std::array<char, 12> text_;  // the longest word and three digits
  const char* end_;
};

}  // namespace

// ===== Keys

Velmo::String commentKey(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue) {
  Velmo::String name = intfId.shortName();
  if (isCutInCommentKey(name)) name = upToNul(name);
  return name.addLeft("if-").append(QueuePart(txQueue).text());
}

void traceCommentKey(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue) {
  traceOperation("commentKey", intfId, txQueue);
}

bool keysAreTraced() { return detail.isOn(); }

Velmo::String profileCommentKey(const Velmo::String& profileName) {
  Velmo::String name = profileName;
  if (isCutInCommentKey(name)) name = upToNul(name);
  return name.addLeft(profileKeyOpening);
}

std::optional<std::string_view> profileNameFromCommentKey(std::string_view key) {
  if (!key.starts_with(profileKeyOpening) || key.find('\0') != std::string_view::npos) return {};
  return key.substr(profileKeyOpening.size());
}

bool isCutInCommentKey(std::string_view name) { return upToNul(name).size() != name.size(); }

// ===== What comments name

inline const CommentInfo& CommentMemo::info(const Velmo::String& comment) {
  if (comment == comment_ && !handler.isOn()) return info_;
  info_ = other_ != nullptr ? other_->info(comment) : deserializeJsonComment(comment);
  comment_ = comment;
  return info_;
}

const SchedulerPolicyCommentInfo& CommentMemo::schedulerPolicyInfo(const Velmo::String& comment) {
  traceOperation("schedulerPolicyInfoFromComment", comment);
  return info(comment).sPInfo();
}

const QueueManagementProfileCommentInfo& CommentMemo::queueManagementProfileInfo(
    const Velmo::String& comment) {
  traceOperation("queueManagementProfileInfoFromComment", comment);
  return info(comment).qMPInfo();
}

}  // namespace QosOc::Helper
