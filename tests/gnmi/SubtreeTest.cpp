// What a path names, as one JSON value: the same as what stands there in the document.
#include <gnmi.pb.h>
#include <gtest/gtest.h>

#include <set>

#include "host/OpenConfigJson.h"
#include "host/openconfig/Leaves.h"
#include "host/openconfig/NodeJson.h"
#include "tests/support/FlatDocument.h"
#include "tests/support/GnmiPath.h"
#include "tests/support/RandomModel.h"

namespace server::subtreeTest {
namespace {

using host::JsonStyle;
using host::rapidjson::Value;

std::string withoutModule(std::string_view name) {
  return std::string(name.substr(name.find(':') + 1));
}

const Value* memberOf(const Value& object, const std::string& name) {
  for (const auto& member : object.GetObject()) {
    if (withoutModule(member.name.GetString()) == withoutModule(name)) return &member.value;
  }
  return nullptr;
}

const Value* entryOf(const Value& list, const std::string& key, const std::string& value) {
  for (const Value& entry : list.GetArray()) {
    const Value& own = *memberOf(entry, key);
    if ((own.IsString() ? own.GetString() : support::jsonText(own)) == value) return &entry;
  }
  return nullptr;
}

// What stands in the document at a path.
const Value& at(const Value& document, const gnmi::Path& path) {
  const Value* value = &document;
  for (const gnmi::PathElem& elem : path.elem()) {
    value = memberOf(*value, elem.name());
    if (!elem.key().empty()) {
      value = entryOf(*value, elem.key().begin()->first, elem.key().begin()->second);
    }
  }
  return *value;
}

// The members by their names without modules, which the top of a value alone has more of.
std::map<std::string, std::string> members(const Value& object) {
  std::map<std::string, std::string> members;
  for (const auto& member : object.GetObject()) {
    const auto flat = support::flatDocument("{\"x\":" + support::jsonText(member.value) + '}');
    std::string text;
    for (const auto& [path, value] : flat) text.append(path).append("=").append(value).append("\n");
    members[withoutModule(member.name.GetString())] = text;
  }
  return members;
}

// All paths that lead to leaves and are no leaves themselves.
std::vector<gnmi::Path> nodesOf(const host::Model& model, const host::View& view) {
  std::set<std::string> seen;
  std::vector<gnmi::Path> nodes;
  host::eachLeaf(model, view, [&](const std::string& leaf, host::LeafType, const host::LeafValue&) {
    gnmi::Path path = support::gnmiPath(leaf);
    while (path.elem_size() > 0) {
      path.mutable_elem()->RemoveLast();
      if (seen.insert(path.SerializeAsString()).second) nodes.push_back(path);
    }
  });
  return nodes;
}

std::string jsonOf(const host::Model& model, const host::View& view, const gnmi::Path& asked) {
  const Path path({{}, asked, "path"}, view);
  EXPECT_TRUE(path.isOne());
  host::NodeJson json(view, JsonStyle::ietf, path.tops()[0].way.size());
  host::eachRecord(
      model, view, [&](const auto& kind, auto above) { return path.wanted(kind, above); },
      [&](const host::RecordAt& record) { json.add(record, path.rows(record.kind, record.keys)); });
  EXPECT_FALSE(json.isEmpty());
  return json.take();
}

TEST(Subtrees, AreWhatStandsInTheDocument) {
  const host::View view;
  std::size_t count = 0;
  for (unsigned seed = 1; seed <= 12; ++seed) {
    const support::RandomModel random(seed);
    host::OpenConfigJson writer([](const std::string& /*warning*/) {});
    host::rapidjson::Document document;
    document.Parse(writer.json(random.model, host::Layout::compact).c_str());
    for (const gnmi::Path& path : nodesOf(random.model, view)) {
      host::rapidjson::Document node;
      node.Parse(jsonOf(random.model, view, path).c_str());
      ASSERT_TRUE(node.IsObject());
      EXPECT_EQ(members(node), members(at(document, path))) << path.ShortDebugString();
      ++count;
    }
  }
  EXPECT_GT(count, 500u);
}

}  // namespace
}  // namespace server::subtreeTest
