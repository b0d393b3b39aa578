// What the ACLs' machines trace.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <utility>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/AclDevice.h"
#include "tests/support/AclFixture.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::aclTraceTest {
namespace {

using Acl::aclTypeIpv6;
using support::AclDevice;
using support::addRule;
using support::conditionsText;
using support::dscp;
using support::removeRule;
using support::subConfig;
using support::TraceCapture;
using support::trafficClass;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

using namespace support::aclCases;

// ===== Traces

constexpr const char* decoder =
    "8 std::pair<Velmo::String, Velmo::String> "
    "QosOc::classifierKeyFromConfigObjName(const Velmo::String&) ( ";

std::string addressOf(const void* object) {
  std::ostringstream out;
  out << object;
  return out.str();
}

TEST_F(AclTranslation, AnIpv4RuleTracesEntryDecoderCreationAndAtLevelZeroTheRule) {
  const auto sub = add(voiceName);
  const std::string self = addressOf(machine(voiceName)->aclSubConfigSm().get());
  TraceCapture trace({0, 2, 8, 9});
  addRule(*sub, 10, dscp(46));
  EXPECT_THAT(
      trace.lines(),
      ElementsAre(
          "8 " + self + " void QosOc::AclSubConfigSm::handleRuleBySequence(uint32_t) ( 10 ) ",
          decoder + std::string(voiceName),
          "8 " + self +
              "  Creating classifier named: edge-in and termId named: voice of type: "
              "classifierTypeIpv4",
          "0 " + self + " Rule Config: {dscp 46, matchDscp true}"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST_F(AclTranslation, ARemovedIpv4RuleIsTracedAsADefaultRule) {
  const auto sub = add(voiceName, {{10, dscp(46)}});
  TraceCapture trace({0});
  removeRule(*sub, 10);
  EXPECT_THAT(trace.lines(), ElementsAre(HasSubstr("Rule Config: {dscp 0, matchDscp false}")));
}

TEST_F(AclTranslation, AnIpv6RuleIsNotShown) {
  const auto sub = add6(voiceName);
  TraceCapture trace({0, 2, 8, 9});
  addRule(*sub, 10, trafficClass(0xb8));
  EXPECT_THAT(trace.lines(),
              ElementsAre(HasSubstr("handleRuleBySequence(uint32_t) ( 10 ) "), StartsWith(decoder),
                          HasSubstr(" Creating classifier named: edge-in and termId "
                                    "named: voice of type: classifierTypeIpv6")));
}

TEST_F(AclTranslation, ARuleOfAForeignAclTracesEntryAndDecoderAlone) {
  const auto sub = add("MGMT-SSH");
  const auto placeholder = add("__yang_[edge-in]_[]");
  TraceCapture trace({0, 2, 8, 9});
  addRule(*sub, 10, dscp(46));
  addRule(*placeholder, 10, dscp(46));
  EXPECT_THAT(
      trace.lines(),
      ElementsAre(HasSubstr("handleRuleBySequence"), decoder + std::string("MGMT-SSH"),
                  HasSubstr("handleRuleBySequence"), decoder + std::string("__yang_[edge-in]_[]")));
}

TEST_F(AclTranslation, DeletingAnAclTracesWhatItDeletes) {
  add(voiceName, {{10, dscp(46)}});
  const std::string type = addressOf(types().get());
  TraceCapture trace({0, 2, 8, 9});
  remove(voiceName);
  EXPECT_THAT(
      trace.lines(),
      ElementsAre("8 " + type + " void QosOc::AclTypeSm::handleAclConfig(const Velmo::String&) ( " +
                      voiceName + " ) ",
                  "8 AclConfigSm( __yang_[edge-in]_[voice],aclTypeIpv4 ):: void "
                  "QosOc::AclConfigSm::doPrepareToDie() (  ) ",
                  decoder + std::string(voiceName),
                  "8 AclConfigSm( __yang_[edge-in]_[voice],aclTypeIpv4 ):: Deleting conditions for "
                  "termId named: voice for classifier named: edge-in"));
}

TEST_F(AclTranslation, TheDeletionIsTracedAlsoWhenTheTermIsNotThereAndNeverForAForeignAcl) {
  bare(voiceName);
  bare("MGMT-SSH");
  TraceCapture trace({8});
  remove(voiceName);
  remove("MGMT-SSH");
  EXPECT_THAT(trace.linesWith("Deleting"),
              ElementsAre(HasSubstr("Deleting conditions for termId named: voice for classifier "
                                    "named: edge-in")));
}

TEST_F(AclTranslation, ASubConfigurationTracesTheStaleDeletionWhateverItsRulesAndName) {
  bare(voiceName);
  bare("MGMT-SSH");
  const std::string entry = "void QosOc::AclSubConfigSm::handleInitialized() (  ) ";
  {
    TraceCapture trace({0, 2, 8, 9});
    acl(voiceName)->aclSubConfigIs(subConfig({{10, dscp(46)}}));
    EXPECT_THAT(trace.lines(),
                ElementsAre("8 AclConfigSm( __yang_[edge-in]_[voice],aclTypeIpv4 ):: void "
                            "QosOc::AclConfigSm::handleAclSubConfig() (  ) ",
                            HasSubstr(entry), HasSubstr("handleRuleBySequence"),
                            StartsWith(decoder), HasSubstr("Creating"), HasSubstr("Rule Config: "),
                            "8 " + addressOf(machine(voiceName)->aclSubConfigSm().get()) +
                                " Deleting stale config for last rule deletion"))
        << "after the rules, and no second look at the name";
  }
  for (const char* name : {voiceName, "MGMT-SSH"}) {
    TraceCapture trace({0, 2, 8, 9});
    acl(name)->aclSubConfigIs(subConfig());
    EXPECT_THAT(trace.lines(),
                ElementsAre(HasSubstr("handleAclSubConfig"), HasSubstr(entry),
                            HasSubstr("Deleting stale config for last rule deletion"),
                            decoder + std::string(name)));
  }
  TraceCapture trace({0, 2, 8, 9});
  acl("MGMT-SSH")->aclSubConfigIs(subConfig({{10, dscp(46)}}));
  EXPECT_EQ(trace.linesWith("Deleting stale config for last rule deletion").size(), 1u);
}

TEST_F(AclTranslation, LosingTheSubConfigurationTracesItsEntryAlone) {
  add(voiceName, {{10, dscp(46)}});
  TraceCapture trace({0, 2, 8, 9});
  acl(voiceName)->aclSubConfigIs(nullptr);
  EXPECT_THAT(trace.lines(), ElementsAre(HasSubstr("handleAclSubConfig() (  ) ")));
}

TEST(AclTrace, EveryStepOfAStartOpensWithItsEntryLineAndTheSweepIsSilent) {
  AclDevice device;
  device.earlier("core-in", termOf("voice"));
  device.bare(voiceName);
  TraceCapture trace({0, 2, 8, 9});
  device.start();
  EXPECT_THAT(trace.lines(),
              ElementsAre("8 " + addressOf(device.root.get()) +
                              " void QosOc::AclKivToOcSm::handleInitialized() (  ) ",
                          HasSubstr("void QosOc::AclTypeSm::handleInitialized() (  ) "),
                          HasSubstr("void QosOc::AclTypeSm::handleAclConfig("),
                          HasSubstr("void QosOc::AclConfigSm::handleInitialized() (  ) "),
                          HasSubstr("void QosOc::AclConfigSm::handleAclSubConfig() (  ) "),
                          HasSubstr("void QosOc::AclTypeSm::handleInitialized() (  ) ")));
  EXPECT_EQ(conditionsText(device.term("core-in", "voice")), "default") << "and yet it swept";
}

TEST_F(AclTranslation, ATypesPrepareToDieOpensWithItsEntryLine) {
  TraceCapture trace({0, 2, 8, 9});
  types()->doPrepareToDie();
  EXPECT_THAT(trace.lines(), ElementsAre("8 " + addressOf(types().get()) +
                                         " void QosOc::AclTypeSm::doPrepareToDie() (  ) "));
}

TEST_F(AclTranslation, AMachinePrintsAsItsNameAndType) {
  add6(voiceName);
  std::ostringstream out;
  out << *machine(voiceName, aclTypeIpv6);
  EXPECT_EQ(out.str(), "AclConfigSm( __yang_[edge-in]_[voice],aclTypeIpv6 )::");
}

}  // namespace
}  // namespace QosOc::aclTraceTest
