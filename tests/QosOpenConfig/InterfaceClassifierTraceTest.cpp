// What the service policies' machines trace.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "tests/support/ServicePolicyDevice.h"
#include "tests/support/ServicePolicyFixture.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::interfaceClassifierTraceTest {
namespace {

using support::intf;
using support::ServicePolicyDevice;
using support::TraceCapture;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

using namespace support::servicePolicyCases;

// ===== Traces

constexpr const char* decoder =
    "2 std::pair<Velmo::String, Velmo::String> QosOc::classifierGroupFromPmapName(const "
    "Velmo::String&): pmapName = ";
constexpr const char* root2 = "2 void QosOc::InterfaceClassifierKivToOcSm::";
constexpr const char* policy2 = "2 void QosOc::ServicePolicySm::";

TEST(InterfaceClassifierTrace, AStartTracesEachStepInOrderAtLevelTwo) {
  ServicePolicyDevice device;
  device.add(mapAB, {"Ethernet1"});
  TraceCapture trace({0, 2, 8, 9});
  device.start();
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(
          root2 + std::string("handleInitialized() (  ) "),
          root2 +
              std::string("handleServicePolicyConfig(const Qos::ServicePolicyKey&): pmapName = ") +
              mapAB,
          policy2 + std::string("handleInitialized(): pmapName = ") + mapAB,
          root2 + std::string("addIntfClassifiers(const Velmo::String&, const Velmo::String&): "
                              "interfaceId = Ethernet1"),
          decoder + std::string(mapAB),
          "2 QosOc::Config::InterfaceInputClassifier "
          "QosOc::InterfaceClassifierKivToOcSm::getIntfClassifier(const Velmo::String&, "
          "QosOc::Classifier::Type) const, classifierName = a, classifierType = classifierTypeIpv4",
          "2 QosOc::Config::InterfaceInputClassifier "
          "QosOc::InterfaceClassifierKivToOcSm::getIntfClassifier(const Velmo::String&, "
          "QosOc::Classifier::Type) const, classifierName = b, classifierType = classifierTypeIpv6",
          decoder + std::string(mapAB), decoder + std::string(mapAB)));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST_F(ServicePolicyEvents, AnUnboundInterfaceTracesEachFamilyAtLevelEightInTypeOrder) {
  const auto policy = add(mapAB, {"Ethernet1"});
  TraceCapture trace({0, 2, 8, 9});
  policy->intfIdsDel(intf("Ethernet1"));
  const auto deletion = [](const char* type) {
    return std::string(
               "8 void QosOc::InterfaceClassifierKivToOcSm::delIntfClassifiers(const "
               "Velmo::String&, const Velmo::String&), deleting the classifier of type: ") +
           type + " from intf = Ethernet1";
  };
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(policy2 + std::string("handleIntfId(const Nerit::IntfId&): intfId = Ethernet1"),
                  root2 + std::string("delIntfClassifiers(const Velmo::String&, const "
                                      "Velmo::String&): interfaceId = Ethernet1"),
                  decoder + std::string(mapAB), deletion("classifierTypeIpv4"),
                  deletion("classifierTypeIpv6")));
}

TEST_F(ServicePolicyEvents, UnbindingFromAnInterfaceThatIsNotThereTracesTheEntryAlone) {
  TraceCapture trace({0, 2, 8, 9});
  root->delIntfClassifiers("Ethernet1", mapA);
  EXPECT_THAT(trace.lines(), SizeIs(1));
}

TEST_F(ServicePolicyEvents, ABindingThatStaysTracesNoDeletion) {
  add("__yang_[IPV4__c]", {"Ethernet1"});
  TraceCapture trace({0, 2, 8, 9});
  root->delIntfClassifiers("Ethernet1", mapA);
  EXPECT_THAT(trace.lines(), SizeIs(2)) << "entry and decoder";
}

TEST_F(ServicePolicyEvents, ARemovedServicePolicyTracesItsPrepareToDie) {
  add(mapA, {});
  TraceCapture trace({0, 2, 8, 9});
  remove(mapA);
  EXPECT_THAT(
      trace.linesWithoutAddresses(),
      ElementsAre(root2 +
                      std::string("handleServicePolicyConfig(const Qos::ServicePolicyKey&): "
                                  "pmapName = ") +
                      mapA,
                  policy2 + std::string("doPrepareToDie(): pmapName = ") + mapA));
}

TEST_F(ServicePolicyEvents, AnOrdinaryPolicyMapTracesTheEntryAlone) {
  TraceCapture trace({0, 2, 8, 9});
  add("plain", {"Ethernet1"});
  EXPECT_THAT(trace.lines(), ElementsAre(testing::HasSubstr(": pmapName = plain")));
}

TEST(InterfaceClassifierTrace, TheRootsSweepHandsOverTheTextThatItBuilds) {
  ServicePolicyDevice device;
  device.earlier("Ethernet1", "a", "b");
  device.earlier("Ethernet2", "a");
  device.earlier("Ethernet3", nullptr, "b");
  device.earlier("Ethernet4", nullptr);
  TraceCapture trace({2});
  device.start();
  EXPECT_THAT(trace.linesWith("classifierGroupFromPmapName"),
              UnorderedElementsAre(decoder + std::string("__yang_[IPV4__a]_[IPV6__b]"),
                                   decoder + std::string("__yang_[IPV4__a]"),
                                   decoder + std::string("__yang_[IPV6__b]"),
                                   decoder + std::string("__yang")));
}

TEST(InterfaceClassifierTrace, TheSweepsPassByWhatIsExplained) {
  ServicePolicyDevice device;
  device.add(mapA, {"Ethernet1"});
  device.earlier("Ethernet1", "a");
  device.interfaces->interfaceIs("Ethernet2");
  TraceCapture trace({2});
  device.start();
  EXPECT_THAT(trace.linesWith("delIntfClassifiers"), IsEmpty());
}

TEST_F(ServicePolicyEvents, OnlyTheLevelsTwoAndEightAreUsedAndEightTellsOfDeletionsAlone) {
  TraceCapture trace({0, 1, 3, 4, 5, 6, 7, 8, 9});
  add(mapAB, {"Ethernet1"});
  add("plain", {"Ethernet1"});
  EXPECT_THAT(trace.lines(), IsEmpty());
  remove(mapAB);
  EXPECT_THAT(trace.lines(), SizeIs(2));
  EXPECT_THAT(trace.lines(), testing::Each(testing::HasSubstr("deleting the classifier of type")));
}

}  // namespace
}  // namespace QosOc::interfaceClassifierTraceTest
