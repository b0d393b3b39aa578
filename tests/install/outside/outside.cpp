// A host as a user would write it: a factory over its own objects, a document with change lines, a
// feed, and a state that is saved and read back.
#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include "QosOpenConfig/QosOpenConfigForwardingGroupKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "host/Changes.h"
#include "host/Feed.h"
#include "host/NativeReader.h"
#include "host/NativeWriter.h"
#include "host/OpenConfigJson.h"
#include "host/Roots.h"
#include "host/SavedState.h"
#include "host/Version.h"
#include "host/feed/FeedLine.h"

namespace {

constexpr std::string_view document = R"({
  "class-maps": {"qos": {
    "__yang_[edge-in]_[]": {"match": ["ip-access-group"]},
    "__yang_[edge-in]_[voice]": {"match": ["ip-access-group"]}
  }}
})";

constexpr std::string_view changes[] = {
    R"([{"op": "add", "path": "/class-maps/qos/__yang_[edge-in]_[video]",
         "value": {"match": ["ip-access-group"]}}])",
    R"([{"op": "remove", "path": "/class-maps/qos/__yang_[edge-in]_[voice]"}])",
    R"([{"op": "remove", "path": "/class-maps/qos/__yang_[edge-in]_[voice]"}])",
};

void print(std::string_view text) {
  std::printf("%.*s\n", static_cast<int>(text.size()), text.data());
}
void report(const std::string& /*text*/) { print("reported"); }

std::string shown(const host::Model& model) {
  return host::OpenConfigJson(report).json(model, host::Layout::compact);
}

// The device's own objects, one root, and the exceptions that cross the library's border.
void ownObjects() {
  const host::Native native;
  const host::Model model;
  const auto root = QosOc::queueKivToOcSmFactory(native.qosConfig, model.queues, native.cliConfig);
  const Qos::TxQueue id{Qos::TxQueueId{3}, Qos::unicast};
  const auto queue = Rok::make<Qos::TxQueueConfig>(id);
  queue->bandwidthIs(Qos::Percent{40});
  const auto interface = Rok::make<Qos::IntfConfig>(Nerit::IntfId("Ethernet1"));
  interface->txQueueConfigIs(id, queue);
  native.qosConfig->intfConfigIs(interface->intfId(), interface);
  print(shown(model));
  try {
    queue->bandwidthIs(Qos::Percent{150});
  } catch (const Rok::RangeException& error) {
    print(error.what());
  }
  try {
    const auto nothingMounted = Rok::make<Qos::Input::Config>();
    QosOc::forwardingGroupKivToOcSmFactory(nothingMounted, model.forwardingGroups, model.queues);
  } catch (const Rok::MutatorException& error) {
    print(error.what());
  }
}

struct Device {
  host::Native native;
  host::Model model;
  std::vector<Rok::Ptr<Rok::PtrInterface>> roots;
};

void linesAndFeed() {
  Device device;
  host::readNativeText(document, device.native);
  device.roots = host::buildRoots({}, device.native, device.model, report);
  host::Feed feed(device.model);
  host::FeedHead head{.line = 0};
  const auto leaves = feed.onLeaves(
      {}, [&](const host::LeafChanges& changed) { print(host::feedLine(head, changed)); });
  const auto records = feed.onRecords([&](const host::RecordChanges& changed) {
    for (const host::RecordChange& change : changed.changes) {
      const auto* term = change.is<QosOc::Config::Term>();
      if (term != nullptr && change.before == nullptr) print("a term came");
    }
  });
  feed.commit();
  host::Changes stream(device.native, report);
  for (const std::string_view line : changes) {
    ++head.line;
    head.isRefused = stream.line(line) == host::Changes::Outcome::refused;
    feed.commit();
  }

  const std::string saved =
      host::savedStateJson(device.native, device.model, host::Layout::compact);
  Device after;
  host::readSavedStateText(saved, after.native, after.model);
  after.roots = host::buildRoots({}, after.native, after.model, report);
  print(host::nativeJson(after.native, host::Layout::compact));
  print(shown(after.model));
}

}  // namespace

int main() {
  if (host::version().empty()) return 1;
  ownObjects();
  linesAndFeed();
  try {
    const host::Native native;
    host::readNativeText(R"({"class-maps": 1, "queues": 2})", native);
  } catch (const host::Refusal& refusal) {
    for (const host::Fault& fault : refusal.faults())
      print(host::shownPosition(fault.position()) + " " + fault.place());
  }
}
