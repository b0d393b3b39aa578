// The section "service-policies": how it is mounted, and what each change writes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::servicePoliciesTest {
namespace {

using support::HostDevice;
using support::hostFault;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* device = R"({"service-policies": {
    "1:P": {"interfaces": {"Ethernet2": true, "Ethernet1": true}}, "0:P": {}}})";

std::string faultOf(const std::string& section) {
  return hostFault([&] { HostDevice d(R"({"service-policies": )" + section + "}"); });
}

Rok::Ptr<Qos::ServicePolicyConfig> policy(const HostDevice& d, std::uint16_t tag,
                                          const Rok::String& name) {
  const auto* found = d.native.qosConfig->servicePolicyConfig().find({tag, name});
  return found != nullptr ? *found : nullptr;
}

// ===== The document

TEST(ServicePolicies, HoldTheirInterfaces) {
  const HostDevice d(device);
  EXPECT_EQ(d.native.qosConfig->servicePolicyConfig().members(), 2u);
  EXPECT_EQ(policy(d, 1, "P")->key(), (Qos::ServicePolicyKey{1, "P"}));
  EXPECT_EQ(policy(d, 1, "P")->intfIds().members(), 2u);
  EXPECT_TRUE(*policy(d, 1, "P")->intfIds().find(Nerit::IntfId("Ethernet1")));
  EXPECT_EQ(policy(d, 0, "P")->intfIds().members(), 0u);
}

TEST(ServicePolicies, TheFirstColonEndsTheTag) {
  const HostDevice d(R"({"service-policies": {"65535:a:b": {}, "3:": {}, "3::": {}}})");
  EXPECT_TRUE(policy(d, 65535, "a:b"));
  EXPECT_TRUE(policy(d, 3, ""));
  EXPECT_TRUE(policy(d, 3, ":"));
}

TEST(ServicePolicies, AnInterfaceMayBeThereAndFalse) {
  const HostDevice d(R"({"service-policies": {"1:P": {"interfaces": {"Ethernet1": false}}}})");
  EXPECT_FALSE(*policy(d, 1, "P")->intfIds().find(Nerit::IntfId("Ethernet1")));
}

TEST(ServicePolicies, RefuseKeysWithoutATag) {
  for (const char* key : {"P", "", ":P", "01:P", "65536:P", "-1:P", "x:P", " 1:P"}) {
    EXPECT_EQ(faultOf("{\"" + std::string(key) + "\": {}}"),
              "/service-policies/" + std::string(key) +
                  ": this key is not a service policy: a tag from 0 to 65535, a colon and the "
                  "name of a policy map");
  }
}

TEST(ServicePolicies, RefuseWhatTheyCannotHold) {
  EXPECT_EQ(faultOf("[]"), "/service-policies: expected an object, not an array");
  EXPECT_EQ(faultOf(R"({"1:P": {}, "1:P": {}})"), "/service-policies/1:P: the same key twice");
  EXPECT_EQ(faultOf(R"({"1:P": {"interface": {}}})"),
            "/service-policies/1:P/interface: unknown member: did you mean interfaces? (legal: "
            "interfaces)");
  EXPECT_EQ(faultOf(R"({"1:P": {"interfaces": ["Ethernet1"]}})"),
            "/service-policies/1:P/interfaces: expected an object, not an array");
  EXPECT_EQ(faultOf(R"({"1:P": {"interfaces": {"E": 1}}})"),
            "/service-policies/1:P/interfaces/E: expected true or false, not 1");
  EXPECT_EQ(faultOf(R"({"1:P": {"interfaces": {"E": null}}})"),
            "/service-policies/1:P/interfaces/E: null is never a value here: expected true or "
            "false");
}

// ===== Changes

TEST(ServicePolicies, AServicePolicyIsAnEntry) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/service-policies/2:Q", R"({"interfaces": {"E": true}})"),
              ElementsAre("servicePolicyConfig 2:Q"));
  EXPECT_EQ(policy(d, 2, "Q")->intfIds().members(), 1u);
  for (const char* op : {"add", "replace"}) {
    EXPECT_THAT(d.heardFrom(op, "/service-policies/2:Q", "{}"),
                ElementsAre("servicePolicyConfig 2:Q", "servicePolicyConfig 2:Q"));
  }
  EXPECT_THAT(d.heardFrom("remove", "/service-policies/2:Q"),
              ElementsAre("servicePolicyConfig 2:Q"));
  EXPECT_FALSE(policy(d, 2, "Q"));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(ServicePolicies, AnInterfaceIsAMapEntry) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/service-policies/0:P/interfaces/Ethernet7~11", "true"),
              ElementsAre("intfIds 0:P Ethernet7/1"));
  EXPECT_THAT(d.heardFrom("replace", "/service-policies/0:P/interfaces/Ethernet7~11", "true"),
              IsEmpty());
  EXPECT_THAT(d.heardFrom("replace", "/service-policies/0:P/interfaces/Ethernet7~11", "false"),
              ElementsAre("intfIds 0:P Ethernet7/1"));
  EXPECT_THAT(d.heardFrom("remove", "/service-policies/0:P/interfaces/Ethernet7~11"),
              ElementsAre("intfIds 0:P Ethernet7/1"));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(ServicePolicies, InterfacesAsAWholeAreDoneOneByOne) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("replace", "/service-policies/1:P/interfaces",
                          R"({"Ethernet3": true, "Ethernet2": true})"),
              ElementsAre("intfIds 1:P Ethernet1", "intfIds 1:P Ethernet3"));
  EXPECT_THAT(d.heardFrom("remove", "/service-policies/1:P/interfaces"),
              ElementsAre("intfIds 1:P Ethernet2", "intfIds 1:P Ethernet3"));
  EXPECT_THAT(d.heardFrom("remove", "/service-policies/1:P/interfaces"), IsEmpty());
}

TEST(ServicePolicies, TheSectionAsAWholeIsDonePolicyByPolicy) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("add", "/service-policies", R"({"9:Z": {}, "0:P": {}})"),
              ElementsAre("servicePolicyConfig 1:P", "servicePolicyConfig 9:Z",
                          "servicePolicyConfig 0:P", "servicePolicyConfig 0:P"));
  EXPECT_THAT(d.heardFrom("remove", "/service-policies"),
              ElementsAre("servicePolicyConfig 0:P", "servicePolicyConfig 9:Z"));
}

TEST(ServicePolicies, TestSeesWhatTheNativeSideHolds) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("test", "/service-policies", R"({"0:P": {"interfaces": {}},
      "1:P": {"interfaces": {"Ethernet1": true, "Ethernet2": true}}})"),
            "");
  EXPECT_EQ(d.reportOf("test", "/service-policies/1:P/interfaces/Ethernet1", "false"),
            "refused: /service-policies/1:P/interfaces/Ethernet1: test failed: expected false, and "
            "true is there");
  EXPECT_EQ(d.reportOf("test", "/service-policies/1:P/interfaces/Ethernet9", "true"),
            "refused: /service-policies/1:P/interfaces/Ethernet9: nothing is there");
}

TEST(ServicePolicies, RefuseChangesThatDoNotFit) {
  HostDevice d(device);
  EXPECT_EQ(d.reportOf("add", "/service-policies/P", "{}"),
            "refused: /service-policies/P: \"P\" is not a service policy: a tag from 0 to 65535, a "
            "colon and the name of a policy map");
  EXPECT_EQ(d.reportOf("add", "/service-policies/9:P/interfaces/E", "true"),
            "refused: /service-policies/9:P/interfaces/E: nothing is at /service-policies/9:P");
  EXPECT_EQ(d.reportOf("add", "/service-policies/1:P/interfaces/E", "\"yes\""),
            "refused: /service-policies/1:P/interfaces/E: expected true or false, not \"yes\"");
}

}  // namespace
}  // namespace host::servicePoliciesTest
