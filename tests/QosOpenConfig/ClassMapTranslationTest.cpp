// Class maps into classifiers and terms.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/ClassMapDevice.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::classMapTranslationTest {
namespace {

using Qos::matchIpAccessGroup;
using Qos::matchIpv6AccessGroup;
using support::classMap;
using support::ClassMapDevice;
using support::Model;
using support::TraceCapture;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr auto unknownOption = Qos::ClassMapMatchOption{9};

Config::TermConditions voiceConditions() {
  Config::TermConditions conditions;
  conditions.ipv4.dscp = 46;
  return conditions;
}

// ===== The example

struct EdgeIn : testing::Test, ClassMapDevice {
  EdgeIn() {
    start();
    add("__yang_[edge-in]_[]");
    add("__yang_[edge-in]_[voice]");
    add("__yang_[edge-in]_[video]");
  }
};

TEST_F(EdgeIn, PlaceholderAndTermsMakeAClassifierWithItsTerms) {
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"video", "voice"}}}));
}

TEST_F(EdgeIn, DeletingATermsClassMapRemovesThatTerm) {
  remove("__yang_[edge-in]_[voice]");
  EXPECT_EQ(model(), (Model{{"edge-in/v4", {"video"}}}));
}

TEST_F(EdgeIn, DeletingTheTermsInAnyOrderAndThenThePlaceholderLeavesNothing) {
  for (const bool voiceFirst : {true, false}) {
    ClassMapDevice device;
    device.start();
    for (const char* term : {"", "voice", "video"}) {
      device.add(Rok::String("__yang_[edge-in]_[").append(term).append("]"));
    }
    device.remove(voiceFirst ? "__yang_[edge-in]_[voice]" : "__yang_[edge-in]_[video]");
    device.remove(voiceFirst ? "__yang_[edge-in]_[video]" : "__yang_[edge-in]_[voice]");
    EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"-"}}}));
    device.remove("__yang_[edge-in]_[]");
    EXPECT_EQ(device.model(), Model{});
  }
}

TEST_F(EdgeIn, DeletingThePlaceholderFirstRemovesTheClassifierWithItsTermsAtOnce) {
  remove("__yang_[edge-in]_[]");
  EXPECT_EQ(model(), Model{});
  remove("__yang_[edge-in]_[voice]");
  remove("__yang_[edge-in]_[video]");
  EXPECT_EQ(model(), Model{});
}

TEST_F(EdgeIn, AMatchAfterThePlaceholderWentBringsTheClassifierBackUntilTheNextStart) {
  const auto video = *classMaps->cmap().find("__yang_[edge-in]_[video]");
  remove("__yang_[edge-in]_[]");
  video->matchIs(matchIpv6AccessGroup, Rok::make<Qos::ClassMapMatch>());
  EXPECT_EQ(model(), (Model{{"edge-in/v6", {"video"}}}));
  remove("__yang_[edge-in]_[video]");
  EXPECT_EQ(model(), (Model{{"edge-in/v6", {"-"}}}));
  restart();
  EXPECT_EQ(model(), Model{});
}

TEST(ClassMapTranslation, ATermsClassMapBeforeItsPlaceholderMakesTheClassifierItself) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]");
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"voice"}}}));
  device.add("__yang_[edge-in]_[]");
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"voice"}}}));
}

TEST(ClassMapTranslation, WithoutAPlaceholderClassifierAndTermStandUntilTheNextStart) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]");
  device.stop();
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"voice"}}}));
  device.start();
  EXPECT_EQ(device.model(), Model{});
}

// ===== What a class map writes

TEST(ClassMapTranslation, ATermHasItsIdTwiceAndNeitherConditionsNorActions) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]");
  const Config::Term term = device.classifiers->classifier("edge-in")->terms()->term("voice");
  EXPECT_EQ(term.id, "voice");
  EXPECT_EQ(term.configId, "voice");
  EXPECT_FALSE(term.conditions.has_value());
  EXPECT_FALSE(term.actions.has_value());
}

TEST(ClassMapTranslation, TheConfigHoldsTheClassifiersNameAndType) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[]", {matchIpv6AccessGroup});
  EXPECT_EQ(device.classifiers->classifier("edge-in")->config(),
            (Config::ClassifierConfig{"edge-in", Classifier::classifierTypeIpv6}));
}

TEST(ClassMapTranslation, APlaceholderMakesNoTerms) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[]");
  EXPECT_EQ(device.classifiers->classifier("edge-in")->terms(), nullptr);
}

TEST(ClassMapTranslation, OrdinaryAndMalformedNamesAreMirroredAndHaveNoEffect) {
  ClassMapDevice device;
  device.start();
  for (const char* name : {"MGMT-SSH", "__yang_[]_[]", "__yang_[a]b]_[c]", ""}) {
    device.add(name);
    EXPECT_NE(device.machine(name), nullptr) << name;
  }
  EXPECT_EQ(device.model(), Model{});
  for (const char* name : {"MGMT-SSH", "__yang_[]_[]", "__yang_[a]b]_[c]", ""}) {
    device.remove(name);
    EXPECT_EQ(device.machine(name), nullptr) << name;
  }
  EXPECT_EQ(device.model(), Model{});
}

TEST(ClassMapTranslation, AClassMapWithoutMatchStatementsCreatesNothing) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]", {});
  device.add("__yang_[core-in]_[]", {});
  EXPECT_EQ(device.model(), Model{});
}

TEST(ClassMapTranslation, ATermIsTakenBackFromTheClassifierThatStandsNow) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]");
  device.classifiers->classifierDel("edge-in");
  device.earlier("edge-in", {"voice"});
  device.remove("__yang_[edge-in]_[voice]");
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"-"}}}));
}

TEST(ClassMapTranslation, DeletingAClassMapThatCreatedNothingHasNoEffect) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]", {});
  device.remove("__yang_[edge-in]_[voice]");
  EXPECT_EQ(device.model(), Model{});

  device.add("__yang_[edge-in]_[]");
  device.add("__yang_[edge-in]_[voice]", {});
  device.remove("__yang_[edge-in]_[voice]");
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"-"}}}));
}

TEST(ClassMapTranslation, DeletingAClassMapWithoutMatchesRemovesATermThatAnotherWriterMade) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]", {});
  device.earlier("edge-in", {"voice", "video"});
  device.remove("__yang_[edge-in]_[voice]");
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"video"}}}));
}

TEST(ClassMapTranslation, AMatchThatComesLaterCreatesTheTerm) {
  ClassMapDevice device;
  device.start();
  const auto voice = device.add("__yang_[edge-in]_[voice]", {});
  voice->matchIs(matchIpAccessGroup, Rok::make<Qos::ClassMapMatch>());
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"voice"}}}));
}

TEST(ClassMapTranslation, RemovingAMatchWritesTheClassifierAgainAndTakesNothingBack) {
  ClassMapDevice device;
  device.start();
  const auto voice =
      device.add("__yang_[edge-in]_[voice]", {matchIpAccessGroup, matchIpv6AccessGroup});
  voice->matchDel(matchIpv6AccessGroup);
  EXPECT_EQ(device.model(), (Model{{"edge-in/v6", {"voice"}}}));
  voice->matchDel(matchIpAccessGroup);
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"voice"}}}));
}

TEST(ClassMapTranslation, RemovingAMatchBringsBackATermThatHadGone) {
  ClassMapDevice device;
  device.start();
  const auto voice = device.add("__yang_[edge-in]_[voice]");
  device.classifiers->classifierDel("edge-in");
  voice->matchDel(matchIpAccessGroup);
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"voice"}}}));
}

TEST(ClassMapTranslation, TheLastMatchHandledDecidesTheType) {
  ClassMapDevice device;
  device.start();
  const auto voice = device.add("__yang_[edge-in]_[voice]", {matchIpv6AccessGroup});
  voice->matchIs(matchIpAccessGroup, Rok::make<Qos::ClassMapMatch>());
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"voice"}}}));
}

// Two options at start-up: the type is that of the last one in the walk, whatever the order is.
TEST(ClassMapTranslation, WithBothOptionsAtStartTheLastOneOfTheWalkDecidesTheType) {
  std::vector<std::string> seen;
  for (std::uint32_t seed = 0; seed < 20; ++seed) {
    Rok::HashHelper::orderSeedIs(seed);
    ClassMapDevice device;
    const auto voice =
        device.add("__yang_[edge-in]_[voice]", {matchIpAccessGroup, matchIpv6AccessGroup});
    device.add("__yang_[edge-in]_[]", {});
    Qos::ClassMapMatchOption last{};
    for (auto i = voice->match().iterator(); i; ++i) last = i.key();
    device.start();
    const std::string label = ClassMapDevice::label(*device.classifiers->classifier("edge-in"));
    EXPECT_EQ(label, last == matchIpAccessGroup ? "edge-in/v4" : "edge-in/v6");
    seen.push_back(label);
  }
  Rok::HashHelper::orderSeedIs(0);
  EXPECT_THAT(seen, testing::Contains("edge-in/v4"));
  EXPECT_THAT(seen, testing::Contains("edge-in/v6"));
}

TEST(ClassMapTranslation, AnUnknownMatchOptionMakesAnIpv4ClassifierAndALevelZeroLine) {
  ClassMapDevice device;
  device.start();
  TraceCapture trace({0});
  device.add("__yang_[edge-in]_[voice]", {unknownOption});
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"voice"}}}));
  EXPECT_THAT(
      trace.lines(),
      ElementsAre("0 ClassMapSm( __yang_[edge-in]_[voice],mapQos ):: ClassMap match type 9 does "
                  "not correspond to any Classifier Type"));
}

TEST(ClassMapTranslation, AMatchChangesNeitherConditionsNorActionsOfItsTerm) {
  ClassMapDevice device;
  device.start();
  const auto voice = device.add("__yang_[edge-in]_[voice]");
  const auto classifier = device.classifiers->classifier("edge-in");
  Config::Term term = classifier->terms()->term("voice");
  term.conditions = voiceConditions();
  term.actions = Config::TermActions{{"expedited"}};
  classifier->terms()->termIs(term);

  voice->matchIs(matchIpv6AccessGroup, Rok::make<Qos::ClassMapMatch>());
  EXPECT_EQ(classifier->terms()->term("voice"), term);
  EXPECT_EQ(ClassMapDevice::label(*classifier), "edge-in/v6") << "the config is written again";
}

TEST(ClassMapTranslation, DeletingAClassMapDropsItsTermWithConditionsAndActions) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]");
  const auto classifier = device.classifiers->classifier("edge-in");
  Config::Term term = classifier->terms()->term("voice");
  term.conditions = voiceConditions();
  classifier->terms()->termIs(term);
  device.remove("__yang_[edge-in]_[voice]");
  EXPECT_EQ(classifier->terms(), nullptr);
}

TEST(ClassMapTranslation, ClassifierTypesFollowTheMatchOption) {
  ClassMapDevice device;
  device.start();
  device.add("plain");
  const auto sm = device.machine("plain");
  EXPECT_EQ(sm->classifierTypeFromMatchOption(matchIpAccessGroup), Classifier::classifierTypeIpv4);
  EXPECT_EQ(sm->classifierTypeFromMatchOption(matchIpv6AccessGroup),
            Classifier::classifierTypeIpv6);
  for (unsigned option = 0; option < 256; ++option) {
    if (option == 2) continue;
    EXPECT_EQ(sm->classifierTypeFromMatchOption(static_cast<Qos::ClassMapMatchOption>(option)),
              Classifier::classifierTypeIpv4);
  }
}

// ===== Start and restart

TEST(ClassMapTranslation, AStartBuildsTheOutputOfWhatExists) {
  ClassMapDevice device;
  device.add("__yang_[edge-in]_[]");
  device.add("__yang_[edge-in]_[voice]");
  device.add("__yang_[core-in]_[]", {matchIpv6AccessGroup});
  device.start();
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"voice"}}, {"core-in/v6", {"-"}}}));
}

TEST(ClassMapTranslation, AStartWithoutClassMapsSweepsEverything) {
  ClassMapDevice device;
  device.earlier("edge-in", {"voice"});
  device.earlier("core-in");
  device.start();
  EXPECT_EQ(device.model(), Model{});
}

TEST(ClassMapTranslation, AClassifierWithoutPlaceholderGoesAtStartWhoeverWroteItsTerms) {
  ClassMapDevice device;
  const auto edge = device.earlier("edge-in", {"voice", "video"});
  Config::Term fromAcl = edge->terms()->term("video");
  fromAcl.conditions = voiceConditions();
  edge->terms()->termIs(fromAcl);
  device.add("__yang_[edge-in]_[voice]");
  device.start();
  EXPECT_EQ(device.model(), Model{});
  EXPECT_NE(device.machine("__yang_[edge-in]_[voice]"), nullptr)
      << "its machine stands all the same";
}

TEST(ClassMapTranslation, ATermWithoutItsClassMapGoesAtStart) {
  ClassMapDevice device;
  device.earlier("edge-in", {"voice", "video", "best-effort"});
  device.add("__yang_[edge-in]_[]");
  device.add("__yang_[edge-in]_[video]");
  device.start();
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"video"}}}));
}

TEST(ClassMapTranslation, ATermsClassMapCountsAtStartAlsoWithoutMatchStatements) {
  ClassMapDevice device;
  device.earlier("edge-in", {"voice"});
  device.add("__yang_[edge-in]_[]", {});
  device.add("__yang_[edge-in]_[voice]", {});
  device.start();
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"voice"}}}));
}

TEST(ClassMapTranslation, TermsThatLoseTheirLastEntryAtStartGoToo) {
  ClassMapDevice device;
  const auto edge = device.earlier("edge-in", {"voice"});
  device.add("__yang_[edge-in]_[]");
  device.start();
  EXPECT_EQ(edge->terms(), nullptr);
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"-"}}}));
}

TEST(ClassMapTranslation, EmptyTermsOfAnEarlierLifeGoAtStart) {
  ClassMapDevice device;
  device.earlier("edge-in")->termsIs();
  device.add("__yang_[edge-in]_[]", {});
  device.start();
  EXPECT_EQ(device.model(), (Model{{"edge-in/v4", {"-"}}}));
}

TEST(ClassMapTranslation, TheSweepLeavesTheConfigOfASurvivorAlone) {
  ClassMapDevice device;
  device.earlier("edge-in", {}, Classifier::classifierTypeIpv6)->configIs({"stale-name", {}});
  device.add("__yang_[edge-in]_[]", {});
  device.start();
  EXPECT_EQ(device.classifiers->classifier("edge-in")->config(),
            (Config::ClassifierConfig{"stale-name", {}}));
}

TEST(ClassMapTranslation, ARestartKeepsTermsWithTheirConditions) {
  ClassMapDevice device;
  device.add("__yang_[edge-in]_[]");
  device.add("__yang_[edge-in]_[voice]");
  device.start();
  const auto terms = device.classifiers->classifier("edge-in")->terms();
  Config::Term term = terms->term("voice");
  term.conditions = voiceConditions();
  terms->termIs(term);
  device.restart();
  EXPECT_EQ(device.classifiers->classifier("edge-in")->terms()->term("voice"), term);
}

TEST(ClassMapTranslation, SweepsOfManyClassifiersDoNotInterfere) {
  for (std::uint32_t seed = 0; seed < 8; ++seed) {
    Rok::HashHelper::orderSeedIs(seed);
    ClassMapDevice device;
    Model kept;
    for (int n = 0; n < 200; ++n) {
      const std::string name = "c" + std::to_string(n);
      device.earlier(name, {"voice", "video"});
      if (n % 3 == 0) continue;
      device.add("__yang_[" + name + "]_[]");
      if (n % 3 == 1) device.add("__yang_[" + name + "]_[video]");
      kept[name + "/v4"] =
          n % 3 == 1 ? std::vector<std::string>{"video"} : std::vector<std::string>{"-"};
    }
    device.start();
    EXPECT_EQ(device.model(), kept) << "seed " << seed;
  }
  Rok::HashHelper::orderSeedIs(0);
}

TEST(ClassMapTranslation, ClassifierNamesWithBracketsAreSweptByTheNameTheyBuild) {
  ClassMapDevice device;
  device.earlier("a[b", {"[t"});
  device.earlier("c]d", {"t"});
  device.add("__yang_[a[b]_[]");
  device.add("__yang_[a[b]_[[t]");
  device.add("__yang_[c]d]_[]");
  device.start();
  // "c]d" decodes to nothing, yet the text that the sweep builds for it is there.
  EXPECT_EQ(device.model(), (Model{{"a[b/v4", {"[t"}}, {"c]d/v4", {"-"}}}));
}

// ===== Other map types

TEST(ClassMapTranslation, OnlyTheClassMapsOfMapQosAreTranslated) {
  ClassMapDevice device;
  const auto other = Rok::make<Qos::Input::ClassMapTypeConfig>(Qos::MapType{7});
  device.aclConfig->cmapTypeIs(Qos::MapType{7}, other);
  other->cmapIs("__yang_[edge-in]_[]", classMap("__yang_[edge-in]_[]"));
  device.start();
  other->cmapIs("__yang_[core-in]_[]", classMap("__yang_[core-in]_[]"));
  EXPECT_EQ(device.model(), Model{});
  EXPECT_EQ(device.root->cmapTypeConfigSm().members(), 1u);
  EXPECT_EQ(ClassMapKivToOcSm::mapType(), Qos::mapQos);
}

TEST(ClassMapTranslation, TheRootFollowsTheMapQosEntryOfItsConstructionForLife) {
  ClassMapDevice device;
  device.start();
  const auto replacement = Rok::make<Qos::Input::ClassMapTypeConfig>(Qos::mapQos);
  replacement->cmapIs("__yang_[new]_[]", classMap("__yang_[new]_[]"));
  device.aclConfig->cmapTypeIs(Qos::mapQos, replacement);
  EXPECT_EQ(device.model(), Model{});
  device.aclConfig->cmapTypeDel(Qos::mapQos);
  device.add("__yang_[old]_[]");
  EXPECT_EQ(device.model(), (Model{{"old/v4", {"-"}}}));
}

// ===== Failures

TEST(ClassMapTranslation, ADeletedClassMapMayComeBackAsAnotherObject) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]");
  device.remove("__yang_[edge-in]_[voice]");
  device.add("__yang_[edge-in]_[voice]", {matchIpv6AccessGroup});
  EXPECT_EQ(device.model(), (Model{{"edge-in/v6", {"voice"}}}));
}

// A deletion that was never announced as an addition is a fault of the notifier, and fatal.
TEST(ClassMapTranslationDeathTest, TheDeletionOfAKeyWithoutAMachineEndsTheProcess) {
  ClassMapDevice device;
  device.start();
  EXPECT_DEATH(device.types()->handleClassMapConfig("__yang_[never]_[seen]"),
               R"(assertion failed: "false" == nullptr: ClassMapSm: no child to delete under key )"
               R"(__yang_\[never\]_\[seen\])");
}

// ===== Life

TEST(ClassMapTranslation, TheTypesPrepareToDieTakesBackEveryChildsOutputAndKeepsTheChildren) {
  ClassMapDevice device;
  device.add("__yang_[edge-in]_[]");
  device.add("__yang_[edge-in]_[voice]");
  device.add("__yang_[core-in]_[voice]");
  device.add("__yang_[core-in]_[]");
  device.start();
  device.types()->doPrepareToDie();
  EXPECT_EQ(device.model(), Model{});
  EXPECT_EQ(device.types()->cmapConfigSm().members(), 4u);
}

// ===== Traces

constexpr const char* keyDecoder =
    "8 std::pair<Velmo::String, Velmo::String> "
    "QosOc::classifierKeyFromConfigObjName(const Velmo::String&) ( ";
constexpr const char* nameDecoder =
    "8 Velmo::String QosOc::classifierNameFromClassName(const Velmo::String&) ( ";

TEST(ClassMapTrace, ATermsClassMapTracesEntryBothDecodersAndWhatItCreates) {
  ClassMapDevice device;
  device.start();
  const auto voice = device.add("__yang_[edge-in]_[voice]", {});
  TraceCapture trace({0, 2, 8, 9});
  voice->matchIs(matchIpAccessGroup, Rok::make<Qos::ClassMapMatch>());
  EXPECT_THAT(trace.lines(),
              ElementsAre("8 ClassMapSm( __yang_[edge-in]_[voice],mapQos ):: void "
                          "QosOc::ClassMapSm::handleClassMapMatch(Qos::ClassMapMatchOption) ( "
                          "matchIpAccessGroup ) ",
                          keyDecoder + std::string("__yang_[edge-in]_[voice]"),
                          nameDecoder + std::string("__yang_[edge-in]_[voice]"),
                          "8 ClassMapSm( __yang_[edge-in]_[voice],mapQos ):: Creating classifier "
                          "named: edge-in of type: classifierTypeIpv4 and termId named: voice"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

TEST(ClassMapTrace, APlaceholderTracesTheClassifierThatItCreates) {
  ClassMapDevice device;
  device.start();
  const auto placeholder = device.add("__yang_[edge-in]_[]", {});
  TraceCapture trace({8});
  placeholder->matchIs(matchIpv6AccessGroup, Rok::make<Qos::ClassMapMatch>());
  EXPECT_EQ(trace.lines().back(),
            "8 ClassMapSm( __yang_[edge-in]_[],mapQos ):: Creating classifier named: edge-in of "
            "type: classifierTypeIpv6");
  EXPECT_EQ(trace.lines().size(), 4u);
}

TEST(ClassMapTrace, AForeignClassMapTracesNothingBeyondEntryAndDecoders) {
  ClassMapDevice device;
  device.start();
  const auto foreign = device.add("MGMT-SSH", {});
  TraceCapture trace({0, 2, 8, 9});
  foreign->matchIs(matchIpAccessGroup, Rok::make<Qos::ClassMapMatch>());
  EXPECT_THAT(trace.lines(),
              ElementsAre(HasSubstr("handleClassMapMatch"), keyDecoder + std::string("MGMT-SSH"),
                          nameDecoder + std::string("MGMT-SSH")));
}

TEST(ClassMapTrace, TheDeletionOfATermTracesTheTermButNoEntry) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]");
  TraceCapture trace({0, 2, 8, 9});
  device.remove("__yang_[edge-in]_[voice]");
  EXPECT_THAT(trace.lines(),
              ElementsAre(HasSubstr("void QosOc::ClassMapTypeSm::handleClassMapConfig("
                                    "const Velmo::String&) ( __yang_[edge-in]_[voice] ) "),
                          keyDecoder + std::string("__yang_[edge-in]_[voice]"),
                          nameDecoder + std::string("__yang_[edge-in]_[voice]"),
                          "8 ClassMapSm( __yang_[edge-in]_[voice],mapQos ):: Deleting termId "
                          "named: voice for classifier named: edge-in"));
}

TEST(ClassMapTrace, TheDeletionOfATermIsTracedAlsoWhenItsClassifierHasGone) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]", {});
  TraceCapture trace({8});
  device.remove("__yang_[edge-in]_[voice]");
  EXPECT_THAT(trace.linesWith("Deleting"),
              ElementsAre(HasSubstr("Deleting termId named: voice for classifier named: edge-in")));
}

TEST(ClassMapTrace, TheDeletionOfAPlaceholderIsNotTraced) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[]");
  TraceCapture trace({0, 2, 8, 9});
  device.remove("__yang_[edge-in]_[]");
  EXPECT_THAT(trace.linesWith("Deleting"), IsEmpty());
  EXPECT_EQ(trace.lines().size(), 3u) << "the type's entry and the two decoders";
}

TEST(ClassMapTrace, EveryStepOfAStartOpensWithItsEntryLine) {
  ClassMapDevice device;
  device.add("__yang_[edge-in]_[]");
  TraceCapture trace({8});
  device.start();
  EXPECT_THAT(
      trace.lines(),
      ElementsAre(HasSubstr("void QosOc::ClassMapKivToOcSm::handleInitialized() (  ) "),
                  HasSubstr("void QosOc::ClassMapTypeSm::handleInitialized() (  ) "),
                  HasSubstr("void QosOc::ClassMapTypeSm::handleClassMapConfig("),
                  HasSubstr("void QosOc::ClassMapSm::handleInitialized() (  ) "),
                  HasSubstr("void QosOc::ClassMapSm::handleClassMapMatch("), HasSubstr(keyDecoder),
                  HasSubstr(nameDecoder), HasSubstr("Creating classifier named: edge-in")));
}

TEST(ClassMapTrace, TheTypesPrepareToDieOpensWithItsEntryLineAndAClassMapsDoesNot) {
  ClassMapDevice device;
  device.add("__yang_[edge-in]_[]");
  device.start();
  TraceCapture trace({8});
  device.types()->doPrepareToDie();
  EXPECT_THAT(trace.linesWith("doPrepareToDie"),
              ElementsAre(HasSubstr("void QosOc::ClassMapTypeSm::doPrepareToDie() (  ) ")));
}

TEST(ClassMapTrace, TheSweepIsSilent) {
  ClassMapDevice device;
  device.earlier("edge-in", {"voice"});
  TraceCapture trace({0, 2, 8, 9});
  device.start();
  EXPECT_EQ(trace.lines().size(), 2u) << "the entries of the root and of the type";
}

TEST(ClassMapTrace, AMachinePrintsAsItsNameAndType) {
  ClassMapDevice device;
  device.start();
  device.add("__yang_[edge-in]_[voice]");
  std::ostringstream out;
  out << *device.machine("__yang_[edge-in]_[voice]");
  EXPECT_EQ(out.str(), "ClassMapSm( __yang_[edge-in]_[voice],mapQos )::");
}

// ===== Oracles

// The classifiers and terms without the types, which follow the last event and so the walk order.
Model withoutTypes(const Model& model) {
  Model result;
  for (const auto& [label, terms] : model) result[label.substr(0, label.find('/'))] = terms;
  return result;
}

// Random events on a few names: the incremental model equals what the class maps say, in any walk
// order, and a restart changes only what has no placeholder or no class map.
TEST(ClassMapTranslation, RandomDaysEndInTheModelThatARestartGives) {
  const std::vector<std::string> names = {"__yang_[a]_[]",  "__yang_[a]_[x]", "__yang_[a]_[y]",
                                          "__yang_[b]_[]",  "__yang_[b]_[x]", "plain",
                                          "__yang_[b]_[]]", "__yang_[c]_[z]"};
  for (std::uint32_t seed = 1; seed <= 60; ++seed) {
    std::vector<Model> models;
    for (const std::uint32_t order : {0u, seed}) {
      Rok::HashHelper::orderSeedIs(order);
      std::mt19937 events(seed);
      ClassMapDevice device;
      device.start();
      for (int step = 0; step < 200; ++step) {
        const std::string& name = names[events() % names.size()];
        const auto* entry = device.classMaps->cmap().find(name);
        const unsigned what = events() % 4;
        if (entry == nullptr) {
          device.add(name);
        } else if (what == 0) {
          device.remove(name);
        } else {
          (*entry)->matchIs(what == 1 ? matchIpv6AccessGroup : matchIpAccessGroup,
                            Rok::make<Qos::ClassMapMatch>());
        }
      }
      device.restart();
      const Model once = device.model();
      device.restart();
      EXPECT_EQ(device.model(), once) << "a second restart changes nothing, seed " << seed;
      ClassMapDevice fresh;
      for (auto i = device.classMaps->cmap().iterator(); i; ++i) {
        fresh.classMaps->cmapIs(i.key(), i.currNodeNonStale()->value());
      }
      fresh.start();
      EXPECT_EQ(withoutTypes(fresh.model()), withoutTypes(once)) << "seed " << seed;
      models.push_back(once);
    }
    EXPECT_EQ(withoutTypes(models[0]), withoutTypes(models[1]));
  }
  Rok::HashHelper::orderSeedIs(0);
}

}  // namespace
}  // namespace QosOc::classMapTranslationTest
