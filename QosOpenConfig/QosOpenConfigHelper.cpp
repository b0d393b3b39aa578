#include "QosOpenConfig/QosOpenConfigHelper.h"

#include "QosOpenConfig/QosOpenConfigHelperComments.h"
#include "QosOpenConfig/QosOpenConfigHelperUnit.h"

namespace QosOc {

using namespace HelperUnit;

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
// line. The lines that were there end in a separator, and the one that is gained doesn't: both
// sides compare whole texts.
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
  auto helper = Rok::make<CommentHelper>();
  helper->hasNotificationActiveIs(true);
  return helper;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the interface hands it over by value
Velmo::String CommentHelper::commentKey(Nerit::IntfId intfId, const Qos::TxQueue& txQueue) {
  Helper::traceCommentKey(intfId, txQueue);
  return Helper::commentKey(intfId, txQueue);
}

Velmo::String CommentHelper::createSchedulerPolicyComment(const SchedulerPolicyCommentInfo& info,
                                                          const Velmo::String& comment) {
  traceOperation("createSchedulerPolicyComment", info, comment);
  return merged(comment, [&](CommentInfo& found) { found.sPInfoIs(info); });
}

Velmo::String CommentHelper::deleteSchedulerPolicyComment(const Velmo::String& comment) {
  traceOperation("deleteSchedulerPolicyComment", comment);
  // Unlike its counterpart for profiles this doesn't go by lines, and it drops foreign text: the
  // code that writes comments counts on both.
  CommentInfo info = deserializeJsonComment(comment);
  if (!info.qMPInfo()) return {};
  info.sPInfoIs(SchedulerPolicyCommentInfo());
  return serializeJsonComment(info);
}

SchedulerPolicyCommentInfo CommentHelper::schedulerPolicyInfoFromComment(
    const Velmo::String& comment) {
  traceOperation("schedulerPolicyInfoFromComment", comment);
  return deserializeJsonComment(comment).sPInfo();
}

Velmo::String CommentHelper::createQueueManagementProfileComment(
    const QueueManagementProfileCommentInfo& info, const Velmo::String& comment) {
  traceOperation("createQueueManagementProfileComment", info, comment);
  return merged(comment, [&](CommentInfo& found) { found.qMPInfoIs(info); });
}

Velmo::String CommentHelper::deleteQueueManagementProfileComment(const Velmo::String& comment) {
  traceOperation("deleteQueueManagementProfileComment", comment);
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
  traceOperation("queueManagementProfileInfoFromComment", comment);
  return deserializeJsonComment(comment).qMPInfo();
}

Velmo::String CommentHelper::profileCommentKey(const Velmo::String& profileName) {
  traceOperation("profileCommentKey", profileName);
  return Helper::profileCommentKey(profileName);
}

Velmo::String CommentHelper::createSchedulerPolicyProfileComment(
    const SchedulerPolicyProfileCommentInfo& info) {
  traceOperation("createSchedulerPolicyProfileComment", info);
  return serializeJsonProfileComment(info);
}

SchedulerPolicyProfileCommentInfo CommentHelper::schedulerPolicyProfileInfoFromComment(
    const Velmo::String& comment) {
  traceOperation("schedulerPolicyProfileInfoFromComment", comment);
  return deserializeJsonProfileComment(comment);
}

Rok::Ptr<CommentHelper> commentHelperFactory() { return CommentHelper::CommentHelperIs(); }

}  // namespace QosOc
