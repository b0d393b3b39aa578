#include "gnmi/Subscribed.h"

#include "gnmi/Refused.h"
#include "gnmi/Request.h"

namespace server {
namespace {

using grpc::StatusCode;

[[noreturn]] void refuse(const std::string& field, const std::string& reason) {
  throw Refused(StatusCode::INVALID_ARGUMENT, field + ": " + reason);
}

std::string fieldOf(int number) { return "subscribe.subscription[" + std::to_string(number) + ']'; }

std::string seconds(Duration duration) {
  return std::to_string(std::chrono::duration<double>(duration).count()) + " s";
}

// Checks the list as a whole.
const gnmi::SubscriptionList& listOf(const gnmi::SubscribeRequest& request) {
  if (!request.has_subscribe()) refuse("subscribe", "the first message has no list");
  const gnmi::SubscriptionList& list = request.subscribe();
  if (list.subscription().empty()) refuse("subscribe.subscription", "the list is empty");
  if (!gnmi::SubscriptionList::Mode_IsValid(list.mode())) {
    refuse("subscribe.mode", "there is no mode " + std::to_string(list.mode()));
  }
  return list;
}

// What no interval can be is refused before it is counted with.
Duration durationOf(std::uint64_t nanoseconds) {
  constexpr std::uint64_t most = 1'000'000'000'000'000'000;  // some thirty years
  return Duration(static_cast<std::int64_t>(std::min(nanoseconds, most)));
}

Subscribed::Part partOf(const gnmi::Subscription& from, const std::string& field, Duration least) {
  Subscribed::Part part;
  if (!gnmi::SubscriptionMode_IsValid(from.mode())) {
    refuse(field + ".mode", "there is no mode " + std::to_string(from.mode()));
  }
  if (from.mode() == gnmi::TARGET_DEFINED && from.sample_interval() != 0) {
    refuse(field + ".sample_interval", "the mode TARGET_DEFINED has none");
  }
  const auto atLeast = [&](const char* name, std::uint64_t value) {
    const Duration duration = durationOf(value);
    if (value == 0 || duration >= least) return duration;
    refuse(field + '.' + name, seconds(duration) + " is below " + seconds(least) + ", the least");
  };
  part.heartbeat = atLeast("heartbeat_interval", from.heartbeat_interval());
  if (from.mode() != gnmi::SAMPLE) return part;
  part.isSampled = true;
  part.onlyChanged = from.suppress_redundant();
  // Each sample has all, but for those that leave out what didn't change.
  if (!part.onlyChanged) part.heartbeat = Duration{0};
  part.interval = std::max(least, atLeast("sample_interval", from.sample_interval()));
  return part;
}

}  // namespace

Subscribed::Subscribed(const gnmi::SubscribeRequest& request, const host::View& view,
                       Duration least)
    : mode(listOf(request).mode()),
      updatesOnly(request.subscribe().updates_only()),
      target(request.subscribe().prefix().target()) {
  const gnmi::SubscriptionList& list = request.subscribe();
  const std::size_t depth = depthOf(request.extension());
  const Wire::Encoding encoding = encodingOf(list.encoding());
  checkModels(list.use_models(), "subscribe.use_models", view);
  origin = list.prefix().origin();
  std::vector<Path> all, followed;
  std::string allIds, followedIds;
  const std::string common = std::to_string(depth) + list.prefix().SerializeAsString();
  for (int i = 0; i < list.subscription_size(); ++i) {
    const gnmi::Subscription& from = list.subscription(i);
    const std::string field = fieldOf(i);
    if (origin.empty()) origin = from.path().origin();
    const Path path({list.prefix(), from.path(), field + ".path", depth}, view);
    const std::string id = '\n' + from.path().SerializeAsString();
    all.push_back(path);
    allIds += id;
    if (mode != gnmi::SubscriptionList::STREAM) continue;
    Part part = partOf(from, field, least);
    if (!part.isSampled && part.heartbeat == Duration{0}) {
      followed.push_back(path);
      followedIds += id;
    } else {
      part.wish = {std::make_shared<Filter>(std::vector<Path>{path}, common + id), encoding};
      parts.push_back(std::move(part));
    }
  }
  // What is followed alike is followed as one, so that a commit is one notification.
  if (!followed.empty()) {
    parts.push_back(
        {{std::make_shared<Filter>(std::move(followed), common + followedIds), encoding}});
  }
  whole = {std::make_shared<Filter>(std::move(all), common + allIds), encoding};
}

}  // namespace server
