#include "host/CommentGuard.h"

#include <algorithm>
#include <set>
#include <utility>

#include "QosOpenConfig/QosOpenConfigHelperComments.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "host/check/CommentKey.h"
#include "host/check/Untraced.h"
#include "host/sections/TxQueues.h"

namespace host {
namespace {

std::optional<BadComment> badAttachment(const Rok::String& key, const Rok::String& text) {
  auto fault = attachmentFault(text);
  if (!fault) return std::nullopt;
  return BadComment{std::string(std::string_view(key)), std::move(*fault)};
}

// Whether a tx queue of that id, or of any, has the comment of this key. It walks all interfaces: it
// is asked of comments that are bad, when no root decodes them all.
bool isOfQueue(const Rok::String& key, std::optional<Qos::TxQueueId> id, Draft& draft) {
  const auto parsed = CommentKey::parse(key);
  if (!parsed || (id && *id != parsed->queue.id)) return false;
  Draft& interfaces = *draft.at("interfaces");
  for (const Rok::String& name : interfaces.keys()) {
    if (QosOc::Helper::commentKey(Nerit::IntfId(name), parsed->queue) != key) continue;
    Draft& queues = *interfaces.at(name)->at("tx-queues");
    if (queues.at(KeyForm<Qos::TxQueue>::text(parsed->queue)) != nullptr) return true;
  }
  return false;
}

bool isPolicy(const Rok::String& profile) {
  const Untraced untraced;
  return !decodeSPProfileName(profile).empty();
}

// Whether the comment of this key is that of a scheduler policy's profile. Several profiles may have
// it, since names may go on behind a NUL.
bool isOfPolicy(const Rok::String& key, Draft& draft) {
  const auto name = QosOc::Helper::profileNameFromCommentKey(key);
  if (!name) return false;
  Draft& profiles = *draft.at("qos-profiles");
  if (profiles.at(Rok::String(*name)) != nullptr && isPolicy(Rok::String(*name))) return true;
  return std::ranges::any_of(profiles.keys(), [&](const Rok::String& profile) {
    return QosOc::Helper::profileCommentKey(profile) == key && isPolicy(profile);
  });
}

}  // namespace

// ===== What is there

// The keys of the comments that are bad for the root of a tx queue.
class CommentGuard::BadKeys final : public Rok::PtrInterface::NotifieeConst {
 public:
  explicit BadKeys(const Rok::Ptr<Cli::Config>& comments) : comments_(*comments) {
    for (auto i = comments->comment().unsafeIterator(); i; ++i) {
      if (attachmentFault(i->value())) keys_.insert(i->key());
    }
    notifierIs(comments.get());
    hasNotificationActiveIs(true);
    isRegisteredNotifieeIs(true);
  }

  const std::set<Rok::String>& keys() const { return keys_; }

  void onAttribute(Rok::AttributeId id, const void* changed) override {
    if (id != Cli::Config::Attr::comment.id) return;
    const Rok::String key = *static_cast<const Rok::String*>(changed);
    if (attachmentFault(comments_.comment(key))) {
      keys_.insert(key);
    } else if (!keys_.empty()) {
      keys_.erase(key);
    }
  }

 private:
  const Cli::Config& comments_;
  std::set<Rok::String> keys_;
};

CommentGuard::CommentGuard(const Native& native, const KeptRoots& roots)
    : native_(native), roots_(&roots), badKeys_(Rok::make<BadKeys>(native.cliConfig)) {}

CommentGuard::CommentGuard(const Native& native)
    : native_(native), roots_(nullptr), badKeys_(Rok::make<BadKeys>(native.cliConfig)) {}

bool CommentGuard::isBuilt(std::string_view root) const {
  return roots_ == nullptr || roots_->isBuilt(root);
}

bool CommentGuard::isKept(std::string_view root) const {
  return roots_ == nullptr || roots_->isKept(root);
}

CommentGuard::~CommentGuard() = default;

void CommentGuard::lineBegins() {
  texts_.clear();
  areOthersGone_ = false;
}

Rok::String CommentGuard::text(const Rok::String& key) const {
  if (const auto found = texts_.find(key); found != texts_.end()) return found->second;
  return areOthersGone_ ? Rok::String() : native_.cliConfig->comment(key);
}

bool CommentGuard::decodesAll() const {
  return isKept("queue-management") || isKept("scheduler-policy");
}

std::optional<BadComment> CommentGuard::judge(const Write& write, Draft& draft) {
  const std::string_view section = write.keys[0];
  if (section == "comments") return judgeComments(write, draft);
  if (section == "qos-profiles") return judgeProfiles(write);
  // Otherwise what is there is read, and nearly always that is good.
  if (badKeys_->keys().empty() && texts_.empty()) return std::nullopt;
  if (section == "interfaces") return judgeInterfaces(write);
  if (section == "queue-names") return judgeQueueName(write, draft);
  return std::nullopt;
}

// ===== Comments

CommentGuard::Found CommentGuard::judgeComments(const Write& write, Draft& draft) {
  if (write.keys.size() == 2) {
    const Rok::String text = write.value != nullptr ? write.value->text() : Rok::String();
    Found found;
    if (write.isChange) found = judgeText(write.keys[1], text, draft);
    texts_[write.keys[1]] = text;
    return found;
  }
  Found found;
  std::map<Rok::String, Rok::String> texts;
  for (const auto& [key, value] : write.value->object()) {
    if (!found && text(key) != value.text()) found = judgeText(key, value.text(), draft);
    texts[key] = value.text();
  }
  texts_ = std::move(texts);
  areOthersGone_ = true;
  return found;
}

CommentGuard::Found CommentGuard::judgeText(const Rok::String& key, const Rok::String& text,
                                            Draft& draft) {
  if (Found found = badAttachment(key, text)) {
    if (decodesAll()) return found;
    if (isKept("queue") && isOfQueue(key, std::nullopt, draft)) return found;
  }
  return judgeProfileText(key, text, draft);
}

CommentGuard::Found CommentGuard::judgeProfileText(const Rok::String& key, const Rok::String& text,
                                                   Draft& draft) const {
  if (!QosOc::Helper::profileNameFromCommentKey(key)) return std::nullopt;
  auto fault = profileFault(text);
  if (!fault || !isKept("scheduler-policy") || !isOfPolicy(key, draft)) return std::nullopt;
  return BadComment{std::string(std::string_view(key)), std::move(*fault)};
}

// ===== Tx queues

CommentGuard::Found CommentGuard::judgeInterfaces(const Write& write) const {
  const Keys keys = write.keys;
  if (keys.size() > 2 && keys[2] != "tx-queues") return std::nullopt;
  if (keys.size() > 4) return isRead(write) ? judgeQueue(keys[1], keys[3]) : std::nullopt;
  if (write.value == nullptr || !(decodesAll() || isKept("queue"))) return std::nullopt;
  if (keys.size() == 4) return judgeQueue(keys[1], keys[3]);
  if (keys.size() == 3) return judgeQueues(keys[1], *write.value);
  if (keys.size() == 2) return judgeInterface(keys[1], *write.value);
  for (const auto& [name, interface] : write.value->object()) {
    if (Found found = judgeInterface(name, interface)) return found;
  }
  return std::nullopt;
}

// Whether a root reads the comment when a setting is written. A write of a block, or in one, is always
// a change: another block takes its place.
bool CommentGuard::isRead(const Write& write) const {
  const std::string_view setting = write.keys[4];
  const bool isOfBlock = setting == "ecn" || setting == "wred";
  if (!isOfBlock && !write.isChange) return false;
  if (isOfBlock && isBuilt("queue-management")) return true;
  if (!isOfBlock && isBuilt("scheduler-policy")) return true;
  return setting != "wred" && setting != "shape" && isBuilt("queue");
}

CommentGuard::Found CommentGuard::judgeInterface(const Rok::String& name,
                                                 const Value& interface) const {
  const Value* queues = interface.find("tx-queues");
  return queues != nullptr ? judgeQueues(name, *queues) : std::nullopt;
}

CommentGuard::Found CommentGuard::judgeQueues(const Rok::String& interface,
                                              const Value& queues) const {
  for (const auto& [queue, settings] : queues.object()) {
    if (Found found = judgeQueue(interface, queue)) return found;
  }
  return std::nullopt;
}

CommentGuard::Found CommentGuard::judgeQueue(const Rok::String& interface,
                                             const Rok::String& queue) const {
  const auto parsed = *KeyForm<Qos::TxQueue>::parse(queue);
  const Rok::String key = QosOc::Helper::commentKey(Nerit::IntfId(interface), parsed);
  return badAttachment(key, text(key));
}

// A name that comes, or moves to another id, has the comments of that id's tx queues read. The walks
// over the device are those of its bad comments alone.
CommentGuard::Found CommentGuard::judgeQueueName(const Write& write, Draft& draft) const {
  if (write.keys.size() != 2 || write.value == nullptr || !write.isChange) return std::nullopt;
  const Qos::TxQueueId id(write.value->number());
  const bool isRead = isBuilt("queue-management") || isBuilt("scheduler-policy");
  if (id == Qos::noTxQueue || !isRead) return std::nullopt;
  std::set<Rok::String> keys = badKeys_->keys();
  for (const auto& [key, text] : texts_) keys.insert(key);
  for (const Rok::String& key : keys) {
    Found found = badAttachment(key, text(key));
    if (found && isOfQueue(key, id, draft)) return found;
  }
  return std::nullopt;
}

// ===== Profiles

CommentGuard::Found CommentGuard::judgeProfiles(const Write& write) const {
  if (write.value == nullptr || !isKept("scheduler-policy")) return std::nullopt;
  if (write.keys.size() == 2) return judgeProfile(write.keys[1]);
  if (write.keys.size() > 2) return std::nullopt;
  for (const auto& [name, profile] : write.value->object()) {
    if (Found found = judgeProfile(name)) return found;
  }
  return std::nullopt;
}

CommentGuard::Found CommentGuard::judgeProfile(const Rok::String& name) const {
  if (!isPolicy(name)) return std::nullopt;
  const Rok::String key = QosOc::Helper::profileCommentKey(name);
  auto fault = profileFault(text(key));
  if (!fault) return std::nullopt;
  return BadComment{std::string(std::string_view(key)), std::move(*fault)};
}

}  // namespace host
