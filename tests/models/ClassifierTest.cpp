// The OpenConfig classifier records.
#include "models/openconfig/Classifier.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>

namespace QosOc::Config::classifierTest {
namespace {

TEST(Term, HasItsIdAndNothingElseAtFirst) {
  const Term term("voice");
  EXPECT_EQ(term.id, "voice");
  EXPECT_EQ(term.configId, "");
  EXPECT_FALSE(term.conditions.has_value());
  EXPECT_FALSE(term.actions.has_value());
}

TEST(Term, PrintsAllItHolds) {
  Term term("voice");
  term.configId = "voice";
  std::ostringstream bare;
  bare << term;
  EXPECT_EQ(bare.str(), "{id voice, configId voice, conditions (absent), actions (absent)}");
  term.conditions = TermConditions();
  term.conditions->ipv4.dscp = 46;
  term.conditions->ipv6.dscpSetPush(10);
  term.conditions->ipv6.dscpSetPush(12);
  term.actions = TermActions{{"expedited"}};
  std::ostringstream full;
  full << term;
  EXPECT_EQ(full.str(),
            "{id voice, configId voice, conditions {ipv4 {dscp 46, dscpSet []}, ipv6 {dscp "
            "(absent), dscpSet [10, 12]}}, actions {targetGroup expedited}}");
}

TEST(TermConditions, AreEmptyInBothFamiliesAtFirst) {
  const TermConditions conditions;
  EXPECT_FALSE(conditions.ipv4.dscp.has_value());
  EXPECT_TRUE(conditions.ipv4.dscpSet.empty());
  EXPECT_EQ(conditions.ipv4, conditions.ipv6);
  EXPECT_FALSE(conditions);
}

TEST(TermConditionsIpConfig, IsMadeFromItsDscp) {
  const TermConditionsIpConfig config(46);
  EXPECT_EQ(config.dscp, static_cast<unsigned char>(46));
  EXPECT_TRUE(config.dscpSet.empty());
  EXPECT_TRUE(config);
}

TEST(TermConditionsIpConfig, PushKeepsOrderAndRepeats) {
  TermConditionsIpConfig config;
  for (const unsigned char value : {46, 34, 46}) config.dscpSetPush(value);
  EXPECT_THAT(config.dscpSet, testing::ElementsAre(46, 34, 46));
}

TEST(Terms, AMissingTermReadsAsTheDefaultWhateverTheId) {
  const auto terms = Rok::make<Terms>();
  EXPECT_FALSE(terms->term("voice"));
  EXPECT_EQ(terms->term("voice"), Term());
  EXPECT_EQ(terms->term(""), Term());
}

TEST(Terms, TermIsReplacesTheWholeRecordUnderItsId) {
  const auto terms = Rok::make<Terms>();
  Term term("voice");
  term.conditions = TermConditions();
  terms->termIs(term);
  terms->termIs(Term("voice"));
  EXPECT_EQ(terms->term("voice"), Term("voice"));
  EXPECT_EQ(terms->term().members(), 1u);
}

TEST(Terms, ReadModifyWriteKeepsTheFieldsThatItDidNotTouch) {
  const auto terms = Rok::make<Terms>();
  Term term("voice");
  term.conditions = TermConditions();
  term.conditions->ipv4.dscp = 46;
  terms->termIs(term);
  Term copy = terms->term("voice");
  copy.actions = TermActions{{"expedited"}};
  terms->termIs(copy);
  EXPECT_EQ(terms->term("voice").conditions->ipv4.dscp, static_cast<unsigned char>(46));
  EXPECT_EQ(terms->term("voice").actions->config.targetGroup, "expedited");
}

TEST(Terms, TermDelGivesTheRemovedValueBack) {
  const auto terms = Rok::make<Terms>();
  terms->termIs(Term("voice"));
  EXPECT_EQ(terms->termDel("voice"), Term("voice"));
  EXPECT_EQ(terms->termDel("voice"), Term());
  EXPECT_EQ(terms->term().members(), 0u);
}

TEST(ClassifiersDir, ClassifierIsKeepsWhatIsThere) {
  const auto dir = Rok::make<ClassifiersDir>();
  const auto made = dir->classifierIs("edge-in");
  made->termsIs()->termIs(Term("voice"));
  made->configIs({"edge-in", QosOc::Classifier::classifierTypeIpv6});
  const auto again = dir->classifierIs("edge-in");
  EXPECT_EQ(again, made);
  EXPECT_TRUE(again->terms()->term("voice"));
  again->configIs({"edge-in", QosOc::Classifier::classifierTypeIpv4});
  EXPECT_TRUE(again->terms()->term("voice")) << "configIs replaces the config alone";
  EXPECT_EQ(again->config().type, QosOc::Classifier::classifierTypeIpv4);
}

TEST(ClassifiersDir, ALookupNeverCreates) {
  const auto dir = Rok::make<ClassifiersDir>();
  EXPECT_EQ(dir->classifier("edge-in"), nullptr);
  EXPECT_EQ(dir->classifier().members(), 0u);
}

TEST(ClassifiersDir, ClassifierDelRemovesTheClassifierWithItsTermsAndNothingElse) {
  const auto dir = Rok::make<ClassifiersDir>();
  dir->classifierIs("edge-in")->termsIs();
  dir->classifierIs("core-in");
  dir->classifierDel("edge-in");
  dir->classifierDel("edge-in");
  EXPECT_EQ(dir->classifier("edge-in"), nullptr);
  EXPECT_NE(dir->classifier("core-in"), nullptr);
}

TEST(Classifier, TermsIsCreatesOnceAndTermsDelRemoves) {
  const auto classifier = Rok::make<Classifier>("edge-in");
  EXPECT_EQ(classifier->terms(), nullptr);
  const auto terms = classifier->termsIs();
  EXPECT_EQ(classifier->termsIs(), terms);
  classifier->termsDel();
  EXPECT_EQ(classifier->terms(), nullptr);
  EXPECT_NE(classifier->termsIs(), terms);
}

TEST(ClassifierType, HasTheValuesOfTheModel) {
  EXPECT_EQ(static_cast<int>(QosOc::Classifier::classifierTypeIpv4), 0);
  EXPECT_EQ(static_cast<int>(QosOc::Classifier::classifierTypeIpv6), 1);
}

}  // namespace
}  // namespace QosOc::Config::classifierTest
