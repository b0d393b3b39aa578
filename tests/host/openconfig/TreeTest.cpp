#include "host/openconfig/Tree.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace host::treeTest {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Written {
  template <class Body>
  explicit Written(const Body& body) {
    const Tree::Warn warn = [this](const std::string& line) { warnings.push_back(line); };
    Tree tree(Layout::compact, warn);
    text = tree.whole("root", [&] { body(tree); });
  }
  std::vector<std::string> warnings;
  std::string text;
};

std::string native() { return "the thing"; }

TEST(Tree, WritesTheRootAlways) {
  EXPECT_EQ(Written([](Tree&) {}).text, R"({"root":{}})");
}

TEST(Tree, WritesAContainerWithItsFirstLeafOnly) {
  const Written written([](Tree& tree) {
    tree.container("a", [&] { tree.container("b", [] {}); });
    tree.container("c", [&] {
      tree.container("d", [] {});
      tree.container("e", [&] { tree.number("f", 1); });
      tree.container("g", [] {});
    });
    tree.list("h", "i", [] {});
    tree.list("j", "k", [&] {
      tree.entry("x", "1", native, [] {});
      tree.entry("x", "2", native, [&] { tree.word("x", "2"); });
    });
  });
  EXPECT_EQ(written.text, R"({"root":{"c":{"e":{"f":1}},"j":{"k":[{"x":"2"}]}}})");
}

TEST(Tree, WritesLeavesOfEveryType) {
  const Written written([](Tree& tree) {
    tree.word("a", "");
    tree.word("b", "text");
    tree.name("c", "", native);
    tree.name("d", "name", native);
    tree.number("e", 4294967295u);
    tree.number64("f", 18446744073709551615u);
    tree.boolean("g", false);
    tree.numbers("h", {});
    tree.numbers("i", {2, 1});
  });
  EXPECT_EQ(written.text, R"({"root":{"b":"text","d":"name","e":4294967295,)"
                          R"("f":"18446744073709551615","g":false,"i":[2,1]}})");
  EXPECT_THAT(written.warnings, IsEmpty());
}

TEST(Tree, TellsThePathOfWhatItLeavesOut) {
  const Written written([](Tree& tree) {
    tree.list("a", "b", [&] {
      tree.entry("c", "it's", native,
                 [&] { tree.container("d", [&] { tree.leftOut("e", "too large", native()); }); });
      tree.entry("id", "\x01", native, [] {});
      tree.entryLeftOut("c", "7", "too large", native());
    });
  });
  EXPECT_EQ(written.text, R"({"root":{}})");
  EXPECT_THAT(written.warnings,
              ElementsAre("/root/a/b[c=\"it's\"]/d/e: too large: left out (from the thing)",
                          "/root/a/b[id='\\u0001']: an id that YANG strings can't hold: left out "
                          "(from the thing)",
                          "/root/a/b[c='7']: too large: left out (from the thing)"));
}

// The characters on both sides of each border, and none that JSON texts can't carry.
TEST(Tree, KeepsTheCharactersOfYangStrings) {
  for (const char* held :
       {"\t", "\n", "\r", " ", "\x7f", "\xc2\x80", "\xef\xb7\x8f", "\xef\xb7\xb0", "\xef\xbf\xbd",
        "\xf0\x90\x80\x80", "\xf4\x8f\xbf\xbd"}) {
    const Written written([&](Tree& tree) { tree.name("n", held, native); });
    EXPECT_THAT(written.warnings, IsEmpty()) << held;
  }
  for (const char* other : {"\x01", "\b", "\x0b", "\x0c", "\x0e", "\x1f", "\xef\xb7\x90",
                            "\xef\xb7\xaf", "\xef\xbf\xbe", "\xef\xbf\xbf", "\xf0\x9f\xbf\xbe",
                            "\xf4\x8f\xbf\xbe", "\xf4\x8f\xbf\xbf", "\x80"}) {
    const Written written([&](Tree& tree) { tree.name("n", other, native); });
    EXPECT_EQ(written.text, R"({"root":{}})") << other;
    EXPECT_EQ(written.warnings.size(), 1u) << other;
  }
}

}  // namespace
}  // namespace host::treeTest
