#include <map>
#include <optional>
#include <set>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "host/CommentFaults.h"
#include "host/Nearest.h"
#include "host/Text.h"
#include "host/check/CommentText.h"
#include "host/check/Rule.h"
#include "host/check/Rules.h"

namespace host {
namespace {

constexpr std::string_view queueBegin = "if-";
constexpr std::string_view profileBegin = "qos-profile-";

// A key of the form if-NAME-uc-txq-N.
struct QueueKey {
  std::string name;
  std::string queue;  // "uc-3"
};

std::optional<QueueKey> queueKeyOf(std::string_view key) {
  const std::size_t last = key.rfind('-');
  if (!key.starts_with(queueBegin) || last == key.npos) return std::nullopt;
  const std::string_view before = key.substr(0, last);
  const std::string_view id = key.substr(last + 1);
  if (!decimal(id, 255) || !before.ends_with("-txq")) return std::nullopt;
  const std::string_view typed = before.substr(0, before.size() - 4);
  const bool isTyped = typed.ends_with("-uc") || typed.ends_with("-mc");
  if (!isTyped || typed.size() <= queueBegin.size() + 3) return std::nullopt;
  const std::string_view name =
      typed.substr(queueBegin.size(), typed.size() - queueBegin.size() - 3);
  return QueueKey{std::string(name),
                  std::string(typed.substr(typed.size() - 2)) + '-' + std::string(id)};
}

class CommentRules : Rule {
 public:
  CommentRules(const Device& device, const Findings& findings) : Rule(device, findings) {
    for (const auto& [id, queues] : device.interfaces) {
      shortNames_.emplace(id.shortName(), id.stringValue());
      for (const DeviceQueue& queue : queues) queues_.insert(queue.commentKey);
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
    if (queues_.contains(key)) {
      if (const auto fault = attachmentFault(text)) return judgeFault(key, *fault);
      return judgeAttachmentText(text, inText);
    }
    if (policies_.contains(key)) {
      if (const auto fault = profileFault(text)) return judgeFault(key, *fault);
      return judgeProfileText(text, inText);
    }
    if (namesMetaData(text)) judgeKey(key);
  }

  void judgeFault(const Rok::String& key, const CommentFault& fault) {
    find("comment-type", key,
         "at " + fault.place + " of this comment: expected " + fault.expected +
             "; it ends the program that translates it");
  }

  // Of metadata under a key that no translator reads.
  void judgeKey(const Rok::String& key) {
    if (const auto queue = queueKeyOf(key)) return judgeQueueKey(key, *queue);
    if (std::string_view(key).starts_with(profileBegin)) return judgeProfileKey(key);
    find("comment-key", key,
         "no translator reads a comment under this key" + didYouMean(key, keysLike(key)) +
             "; write if-SHORT-uc-txq-N for a tx queue, or qos-profile-NAME for a profile");
  }

  // The keys that are read, unless they are too many to be compared.
  std::vector<std::string_view> keysLike(std::string_view key) const {
    constexpr std::size_t many = 1000;
    const auto& keys = key.starts_with(profileBegin) ? policies_ : queues_;
    if (keys.size() > many) return {};
    return {keys.begin(), keys.end()};
  }

  void judgeQueueKey(const Rok::String& key, const QueueKey& wanted) {
    const Nerit::IntfId asLong{Rok::String(wanted.name)};
    const auto* interface = native().qosConfig->intfConfig().find(asLong);
    if (interface != nullptr && asLong.shortName() != asLong.stringValue()) {
      return find("comment-key", key,
                  "the key has the long name of the interface; write " +
                      withName(key, wanted, asLong.shortName()));
    }
    const auto found = shortNames_.find(wanted.name);
    if (found != shortNames_.end()) {
      return find("comment-unused", key,
                  "no tx queue " + wanted.queue + " of " + shown(found->second) +
                      " is there to read this; add the queue or remove the comment");
    }
    std::vector<std::string_view> names;
    for (const auto& [name, interfaceName] : shortNames_) names.push_back(name);
    find("comment-unused", key,
         "no interface has the short name " + quoted(wanted.name) + didYouMean(wanted.name, names) +
             "; add the interface or remove the comment");
  }

  static std::string withName(std::string_view key, const QueueKey& old, std::string_view name) {
    std::string text(key);
    return shown(text.replace(queueBegin.size(), old.name.size(), name));
  }

  void judgeProfileKey(const Rok::String& key) {
    const std::string_view name = std::string_view(key).substr(profileBegin.size());
    if (otherProfiles_.contains(key)) {
      return find("comment-unused", key,
                  "only the comments of profiles __YANG_SP_[NAME] are read; "
                  "rename the profile or remove the comment");
    }
    std::vector<std::string_view> names;
    for (const Rok::String& policy : policies_) {
      names.push_back(std::string_view(policy).substr(profileBegin.size()));
    }
    find("comment-unused", key,
         "there is no QoS profile " + quoted(name) + didYouMean(name, names) +
             "; add the profile or remove the comment");
  }

  void find(std::string_view kind, const Rok::String& key, std::string text) {
    Rule::find(kind, {"comments", std::string(key)}, std::move(text));
  }

  std::map<Rok::String, Rok::String, std::less<>> shortNames_;  // and the long ones
  std::set<Rok::String> queues_;                                // keys of comments
  std::set<Rok::String> policies_;       // likewise, of the profiles of scheduler policies
  std::set<Rok::String> otherProfiles_;  // likewise
};

}  // namespace

void judgeComments(const Device& device, const Findings& findings) {
  CommentRules(device, findings).judge();
}

}  // namespace host
