#include "host/openconfig/Tree.h"

#include <gtest/gtest.h>

namespace host::treeTest {
namespace {

template <class Body>
std::string written(const Body& body) {
  Tree tree("root", Layout::compact);
  body(tree);
  return tree.end();
}

TEST(Tree, WritesTheRootAlways) {
  EXPECT_EQ(written([](Tree&) {}), R"({"root":{}})");
}

TEST(Tree, WritesWhatIsEnteredWithTheFirstLeafBelowIt) {
  const std::string text = written([](Tree& tree) {
    tree.moveTo(1, "a/b");
    tree.moveTo(1, "c/d");
    tree.moveTo(1, "c/e");
    tree.leaf("f", LeafType::uint8, std::uint64_t{1});
    tree.moveTo(1, "c/g");
    tree.moveTo(1, "h");
    tree.enterList("i");
    tree.moveTo(1, "j");
    tree.enterList("k");
    const std::size_t list = tree.depth();
    tree.enterEntry("x", "1");
    tree.leaveTo(list);
    tree.enterEntry("x", "2");
    tree.leaf("x", LeafType::string, std::string_view("2"));
    tree.leaveTo(list);
  });
  EXPECT_EQ(text, R"({"root":{"c":{"e":{"f":1}},"j":{"k":[{"x":"2"}]}}})");
}

TEST(Tree, StaysInTheContainersThatTheNextLeafHasToo) {
  const std::string text = written([](Tree& tree) {
    tree.moveTo(1, "a/b");
    tree.leaf("c", LeafType::uint8, std::uint64_t{1});
    tree.moveTo(1, "a/b/d");
    tree.leaf("e", LeafType::uint8, std::uint64_t{2});
    tree.moveTo(1, "a");
    tree.leaf("f", LeafType::uint8, std::uint64_t{3});
    tree.moveTo(1, "");
    tree.leaf("g", LeafType::uint8, std::uint64_t{4});
  });
  EXPECT_EQ(text, R"({"root":{"a":{"b":{"c":1,"d":{"e":2}},"f":3},"g":4}})");
}

TEST(Tree, LeavesAListForAContainerOfItsName) {
  const std::string text = written([](Tree& tree) {
    tree.enterList("a");
    tree.enterEntry("k", "1");
    tree.leaf("k", LeafType::string, std::string_view("1"));
    tree.moveTo(1, "b");
    tree.leaf("c", LeafType::boolean, true);
  });
  EXPECT_EQ(text, R"({"root":{"a":[{"k":"1"}],"b":{"c":true}}})");
}

TEST(Tree, WritesLeavesOfEveryType) {
  const std::string text = written([](Tree& tree) {
    tree.leaf("a", LeafType::boolean, false);
    tree.leaf("b", LeafType::decimal64, std::string("1.5"));
    tree.leaf("c", LeafType::enumeration, std::string_view("STRICT"));
    tree.leaf("d", LeafType::uint8List, std::vector<unsigned>{2, 1});
    tree.leaf("e", LeafType::uint32, std::uint64_t{4294967295u});
    tree.leaf("f", LeafType::uint64, std::uint64_t{18446744073709551615u});
  });
  EXPECT_EQ(text, R"({"root":{"a":false,"b":"1.5","c":"STRICT","d":[2,1],"e":4294967295,)"
                  R"("f":"18446744073709551615"}})");
}

TEST(Tree, TellsThePathOfWhereItStands) {
  Tree tree("root", Layout::compact);
  tree.moveTo(1, "a");
  tree.enterList("b");
  tree.enterEntry("c", "it's");
  tree.moveTo(tree.depth(), "d");
  EXPECT_EQ(tree.path(tree.depth()), "/root/a/b[c=\"it's\"]/d");
  EXPECT_EQ(tree.path(2), "/root/a");
  EXPECT_EQ(Tree::predicate("id", "\x01"), "[id='\\u0001']");
}

TEST(Tree, APathIsTakenApartByItsSlashes) {
  std::string_view path = "a/b-c/d:e";
  EXPECT_EQ(pathEnd(path).containers, "a/b-c");
  EXPECT_EQ(pathEnd(path).name, "d:e");
  EXPECT_EQ(takeName(path), "a");
  EXPECT_EQ(takeName(path), "b-c");
  EXPECT_EQ(pathEnd(path).containers, "");
  EXPECT_EQ(takeName(path), "d:e");
  EXPECT_EQ(path, "");
}

}  // namespace
}  // namespace host::treeTest
