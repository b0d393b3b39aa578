#include "host/KeptRoots.h"

#include <algorithm>
#include <utility>

#include "host/CommentFaults.h"
#include "host/check/NearbyRaises.h"
#include "host/check/RaiseSet.h"
#include "host/check/Untraced.h"

namespace host {
namespace {

Tokens tokensOf(std::span<const Rok::String> keys) {
  Tokens tokens;
  for (const Rok::String& key : keys) tokens.emplace_back(std::string_view(key));
  return tokens;
}

// Comments that end the process in which the root reads them.
std::vector<BadComment> badCommentsOf(std::string_view root, const Native& native) {
  const Untraced untraced;
  const bool readsPolicies = root == "scheduler-policy";
  const bool readsQueues = readsPolicies || root == "queue" || root == "queue-management";
  return badComments(native, {.ofQueues = readsQueues, .ofProfiles = readsPolicies});
}

}  // namespace

struct KeptRoots::Slot {
  const Root* root;
  Rok::Ptr<Rok::PtrInterface> built;  // null when it was left out
  RaiseSet raises;                    // while it waits
  bool isDue = false;                 // one of these has changed
};

KeptRoots::KeptRoots(std::span<const std::string> names, const Native& native, const Model& model,
                     LeftOut leftOut, const Report& report)
    : native_(native), model_(model) {
  for (const Root& root : roots()) {
    const bool isWanted =
        names.empty() || std::find(names.begin(), names.end(), root.name) != names.end();
    if (isWanted) slots_.push_back({&root});
  }
  if (leftOut == LeftOut::returns) nearby_ = std::make_unique<NearbyRaises>(native, &model);
  for (Slot& slot : slots_) build(slot, report);
}

KeptRoots::~KeptRoots() = default;

const KeptRoots::Slot* KeptRoots::find(std::string_view root) const {
  const auto found =
      std::ranges::find(slots_, root, [](const Slot& slot) { return slot.root->name; });
  return found != slots_.end() ? &*found : nullptr;
}

bool KeptRoots::isBuilt(std::string_view root) const {
  const Slot* slot = find(root);
  return slot != nullptr && slot->built;
}

bool KeptRoots::isKept(std::string_view root) const {
  const Slot* slot = find(root);
  return slot != nullptr && (slot->built || nearby_ != nullptr);
}

void KeptRoots::build(Slot& slot, const Report& report) {
  slot.raises.clear();
  slot.built = buildRoot(*slot.root, native_, model_, report);
  if (slot.built) return;
  ++out_;
  if (nearby_ == nullptr) return;
  Raises(native_, &model_).of(slot.root->name, [&](Raise raise) {
    slot.raises.insert(std::move(raise));
  });
}

void KeptRoots::changed(std::span<const Rok::String> keys) {
  if (out_ == 0 || nearby_ == nullptr) return;
  for (Slot& slot : slots_) {
    if (!slot.built) changed(slot, keys);
  }
}

// What raised around the place before, and what does now. A value that changed without ceasing to
// raise counts as changed, and one that began to raise does not.
void KeptRoots::changed(Slot& slot, std::span<const Rok::String> keys) {
  std::vector<Raise> before = slot.raises.take(tokensOf(keys));
  std::vector<Raise> now;
  nearby_->at(keys, [&](Raise raise) {
    if (raise.root == slot.root->name) now.push_back(std::move(raise));
  });
  for (const Raise& raise : now) {
    for (Raise& old : slot.raises.take(raise.place)) before.push_back(std::move(old));
  }
  const auto stands = [&](const Raise& old) {
    return std::ranges::any_of(now, [&](const Raise& raise) {
      return raise.place == old.place && raise.text == old.text;
    });
  };
  if (!std::ranges::all_of(before, stands)) slot.isDue = true;
  for (Raise& raise : now) slot.raises.insert(std::move(raise));
}

void KeptRoots::retry(BadComments badComments, const Report& report) {
  if (out_ == 0 || nearby_ == nullptr) return;
  for (Slot& slot : slots_) {
    if (std::exchange(slot.isDue, false)) retry(slot, badComments, report);
  }
}

void KeptRoots::retry(Slot& slot, BadComments badComments, const Report& report) {
  if (!mayBuild(slot, badComments, report)) return;
  --out_;
  build(slot, report);
  if (slot.built) report("root " + std::string(slot.root->name) + ": built");
}

bool KeptRoots::mayBuild(Slot& slot, BadComments badComments, const Report& report) {
  const std::vector<BadComment> bad = badCommentsOf(slot.root->name, native_);
  if (bad.empty()) return true;
  if (badComments == BadComments::named) {
    report(bad.front().text() + endsTheProgram);
    return true;
  }
  report("root " + std::string(slot.root->name) + ": " + bad.front().text());
  // It waits for these, too.
  for (const BadComment& comment : bad) {
    slot.raises.insert({slot.root->name, comment.place(), {}, comment.text()});
  }
  return false;
}

}  // namespace host
