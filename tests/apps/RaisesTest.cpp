// `qosoc translate` over what raises: the places by name, roots that return, comments that would end
// the program.
#include <gtest/gtest.h>

#include "Qosoc.h"

namespace raisesTest {
namespace {

using support::HostFolder;
using support::HostRun;

const std::string percent =
    "range: QosOc::PercentType::value < QosOc::PercentType::min or > QosOc::PercentType::max not "
    "allowed";
const std::string queue = "/interfaces/Ethernet1~12/tx-queues/uc-3";

// Three queues of which one is bad.
constexpr const char* native = R"({"interfaces": {"Ethernet1/2": {"tx-queues": {
  "uc-1": {"bandwidth": 10}, "uc-2": {"bandwidth": 20}, "uc-3": {"bandwidth": 150}}}}})";

constexpr const char* badComment =
    R"([{"op":"add","path":"/comments/if-Et1~12-uc-txq-1","value":"{\"MetaData-OpenConfig\":7}"}])";

std::string setBandwidth(int bandwidth) {
  return R"([{"op":"replace","path":")" + queue + R"(/bandwidth","value":)" +
         std::to_string(bandwidth) + "}]\n";
}

class Raises : public testing::Test {
 protected:
  HostRun translate(const std::string& changes, std::vector<std::string> options = {}) {
    options.insert(options.begin(), {"translate", folder_.file("native.json", native), "--changes",
                                     folder_.file("changes.jsonl", changes)});
    return support::qosoc(options);
  }
  HostFolder folder_;
};

TEST_F(Raises, ARootThatIsLeftOutNamesThePlace) {
  const HostRun run = translate("");
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err, "root queue: " + percent + " at " + queue + "/bandwidth\n");
}

TEST_F(Raises, ALineNamesThePlaceAlsoOfAValueThatWasThereBefore) {
  const std::string policy =
      R"("{\"MetaData-OpenConfig\":{\"scheduler-policy\":{\"name\":\"s\"}}}")";
  const std::string comment = R"("path":"/comments/if-Et1~12-uc-txq-3")";
  const HostRun run =
      translate(setBandwidth(40) + R"([{"op":"add",)" + comment + R"(,"value":)" + policy + "}]\n" +
                    setBandwidth(150) + R"([{"op":"remove",)" + comment + "}]\n",
                {"--retry-roots"});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(run.err, "root queue: " + percent + " at " + queue +
                         "/bandwidth\n"
                         "line 1: root queue: built\n"
                         "line 4: " +
                         percent + " at " + queue + "/bandwidth\n");
}

TEST_F(Raises, ARootStaysOutUnlessAskedToReturn) {
  const HostRun out = translate(setBandwidth(30), {"--format", "model"});
  EXPECT_EQ(out.err, "root queue: " + percent + " at " + queue + "/bandwidth\n");
  EXPECT_EQ(out.out.find(R"("bandwidth": 30)"), std::string::npos);
  const HostRun back = translate(setBandwidth(30), {"--format", "model", "--retry-roots"});
  EXPECT_EQ(back.exit, 1);
  EXPECT_EQ(back.err,
            "root queue: " + percent + " at " + queue + "/bandwidth\nline 1: root queue: built\n");
  for (const char* bandwidth : {"10", "20", "30"}) {
    EXPECT_NE(back.out.find(R"("bandwidth": )" + std::string(bandwidth)), std::string::npos);
  }
}

TEST_F(Raises, ARootThatRaisesAgainSaysSo) {
  const HostRun run = translate(setBandwidth(151) + "\n" + setBandwidth(1), {"--retry-roots"});
  const std::string report = "root queue: " + percent + " at " + queue + "/bandwidth\n";
  EXPECT_EQ(run.err, report + "line 1: " + report + "line 3: root queue: built\n");
}

// The report of a line comes before its leaves.
TEST_F(Raises, TheFeedHasWhatAReturningRootBrings) {
  const HostRun run = translate(setBandwidth(30), {"--retry-roots", "--feed"});
  const std::string last = run.out.substr(run.out.find('\n') + 1);
  EXPECT_NE(last.find(R"("line":1)"), std::string::npos);
  EXPECT_NE(last.find(R"([name=Ethernet1/2-unicast-3]/config/qosoc-augments:bandwidth":30)"),
            std::string::npos)
      << last;
}

TEST_F(Raises, ABadCommentIsNamedBeforeTheProgramEnds) {
  const HostRun run = translate(badComment, {"--roots", "scheduler-policy"});
  EXPECT_EQ(run.exit, 134);
  EXPECT_EQ(run.err.find("line 1: /comments/if-Et1~12-uc-txq-1: at /MetaData-OpenConfig of this "
                         "comment: expected an object; it ends the program that translates it\n"
                         "assertion failed"),
            0u)
      << run.err;
}

TEST_F(Raises, ABadCommentIsRefusedWhereThatIsAskedFor) {
  const HostRun run =
      translate(badComment, {"--roots", "scheduler-policy", "--each", "--refuse-bad-comments"});
  EXPECT_EQ(run.exit, 1);
  EXPECT_EQ(
      run.err,
      "line 1: refused: /comments/if-Et1~12-uc-txq-1: at /MetaData-OpenConfig of this comment: "
      "expected an object\n");
}

}  // namespace
}  // namespace raisesTest
