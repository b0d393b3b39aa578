#include "host/Patch.h"

#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::patchTest {
namespace {

using support::hostFault;

std::string faultOf(std::string_view line) {
  return hostFault([&] { Patch patch(line); });
}

TEST(Patch, ListsItsOperations) {
  const Patch patch(R"([{"op": "add", "path": "/a", "value": 1}, {"path": "/b", "op": "remove"},
                        {"op": "replace", "path": "", "value": 1},
                        {"value": 1, "op": "test", "path": "/c"}])");
  ASSERT_EQ(patch.operations().size(), 4u);
  EXPECT_EQ(patch.operations()[0].kind, Patch::Kind::add);
  EXPECT_EQ(patch.operations()[0].path, "/a");
  EXPECT_EQ(patch.operations()[1].kind, Patch::Kind::remove);
  EXPECT_EQ(patch.operations()[2].kind, Patch::Kind::replace);
  EXPECT_EQ(patch.operations()[3].kind, Patch::Kind::test);
}

TEST(Patch, MayBeEmpty) { EXPECT_TRUE(Patch("[]").operations().empty()); }

TEST(Patch, IgnoresMembersThatItDoesNotKnow) {
  EXPECT_EQ(faultOf(R"([{"op": "remove", "path": "/a", "from": 3, "note": [null]}])"), "");
}

TEST(Patch, GivesAValueThatFitsItsSchema) {
  const Patch patch(R"([{"op": "add", "path": "/a", "value": {"n": 3}},
                        {"op": "add", "path": "/a", "value": {"n": 300}},
                        {"op": "add", "path": "/a", "value": 3}])");
  const Schema schema = Schema::record({{"n", Schema::number(255)}});
  EXPECT_EQ(patch.value(0, schema).at("n").number(), 3u);
  EXPECT_EQ(hostFault([&] { patch.value(1, schema); }),
            ": at /n: expected a whole number from 0 to 255, not 300");
  EXPECT_EQ(hostFault([&] { patch.value(2, schema); }), ": expected an object, not 3");
}

TEST(Patch, RefusesALineThatIsNotAPatch) {
  EXPECT_EQ(faultOf("nope"), "(line): not JSON: at byte 2: Invalid value.");
  EXPECT_EQ(faultOf("[] []"),
            "(line): not JSON: at byte 4: The document root must not be followed by other values.");
  EXPECT_EQ(faultOf(std::string_view("[]\0", 3)), "(line): not JSON: at byte 3: a NUL byte");
  EXPECT_EQ(faultOf("{}"), "(line): not an array of operations");
  EXPECT_EQ(faultOf("[[]]"), "(operation 1): not an object");
}

TEST(Patch, RefusesAnOperationThatLacksAMember) {
  EXPECT_EQ(faultOf(R"([{"op": "remove", "path": "/a"}, {"op": "remove"}])"),
            "(operation 2): the member \"path\" is missing");
  EXPECT_EQ(faultOf(R"([{"op": "remove", "path": 1}])"),
            "(operation 1): the member \"path\" is not a string");
  EXPECT_EQ(faultOf(R"([{"path": "/a"}])"), "/a: the member \"op\" is missing");
  EXPECT_EQ(faultOf(R"([{"path": "/a", "op": 1}])"), "/a: the member \"op\" is not a string");
  for (const char* op : {"add", "replace", "test"}) {
    EXPECT_EQ(faultOf(R"([{"path": "/a", "op": ")" + std::string(op) + "\"}]"),
              "/a: the member \"value\" is missing");
  }
}

TEST(Patch, RefusesAMemberThatIsThereTwice) {
  EXPECT_EQ(faultOf(R"([{"op": "remove", "op": "remove", "path": "/a"}])"),
            "/a: the member \"op\" twice");
  EXPECT_EQ(faultOf(R"([{"op": "remove", "path": "/a", "path": "/b"}])"),
            "(operation 1): the member \"path\" twice");
  EXPECT_EQ(faultOf(R"([{"op": "add", "path": "/a", "value": 1, "value": 1}])"),
            "/a: the member \"value\" twice");
}

TEST(Patch, RefusesMoveAndCopy) {
  EXPECT_EQ(faultOf(R"([{"op": "move", "path": "/a", "from": "/b"}])"),
            "/a: move is not supported: use remove and add");
  EXPECT_EQ(faultOf(R"([{"op": "copy", "path": "/a", "from": "/b"}])"),
            "/a: copy is not supported: use remove and add");
  EXPECT_EQ(faultOf(R"([{"op": "Add", "path": "/a", "value": 1}])"),
            "/a: unknown operation \"Add\": did you mean add? (legal: add, replace, remove, test)");
}

TEST(Patch, RefusesAPathThatIsNoPointer) {
  EXPECT_EQ(faultOf(R"([{"op": "remove", "path": "a"}])"), "a: not a JSON Pointer");
  EXPECT_EQ(faultOf(R"([{"op": "remove", "path": "/a~2\n"}])"), "/a~2\\u000a: not a JSON Pointer");
  EXPECT_EQ(faultOf("[{\"op\": \"remove\", \"path\": \"/\xff\"}]"),
            "(operation 1): \"path\" is not valid Unicode");
}

TEST(Patch, NamesAPathThatIsNoPointerInItsOtherFaultsToo) {
  EXPECT_EQ(faultOf(R"([{"path": "a\n"}])"), "a\\u000a: the member \"op\" is missing");
  EXPECT_EQ(faultOf(R"([{"path": "a", "op": "move"}])"),
            "a: move is not supported: use remove and add");
  EXPECT_EQ(faultOf(R"([{"path": "a", "op": "add", "op": "add"}])"), "a: the member \"op\" twice");
}

TEST(Patch, ShowsThePathOfAFaultUnescapedAndEscapedAgain) {
  EXPECT_EQ(faultOf(R"([{"op": "add", "path": "/a~1b/~0\u0001"}])"),
            "/a~1b/~0\\u0001: the member \"value\" is missing");
  EXPECT_EQ(faultOf("[{\"op\": \"\xff\", \"path\": \"\"}]"),
            "(document): \"op\" is not valid Unicode");
}

TEST(Patch, SurvivesAnyDepth) {
  EXPECT_EQ(faultOf(std::string(1'000'000, '[')), "(line): nested too deep");
  EXPECT_EQ(faultOf(R"([{"op": "add", "path": "/a", "value": )" + std::string(1'000'000, '[')),
            "(line): nested too deep");
}

}  // namespace
}  // namespace host::patchTest
