// Comments: their JSON form, and the keys and texts of the comment store.
#pragma once

#include "QosOpenConfig/QosOpenConfigTypes.h"
#include "Rok/Rok.h"
#include "models/native/Values.h"

// ===== The JSON form of comments
//
// UTF-8, compact, all under the one key "MetaData-OpenConfig". A name ends at its first NUL. None
// of these throws. Comments of other origin share the store, so text that is no document of ours
// reads as the default value, with a trace and no more. But a member of ours with a value of the
// wrong type ends the process: see QosOpenConfigHelperJson.h.

// The attachment document of a transmit queue:
//   {"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"},
//                           "queue-management-profile":{"name":"qmp-wred"}}}
// without the part that is empty; the empty string when both are.
QOS_EXPORT Velmo::String serializeJsonComment(QosOc::CommentInfo info);
QOS_EXPORT QosOc::CommentInfo deserializeJsonComment(const Velmo::String& comment);

// The profile document of a QoS profile, with a member for each scheduler:
//   {"MetaData-OpenConfig":{"1":{"priority":"STRICT",
//                                "one-rate-two-color":{"cir":1000000000,"cir-pct":40},
//                                "inputs":{"in-a":{"queue":"q7","weight":30}}}}}
// The name of the value is not written, and is empty in what is read. Always a document, and all
// but "inputs" and what encloses it is left out when it is the default.
QOS_EXPORT Velmo::String serializeJsonProfileComment(QosOc::SchedulerPolicyProfileCommentInfo info);
QOS_EXPORT QosOc::SchedulerPolicyProfileCommentInfo deserializeJsonProfileComment(
    const Velmo::String& comment);

namespace QosOc {

// Under which keys of the comment store metadata stands, and how a comment's text is changed while
// the rest of it stays. It has no state. The translators compute keys and read; the code
// that turns OpenConfig configuration into native configuration writes, through the same class.
//
// A comment is a sequence of lines, of which any may be an attachment document.
class QOS_EXPORT CommentHelper final : public Rok::PtrInterface {
 public:
  static Rok::Ptr<CommentHelper> CommentHelperIs();

  // "if-<short name>-<uc-txq, mc-txq or txq>-<id>", as in if-Et7-uc-txq-3. The name ends at its
  // first NUL.
  static Velmo::String commentKey(Nerit::IntfId intfId, const Qos::TxQueue& txQueue);

  // The comment with `info` in each line that is an attachment document, or else in a new last
  // line. Each line that was there ends in "\n", and a new last line doesn't.
  static Velmo::String createSchedulerPolicyComment(const SchedulerPolicyCommentInfo& info,
                                                    const Velmo::String& comment);
  // Unlike deleteQueueManagementProfileComment this takes the comment as one document, and
  // returns it without the scheduler policy and without an end of line. What isn't a document with
  // a queue-management profile, several lines included, becomes the empty string.
  static Velmo::String deleteSchedulerPolicyComment(const Velmo::String& comment);
  // The comment is one document here, and below.
  static SchedulerPolicyCommentInfo schedulerPolicyInfoFromComment(const Velmo::String& comment);

  // As createSchedulerPolicyComment.
  static Velmo::String createQueueManagementProfileComment(
      const QueueManagementProfileCommentInfo& info, const Velmo::String& comment);
  // The comment without the profile in any of its lines, and without empty lines. Each line ends in
  // "\n".
  static Velmo::String deleteQueueManagementProfileComment(const Velmo::String& comment);
  static QueueManagementProfileCommentInfo queueManagementProfileInfoFromComment(
      const Velmo::String& comment);

  // "qos-profile-<name>", with the name as the native configuration spells it, up to its first NUL.
  static Velmo::String profileCommentKey(const Velmo::String& profileName);

  // A profile's comment is rewritten whole.
  static Velmo::String createSchedulerPolicyProfileComment(
      const SchedulerPolicyProfileCommentInfo& info);
  static SchedulerPolicyProfileCommentInfo schedulerPolicyProfileInfoFromComment(
      const Velmo::String& comment);
};

// As CommentHelper::CommentHelperIs.
QOS_EXPORT Rok::Ptr<CommentHelper> commentHelperFactory();

}  // namespace QosOc
