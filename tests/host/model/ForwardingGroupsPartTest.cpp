#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"
#include "tests/support/HostModel.h"

namespace host::forwardingGroupsPartTest {
namespace {

using support::hostFault;
using support::hostModelWith;
using support::hostPart;

constexpr const char* part = "forwarding-groups";

TEST(ForwardingGroupsPart, ReadsAndWritesEveryField) {
  const std::string text = R"({"":{"name":"","output-queue":""},)"
                           R"("a":{"name":"other","output-queue":"q/\n"}})";
  const Model model = hostModelWith(part, text);
  EXPECT_EQ(hostPart(model, part), text);
  EXPECT_EQ(model.forwardingGroups->forwardingGroup("a")->config(),
            (QosOc::Config::ForwardingGroupConfig{"other", "q/\n"}));
}

TEST(ForwardingGroupsPart, TakesWhatIsLeftOutAsDefault) {
  const Model model = hostModelWith(part, R"({"a": {}})");
  EXPECT_FALSE(model.forwardingGroups->forwardingGroup("a")->config());
}

TEST(ForwardingGroupsPart, RefusesWhatIsNoForwardingGroup) {
  EXPECT_EQ(hostFault([] { hostModelWith(part, R"({"a": {"name": null}})"); }),
            "/forwarding-groups/a/name: null is never a value here: expected a string");
  EXPECT_EQ(hostFault([] { hostModelWith(part, R"({"a": {"config": {}}})"); }),
            "/forwarding-groups/a/config: unknown member (legal: name, output-queue)");
}

}  // namespace
}  // namespace host::forwardingGroupsPartTest
