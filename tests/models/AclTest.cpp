// The native ACL records: what they hold and whom they tell.
#include "models/native/Acl.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "tests/support/NotificationLog.h"

namespace Acl::aclTest {
namespace {

using support::NotificationLog;
using testing::ElementsAre;

// ===== Rules

TEST(AclRule, ADefaultIpv4RuleMatchesNoDscp) {
  const IpRuleConfig rule;
  EXPECT_FALSE(rule.filter.matchDscp);
  EXPECT_EQ(rule.filter.dscp, 0);
}

TEST(AclRule, ADefaultIpv6RuleHasNoMask) {
  const Ip6RuleConfig rule;
  EXPECT_EQ(rule.filter.tcMask, 0);
  EXPECT_EQ(rule.filter.tc, 0);
}

TEST(AclRule, TheCommonPartIsEmptyAtFirstButForOneWordOfAllBits) {
  const IpFilter filter;
  EXPECT_EQ(filter.word21, 0xffffffffu);
  EXPECT_TRUE(filter.text1.value().empty());
  for (const auto* text : {&filter.text3, &filter.text12, &filter.text14, &filter.text16,
                           &filter.text25, &filter.text27}) {
    EXPECT_TRUE(text->empty());
  }
  for (const std::uint64_t number :
       {filter.word2, std::uint64_t{filter.byte4}, std::uint64_t{filter.byte5},
        std::uint64_t{filter.half6}, std::uint64_t{filter.byte7}, std::uint64_t{filter.byte8},
        std::uint64_t{filter.half10}, std::uint64_t{filter.byte11}, std::uint64_t{filter.byte13},
        std::uint64_t{filter.byte15}, std::uint64_t{filter.byte17}, std::uint64_t{filter.half18},
        std::uint64_t{filter.half19}, std::uint64_t{filter.byte20}, filter.word23,
        std::uint64_t{filter.byte24}, std::uint64_t{filter.word26}, std::uint64_t{filter.byte28},
        std::uint64_t{filter.half29}}) {
    EXPECT_EQ(number, 0u);
  }
  EXPECT_FALSE(filter.inner9.has_value());
  EXPECT_FALSE(filter.tunnel22.has_value());
}

TEST(AclRule, TheFirstTextTakesAHundredBytesAndNotOneMore) {
  IpFilter filter;
  const Rok::String longest(std::string(100, 'x'));
  filter.text1 = longest;
  EXPECT_EQ(filter.text1.value(), longest);
  try {
    filter.text1 = longest.addRight("y");
    FAIL() << "no exception";
  } catch (const Rok::RangeException& e) {
    EXPECT_STREQ(e.what(), "Rok::String::bytes > maxLength() not allowed");
  }
  EXPECT_EQ(filter.text1.value(), longest) << "the refused text left nothing behind";
}

TEST(AclRule, TheFirstTextCountsBytesAndNotCharacters) {
  IpFilter filter;
  std::string umlauts;
  for (int n = 0; n < 50; ++n) umlauts += "\xc3\xa4";
  filter.text1 = Rok::String(umlauts);
  EXPECT_THROW(filter.text1 = Rok::String(umlauts + "\xc3\xa4"), Rok::RangeException);
}

TEST(AclRule, OnlyTheFirstTextHasALimit) {
  IpFilter filter;
  filter.text3 = std::string(1000, 'x');
  EXPECT_EQ(filter.text3.size(), 1000u);
}

TEST(AclRule, ACopyHasItsRarePartsToItself) {
  IpRuleConfig rule;
  rule.filter.inner9 = InnerFilter{1, 2};
  rule.filter.tunnel22 = TunnelData{3, 4};
  const IpRuleConfig copy = rule;
  EXPECT_EQ(copy, rule);
  rule.filter.inner9->source = 9;
  rule.filter.tunnel22.reset();
  EXPECT_EQ(copy.filter.inner9->source, 1u);
  EXPECT_EQ(copy.filter.tunnel22->identifier, 3u);
  EXPECT_FALSE(copy == rule);
}

TEST(AclRule, EqualityComparesBaseFilterAndDscp) {
  const auto differs = [](const auto& change) {
    IpRuleConfig rule;
    change(rule);
    return !(rule == IpRuleConfig());
  };
  EXPECT_FALSE(differs([](IpRuleConfig&) {}));
  EXPECT_TRUE(differs([](IpRuleConfig& rule) { rule.byte1 = 1; }));
  EXPECT_TRUE(differs([](IpRuleConfig& rule) { rule.text2 = "x"; }));
  EXPECT_TRUE(differs([](IpRuleConfig& rule) { rule.half3 = 1; }));
  EXPECT_TRUE(differs([](IpRuleConfig& rule) { rule.filter.text1 = Rok::String("x"); }));
  EXPECT_TRUE(differs([](IpRuleConfig& rule) { rule.filter.word21 = 0; }));
  EXPECT_TRUE(differs([](IpRuleConfig& rule) { rule.filter.inner9 = InnerFilter(); }));
  EXPECT_TRUE(differs([](IpRuleConfig& rule) { rule.filter.half29 = 1; }));
  EXPECT_TRUE(differs([](IpRuleConfig& rule) { rule.filter.dscp = 1; }));
  EXPECT_TRUE(differs([](IpRuleConfig& rule) { rule.filter.matchDscp = true; }));
  Ip6RuleConfig rule;
  rule.filter.tc = 1;
  EXPECT_FALSE(rule == Ip6RuleConfig());
  rule = Ip6RuleConfig();
  rule.filter.tcMask = 1;
  EXPECT_FALSE(rule == Ip6RuleConfig());
  rule = Ip6RuleConfig();
  rule.filter.word2 = 1;
  EXPECT_FALSE(rule == Ip6RuleConfig());
}

TEST(AclRule, PrintsWhatItMatches) {
  IpRuleConfig rule;
  rule.filter.dscp = 46;
  Ip6RuleConfig rule6;
  rule6.filter.tc = 0xb8;
  rule6.filter.tcMask = 0xfc;
  std::ostringstream out;
  out << rule << rule6;
  rule.filter.matchDscp = true;
  out << rule;
  EXPECT_EQ(out.str(), "{dscp 46, matchDscp false}{tc 184, tcMask 252}{dscp 46, matchDscp true}");
}

TEST(AclType, HasTheValuesOfTheModelAndPrintsItsNames) {
  EXPECT_EQ(static_cast<int>(aclTypeIpv4), 0);
  EXPECT_EQ(static_cast<int>(aclTypeIpv6), 1);
  EXPECT_EQ(sizeof(AclType), 1u);
  std::ostringstream out;
  out << aclTypeIpv4 << " " << aclTypeIpv6 << " " << AclType{7};
  EXPECT_EQ(out.str(), "aclTypeIpv4 aclTypeIpv6 7");
}

// ===== Collections

using Sub = AclSubConfig::Attr;
using SubLog = NotificationLog<Sub::ruleBySequence, Sub::ipRuleById, Sub::ip6RuleById>;

TEST(AclSubConfig, TellsRulesBySequenceNumberAndByIdentity) {
  const auto config = Rok::make<AclSubConfig>();
  const auto log = Rok::make<SubLog>(*config);
  const Umb::UniqueId id(1, 2, 3);
  IpRuleConfig rule;
  rule.filter.dscp = 46;
  config->ipRuleByIdIs(id, rule);
  config->ipRuleByIdIs(id, rule);  // the same rule again is no change
  config->ipRuleByIdIs(id, IpRuleConfig());
  config->ip6RuleByIdIs(id, Ip6RuleConfig());
  config->ruleBySequenceIs(10, id);
  config->ruleBySequenceIs(10, id);
  config->ruleBySequenceIs(10, Umb::UniqueId(4, 5, 6));
  config->ruleBySequenceDel(10);
  config->ruleBySequenceDel(10);  // nor is the removal of what isn't there
  config->ipRuleByIdDel(id);
  config->ip6RuleByIdDel(id);
  EXPECT_THAT(log->lines(), ElementsAre("131 1.2.3", "131 1.2.3", "132 1.2.3", "130 10", "130 10",
                                        "130 10", "131 1.2.3", "132 1.2.3"));
  EXPECT_EQ(config->ipRuleById().find(id), nullptr);
}

TEST(AclSubConfig, RulesStandInOrderOfTheirSequenceNumbers) {
  const auto config = Rok::make<AclSubConfig>();
  for (const std::uint32_t sequence : {4000000000u, 10u, 0u, 200u, 30u}) {
    config->ruleBySequenceIs(sequence, Umb::UniqueId());
  }
  std::vector<std::uint32_t> order;
  for (auto i = config->ruleBySequence().iterator(); i; ++i) order.push_back(i.key());
  EXPECT_THAT(order, ElementsAre(0u, 10u, 30u, 200u, 4000000000u));
}

TEST(AclSubConfig, TheTwoFamiliesOfRulesAreApart) {
  const auto config = Rok::make<AclSubConfig>();
  config->ipRuleByIdIs(Umb::UniqueId(1, 2, 3), IpRuleConfig());
  EXPECT_NE(config->ipRuleById().find(Umb::UniqueId(1, 2, 3)), nullptr);
  EXPECT_EQ(config->ip6RuleById().find(Umb::UniqueId(1, 2, 3)), nullptr);
}

TEST(AclConfig, TellsEachReplacementOfItsSubConfiguration) {
  const auto acl = Rok::make<AclConfig>("voice", aclTypeIpv6);
  EXPECT_EQ(acl->name(), "voice");
  EXPECT_EQ(acl->type(), aclTypeIpv6);
  EXPECT_EQ(acl->aclSubConfig(), nullptr);
  const auto log = Rok::make<NotificationLog<AclConfig::Attr::aclSubConfig>>(*acl);
  const auto first = Rok::make<AclSubConfig>();
  acl->aclSubConfigIs(nullptr);
  acl->aclSubConfigIs(first);
  acl->aclSubConfigIs(first);
  acl->aclSubConfigIs(Rok::make<AclSubConfig>());
  acl->aclSubConfigIs(nullptr);
  EXPECT_THAT(log->lines(), ElementsAre("132", "132", "132"));
}

TEST(AclTypeConfig, HoldsAclsInNameOrderAndTellsEachThatComesAndGoes) {
  const auto type = Rok::make<Input::AclTypeConfig>(aclTypeIpv6);
  EXPECT_EQ(type->type(), aclTypeIpv6);
  const auto log = Rok::make<NotificationLog<Input::AclTypeConfig::Attr::acl>>(*type);
  const auto b = Rok::make<AclConfig>("b", aclTypeIpv6);
  type->aclIs("b", b);
  type->aclIs("b", b);
  type->aclIs("a", Rok::make<AclConfig>("a", aclTypeIpv6));
  type->aclIs("B", Rok::make<AclConfig>("B", aclTypeIpv6));
  std::string order;
  for (auto i = type->acl().iterator(); i; ++i) order += std::string_view(i.key());
  EXPECT_EQ(order, "Bab");
  type->aclDel((*type->acl().find("a"))->name());  // a name that lives in what it deletes
  type->aclDel("a");
  EXPECT_THAT(log->lines(), ElementsAre("131 b", "131 a", "131 B", "131 a"));
}

TEST(AclInputConfig, HoldsAclsByTypeAndTellsEachThatComesAndGoes) {
  const auto config = Rok::make<Input::Config>();
  const auto log = Rok::make<NotificationLog<Input::Config::Attr::config>>(*config);
  const auto type = Rok::make<Input::AclTypeConfig>(aclTypeIpv6);
  config->configIs(aclTypeIpv6, type);
  EXPECT_EQ(*config->config().find(aclTypeIpv6), type);
  EXPECT_EQ(config->config().find(aclTypeIpv4), nullptr);
  config->configDel(aclTypeIpv6);
  EXPECT_EQ(config->config().find(aclTypeIpv6), nullptr);
  EXPECT_THAT(log->lines(), ElementsAre("130 aclTypeIpv6", "130 aclTypeIpv6"));
}

}  // namespace
}  // namespace Acl::aclTest
