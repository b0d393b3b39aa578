#include <map>
#include <set>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "host/CommentFaults.h"
#include "host/Text.h"
#include "host/check/Check.h"
#include "host/check/CommentKey.h"
#include "host/check/CommentText.h"
#include "host/check/Rule.h"
#include "host/check/Rules.h"

namespace host {
namespace {

constexpr std::string_view profileBegin = "qos-profile-";

class CommentRules : Rule {
 public:
  CommentRules(const Device& device, const Findings& findings)
      : Rule(device, findings),
        queueKeys_([this] { return namesOf(queues_); }),
        policyKeys_([this] { return Suggestions::Names(policies_.begin(), policies_.end()); },
                    profileBegin.size()),
        wholePolicyKeys_([this] { return Suggestions::Names(policies_.begin(), policies_.end()); }),
        interfaces_([this] { return namesOf(this->device().shortNames); }) {
    for (const auto& [id, queues] : device.interfaces) {
      for (const DeviceQueue& queue : queues) queues_[queue.commentKey].push_back(&queue);
    }
    for (auto i = native().qosProfiles->config().unsafeIterator(); i; ++i) {
      const Rok::String key = QosOc::CommentHelper::profileCommentKey(i->key());
      (decodeSPProfileName(i->key()).empty() ? otherProfiles_ : policies_).insert(key);
    }
  }

  void judge() {
    for (auto i = native().cliConfig->comment().unsafeIterator(); i; ++i)
      judge(i->key(), i->value());
  }

 private:
  void judge(const Rok::String& key, const Rok::String& text) {
    const CommentFindings inText = [&](std::string_view kind, std::string what) {
      find(kind, key, std::move(what));
    };
    if (const auto found = queues_.find(key); found != queues_.end()) {
      if (const auto fault = attachmentFault(text)) return judgeFault(key, *fault);
      judgeShared(found->second);
      return judgeAttachmentText(text, inText);
    }
    if (policies_.contains(key)) {
      if (const auto fault = profileFault(text)) return judgeFault(key, *fault);
      return judgeProfileText(text, inText);
    }
    if (isMeantAsMetaData(text)) judgeKey(key);
  }

  void judgeFault(const Rok::String& key, const CommentFault& fault) {
    find("comment-type", key, findingOf({std::string(key), fault}).text);
  }

  // Interfaces that are meant to differ have one comment when their short names are the same.
  void judgeShared(const std::vector<const DeviceQueue*>& queues) {
    const DeviceQueue& first = *queues.front();
    if (queues.size() < 2 || (first.policy.empty() && first.profile.empty())) return;
    std::set<std::string_view> names;
    for (const DeviceQueue* queue : queues) names.insert(queue->interface.stringValue());
    find("comment-shared", first.commentKey,
         "speaks for " + queueText(first.queue) + " of several interfaces, whose short name is " +
             quoted(first.interface.shortName()) + ": " + listed(names) + "; rename all but one");
  }

  // Of metadata under a key that no translator reads.
  void judgeKey(const Rok::String& key) {
    if (const auto queue = CommentKey::parse(key)) return judgeQueueKey(key, *queue);
    if (std::string_view(key).starts_with(profileBegin)) return judgeProfileKey(key);
    const std::string_view meant = queueKeys_.nearest(key);
    find("comment-key", key,
         "no translator reads a comment under this key" +
             advice(meant.empty() ? profileKey(key) : std::string(meant),
                    "write if-SHORT-uc-txq-N for a tx queue, or qos-profile-NAME for "
                    "a profile"));
  }

  // The key of a scheduler policy's profile that a key nearly is; empty: none.
  std::string profileKey(const Rok::String& key) const {
    const std::string behind = std::string(profileBegin) + std::string(key);
    if (policies_.contains(Rok::String(behind))) return behind;
    return std::string(wholePolicyKeys_.nearest(key));
  }

  void judgeQueueKey(const Rok::String& key, const CommentKey& wanted) {
    const Nerit::IntfId asLong{Rok::String(wanted.shortName)};
    const auto* interface = native().qosConfig->intfConfig().find(asLong);
    if (interface != nullptr && asLong.shortName() != asLong.stringValue()) {
      return find("comment-key", key,
                  "the key has the long name of the interface; write " +
                      withName(key, wanted, asLong.shortName()));
    }
    const auto found = device().shortNames.find(wanted.shortName);
    if (found != device().shortNames.end()) {
      return find("comment-unused", key,
                  "no tx queue " + queueText(wanted.queue) + " of " +
                      shown(found->second.stringValue()) +
                      " is there to read this; add the queue or remove the comment");
    }
    find("comment-unused", key,
         "no interface has the short name " + quoted(wanted.shortName) +
             interfaces_.advice(wanted.shortName, "add the interface or remove the comment"));
  }

  static std::string withName(std::string_view key, const CommentKey& old, std::string_view name) {
    std::string text(key);
    return shown(text.replace(CommentKey::opening.size(), old.shortName.size(), name));
  }

  void judgeProfileKey(const Rok::String& key) {
    const std::string_view name = std::string_view(key).substr(profileBegin.size());
    if (otherProfiles_.contains(key)) {
      return find("comment-unused", key,
                  "only the comments of profiles __YANG_SP_[NAME] are read; "
                  "rename the profile or remove the comment");
    }
    if (const auto policy = device().policies.find(name); policy != device().policies.end()) {
      return find(
          "comment-key", key,
          "the key has the name of the scheduler policy and not of its QoS profile; write " +
              shown(policy->second.commentKey));
    }
    const std::string_view meant = policyKeys_.nearest(key);
    find("comment-unused", key,
         "there is no QoS profile " + quoted(name) +
             advice(meant.empty() ? meant : meant.substr(profileBegin.size()),
                    "add the profile or remove the comment"));
  }

  void find(std::string_view kind, const Rok::String& key, std::string text) {
    Rule::find(kind, {"comments", std::string(key)}, std::move(text));
  }

  std::map<Rok::String, std::vector<const DeviceQueue*>> queues_;  // by the keys of comments
  std::set<Rok::String> policies_;       // likewise, of the profiles of scheduler policies
  std::set<Rok::String> otherProfiles_;  // likewise
  const Suggestions queueKeys_;
  const Suggestions policyKeys_;  // of keys that begin as they should
  const Suggestions wholePolicyKeys_;
  const Suggestions interfaces_;
};

}  // namespace

void judgeComments(const Device& device, const Findings& findings) {
  CommentRules(device, findings).judge();
}

}  // namespace host
