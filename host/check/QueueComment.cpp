#include "host/check/QueueComment.h"

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigHelperComments.h"
#include "host/CommentFaults.h"
#include "host/check/Untraced.h"

namespace host {

QueueComment QueueComment::of(const Native& native, const Nerit::IntfId& interface,
                              const Qos::TxQueue& queue) {
  QueueComment comment;
  comment.key = QosOc::Helper::commentKey(interface, queue);
  const Rok::String text = native.cliConfig->comment(comment.key);
  if (text.empty()) return comment;
  comment.isRead = !attachmentFault(text);
  if (!comment.isRead) return comment;
  const Untraced untraced;
  const QosOc::CommentInfo info = deserializeJsonComment(text);
  comment.policy = std::string_view(info.sPInfo().schedulerPolicy());
  comment.profile = std::string_view(info.qMPInfo().queueManagementProfile());
  return comment;
}

}  // namespace host
