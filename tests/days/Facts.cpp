#include "tests/days/Facts.h"

#include <algorithm>
#include <set>

#include "host/Schema.h"
#include "host/Sections.h"

namespace days {
namespace {

using host::Tokens;

// Requires: the schema has such a place.
Tokens canonical(const Tokens& place) {
  Tokens keys;
  const host::Schema* schema = &host::nativeSchema();
  for (const std::string& token : place) {
    if (!schema->isObject()) break;  // "-" behind a set
    const bool isKeyed = schema->kind() == host::Schema::Kind::keyed;
    keys.emplace_back(isKeyed ? *schema->key().canonical(token) : token);
    schema = &schema->below(keys.back());
  }
  return keys;
}

bool isAtOrAbove(const Tokens& upper, const Tokens& lower) {
  return upper.size() <= lower.size() && std::equal(upper.begin(), upper.end(), lower.begin());
}

}  // namespace

Facts::Facts(host::Value document, Reports leftOut) {
  documents_.push_back(std::move(document));
  reports_.push_back(leftOut);
  leftOut_.push_back(std::move(leftOut));
}

bool Facts::wasOut(std::string_view root) const {
  const std::string start = "root " + std::string(root) + ':';
  return std::ranges::any_of(leftOut_, [&](const Reports& reports) {
    return std::ranges::any_of(
        reports, [&](const std::string& report) { return report.starts_with(start); });
  });
}

void Facts::stepIs(std::string_view line, host::Value document, Reports reports, Reports leftOut) {
  documents_.push_back(std::move(document));
  reports_.push_back(std::move(reports));
  leftOut_.push_back(std::move(leftOut));
  const host::Patch patch(line);
  for (const auto& [kind, path] : patch.operations()) {
    events_.push_back({now(), kind, canonical(*host::pointerTokens(path))});
  }
}

const host::Value* Facts::find(std::size_t step, const Tokens& place) const {
  const host::Value* found = &documents_[step];
  for (const std::string& token : place) {
    if (found == nullptr || found->as<host::Value::Object>() == nullptr) return nullptr;
    found = found->find(token);
  }
  return found;
}

bool Facts::everHad(const Tokens& place) const {
  for (std::size_t step = 0; step <= now(); ++step) {
    if (find(step, place) != nullptr) return true;
  }
  return false;
}

std::vector<std::string> Facts::keys(std::size_t step, const Tokens& place) const {
  const host::Value* found = find(step, place);
  std::vector<std::string> result;
  if (found == nullptr || found->as<host::Value::Object>() == nullptr) return result;
  for (const host::Member& member : found->object()) result.emplace_back(member.key);
  return result;
}

std::vector<std::string> Facts::everKeys(const Tokens& place) const {
  std::set<std::string> all;
  for (std::size_t step = 0; step <= now(); ++step) {
    for (std::string& key : keys(step, place)) all.insert(std::move(key));
  }
  return {all.begin(), all.end()};
}

std::size_t Facts::lastGone(const Tokens& place, std::size_t depth) const {
  std::size_t last = 0;
  for (const Event& event : events_) {
    if (event.place.size() < depth || !isAtOrAbove(event.place, place)) continue;
    if (find(event.step - 1, place) != nullptr) last = event.step;
  }
  return last;
}

std::size_t Facts::lastTold(const Tokens& place) const {
  std::size_t last = 0;
  for (const Event& event : events_) {
    const bool isAbove = isAtOrAbove(event.place, place);
    if (!isAbove && !isAtOrAbove(place, event.place)) continue;
    // What is put in as a whole may not hold this.
    if (isAbove ? find(event.step, place) != nullptr : isHeard(event)) last = event.step;
  }
  return last;
}

std::size_t Facts::lastPut(const Tokens& place) const {
  std::size_t last = 0;
  for (const Event& event : events_) {
    if (isAtOrAbove(event.place, place) && find(event.step, place) != nullptr) last = event.step;
  }
  return last;
}

// An equal setting notifies nothing.
bool Facts::isHeard(const Event& event) const {
  const host::Value* before = find(event.step - 1, event.place);
  const host::Value* behind = find(event.step, event.place);
  if (before == nullptr || behind == nullptr) return true;
  return behind->as<host::Value::Object>() != nullptr || !(*before == *behind);
}

std::size_t Facts::lastSet(const Tokens& place) const {
  std::size_t last = 0;
  for (const Event& event : events_) {
    if (event.place == place) last = event.step;
  }
  return last;
}

bool Facts::raisedAbout(const Tokens& place) const {
  return std::any_of(events_.begin(), events_.end(), [&](const Event& event) {
    const Tokens& touched = event.place.size() < place.size() ? event.place : place;
    return hasRaised(event, place) && lastGone(touched) <= event.step;
  });
}

bool Facts::everRaisedAbout(const Tokens& place) const {
  return std::any_of(events_.begin(), events_.end(),
                     [&](const Event& event) { return hasRaised(event, place); });
}

std::size_t Facts::operations(std::size_t step) const {
  return static_cast<std::size_t>(std::count_if(
      events_.begin(), events_.end(), [&](const Event& event) { return event.step == step; }));
}

bool Facts::hasRaised(const Event& event, const Tokens& place) const {
  return !reports_[event.step].empty() &&
         (isAtOrAbove(event.place, place) || isAtOrAbove(place, event.place));
}

}  // namespace days
