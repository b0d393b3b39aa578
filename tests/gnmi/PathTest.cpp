// What paths of requests take in, and which are refused.
#include "gnmi/Path.h"

#include <gtest/gtest.h>

#include "tests/support/GnmiPath.h"

namespace server::pathTest {
namespace {

using support::gnmiPath;
using Names = Path::Names;

const host::View& view() {
  static const host::View view({.augments = true, .state = false, .interfaceRef = false});
  return view;
}

Path resolved(const gnmi::Path& path, const gnmi::Path& prefix = {}) {
  return Path({prefix, path, "path"}, view());
}
Path resolved(std::string_view path, std::string_view prefix = "/") {
  return resolved(gnmiPath(path), gnmiPath(prefix));
}
std::string refusal(const gnmi::Path& path, const gnmi::Path& prefix = {}) {
  return support::gnmiRefusal([&] { resolved(path, prefix); });
}
std::string refusal(std::string_view path, std::string_view prefix = "/") {
  return refusal(gnmiPath(path), gnmiPath(prefix));
}

std::vector<std::string> tops(const Path& path) {
  std::vector<std::string> shown;
  for (const Path::Top& top : path.tops()) shown.push_back(support::gnmiShown(top));
  return shown;
}
using Texts = std::vector<std::string>;

// "name config/name" for each row that the path takes in of a record.
std::string rowsOf(const Path& path, const host::RecordKind& kind, const host::Keys& keys) {
  std::string names;
  const RowSet rows = path.rows(kind, keys);
  for (std::size_t i = 0; i < view().rows(kind).size(); ++i) {
    if ((rows >> i & 1) == 0) continue;
    names += (names.empty() ? "" : " ") + view().rows(kind)[i].path;
  }
  return names;
}

std::size_t kindsOf(const Path& path) { return path.parts().size(); }

// ===== Nodes

TEST(Paths, NameANodeOfEachKind) {
  const struct {
    const char* path;
    Names names;
    bool isOne;
  } cases[] = {
      {"/", Names::container, true},
      {"/qos", Names::container, true},
      {"/qos/queues", Names::container, true},
      {"/qos/queues/queue", Names::list, false},
      {"/qos/queues/queue[name=q]", Names::entry, true},
      {"/qos/queues/queue[name=q]/config", Names::container, true},
      {"/qos/queues/queue[name=q]/config/name", Names::leaf, true},
      {"/qos/queues/queue/config/name", Names::leaf, false},
      {"/qos/qosoc-augments:pfc", Names::container, true},
      {"/qos/classifiers/classifier[name=c]/terms/term", Names::list, false},
      {"/qos/classifiers/classifier[name=*]/terms/term[id=t]", Names::entry, false},
  };
  for (const auto& c : cases) {
    const Path path = resolved(c.path);
    ASSERT_EQ(path.tops().size(), 1u) << c.path;
    EXPECT_EQ(path.tops()[0].names(), c.names) << c.path;
    EXPECT_EQ(path.isOne(), c.isOne) << c.path;
  }
}

TEST(Paths, BeginWithTheElementsOfThePrefix) {
  EXPECT_EQ(tops(resolved("/queue[name=q]/config", "/qos/queues")),
            Texts{"/qos/queues/queue[name=q]/config"});
  EXPECT_EQ(tops(resolved("/", "/qos/queues/queue[name=q]")), Texts{"/qos/queues/queue[name=q]"});
  EXPECT_EQ(tops(resolved("/", "/")), Texts{"/"});
}

TEST(Paths, HaveKeysOfAnyText) {
  for (const char* key : {"a/b", "a[b", "a=b", "ä <'&", ".", "openconfig:"}) {
    gnmi::Path path = gnmiPath("/qos/queues/queue");
    (*path.mutable_elem(2)->mutable_key())["name"] = key;
    const Path one = resolved(path);
    EXPECT_TRUE(one.isOne());
    EXPECT_EQ(rowsOf(one, host::kinds::queue, {key}).substr(0, 11), "config/name");
    EXPECT_EQ(rowsOf(one, host::kinds::queue, {"x"}), "");
  }
}

TEST(Paths, MayCarryModules) {
  for (const char* path :
       {"/openconfig-qos:qos/openconfig-qos:queues/queue[name=q]/config/qosoc-augments:bandwidth",
        "/qos/queues/queue[name=q]/config/bandwidth",
        "/qos/queues/queue[name=q]/openconfig-qos:config/qosoc-augments:bandwidth"}) {
    EXPECT_EQ(tops(resolved(path)),
              Texts{"/qos/queues/queue[name=q]/config/qosoc-augments:bandwidth"});
  }
  EXPECT_EQ(tops(resolved("/qos/pfc/qosoc-augments:watchdog")),
            Texts{"/qos/qosoc-augments:pfc/watchdog"});
  EXPECT_EQ(
      refusal("/openconfig-interfaces:qos"),
      "UNIMPLEMENTED path.elem[0]: there is no element \"openconfig-interfaces:qos\" below /");
  EXPECT_NE(refusal("/qos/qosoc-augments:queues"), "");
  EXPECT_NE(refusal("/qos/pfc/openconfig-qos:watchdog"), "");
}

TEST(Paths, MayBeginWithTheOriginAsText) {
  EXPECT_EQ(tops(resolved("/openconfig:/qos")), Texts{"/qos"});
  EXPECT_EQ(tops(resolved("/openconfig:qos/queues")), Texts{"/qos/queues"});
  EXPECT_NE(refusal("/qos/openconfig:/queues"), "");
}

// ===== Wildcards

TEST(Paths, TakeAnyKeyThatIsLeftOut) {
  for (const char* path : {"/qos/classifiers/classifier/terms/term[id=t]/config",
                           "/qos/classifiers/classifier[name=*]/terms/term[id=t]/config"}) {
    const Path terms = resolved(path);
    EXPECT_EQ(rowsOf(terms, host::kinds::term, {"c", "t"}), "config/id");
    EXPECT_EQ(rowsOf(terms, host::kinds::term, {"c", "u"}), "");
    EXPECT_EQ(rowsOf(terms, host::kinds::classifier, {"c"}), "");
  }
}

TEST(Paths, TakeAnyElementForAStar) {
  EXPECT_EQ(tops(resolved("/qos/queues/*[name=q]/*/name")),
            Texts{"/qos/queues/queue[name=q]/config/name"});
  EXPECT_EQ(tops(resolved("/*/queues")), Texts{"/qos/queues"});
  EXPECT_EQ(tops(resolved("/qos/*/*[name=*]")).size(), 5u);
}

TEST(Paths, TakeAnyNumberOfElementsForDots) {
  EXPECT_EQ(tops(resolved("/...")), Texts{"/"});
  EXPECT_EQ(tops(resolved("/.../queues/...")), (Texts{"/qos/queues",
                                                      "/qos/interfaces/interface[interface-id=*]/"
                                                      "output/queues"}));
  EXPECT_EQ(tops(resolved("/.../.../scheduler[sequence=1]/.../queue")),
            Texts{"/qos/scheduler-policies/scheduler-policy[name=*]/schedulers/"
                  "scheduler[sequence=1]/inputs/input[id=*]/config/queue"});
  EXPECT_EQ(tops(resolved("/.../term/.../dscp")).size(), 2u);
}

TEST(Paths, WithWildcardsNameNoNodeBelowAnother) {
  EXPECT_EQ(tops(resolved("/qos/queues/...")), Texts{"/qos/queues"});
  EXPECT_EQ(tops(resolved("/.../*[name=q]/...")).size(), 6u);
}

// ===== Records

TEST(Paths, TakeInAllKindsBelowTheRoot) {
  std::size_t kinds = 0;
  const std::function<void(const host::RecordKind&)> count = [&](const host::RecordKind& kind) {
    ++kinds;
    for (const host::RecordKind* child : view().children(kind)) count(*child);
  };
  for (const host::RecordKind* kind : view().outermost()) count(*kind);
  EXPECT_EQ(kindsOf(resolved("/")), kinds);
  EXPECT_EQ(kindsOf(resolved("/qos")), kinds);
}

TEST(Paths, TakeInTheLeavesOfAContainer) {
  const Path conditions =
      resolved("/qos/classifiers/classifier[name=c]/terms/term[id=t]/conditions/ipv4");
  EXPECT_EQ(kindsOf(conditions), 1u);
  EXPECT_EQ(rowsOf(conditions, host::kinds::term, {"c", "t"}),
            "conditions/ipv4/config/dscp conditions/ipv4/config/dscp-set");
  EXPECT_EQ(rowsOf(conditions, host::kinds::term, {"d", "t"}), "");
}

TEST(Paths, TakeInTheRecordsBelowAnEntry) {
  const Path policy = resolved("/qos/scheduler-policies/scheduler-policy[name=s]");
  EXPECT_EQ(kindsOf(policy), 4u);
  EXPECT_EQ(rowsOf(policy, host::kinds::schedulerRate, {"s", "1"}), "config/cir config/cir-pct");
  EXPECT_EQ(rowsOf(policy, host::kinds::schedulerRate, {"x", "1"}), "");
  for (const Path::Part& part : policy.parts()) EXPECT_EQ(part.keys[0], "s");
}

TEST(Paths, LeadToRecordsByTheirKeys) {
  using Which = host::EntriesWanted::Which;
  const Path rate = resolved(
      "/qos/scheduler-policies/scheduler-policy[name=s]/schedulers/scheduler[sequence=1]/"
      "one-rate-two-color");
  EXPECT_EQ(rate.wanted(host::kinds::queue, {}).which, Which::none);
  EXPECT_EQ(rate.wanted(host::kinds::schedulerPolicy, {}).which, Which::one);
  EXPECT_EQ(rate.wanted(host::kinds::schedulerPolicy, {}).key, "s");
  const host::Keys policy{"s"};
  EXPECT_EQ(rate.wanted(host::kinds::scheduler, policy).key, "1");
  const host::Keys scheduler{"s", "1"};
  EXPECT_EQ(rate.wanted(host::kinds::schedulerRate, scheduler).which, Which::all);
  EXPECT_EQ(rate.wanted(host::kinds::schedulerInput, scheduler).which, Which::none);
  const host::Keys other{"t"};
  EXPECT_EQ(rate.wanted(host::kinds::scheduler, other).which, Which::none);
  EXPECT_EQ(resolved("/qos/queues").wanted(host::kinds::queue, {}).which, Which::all);
}

// ===== Faults

TEST(Paths, ThatTheTablesDoNotHaveAreUnimplemented) {
  EXPECT_EQ(refusal("/qos/queues/queu[name=q]"),
            "UNIMPLEMENTED path.elem[2]: there is no element \"queu\" below /qos/queues: did you "
            "mean queue?");
  EXPECT_EQ(refusal("/queu", "/qos/queues"),
            "UNIMPLEMENTED path.elem[0]: there is no element \"queu\" below /qos/queues: did you "
            "mean queue?");
  EXPECT_EQ(refusal("/queues", "/qus"),
            "UNIMPLEMENTED prefix.elem[0]: there is no element \"qus\" "
            "below /: did you mean qos?");
  EXPECT_EQ(refusal("/qos/queues/queue/name/x"),
            "UNIMPLEMENTED path.elem[4]: there is no element \"x\" below /qos/queues/queue/name");
  EXPECT_EQ(refusal("/qos/*/x"),
            "UNIMPLEMENTED path.elem[2]: there is no element \"x\" below what "
            "the elements before it name");
}

TEST(Paths, ThatTheViewDoesNotShowAreUnimplemented) {
  EXPECT_EQ(refusal("/interfaces/interface[name=e]"),
            "UNIMPLEMENTED path: /interfaces/interface is not shown by this server");
  EXPECT_EQ(refusal("/qos/queues/queue[name=q]/state"),
            "UNIMPLEMENTED path: /qos/queues/queue/state is not shown by this server");
  const gnmi::Path state = gnmiPath("/qos/queues/queue[name=q]/state");
  const host::View mirrored({.augments = true, .state = true, .interfaceRef = false});
  EXPECT_TRUE(Path({{}, state, "path"}, mirrored).isOne());
}

TEST(Paths, WithNamesThatAreNoneAreInvalid) {
  for (const char* name : {"<", "'", "a b", "a/b", "a:b:c", ":a", "a:", "**"}) {
    gnmi::Path path = gnmiPath("/qos");
    path.add_elem()->set_name(name);
    EXPECT_EQ(refusal(path),
              "INVALID_ARGUMENT path.elem[1].name: \"" + std::string(name) + "\" is no name");
  }
  EXPECT_EQ(refusal("/qos/"), "INVALID_ARGUMENT path.elem[1].name: it is empty");
  EXPECT_EQ(refusal("/"), "");
}

TEST(Paths, WithKeysOfOtherNamesAreInvalid) {
  EXPECT_EQ(refusal("/qos/queues/queue[id=q]"),
            "INVALID_ARGUMENT path.elem[2].key: \"id\" is asked for, and there is the key name");
  EXPECT_EQ(
      refusal("/qos/queues/queue[id=1][name=q]"),
      "INVALID_ARGUMENT path.elem[2].key: \"id\", \"name\" is asked for, and there is the key "
      "name");
  EXPECT_EQ(refusal("/qos/queues[name=q]"),
            "INVALID_ARGUMENT path.elem[1].key: \"name\" is asked for, and there is no key");
  EXPECT_EQ(refusal("/qos/*[name=q]"),
            "INVALID_ARGUMENT path.elem[1].key: \"name\" is asked for, "
            "and there is no element with such a key");
  EXPECT_EQ(refusal("/qos/...[name=q]"), "INVALID_ARGUMENT path.elem[1].key: \"...\" has no key");
}

TEST(Paths, WithValuesThatAKeyCannotHaveAreInvalid) {
  const std::string scheduler =
      "/qos/scheduler-policies/scheduler-policy[name=s]/schedulers/scheduler";
  for (const char* value : {"x", "-1", "4294967296", "01", ""}) {
    EXPECT_EQ(refusal(scheduler + "[sequence=" + value + "]"),
              "INVALID_ARGUMENT path.elem[4].key[sequence]: \"" + std::string(value) +
                  "\" is not a whole number from 0 to 4294967295");
  }
  EXPECT_EQ(refusal(scheduler + "[sequence=4294967295]"), "");
  const std::string type = "/qos/interfaces/interface[interface-id=e]/input/classifiers/classifier";
  EXPECT_EQ(refusal(type + "[type=IPV5]"),
            "INVALID_ARGUMENT path.elem[5].key[type]: \"IPV5\" is not \"IPV4\", \"IPV6\", \"MPLS\" "
            "or \"ETHERNET\"");
  EXPECT_EQ(refusal(type + "[type=IPV6]"), "");
}

TEST(Paths, OfOtherOriginsAreUnimplemented) {
  gnmi::Path path = gnmiPath("/qos");
  path.set_origin("cli");
  EXPECT_EQ(refusal(path), "UNIMPLEMENTED path.origin: \"cli\" is not served, \"openconfig\" is");
  EXPECT_EQ(refusal(gnmiPath("/qos"), path),
            "UNIMPLEMENTED prefix.origin: \"cli\" is not served, \"openconfig\" is");
  path.set_origin("openconfig");
  EXPECT_EQ(refusal(path), "");
  gnmi::Path prefix;
  prefix.set_origin("openconfig");
  EXPECT_EQ(refusal(gnmiPath("/qos"), prefix), "");
  EXPECT_EQ(refusal(path, prefix), "INVALID_ARGUMENT path.origin: the prefix has one, too");
}

TEST(Paths, HaveATargetInThePrefixAlone) {
  gnmi::Path prefix;
  prefix.set_target("device");
  EXPECT_EQ(refusal(gnmiPath("/qos"), prefix), "");
  EXPECT_EQ(refusal(prefix), "INVALID_ARGUMENT path.target: a prefix alone has a target");
}

// ===== The deprecated form

gnmi::Path elements(std::initializer_list<const char*> texts) {
  gnmi::Path path;
  for (const char* text : texts) path.add_element(text);
  return path;
}

TEST(Paths, OfTheDeprecatedFormAreRead) {
  EXPECT_EQ(tops(resolved(elements({"qos", "queues", R"(queue[name=a\]b\\/c])", "config"}))),
            Texts{R"(/qos/queues/queue[name=a]b\/c]/config)"});
  EXPECT_EQ(refusal(elements({"qos", "queues", "queue[name=q"})),
            "INVALID_ARGUMENT path.element[2]: a \"]\" is missing");
  EXPECT_EQ(refusal(elements({"qos", "queues", "queue[name]"})),
            "INVALID_ARGUMENT path.element[2]: expected [KEY=VALUE], not \"[name]\"");
  EXPECT_EQ(refusal(elements({"qos", "queues", "queue[name=q]x"})),
            "INVALID_ARGUMENT path.element[2]: expected [KEY=VALUE], not \"x\"");
  EXPECT_EQ(
      refusal(elements({"qos", "queues", "queue[name=q][name=r]"})),
      "INVALID_ARGUMENT path.element[2].key: \"name\", \"name\" is asked for, and there is the "
      "key name");
}

TEST(Paths, OfBothFormsAreReadByTheNewOne) {
  gnmi::Path path = gnmiPath("/qos/queues");
  path.add_element("nonsense");
  EXPECT_EQ(tops(resolved(path)), Texts{"/qos/queues"});
}

}  // namespace
}  // namespace server::pathTest
