// Comments that would end the process, found before the line that has them read is written.
#include "host/CommentGuard.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/KeptDevice.h"

namespace host::commentGuardTest {
namespace {

using support::hostOperation;
using support::KeptDevice;
using support::ourComment;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string bad = ourComment(R"({"scheduler-policy":5})");
const std::string good = ourComment(R"({"scheduler-policy":{"name":"s"}})");
const std::string badPolicy = ourComment(R"({"1":{"inputs":5}})");

const std::string key = "/comments/if-Et1-uc-txq-3";
const std::string queue = "/interfaces/Ethernet1/tx-queues/uc-3";
const std::string policyKey = "/comments/qos-profile-__YANG_SP_[s]";

const std::string fault = key +
                          ": at /MetaData-OpenConfig/scheduler-policy of this comment: expected "
                          "an object";
const std::string policyFault =
    policyKey + ": at /MetaData-OpenConfig/1/inputs of this comment: expected an object";

std::string withQueue(const std::string& settings = "{}", const std::string& comments = "{}") {
  return R"({"interfaces":{"Ethernet1":{"tx-queues":{"uc-3":)" + settings + R"(}}},"comments":)" +
         comments + '}';
}
// A comment of a tx queue that isn't there: a start doesn't read it.
std::string withComment(const std::string& others = "") {
  return R"({"comments":{"if-Et1-uc-txq-3":)" + bad + '}' + others + '}';
}

testing::Matcher<KeptDevice::Reports> refused(const std::string& text = fault) {
  return ElementsAre("line 1: refused: " + text);
}

// ===== A comment that comes

TEST(CommentGuard, RefusesABadCommentOfATxQueue) {
  KeptDevice d(withQueue());
  EXPECT_THAT(d.put(key, bad), refused());
  EXPECT_TRUE(d.native().cliConfig->comment("if-Et1-uc-txq-3").empty());
  EXPECT_THAT(d.put(key, good), IsEmpty());
}

TEST(CommentGuard, RefusesOneOfAnyKeyWhereARootDecodesThemAll) {
  for (const char* root : {"queue-management", "scheduler-policy"}) {
    KeptDevice d("{}", {.roots = {root}});
    EXPECT_THAT(
        d.put("/comments/note", bad),
        ElementsAre("line 1: refused: /comments/note: at /MetaData-OpenConfig/scheduler-policy "
                    "of this comment: expected an object"));
  }
}

TEST(CommentGuard, TakesOneThatNoRootDecodes) {
  KeptDevice d("{}", {.roots = {"queue", "acl"}});
  EXPECT_THAT(d.put("/comments/note", bad), IsEmpty());
  EXPECT_THAT(d.put(key, bad), IsEmpty());
  KeptDevice without(withQueue(), {.roots = {"acl"}});
  EXPECT_THAT(without.put(key, bad), IsEmpty());
}

TEST(CommentGuard, RefusesOneOfATxQueueWhereTheRootOfQueuesAloneIsThere) {
  KeptDevice d(withQueue(), {.roots = {"queue"}});
  EXPECT_THAT(d.put(key, bad), refused());
  EXPECT_THAT(d.put("/comments/if-Et1-uc-txq-4", bad), IsEmpty());
}

TEST(CommentGuard, RefusesOneThatARootWillReadWhenItReturns) {
  const std::string document = withQueue(R"({"bandwidth":150})");
  KeptDevice returns(document, {.roots = {"queue"}});
  EXPECT_THAT(returns.put(key, bad), refused());
  KeptDevice stays(document, {.roots = {"queue"}, .leftOut = KeptDevice::LeftOut::stays});
  EXPECT_THAT(stays.put(key, bad), IsEmpty());
}

TEST(CommentGuard, RefusesABadOneAmongAllComments) {
  KeptDevice d(withQueue());
  EXPECT_THAT(d.put("/comments", R"({"note":"a note","if-Et1-uc-txq-3":)" + bad + '}'), refused());
}

TEST(CommentGuard, RefusesABadOneThatTheSameLineRemoves) {
  KeptDevice d(withQueue());
  EXPECT_THAT(
      d.line('[' + hostOperation("add", key, bad) + ',' + hostOperation("remove", key) + ']'),
      refused());
}

TEST(CommentGuard, TakesABadOneThatIsThereAlready) {
  KeptDevice d(withComment());
  EXPECT_THAT(d.put(key, bad), IsEmpty());
  EXPECT_THAT(d.put("/comments", R"({"if-Et1-uc-txq-3":)" + bad + '}'), IsEmpty());
  EXPECT_THAT(d.put("/comments/note", good), IsEmpty());
}

// ===== What reads one that is there

TEST(CommentGuard, RefusesATxQueueWithABadComment) {
  const std::string queues = R"({"uc-3":{}})";
  const std::pair<std::string, std::string> writes[] = {
      {"/interfaces", R"({"Ethernet1":{"tx-queues":)" + queues + "}}"},
      {"/interfaces/Ethernet1", R"({"tx-queues":)" + queues + '}'},
      {"/interfaces/Ethernet2/tx-queues", queues},
      {"/interfaces/Ethernet2/tx-queues/uc-3", "{}"},
  };
  for (const auto& [path, value] : writes) {
    KeptDevice d(R"({"comments":{"if-Et1-uc-txq-3":)" + bad + R"(,"if-Et2-uc-txq-3":)" + bad +
                 R"(},"interfaces":{"Ethernet2":{}}})");
    EXPECT_THAT(d.put(path, value), ElementsAre(testing::HasSubstr("refused: /comments/if-Et")))
        << path;
    EXPECT_EQ(d.native().qosConfig->intfConfig().members(), 1u);
  }
}

TEST(CommentGuard, TakesATxQueueWithoutItsBadComment) {
  KeptDevice d(withComment());
  EXPECT_THAT(d.put("/interfaces/Ethernet1", R"({"tx-queues":{"uc-4":{}},"pfc":{}})"), IsEmpty());
  EXPECT_THAT(d.put("/interfaces/Ethernet2", R"({"tx-queues":{"uc-3":{}}})"), IsEmpty());
  EXPECT_THAT(d.remove("/interfaces/Ethernet2"), IsEmpty());
  EXPECT_THAT(d.line('[' + hostOperation("remove", key) + ',' +
                     hostOperation("add", "/interfaces/Ethernet1/tx-queues/uc-3", "{}") + ']'),
              IsEmpty());
}

TEST(CommentGuard, RefusesATxQueueBeforeItsBadCommentGoes) {
  KeptDevice d(withComment(R"(,"interfaces":{"Ethernet1":{}})"));
  EXPECT_THAT(
      d.line('[' + hostOperation("add", queue, "{}") + ',' + hostOperation("remove", key) + ']'),
      refused());
  EXPECT_THAT(d.line('[' + hostOperation("remove", "/comments") + ',' +
                     hostOperation("add", queue, "{}") + ']'),
              IsEmpty());
}

// A line that is refused for its form is refused for that.
TEST(CommentGuard, IsSilentOfALineThatDoesNotApply) {
  KeptDevice d(withQueue());
  EXPECT_THAT(d.line('[' + hostOperation("add", key, bad) + ',' +
                     hostOperation("remove", "/comments/x") + ']'),
              ElementsAre("line 1: refused: /comments/x: nothing is there"));
}

// ===== Comments of profiles

TEST(CommentGuard, RefusesABadCommentOfAPolicy) {
  KeptDevice d(R"({"qos-profiles":{"__YANG_SP_[s]":{}}})");
  EXPECT_THAT(d.put(policyKey, badPolicy), refused(policyFault));
  EXPECT_THAT(d.put("/comments/qos-profile-__YANG_SP_[t]", badPolicy), IsEmpty());
  EXPECT_THAT(d.put("/comments/qos-profile-__YANG_QMP_[s]", badPolicy), IsEmpty());
  EXPECT_THAT(d.put("/comments/__YANG_SP_[s]", badPolicy), IsEmpty());
}

TEST(CommentGuard, RefusesAPolicyWithABadComment) {
  const std::string document = R"({"comments":{"qos-profile-__YANG_SP_[s]":)" + badPolicy + "}}";
  for (const std::string path : {"/qos-profiles", "/qos-profiles/__YANG_SP_[s]"}) {
    KeptDevice d(document);
    const std::string value = path == "/qos-profiles" ? R"({"__YANG_SP_[s]":{}})" : "{}";
    EXPECT_THAT(d.put(path, value), refused(policyFault));
    KeptDevice other(document, {.roots = {"queue-management"}});
    EXPECT_THAT(other.put(path, value), IsEmpty());
  }
}

TEST(CommentGuard, RefusesABadCommentOfAPolicyWhoseNameGoesOnBehindANul) {
  KeptDevice d(R"({"qos-profiles":{"__YANG_SP_[s]\u0000]":{}}})");
  EXPECT_THAT(d.put(policyKey, badPolicy), refused(policyFault));
}

// ===== Named, and then the end

void endsWith(const std::string& document, const std::string& path, const std::string& value,
              const std::vector<std::string>& roots = {}) {
  KeptDevice d(document, {roots, KeptDevice::LeftOut::stays, KeptDevice::BadComments::named, true});
  d.put(path, value);
}

TEST(CommentGuardDeathTest, ABadCommentIsNamedBeforeTheProcessEnds) {
  EXPECT_DEATH(
      endsWith(withQueue(), key, bad),
      "line 1: /comments/if-Et1-uc-txq-3: at /MetaData-OpenConfig/scheduler-policy of this "
      "comment: expected an object; it ends the program that translates it\n"
      "assertion failed");
}

// Every way in, by each root alone.
TEST(CommentGuardDeathTest, EveryWriteThatIsRefusedWouldEndTheProcess) {
  const std::pair<std::string, std::string> queueWrites[] = {
      {"/interfaces", R"({"Ethernet1":{"tx-queues":{"uc-3":{}}}})"},
      {"/interfaces/Ethernet1", R"({"tx-queues":{"uc-3":{}}})"},
  };
  for (const char* root : {"queue", "queue-management", "scheduler-policy"}) {
    EXPECT_DEATH(endsWith(withQueue(), key, bad, {root}), "line 1: /comments/if-Et1");
    for (const auto& [path, value] : queueWrites) {
      EXPECT_DEATH(endsWith(withComment(), path, value, {root}), "line 1: /comments/if-Et1");
    }
  }
  for (const char* root : {"queue-management", "scheduler-policy"}) {
    EXPECT_DEATH(endsWith("{}", "/comments/note", bad, {root}), "line 1: /comments/note");
  }
  EXPECT_DEATH(endsWith(R"({"qos-profiles":{"__YANG_SP_[s]":{}}})", policyKey, badPolicy,
                        {"scheduler-policy"}),
               "line 1: /comments/qos-profile");
  EXPECT_DEATH(endsWith(R"({"comments":{"qos-profile-__YANG_SP_[s]":)" + badPolicy + "}}",
                        "/qos-profiles/__YANG_SP_[s]", "{}", {"scheduler-policy"}),
               "line 1: /comments/qos-profile");
}

}  // namespace
}  // namespace host::commentGuardTest
