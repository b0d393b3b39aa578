// The keys of the comment store, and what the comment of a tx queue names, for translators that
// need both at every event. CommentHelper has the same operations for all other code.
#pragma once

#include <optional>
#include <string_view>

#include "QosOpenConfig/QosOpenConfigTypes.h"
#include "Rok/Rok.h"
#include "models/native/Values.h"

namespace QosOc::Helper {

// CommentHelper::commentKey without its trace, for a machine that computes its key once.
QOS_EXPORT Velmo::String commentKey(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue);
// The line that CommentHelper::commentKey traces. A machine that keeps its key traces each use of
// it, as if the key were computed there.
QOS_EXPORT void traceCommentKey(const Nerit::IntfId& intfId, const Qos::TxQueue& txQueue);
// Whether that line is on.
QOS_EXPORT bool keysAreTraced();

// CommentHelper::profileCommentKey without its trace.
QOS_EXPORT Velmo::String profileCommentKey(const Velmo::String& profileName);
// The inverse of CommentHelper::profileCommentKey: the name of the profile whose key it is, or
// nothing when it is no profile's. The result points into `key`. A profile whose name is that one
// with a NUL and more behind it has the same key.
QOS_EXPORT std::optional<std::string_view> profileNameFromCommentKey(std::string_view key);
// Whether a name has a NUL, so that a comment key doesn't hold all of it.
QOS_EXPORT bool isCutInCommentKey(std::string_view name);

// What a comment names: a text is decoded once for as long as it stays the same. While decodings
// are traced, each call decodes.
class QOS_EXPORT CommentMemo {
 public:
  CommentMemo() = default;
  // Looks into another memo, which outlives it, before it decodes.
  explicit CommentMemo(CommentMemo& other) : other_(&other) {}
  CommentMemo(const CommentMemo&) = delete;
  CommentMemo& operator=(const CommentMemo&) = delete;

  // As those of CommentHelper, traces included.
  const SchedulerPolicyCommentInfo& schedulerPolicyInfo(const Velmo::String& comment);
  const QueueManagementProfileCommentInfo& queueManagementProfileInfo(const Velmo::String& comment);

 private:
  const CommentInfo& info(const Velmo::String& comment);

  CommentMemo* other_ = nullptr;
  Velmo::String comment_;
  CommentInfo info_;
};

}  // namespace QosOc::Helper
