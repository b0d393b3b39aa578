// The flat list of leaves, against a walk of the document that knows nothing of the tables.
#include "host/openconfig/Leaves.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/FlatDocument.h"
#include "tests/support/HostModel.h"

namespace host::leavesTest {
namespace {

using support::HostModel;
using support::HostRendered;

std::vector<LeafText> flattened(const std::string& document) {
  std::vector<LeafText> leaves;
  for (const auto& [path, value] : support::flatDocument(document)) leaves.push_back({path, value});
  return leaves;
}

TEST(FlatLeaves, AreWhatTheDocumentHoldsAtItsEndsInEachView) {
  const HostModel built = support::hostFullModel();
  for (const ViewOptions& options : support::hostAllViews()) {
    const auto expected = flattened(HostRendered(built, options).json);
    EXPECT_GT(expected.size(), 40u);
    const auto leaves = leavesOf(built.model, View(options));
    ASSERT_EQ(leaves.size(), expected.size());
    for (std::size_t i = 0; i < leaves.size(); ++i) {
      EXPECT_EQ(leaves[i].path + ' ' + leaves[i].value, expected[i].path + ' ' + expected[i].value);
    }
  }
}

// At each node that has a leaf, and at each list.
std::vector<std::string> nodesOf(const std::vector<LeafText>& leaves) {
  std::vector<std::string> nodes;
  for (const LeafText& leaf : leaves) {
    bool inKey = false;
    for (std::size_t i = 1; i < leaf.path.size(); ++i) {
      const char c = leaf.path[i];
      if (!inKey && (c == '/' || c == '[')) nodes.push_back(leaf.path.substr(0, i));
      inKey = c == '[' || (inKey && c != ']');
      if (c == '\\') ++i;
    }
    nodes.push_back(leaf.path);
  }
  std::sort(nodes.begin(), nodes.end());
  nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
  return nodes;
}

bool isKeyOf(const LeafText& leaf, const std::string& node) {
  // "/a/b[name=x]/name": the entry is above the node, and "name" its key.
  const std::size_t slash = leaf.path.rfind('/');
  const std::string entry = leaf.path.substr(0, slash);
  const std::string key = leaf.path.substr(slash + 1);
  return node.starts_with(entry) && entry.ends_with(']') &&
         entry.find('[' + key + '=') != std::string::npos;
}

TEST(FlatLeaves, WithinASubtreeAreThoseOfAllThatAreThere) {
  const HostModel built = support::hostFullModel();
  const ViewOptions options{.augments = true, .state = true, .interfaceRef = true};
  const auto all = leavesOf(built.model, View(options));
  const auto nodes = nodesOf(all);
  EXPECT_GT(nodes.size(), 150u);
  for (const std::string& node : nodes) {
    const Subtree only(node);
    std::vector<std::string> expected;
    for (const LeafText& leaf : all) {
      const bool within = leaf.path == node || leaf.path.starts_with(node + '/') ||
                          leaf.path.starts_with(node + '[');
      if (within) expected.push_back(leaf.path);
    }
    std::vector<std::string> paths;
    for (const LeafText& leaf : leavesOf(built.model, View(options), nullptr, only)) {
      paths.push_back(leaf.path);
    }
    EXPECT_EQ(paths, expected) << node;

    // The document has the keys of the entries around them besides, and nothing else.
    std::vector<std::string> others;
    for (const LeafText& leaf : flattened(HostRendered(built, options, only).json)) {
      if (std::find(expected.begin(), expected.end(), leaf.path) != expected.end()) continue;
      EXPECT_TRUE(isKeyOf(leaf, node)) << node << ' ' << leaf.path;
      others.push_back(leaf.path);
    }
    EXPECT_LE(others.size(), 3u) << node;
  }
}

TEST(FlatLeaves, HaveOnePathEach) {
  const HostModel built = support::hostFullModel();
  for (const ViewOptions& options : support::hostAllViews()) {
    const auto leaves = leavesOf(built.model, View(options));
    const auto twice =
        std::adjacent_find(leaves.begin(), leaves.end(),
                           [](const LeafText& a, const LeafText& b) { return a.path >= b.path; });
    EXPECT_EQ(twice, leaves.end()) << twice->path;
  }
}

TEST(FlatLeaves, ComeInTheOrderOfTheDocumentWhenVisited) {
  const HostModel built;
  built.queueIs("b");
  built.queueIs("a-");
  built.queueIs("a");
  std::vector<std::string> paths;
  eachLeaf(built.model, View(), [&](const std::string& path, LeafType type, const LeafValue&) {
    EXPECT_EQ(type, LeafType::string);
    paths.push_back(path);
  });
  EXPECT_THAT(paths,
              testing::ElementsAre(
                  "/qos/queues/queue[name=a]/config/name", "/qos/queues/queue[name=a]/name",
                  "/qos/queues/queue[name=a-]/config/name", "/qos/queues/queue[name=a-]/name",
                  "/qos/queues/queue[name=b]/config/name", "/qos/queues/queue[name=b]/name"));
}

TEST(FlatLeaves, HaveTheWarningsOfTheDocumentOnceWhateverIsMirrored) {
  const HostModel built = support::hostFullModel();
  for (const bool state : {false, true}) {
    std::vector<std::string> warnings;
    leavesOf(built.model, View({.state = state}),
             [&](const std::string& line) { warnings.push_back(line); });
    EXPECT_EQ(warnings.size(), 3u);
    EXPECT_EQ(warnings, HostRendered(built).warnings);
  }
}

}  // namespace
}  // namespace host::leavesTest
