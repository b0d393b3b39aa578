// Finds, before a change line is written, the comment that would end the process: one with a value of
// the wrong type that the writes of the line have a root read.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <span>
#include <string_view>

#include "host/CommentFaults.h"
#include "host/Draft.h"
#include "host/KeptRoots.h"

namespace host {

// The root of queue management and that of scheduler policies decode each comment that changes,
// whatever its key; that of queues decodes those of its tx queues. All three decode what is there
// already when a tx queue comes or one of its settings changes, and the latter root that of a profile
// that comes.
class CommentGuard {
 public:
  // Reads all comments once, and follows them from then on. Both must outlive this.
  CommentGuard(const Native& native, const KeptRoots& roots);
  // As if all roots were there.
  explicit CommentGuard(const Native& native);
  CommentGuard(const CommentGuard&) = delete;
  CommentGuard& operator=(const CommentGuard&) = delete;
  ~CommentGuard();

  // A write of one operation, as far as it counts here.
  struct Write {
    std::span<const Rok::String> keys;  // of the place, canonical
    const Value* value;                 // null: removed
    bool isChange;                      // false for a scalar that stays what it was
  };

  // Another line begins: it has written nothing yet.
  void lineBegins();
  // The comment that a write has a root read, if it is bad. The writes of a line are judged in their
  // order, each on the draft as it leaves it.
  std::optional<BadComment> judge(const Write& write, Draft& draft);

 private:
  class BadKeys;
  using Keys = std::span<const Rok::String>;
  using Found = std::optional<BadComment>;

  Found judgeComments(const Write& write, Draft& draft);
  Found judgeText(const Rok::String& key, const Rok::String& text, Draft& draft);
  Found judgeProfileText(const Rok::String& key, const Rok::String& text, Draft& draft) const;
  Found judgeInterfaces(const Write& write) const;
  Found judgeInterface(const Rok::String& name, const Value& interface) const;
  Found judgeQueues(const Rok::String& interface, const Value& queues) const;
  Found judgeQueue(const Rok::String& interface, const Rok::String& queue) const;
  Found judgeProfiles(const Write& write) const;
  Found judgeProfile(const Rok::String& name) const;
  Found judgeQueueName(const Write& write, Draft& draft) const;
  bool isRead(const Write& write) const;
  bool isBuilt(std::string_view root) const;
  bool isKept(std::string_view root) const;
  bool decodesAll() const;
  Rok::String text(const Rok::String& key) const;

  const Native& native_;
  const KeptRoots* roots_;  // null: all are there
  Rok::Ptr<BadKeys> badKeys_;
  // What the line made of comments so far.
  std::map<Rok::String, Rok::String> texts_;
  bool areOthersGone_ = false;
};

}  // namespace host
