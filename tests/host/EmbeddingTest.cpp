// docs/embedding.md: its code runs here, and its tables are held against the roots.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "QosOpenConfig/QosOpenConfigQueueKivToOcSm.h"
#include "host/Changes.h"
#include "host/Feed.h"
#include "host/KeptRoots.h"
#include "host/Roots.h"
#include "host/SavedState.h"
#include "tests/support/HeaderExample.h"

namespace host::embeddingTest {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAreArray;

using Lines = std::vector<std::string>;

// What a host's log got.
Lines& reported() {
  static Lines lines;
  return lines;
}
void report(const std::string& line) { reported().push_back(line); }

// ===== What the page shows

TEST(Embedding, FollowsObjectsThatTheHostWrites) {
  host::Native native;  // what the roots ask for is mounted, empty
  host::Model model;
  const auto queues =
      QosOc::queueKivToOcSmFactory(native.qosConfig, model.queues, native.cliConfig);

  const Qos::TxQueue id{Qos::TxQueueId{3}, Qos::unicast};
  const auto txQueue = Rok::make<Qos::TxQueueConfig>(id);
  txQueue->bandwidthIs(Qos::Percent{40});
  const auto ethernet1 = Rok::make<Qos::IntfConfig>(Nerit::IntfId("Ethernet1"));
  ethernet1->txQueueConfigIs(id, txQueue);
  native.qosConfig->intfConfigIs(ethernet1->intfId(), ethernet1);

  const auto shown = model.queues->q("Ethernet1-unicast-3").config.bandwidth;  // 40 by now
  EXPECT_EQ(shown, QosOc::PercentType(40));

  try {
    txQueue->bandwidthIs(Qos::Percent{150});
  } catch (const Rok::RangeException& error) {
    report(error.what());  // txQueue has 150 now, and the queue of the model still 40
  }
  EXPECT_THAT(reported(), ElementsAre(HasSubstr("PercentType")));
  reported().clear();
  EXPECT_EQ(txQueue->bandwidth(), Qos::Percent{150});
  EXPECT_EQ(model.queues->q("Ethernet1-unicast-3").config.bandwidth, QosOc::PercentType(40));

  Lines lines;
  host::Feed feed(model);
  const auto printed = feed.onLeaves({}, [&](const host::LeafChanges& changes) {
    for (const host::LeafUpdate& leaf : changes.updated) lines.push_back(leaf.path);
  });
  feed.commit();  // the first call brings all leaves
  txQueue->bandwidthIs(Qos::Percent{41});
  feed.commit();  // and this one that of the bandwidth alone
  const std::string path = "/qos/queues/queue[name=Ethernet1-unicast-3]/";
  const std::string bandwidth = path + "config/qosoc-augments:bandwidth";
  EXPECT_THAT(lines, ElementsAre(path + "config/name", bandwidth, path + "name", bandwidth));
}

struct Device {
  host::Native native;
  host::Model model;
  std::vector<Rok::Ptr<Rok::PtrInterface>> roots;
  host::Changes changes{native, report};
  host::Feed feed{model};
};

struct KeptDevice {
  host::Native native;
  host::Model model;
  host::KeptRoots roots{{}, native, model, host::KeptRoots::LeftOut::returns, report};
  host::Changes changes{native, roots, host::Changes::BadComments::refused, report};
};

TEST(Embedding, HasARootBackPastTheLines) {
  KeptDevice device;
  const Rok::String keys[] = {"forwarding-groups", "g"};
  const auto groups = device.native.qosConfig->forwardingGroupNameToTcMap();
  groups->forwardingGroupNameToTcIs(Qos::ForwardingGroupName("g"), Qos::TrafficClass(17));
  host::KeptRoots later({}, device.native, device.model, host::KeptRoots::LeftOut::returns, report);
  groups->forwardingGroupNameToTcIs(Qos::ForwardingGroupName("g"), Qos::TrafficClass(5));
  later.changed(keys);
  later.retry(host::KeptRoots::BadComments::refused, report);
  EXPECT_THAT(reported(), ElementsAre(HasSubstr("root forwarding-group: range: "),
                                      "root forwarding-group: built"));
  reported().clear();
}

TEST(Embedding, GoesOnFromASavedState) {
  Device before;
  before.roots = host::buildRoots({}, before.native, before.model, report);
  before.changes.line(
      R"([{"op": "add", "path": "/class-maps/qos/__yang_[c]_[]", "value": {"match": [1]}}])");

  const std::string saved =
      host::savedStateJson(before.native, before.model, host::Layout::compact);

  Device after;
  host::readSavedStateText(saved, after.native, after.model);
  after.roots = host::buildRoots({}, after.native, after.model, report);

  EXPECT_NE(after.model.classifiers->classifier("c"), nullptr);
  after.changes.line(R"([{"op": "remove", "path": "/class-maps/qos/__yang_[c]_[]"}])");
  EXPECT_EQ(after.model.classifiers->classifier("c"), nullptr);
  EXPECT_THAT(reported(), ElementsAre());
}

TEST(Embedding, SendsTracesToALog) {
  Lines log;
  Rok::TraceFacility::sinkIs([&](const Rok::TraceFacility::Line& line) {
    log.push_back(std::string(line.handle) + ' ' + std::string(line.text));
  });
  Rok::TraceFacility::levelIs(2, true);  // of all handles; all levels are off at first
  Device device;
  device.roots = host::buildRoots({}, device.native, device.model, report);
  EXPECT_THAT(log, Contains(testing::StartsWith("OpenConfigQos ")));
  Rok::TraceFacility::sinkIs(nullptr);
  Rok::TraceFacility::levelDelAll();
}

TEST(Embedding, RunsAllCodeOfThePage) {
  const std::string here = support::squeezed(support::sourceText("tests/host/EmbeddingTest.cpp"));
  const Lines blocks = support::codeBlocks("docs/embedding.md", "cpp");
  EXPECT_EQ(blocks.size(), 7u);
  for (const std::string& block : blocks) {
    EXPECT_NE(here.find(support::squeezed(block)), std::string::npos) << block;
  }
}

// ===== What its tables say

// The rows of a table of the page, as their cells, by the head of its first column and of its last.
std::vector<Lines> rows(const std::string& head) {
  std::istringstream in(support::sourceText("docs/embedding.md"));
  std::vector<Lines> found;
  bool inside = false;
  for (std::string line; std::getline(in, line);) {
    inside = line.starts_with('|') && (inside || line.starts_with(head));
    if (!inside || line.starts_with(head) || line.starts_with("|--")) continue;
    Lines cells;
    for (std::size_t at = 1; at < line.size();) {
      const std::size_t end = line.find('|', at);
      cells.push_back(line.substr(at, end - at));
      at = end + 1;
    }
    found.push_back(std::move(cells));
  }
  return found;
}
// What stands in backquotes in a cell.
Lines quotedIn(const std::string& cell) {
  Lines found;
  for (std::size_t at = cell.find('`'); at != cell.npos; at = cell.find('`', at)) {
    const std::size_t end = cell.find('`', at + 1);
    found.push_back(cell.substr(at + 1, end - at - 1));
    at = end + 1;
  }
  return found;
}

std::vector<Lines> rootRows() { return rows("| Root | Factory"); }

TEST(EmbeddingTables, HaveTheFactoryOfEachRootInOrder) {
  std::string source = support::squeezed(support::sourceText("host/Roots.cpp"));
  for (const char* side : {"native.", "model."}) {
    for (std::size_t at = 0; (at = source.find(side)) != source.npos;) {
      source.erase(at, std::string_view(side).size());
    }
  }
  const auto table = rootRows();
  ASSERT_EQ(table.size(), roots().size());
  for (std::size_t i = 0; i < table.size(); ++i) {
    EXPECT_EQ(quotedIn(table[i][0]), Lines{std::string(roots()[i].name)});
    ASSERT_EQ(quotedIn(table[i][1]).size(), 1u);
    const std::string call = "returnQosOc::" + support::squeezed(quotedIn(table[i][1])[0]) + ';';
    EXPECT_NE(source.find(call), std::string::npos) << call;
  }
}

// A native side without something that Native mounts.
struct Gap {
  void (*tear)(const Native& native);
};
const Gap gaps[] = {
    {[](const Native& native) { native.aclConfig->cmapTypeDel(Qos::mapQos); }},
    {[](const Native& native) { native.acls->configDel(Acl::aclTypeIpv4); }},
    {[](const Native& native) { native.acls->configDel(Acl::aclTypeIpv6); }},
    {[](const Native& native) { native.qosConfig->forwardingGroupNameToTcMapIs(nullptr); }},
    {[](const Native& native) { native.qosConfig->queueNameToTxQueueIdMapIs(nullptr); }},
};

// The arguments that a root refuses as null over native sides with a gap each.
std::set<std::string> refusedBy(const Root& root) {
  std::set<std::string> attributes;
  for (const Gap& gap : gaps) {
    const Native native;
    gap.tear(native);
    try {
      root.factory(native, Model());
    } catch (const Rok::MutatorArgNullPointerException& error) {
      attributes.insert(error.attribute());
    }
  }
  return attributes;
}

TEST(EmbeddingTables, SayWhatMustBeMounted) {
  for (const Lines& row : rootRows()) {
    const Lines words = quotedIn(row[2].substr(row[2].find(':') + 1));
    const std::set<std::string> said(words.begin(), words.end());
    EXPECT_EQ(said, refusedBy(*rootNamed(quotedIn(row[0])[0]))) << row[0];
  }
}

TEST(EmbeddingTables, SayWhatEachRootSweeps) {
  Lines names;
  for (const Lines& row : rows("| Root | Sweeps")) {
    for (const std::string& name : quotedIn(row[0])) names.push_back(name);
  }
  Lines all;
  for (const Root& root : roots()) all.emplace_back(root.name);
  EXPECT_THAT(names, UnorderedElementsAreArray(all));
}

}  // namespace
}  // namespace host::embeddingTest
