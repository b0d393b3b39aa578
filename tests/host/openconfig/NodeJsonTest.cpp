// Nodes as JSON values.
#include "host/openconfig/NodeJson.h"

#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "tests/support/FlatDocument.h"
#include "tests/support/HostModel.h"
#include "tests/support/RandomModel.h"

namespace host::nodeJsonTest {
namespace {

// Of the node with so many elements above what a kind's records are, or of all.
std::string jsonOf(const Model& model, JsonStyle style, std::size_t depth,
                   const RecordKind* only = nullptr, RowSet rows = allRows) {
  const View view;
  NodeJson json(view, style, depth);
  eachRecord(model, view, [&](const RecordAt& at) {
    if (only == nullptr || &at.kind == only) json.add(at, rows);
  });
  return json.take();
}

std::string leaf(JsonStyle style, LeafType type, const LeafValue& value) {
  std::string text;
  appendLeaf(text, style, type, value);
  return text;
}

TEST(NodesAsJson, OfTheRootAreTheDocument) {
  std::size_t leaves = 0;
  for (unsigned seed = 1; seed <= 40; ++seed) {
    const support::RandomModel random(seed);
    OpenConfigJson document([](const std::string& /*warning*/) {});
    const auto expected = support::flatDocument(document.json(random.model, Layout::compact));
    EXPECT_EQ(support::flatDocument(jsonOf(random.model, JsonStyle::ietf, 0)), expected) << seed;
    leaves += expected.size();
  }
  EXPECT_GT(leaves, 1000u);
}

// What one parser reads twice, another may refuse: a member comes once.
TEST(NodesAsJson, HaveEachMemberOnce) {
  const std::function<void(const rapidjson::Value&)> check = [&](const rapidjson::Value& value) {
    if (value.IsArray()) {
      for (const auto& element : value.GetArray()) check(element);
    }
    if (!value.IsObject()) return;
    std::set<std::string> names;
    for (const auto& member : value.GetObject()) {
      EXPECT_TRUE(names.insert(member.name.GetString()).second) << member.name.GetString();
      check(member.value);
    }
  };
  for (unsigned seed = 1; seed <= 40; ++seed) {
    rapidjson::Document parsed;
    parsed.Parse(jsonOf(support::RandomModel(seed).model, JsonStyle::ietf, 0).c_str());
    ASSERT_TRUE(parsed.IsObject());
    check(parsed);
  }
}

TEST(NodesAsJson, CarryModulesAtTheTopAndWhereTheyChange) {
  support::HostModel built;
  built.queueIs("q");
  QosOc::Config::Queue queue(Rok::String("q"));
  queue.config.bandwidth = 40;
  built.model.queues->qIs(queue);
  EXPECT_EQ(jsonOf(built.model, JsonStyle::ietf, 0),
            R"({"openconfig-qos:qos":{"queues":{"queue":[{"config":{"name":"q",)"
            R"("qosoc-augments:bandwidth":40},"name":"q"}]}}})");
  EXPECT_EQ(jsonOf(built.model, JsonStyle::ietf, 3),
            R"({"openconfig-qos:config":{"name":"q","qosoc-augments:bandwidth":40},)"
            R"("openconfig-qos:name":"q"})");
  EXPECT_EQ(jsonOf(built.model, JsonStyle::plain, 1),
            R"({"queues":{"queue":[{"config":{"name":"q","bandwidth":40},"name":"q"}]}})");
}

TEST(NodesAsJson, BelowAnAugmentCarryItsModule) {
  const Model model =
      support::hostModelWith("pfc", R"({"watchdog":{"action":5,"priorities":"8","time-a":0.5}})");
  EXPECT_EQ(jsonOf(model, JsonStyle::ietf, 3).substr(0, 35),
            R"({"qosoc-augments:config":{"action":)");
  EXPECT_EQ(jsonOf(model, JsonStyle::ietf, 2, &kinds::pfcWatchdog, 1).substr(0, 27),
            R"({"qosoc-augments:watchdog":)");
}

TEST(NodesAsJson, HaveTheRowsThatAreWanted) {
  support::HostModel built;
  built.forwardingGroupIs("f", "q");
  const View view;
  const auto rows = view.rows(kinds::forwardingGroup);
  ASSERT_EQ(rows[1].path, "config/output-queue");
  EXPECT_EQ(jsonOf(built.model, JsonStyle::plain, 4, nullptr, 2), R"({"output-queue":"q"})");
}

TEST(NodesAsJson, AreEmptyWithoutLeaves) {
  const View view;
  NodeJson json(view, JsonStyle::ietf, 0);
  EXPECT_TRUE(json.isEmpty());
  EXPECT_EQ(json.take(), "{}");
}

TEST(NodesAsJson, OfLeavesAreScalarsOrArrays) {
  EXPECT_EQ(leaf(JsonStyle::ietf, LeafType::uint64, std::uint64_t{7}), "\"7\"");
  EXPECT_EQ(leaf(JsonStyle::plain, LeafType::uint64, std::uint64_t{7}), "7");
  EXPECT_EQ(leaf(JsonStyle::ietf, LeafType::uint8, std::uint64_t{7}), "7");
  EXPECT_EQ(leaf(JsonStyle::ietf, LeafType::decimal64, std::string("0.5")), "\"0.5\"");
  EXPECT_EQ(leaf(JsonStyle::plain, LeafType::decimal64, std::string("0.5")), "0.5");
  EXPECT_EQ(leaf(JsonStyle::ietf, LeafType::identityref, std::string_view("m:I")), "\"m:I\"");
  EXPECT_EQ(leaf(JsonStyle::plain, LeafType::identityref, std::string_view("m:I")), "\"I\"");
  EXPECT_EQ(leaf(JsonStyle::plain, LeafType::string, std::string_view("m:\"I")), R"("m:\"I")");
  EXPECT_EQ(leaf(JsonStyle::plain, LeafType::boolean, true), "true");
  EXPECT_EQ(leaf(JsonStyle::plain, LeafType::uint8List, std::vector<unsigned>{1, 20}), "[1,20]");
}

}  // namespace
}  // namespace host::nodeJsonTest
