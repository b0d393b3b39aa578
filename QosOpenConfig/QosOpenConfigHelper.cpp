#include "QosOpenConfig/QosOpenConfigHelper.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>

#include "models/native/QosInput.h"

namespace QosOc::Helper {
namespace {

// ===== Maps of names

using Attr = Qos::Input::Config::Attr;

constexpr Rok::FwkType configType{"Qos::Input::Config", {}};

// Takes "[IPV4__A]" off the front of `rest` and returns A; leaves `rest` alone and returns an empty
// text when it doesn't begin so. A name is any bytes but "]", and at least one.
std::string_view takeFamily(std::string_view& rest, std::string_view opening) {
  if (!rest.starts_with(opening)) return {};
  const std::size_t end = rest.find(']', opening.size());
  if (end == opening.size() || end == std::string_view::npos) return {};
  const std::string_view name = rest.substr(opening.size(), end - opening.size());
  rest.remove_prefix(end + 1);
  return name;
}

// ===== Keys

constexpr std::string_view profileKeyOpening = "qos-profile-";

std::string_view upToNul(std::string_view name) { return name.substr(0, name.find('\0')); }

std::string_view queueWord(Qos::QueueType type) {
  switch (type) {
    case Qos::unicast:
      return "-uc-txq-";
    case Qos::multicast:
      return "-mc-txq-";
  }
  // Deliberate: a type of any other byte has keys too, and they are apart from those of the others.
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

void requireGroupNames(const Qos::Input::Config& config) {
  if (config.forwardingGroupNameToTcMap()) return;
  Rok::throwMutatorArgNullPointerException("forwardingGroupNameToTcMap", configType,
                                           Attr::forwardingGroupNameToTcMap.id);
}

void requireQueueNames(const Qos::Input::Config& config) {
  if (config.queueNameToTxQueueIdMap()) return;
  Rok::throwMutatorArgNullPointerException("queueNameToTxQueueIdMap", configType,
                                           Attr::queueNameToTxQueueIdMap.id);
}

std::optional<PmapClassifiers> pmapClassifiers(std::string_view pmapName) {
  constexpr std::string_view prefix = "__yang_";
  if (!pmapName.starts_with(prefix)) return {};
  std::string_view rest = pmapName.substr(prefix.size());
  PmapClassifiers found;
  found.ipv4 = takeFamily(rest, "[IPV4__");
  found.ipv6 = takeFamily(rest, "[IPV6__");
  if (!rest.empty()) return {};
  return found;
}

std::string_view nameInProfileName(std::string_view profileName, std::string_view opening) {
  if (!profileName.starts_with(opening) || !profileName.ends_with(']')) return {};
  const std::string_view name =
      profileName.substr(opening.size(), profileName.size() - opening.size() - 1);
  return name.find_first_of("\n\r") == std::string_view::npos ? name : std::string_view();
}

Velmo::String commentKey(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue) {
  Velmo::String name = intfId.shortName();
  if (isCutInCommentKey(name)) name = upToNul(name);
  return name.addLeft("if-").append(QueuePart(txQueue).text());
}

std::optional<std::string_view> profileNameFromCommentKey(std::string_view key) {
  if (!key.starts_with(profileKeyOpening) || key.find('\0') != std::string_view::npos) return {};
  return key.substr(profileKeyOpening.size());
}

bool isCutInCommentKey(std::string_view name) { return upToNul(name).size() != name.size(); }

}  // namespace QosOc::Helper

namespace QosOc {
namespace {

constinit Rok::TraceHandle traceHandle("OpenConfigQos", false);

constexpr Rok::TraceFacility::FacilityLevel handler = 2;
constexpr Rok::TraceFacility::FacilityLevel detail = 9;

// The line with which an operation opens: its name and its arguments.
template <class... Args>
void traceCall(const char* name, const Args&... args) {
  if (Rok::TraceHelper line{traceHandle, detail}) {
    line << name << " ( ";
    [[maybe_unused]] const char* comma = "";
    ((line << comma << args, comma = ", "), ...);
    line << " ) ";
  }
}

}  // namespace

void Helper::traceCommentKey(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue) {
  traceCall("commentKey", intfId, txQueue);
}

bool Helper::keysAreTraced() { return traceHandle.isOn(detail); }

// ===== What comments name

const SchedulerPolicyCommentInfo& Helper::CommentMemo::schedulerPolicyInfo(
    const Velmo::String& comment) {
  traceCall("schedulerPolicyInfoFromComment", comment);
  return info(comment).sPInfo();
}

const QueueManagementProfileCommentInfo& Helper::CommentMemo::queueManagementProfileInfo(
    const Velmo::String& comment) {
  traceCall("queueManagementProfileInfoFromComment", comment);
  return info(comment).qMPInfo();
}

const CommentInfo& Helper::CommentMemo::info(const Velmo::String& comment) {
  if (comment == comment_ && !traceHandle.isOn(handler)) return info_;
  info_ = other_ != nullptr ? other_->info(comment) : deserializeJsonComment(comment);
  comment_ = comment;
  return info_;
}

namespace {

// ===== Lines

// Calls `act` with each line, without its separator. A last line without one counts, an empty text
// has none.
template <class Act>
void eachLine(std::string_view comment, const Act& act) {
  while (!comment.empty()) {
    const std::size_t end = comment.find('\n');
    act(Velmo::String(comment.substr(0, end)));
    comment.remove_prefix(end == std::string_view::npos ? comment.size() : end + 1);
  }
}

// The comment with a change made to every line that is metadata; a comment without one gains a
// line. Deliberate: the lines that were there end in a separator, and the one that is gained
// doesn't. Both sides compare whole texts.
template <class Change>
Velmo::String merged(const Velmo::String& comment, const Change& change) {
  Velmo::String result;
  bool found = false;
  eachLine(comment, [&](const Velmo::String& line) {
    CommentInfo info = deserializeJsonComment(line);
    const bool isMetaData(info);
    found = found || isMetaData;
    if (isMetaData) change(info);
    result.append(isMetaData ? serializeJsonComment(info) : line).append("\n");
  });
  if (found) return result;
  CommentInfo info;
  change(info);
  return result.append(serializeJsonComment(info));
}

}  // namespace

Rok::Ptr<CommentHelper> CommentHelper::CommentHelperIs() {
  const auto helper = Rok::make<CommentHelper>();
  helper->hasNotificationActiveIs(true);
  return helper;
}

Velmo::String CommentHelper::commentKey(Nerit::IntfId intfId, const Qos::TxQueue& txQueue) {
  Helper::traceCommentKey(intfId, txQueue);
  return Helper::commentKey(intfId, txQueue);
}

Velmo::String CommentHelper::createSchedulerPolicyComment(const SchedulerPolicyCommentInfo& info,
                                                          const Velmo::String& comment) {
  traceCall("createSchedulerPolicyComment", info, comment);
  return merged(comment, [&](CommentInfo& found) { found.sPInfoIs(info); });
}

Velmo::String CommentHelper::deleteSchedulerPolicyComment(const Velmo::String& comment) {
  traceCall("deleteSchedulerPolicyComment", comment);
  // Deliberate: unlike its counterpart for profiles this doesn't go by lines, and it drops foreign
  // text. The code that writes comments counts on what it gets.
  CommentInfo info = deserializeJsonComment(comment);
  if (!info.qMPInfo()) return {};
  info.sPInfoIs(SchedulerPolicyCommentInfo());
  return serializeJsonComment(info);
}

SchedulerPolicyCommentInfo CommentHelper::schedulerPolicyInfoFromComment(
    const Velmo::String& comment) {
  traceCall("schedulerPolicyInfoFromComment", comment);
  return deserializeJsonComment(comment).sPInfo();
}

Velmo::String CommentHelper::createQueueManagementProfileComment(
    const QueueManagementProfileCommentInfo& info, const Velmo::String& comment) {
  traceCall("createQueueManagementProfileComment", info, comment);
  return merged(comment, [&](CommentInfo& found) { found.qMPInfoIs(info); });
}

Velmo::String CommentHelper::deleteQueueManagementProfileComment(const Velmo::String& comment) {
  traceCall("deleteQueueManagementProfileComment", comment);
  Velmo::String result;
  eachLine(comment, [&](Velmo::String line) {
    CommentInfo info = deserializeJsonComment(line);
    if (info.qMPInfo()) {
      info.qMPInfoIs(QueueManagementProfileCommentInfo());
      line = serializeJsonComment(info);
    }
    // An empty line goes, also one that was empty before.
    if (!line.empty()) result.append(line).append("\n");
  });
  return result;
}

QueueManagementProfileCommentInfo CommentHelper::queueManagementProfileInfoFromComment(
    const Velmo::String& comment) {
  traceCall("queueManagementProfileInfoFromComment", comment);
  return deserializeJsonComment(comment).qMPInfo();
}

Velmo::String CommentHelper::profileCommentKey(const Velmo::String& profileName) {
  traceCall("profileCommentKey", profileName);
  Velmo::String name = profileName;
  if (Helper::isCutInCommentKey(name)) name = Helper::upToNul(name);
  return name.addLeft(Helper::profileKeyOpening);
}

Velmo::String CommentHelper::createSchedulerPolicyProfileComment(
    const SchedulerPolicyProfileCommentInfo& info) {
  traceCall("createSchedulerPolicyProfileComment", info);
  return serializeJsonProfileComment(info);
}

SchedulerPolicyProfileCommentInfo CommentHelper::schedulerPolicyProfileInfoFromComment(
    const Velmo::String& comment) {
  traceCall("schedulerPolicyProfileInfoFromComment", comment);
  return deserializeJsonProfileComment(comment);
}

Rok::Ptr<CommentHelper> commentHelperFactory() { return CommentHelper::CommentHelperIs(); }

}  // namespace QosOc
