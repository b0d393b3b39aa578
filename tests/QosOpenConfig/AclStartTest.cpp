// The start of the ACLs' root over what is there.
#include <gtest/gtest.h>

#include <string>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "tests/support/AclDevice.h"
#include "tests/support/AclFixture.h"
#include "tests/support/WalkOrder.h"

namespace QosOc::aclStartTest {
namespace {

using Acl::aclTypeIpv4;
using Acl::aclTypeIpv6;
using Classifier::classifierTypeIpv4;
using Classifier::classifierTypeIpv6;
using support::AclDevice;
using support::conditionsText;
using support::dscp;
using support::Model;
using support::subConfig;
using support::trafficClass;

using namespace support::aclCases;

// ===== Start and restart

TEST(AclStart, AStartBuildsTheOutputOfWhatExists) {
  AclDevice device;
  device.add("__yang_[edge-in]_[voice]", {{10, dscp(46)}});
  device.add("__yang_[edge-in]_[video]", {{20, dscp(34)}, {10, dscp(36)}});
  device.add6("__yang_[core-in]_[voice]", {{10, trafficClass(0xb8)}});
  device.bare("__yang_[other]_[voice]");
  device.start();
  EXPECT_EQ(device.model(), (Model{{"core-in/v6", {"voice: ipv6 46"}},
                                   {"edge-in/v4", {"video: ipv4 [36, 34]", "voice: ipv4 46"}}}));
}

TEST(AclStart, ATermThatLostItsAclIsResetAndKeepsItsActionsAndItsPlace) {
  AclDevice device;
  device.earlier("edge-in", termOf("voice", ipv4Conditions(46), expedited));
  device.earlier("edge-in", termOf("bare"));
  device.start();
  EXPECT_EQ(device.term("edge-in", "voice"), termOf("voice", Config::TermConditions(), expedited));
  EXPECT_EQ(device.term("edge-in", "bare"), termOf("bare", Config::TermConditions()))
      << "absent conditions come out present";
}

TEST(AclStart, ATermWithItsAclIsLeftAsItStandsAlsoWhenTheAclHasNoSubConfiguration) {
  AclDevice device;
  const Config::Term before = termOf("voice", ipv4Conditions(46), expedited);
  device.earlier("edge-in", before);
  device.earlier("edge-in", termOf("video", ipv4Conditions(34)));
  device.bare(voiceName);
  device.start();
  EXPECT_EQ(device.term("edge-in", "voice"), before);
  EXPECT_EQ(conditionsText(device.term("edge-in", "video")), "default");
}

TEST(AclStart, AnAclWithAnEmptySubConfigurationResetsItsTerm) {
  AclDevice device;
  device.earlier("edge-in", termOf("voice", ipv4Conditions(46), expedited));
  device.add(voiceName);
  device.start();
  EXPECT_EQ(device.term("edge-in", "voice"), termOf("voice", Config::TermConditions(), expedited));
}

TEST(AclStart, EachFamilySweepsItsOwnClassifiersAndNoneThoseWithoutAType) {
  struct Case {
    Rok::Optional<Classifier::Type> type;
    bool sweptByIpv4;
    bool sweptByIpv6;
  };
  for (const Case& c :
       {Case{classifierTypeIpv4, true, false}, Case{classifierTypeIpv6, false, true},
        Case{{}, false, false}, Case{Classifier::Type{9}, false, false}}) {
    AclDevice device;
    device.earlier("edge-in", termOf("voice", ipv6Conditions(46)), c.type);
    const auto four = aclTypeSmFactory(device.ipv4, device.classifiers);
    EXPECT_EQ(conditionsText(device.term("edge-in", "voice")),
              c.sweptByIpv4 ? "default" : "ipv6 46");
    device.earlier("edge-in", termOf("voice", ipv6Conditions(46)), c.type);
    const auto six = aclTypeSmFactory(device.ipv6, device.classifiers);
    EXPECT_EQ(conditionsText(device.term("edge-in", "voice")),
              c.sweptByIpv6 ? "default" : "ipv6 46");
  }
}

TEST(AclStart, AClassifierOfIpv6IsJudgedByTheIpv6AclsAlone) {
  AclDevice device;
  device.earlier("edge-in", termOf("voice", ipv6Conditions(46)), classifierTypeIpv6);
  device.bare(voiceName);
  device.start();
  EXPECT_EQ(conditionsText(device.term("edge-in", "voice")), "default")
      << "the IPv4 ACL of that name doesn't count";
  device.bare6(voiceName);
  device.earlier("edge-in", termOf("voice", ipv6Conditions(46)), classifierTypeIpv6);
  device.restart();
  EXPECT_EQ(conditionsText(device.term("edge-in", "voice")), "ipv6 46");
}

// IPv4 comes first: its ACLs are replayed and its sweep has run before IPv6 writes a type.
TEST(AclStart, TheIpv4FamilyIsBuiltAndSweptBeforeTheIpv6Family) {
  AclDevice device;
  device.earlier("edge-in", termOf("video", ipv4Conditions(34)), classifierTypeIpv4);
  device.add6(voiceName, {{10, trafficClass(0xb8)}});
  device.start();
  EXPECT_EQ(device.model(), (Model{{"edge-in/v6", {"video: default", "voice: ipv6 46"}}}));
}

// A classifier has one type. When its terms are of both families, the type at start is IPv6's, and
// the IPv6 sweep then takes the conditions of the terms that only IPv4 knows. Before the restart
// they stood: nothing sweeps while the root lives.
TEST(AclStart, OfAClassifierWithTermsOfBothFamiliesTheIpv4TermsAreResetAtEachStart) {
  AclDevice device;
  device.start();
  device.add("__yang_[edge-in]_[video]", {{10, dscp(34)}});
  device.add6(voiceName, {{10, trafficClass(0xb8)}});
  EXPECT_EQ(device.model(), (Model{{"edge-in/v6", {"video: ipv4 34", "voice: ipv6 46"}}}));
  device.restart();
  EXPECT_EQ(device.model(), (Model{{"edge-in/v6", {"video: default", "voice: ipv6 46"}}}));
}

TEST(AclStart, TheSweepDeletesNeitherTermsNorClassifiersNorEmptyTerms) {
  AclDevice device;
  device.classifiers->classifierIs("empty")->configIs({"empty", classifierTypeIpv4});
  device.classifiers->classifierIs("hollow")->configIs({"hollow", classifierTypeIpv4});
  device.classifiers->classifier("hollow")->termsIs();
  device.earlier("edge-in", termOf("voice"));
  device.start();
  EXPECT_EQ(device.model(),
            (Model{{"edge-in/v4", {"voice: default"}}, {"empty/v4", {}}, {"hollow/v4", {}}}));
  EXPECT_EQ(device.classifiers->classifier("empty")->terms(), nullptr);
  EXPECT_NE(device.classifiers->classifier("hollow")->terms(), nullptr);
}

TEST(AclStart, TheSweepLeavesTheConfigAlone) {
  AclDevice device;
  device.earlier("edge-in", termOf("voice"));
  device.classifiers->classifier("edge-in")->configIs({"stale-name", classifierTypeIpv4});
  device.start();
  EXPECT_EQ(device.classifiers->classifier("edge-in")->config(),
            (Config::ClassifierConfig{"stale-name", classifierTypeIpv4}));
  EXPECT_EQ(conditionsText(device.term("edge-in", "voice")), "default");
}

TEST(AclStart, TheSweepBuildsTheNameAndDoesNotDecodeOne) {
  AclDevice device;
  device.earlier("c]d", termOf("t", ipv4Conditions(1)));
  device.earlier("c]d", termOf("u", ipv4Conditions(1)));
  device.bare("__yang_[c]d]_[t]");  // decodes to nothing
  device.start();
  EXPECT_EQ(device.model(), (Model{{"c]d/v4", {"t: ipv4 1", "u: default"}}}));
}

TEST(AclStart, SweepsOfManyClassifiersAndTermsDoNotInterfere) {
  for (std::uint32_t seed = 0; seed < 8; ++seed) {
    const support::WalkOrder walk(seed);
    AclDevice device;
    Model expected;
    for (int n = 0; n < 100; ++n) {
      const std::string name = "c" + std::to_string(n);
      const bool ipv6 = n % 2 == 1;
      auto& terms = expected[name + (ipv6 ? "/v6" : "/v4")];
      for (const char* id : {"a", "b", "c"}) {
        device.earlier(name, termOf(id, ipv4Conditions(1)),
                       ipv6 ? classifierTypeIpv6 : classifierTypeIpv4);
        const std::string acl = "__yang_[" + name + "]_[" + id + "]";
        const bool kept = (n + *id) % 3 == 0;
        if (kept) {
          if (ipv6) {
            device.bare6(acl);
          } else {
            device.bare(acl);
          }
        }
        terms.push_back(id + std::string(kept ? ": ipv4 1" : ": default"));
      }
    }
    device.start();
    EXPECT_EQ(device.model(), expected) << "seed " << seed;
  }
}

TEST_F(AclTranslation, TheRootFollowsTheEntriesOfItsConstructionForLife) {
  const auto replacement = Rok::make<Acl::Input::AclTypeConfig>(aclTypeIpv4);
  const auto old = ipv4;
  config->configIs(aclTypeIpv4, replacement);
  config->configDel(aclTypeIpv6);
  ipv4 = replacement;
  add("__yang_[new]_[voice]", {{10, dscp(46)}});
  EXPECT_EQ(model(), Model{});
  ipv4 = old;
  add("__yang_[old]_[voice]", {{10, dscp(46)}});
  add6("__yang_[old6]_[voice]", {{10, trafficClass(0xb8)}});
  EXPECT_EQ(model(), (Model{{"old/v4", {"voice: ipv4 46"}}, {"old6/v6", {"voice: ipv6 46"}}}));
}

TEST(AclStart, FurtherFamiliesAreNotTranslated) {
  AclDevice device;
  const auto other = Rok::make<Acl::Input::AclTypeConfig>(unknownType);
  device.config->configIs(unknownType, other);
  device.earlier("edge-in", termOf("voice"), Rok::Optional<Classifier::Type>());
  device.start();
  const auto acl = Rok::make<Acl::AclConfig>(voiceName, unknownType);
  acl->aclSubConfigIs(subConfig({{10, dscp(46)}}));
  other->aclIs(voiceName, acl);
  EXPECT_EQ(device.root->aclTypeSm().members(), 2u);
  EXPECT_EQ(conditionsText(device.term("edge-in", "voice")), "absent");
}

}  // namespace
}  // namespace QosOc::aclStartTest
