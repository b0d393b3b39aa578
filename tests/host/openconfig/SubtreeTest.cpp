// Paths that name a part of the tree, and what is in it.
#include "host/openconfig/Subtree.h"

#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::subtreeTest {
namespace {

using Relation = Subtree::Relation;

std::string faultOf(const std::string& path) {
  return support::hostFault([&] { Subtree{path}; });
}

TEST(Subtrees, MayEndAtEachKindOfNode) {
  for (const char* path :
       {"/qos", "/qos/classifiers", "/qos/classifiers/classifier",
        "/qos/classifiers/classifier[name=edge-in]",
        "/qos/classifiers/classifier[name=edge-in]/terms/term[id=voice]/conditions/ipv4",
        "/qos/queues/queue[name=q]/config/qosoc-augments:bandwidth",
        "/qos/queues/queue[name=q]/qosoc-augments:ecn/state/weight",
        "/qos/scheduler-policies/scheduler-policy[name=s]/schedulers/scheduler[sequence=1]/inputs",
        "/qos/interfaces/interface[interface-id=e]/interface-ref/config/subinterface",
        "/interfaces/interface[name=e]/state/oper-status", "/qos/qosoc-augments:pfc"}) {
    EXPECT_EQ(Subtree(path).path(), path);
    EXPECT_FALSE(Subtree(path).isAll());
  }
}

TEST(Subtrees, OfASlashAreTheWholeTree) {
  EXPECT_TRUE(Subtree("/").isAll());
  EXPECT_TRUE(Subtree().isAll());
  EXPECT_EQ(Subtree("/").path(), "");
  EXPECT_TRUE(Subtree("/").within("/qos/queues/queue[name=q]/name"));
}

TEST(Subtrees, KnowTheRootsByTheirMembersInTheDocument) {
  EXPECT_EQ(Subtree("/openconfig-qos:qos/queues").path(), "/qos/queues");
  EXPECT_EQ(Subtree("/openconfig-interfaces:interfaces").path(), "/interfaces");
}

TEST(Subtrees, ReadTheKeysThatPathsEscape) {
  for (const char* path : {"/qos/queues/queue[name=]", R"(/qos/queues/queue[name=a/b[c\]=\\]/name)",
                           "/qos/queues/queue[name=a=b]"}) {
    EXPECT_EQ(Subtree(path).path(), path);
  }
}

TEST(Subtrees, AFaultNamesTheElementThatNoTableKnows) {
  EXPECT_EQ(faultOf("/qos/queues/queu[name=q]"),
            "/qos/queues: there is no element \"queu\" here: did you mean queue?");
  EXPECT_EQ(faultOf("/quality"), "/: there is no element \"quality\" here");
  EXPECT_EQ(faultOf("/qos/"), "/qos: there is no element \"\" here");
  EXPECT_EQ(faultOf("//qos"), "/: there is no element \"\" here");
  EXPECT_EQ(faultOf("/qos/queues/queue[name=q]/name/x"),
            "/qos/queues/queue[name=q]/name: there is no element \"x\" here");
  EXPECT_EQ(faultOf("/qos/pfc"), "/qos: there is no element \"pfc\" here");
}

TEST(Subtrees, AFaultSaysWhatIsWrongWithAKey) {
  const std::string queue = "/qos/queues/queue";
  EXPECT_EQ(faultOf("/qos/queues/queue/name"), queue + ": the key [name=...] is missing");
  EXPECT_EQ(faultOf("/qos/queues/queue[id=q]"), queue + ": there is no key \"id\" here");
  EXPECT_EQ(faultOf("/qos/queues[name=q]"), "/qos/queues: there is no key \"name\" here");
  EXPECT_EQ(faultOf("/qos/queues/queue[name=q][name=q]"),
            queue + "[name=q]: there is no key \"name\" here");
  EXPECT_EQ(faultOf("/qos/queues/queue[name]"), queue + ": expected [KEY=VALUE]");
  EXPECT_EQ(faultOf("/qos/queues/queue[name=q"), queue + ": a \"]\" is missing");
  EXPECT_EQ(faultOf("/qos/queues/queue[name=\\q]"),
            queue + ": a \"\\\" in a key stands before \"]\" or \"\\\"");
  EXPECT_EQ(faultOf("/qos/queues/queue[name=q\\"),
            queue + ": a \"\\\" in a key stands before \"]\" or \"\\\"");
  EXPECT_EQ(faultOf("/qos/queues/queue[name=q]x"),
            queue + ": expected \"/\" behind the key, not \"x\"");
}

TEST(Subtrees, BeginWithASlash) {
  EXPECT_EQ(faultOf(""), "/: a path begins with \"/\"");
  EXPECT_EQ(faultOf("qos"), "/: a path begins with \"/\"");
}

TEST(Subtrees, EndAtNodes) {
  const Subtree entry("/qos/queues/queue[name=q]");
  EXPECT_EQ(entry.relation("/qos/queues/queue[name=q]"), Relation::within);
  EXPECT_EQ(entry.relation("/qos/queues/queue[name=q]/config/name"), Relation::within);
  EXPECT_EQ(entry.relation("/qos/queues/queue[name=q2]/name"), Relation::apart);
  EXPECT_EQ(entry.relation("/qos/queues"), Relation::above);
  EXPECT_EQ(entry.relation("/qos/queues/queue"), Relation::above);
  EXPECT_EQ(entry.relation("/qos"), Relation::above);
  EXPECT_EQ(entry.relation(""), Relation::above);
  EXPECT_EQ(entry.relation("/qos/classifiers"), Relation::apart);

  const Subtree leaf("/qos/interfaces/interface[interface-id=e]/input");
  EXPECT_EQ(leaf.relation("/qos/interfaces/interface[interface-id=e]/input/classifiers"),
            Relation::within);
  EXPECT_EQ(leaf.relation("/qos/interfaces/interface[interface-id=e]/interface-id"),
            Relation::apart);
}

TEST(Subtrees, AListWithoutItsKeyIsAllOfItsEntries) {
  const Subtree list("/qos/queues/queue");
  EXPECT_TRUE(list.within("/qos/queues/queue[name=q]/name"));
  EXPECT_FALSE(list.within("/qos/queues"));
  const Subtree groups("/qos/forwarding-groups/forwarding-group");
  EXPECT_FALSE(groups.within("/qos/forwarding-groups"));
}

TEST(Subtrees, HaveAnEntryAtTheTopOfAList) {
  const std::string list = "/qos/classifiers/classifier[name=c]/terms/term";
  EXPECT_EQ(Subtree(list).topAbove(list + "[id=a\\]b]/config/id"), list + "[id=a\\]b]");
  EXPECT_EQ(Subtree(list + "[id=t]").topAbove(list + "[id=t]/config/id"), list + "[id=t]");
  EXPECT_EQ(Subtree(list + "[id=t]/id").topAbove(list + "[id=t]/id"), list + "[id=t]/id");
  EXPECT_EQ(Subtree("/qos/queues").topAbove("/qos/queues/queue[name=q]/name"), "/qos/queues");
}

}  // namespace
}  // namespace host::subtreeTest
