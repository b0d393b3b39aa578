// The names of policy maps, `__yang_[IPV4__A][IPV6__B]`, and the forwarding group of a traffic
// class.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <random>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigHelperNames.h"
#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "tests/support/OneByteChanged.h"
#include "tests/support/TraceCapture.h"

namespace QosOc::derivedNamesTest {
namespace {

using Names = std::pair<Velmo::String, Velmo::String>;
using Texts = std::pair<std::string, std::string>;
const Names none;

// The expression that defines the form. It is applied both ways: the decoders search, a service
// policy's name is matched as a whole.
const std::regex& form() {
  static const std::regex expression(R"(^__yang_(?:\[IPV4__([^\]]+)\])?(?:\[IPV6__([^\]]+)\])?$)");
  return expression;
}
std::optional<Texts> bySearch(const std::string& name) {
  std::smatch match;
  if (!std::regex_search(name, match, form())) return {};
  return Texts(match[1].str(), match[2].str());
}
bool byMatch(const std::string& name) { return std::regex_match(name, form()); }

std::optional<Texts> byHand(const std::string& name) {
  const auto found = Helper::pmapClassifiers(name);
  if (!found) return {};
  return Texts(found->ipv4, found->ipv6);
}

void expectDecodedAsByTheForm(const std::string& name) {
  const auto expected = bySearch(name);
  EXPECT_EQ(byHand(name), expected) << testing::PrintToString(name);
  EXPECT_EQ(byHand(name).has_value(), byMatch(name)) << testing::PrintToString(name);
  const Names names = expected ? Names(expected->first, expected->second) : none;
  EXPECT_EQ(classifiersFromPmapName(name), names) << testing::PrintToString(name);
  EXPECT_EQ(classifierGroupFromPmapName(name), names) << testing::PrintToString(name);
}

struct Row {
  const char* name;
  Names names;
};

TEST(PmapNames, BothDecodersGiveTheClassifierOfEachFamily) {
  const Row rows[] = {{"__yang_[IPV4__edge-in][IPV6__edge-in6]", {"edge-in", "edge-in6"}},
                      {"__yang_[IPV4__edge-in]", {"edge-in", ""}},
                      {"__yang_[IPV6__edge-in6]", {"", "edge-in6"}},
                      {"__yang_[IPV6__edge-in6][IPV4__edge-in]", none},
                      {"__yang_[IPV4__a]_[IPV6__b]", none},
                      {"__yang_[IPV4__a] [IPV6__b]", none},
                      {"__yang_[IPV4__a][IPV4__b]", none},
                      {"__yang_[IPV6__a][IPV6__b]", none},
                      {"__yang_[IPV4__][IPV6__b]", none},
                      {"__yang_[IPV4__a][IPV6__]", none},
                      {"__yang_[IPV4__]", none},
                      {"__yang_[IPV4_a]", none},
                      {"__yang_[ipv4__a]", none},
                      {"__YANG_[IPV4__a]", none},
                      {" __yang_[IPV4__a]", none},
                      {"__yang_[IPV4__a] ", none},
                      {"__yang_[IPV4__a", none},
                      {"__yang_[IPV4__a]]", none},
                      {"__yang_IPV4__a", none},
                      {"__yang", none},
                      {"plain", none},
                      {"", none},
                      {"__yang_[IPV4__a[b]", {"a[b", ""}},
                      {"__yang_[IPV4__[IPV6__b]", {"[IPV6__b", ""}},
                      {"__yang_[IPV4___]", {"_", ""}}};
  for (const Row& row : rows) {
    EXPECT_EQ(classifiersFromPmapName(row.name), row.names) << row.name;
    EXPECT_EQ(classifierGroupFromPmapName(row.name), row.names) << row.name;
    expectDecodedAsByTheForm(row.name);
  }
}

TEST(PmapNames, TheBareNameMatchesWithBothNamesEmpty) {
  EXPECT_EQ(classifiersFromPmapName("__yang_"), none);
  EXPECT_EQ(classifierGroupFromPmapName("__yang_"), none);
  EXPECT_EQ(byHand("__yang_"), Texts());
  EXPECT_EQ(byHand("plain"), std::nullopt) << "which the decoders can't tell apart";
}

TEST(PmapNames, LineTerminatorsNulAndHighBytesBelongToAName) {
  const std::string a("a\n\r\0\xff", 5);
  const std::string b("\0\x80\xe2\x80\xa8", 5);
  const std::string name = "__yang_[IPV4__" + a + "][IPV6__" + b + "]";
  EXPECT_EQ(classifiersFromPmapName(name), Names(a, b));
  EXPECT_EQ(classifierGroupFromPmapName(name), Names(a, b));
}

TEST(PmapNames, ALineTerminatorAroundTheNameMatchesNothing) {
  for (const char* name : {"\n__yang_[IPV4__a]", "__yang_[IPV4__a]\n", "__yang_\n[IPV4__a]",
                           "x\n__yang_[IPV4__a]\ny", "__yang_\n", "\r__yang_"}) {
    expectDecodedAsByTheForm(name);
    EXPECT_EQ(byHand(name), std::nullopt) << name;
  }
}

// Names made of the pieces that matter, in any order.
std::string adversarialName(std::mt19937& random) {
  static const std::vector<std::string> pieces = {"[IPV4__",
                                                  "[IPV6__",
                                                  "]",
                                                  "[",
                                                  "a",
                                                  "edge-in",
                                                  "_",
                                                  "",
                                                  "\n",
                                                  "\r",
                                                  "\xff",
                                                  "\x80",
                                                  "\xe2\x80\xa8",
                                                  "__yang_",
                                                  "][",
                                                  std::string(1, '\0'),
                                                  "[]",
                                                  "^",
                                                  "$",
                                                  "\\",
                                                  ".",
                                                  "IPV4__"};
  std::string name = random() % 5 == 0 ? "" : "__yang_";
  if (random() % 2 == 0) name += "[IPV4__";
  for (unsigned n = random() % 4; n > 0; --n) name += pieces[random() % pieces.size()];
  if (random() % 2 == 0) name += "]";
  if (random() % 2 == 0) name += "[IPV6__";
  for (unsigned n = random() % 4; n > 0; --n) name += pieces[random() % pieces.size()];
  if (random() % 2 == 0) name += "]";
  return name;
}

TEST(PmapNames, AdversarialNamesDecodeAsTheFormSays) {
  std::mt19937 random(20261121);
  int matches = 0;
  for (int i = 0; i < 50000; ++i) {
    const std::string name = adversarialName(random);
    expectDecodedAsByTheForm(name);
    matches += byHand(name).has_value() ? 1 : 0;
  }
  EXPECT_GT(matches, 1000) << "the names must hit the form often enough";
}

TEST(PmapNames, NamesWithOneByteChangedDecodeAsTheFormSays) {
  std::mt19937 random(42);
  const std::string valid[] = {"__yang_[IPV4__edge-in][IPV6__edge-in6]", "__yang_[IPV4__a]",
                               "__yang_[IPV6__b]", "__yang_"};
  for (int i = 0; i < 50000; ++i) {
    expectDecodedAsByTheForm(support::oneByteChanged(valid[random() % 4], random));
  }
}

// A regular-expression engine that recurses gives up near 26,000 characters.
TEST(PmapNames, SixteenMegabytesDecodeWithoutTrouble) {
  const std::string a(std::size_t{8} << 20, 'a');
  const std::string b(std::size_t{8} << 20, '[');
  const Names names = classifiersFromPmapName("__yang_[IPV4__" + a + "][IPV6__" + b + "]");
  EXPECT_TRUE(names.first == a && names.second == b);
  EXPECT_TRUE(classifierGroupFromPmapName("__yang_[IPV4__" + a) == none);
}

TEST(PmapNames, TheTwoDecodersDifferInLevelAndWordingOfTheirTrace) {
  support::TraceCapture trace({0, 2, 8, 9});
  classifiersFromPmapName("plain");
  classifierGroupFromPmapName("__yang_[IPV4__a]");
  EXPECT_THAT(trace.lines(),
              testing::ElementsAre("8 std::pair<Velmo::String, Velmo::String> "
                                   "QosOc::classifiersFromPmapName(const Velmo::String&), "
                                   "pmapName = plain",
                                   "2 std::pair<Velmo::String, Velmo::String> "
                                   "QosOc::classifierGroupFromPmapName(const Velmo::String&): "
                                   "pmapName = __yang_[IPV4__a]"));
  EXPECT_THAT(trace.handles(), testing::Each("OpenConfigQos"));
}

// ===== The forwarding group of a traffic class

using Groups = Qos::ForwardingGroupNameToTcMap;

TEST(TargetGroup, AnEmptyMapHasNone) { EXPECT_EQ(targetGroupFromTc(0, Rok::make<Groups>()), ""); }

TEST(TargetGroup, TheFirstNameInOrderServesATrafficClass) {
  const auto groups = Rok::make<Groups>();
  groups->forwardingGroupNameToTcIs("expedited", 5);
  groups->forwardingGroupNameToTcIs("assured", 3);
  EXPECT_EQ(targetGroupFromTc(5, groups), "expedited");
  EXPECT_EQ(targetGroupFromTc(3, groups), "assured");
  EXPECT_EQ(targetGroupFromTc(4, groups), "");
  groups->forwardingGroupNameToTcIs("assured", 5);
  EXPECT_EQ(targetGroupFromTc(5, groups), "assured");
  EXPECT_EQ(targetGroupFromTc(3, groups), "");
  groups->forwardingGroupNameToTcDel("assured");
  EXPECT_EQ(targetGroupFromTc(5, groups), "expedited");
}

TEST(TargetGroup, TrafficClassesAreComparedAsWideNumbers) {
  const auto groups = Rok::make<Groups>();
  groups->forwardingGroupNameToTcIs("zero", 0);
  groups->forwardingGroupNameToTcIs("last", 255);
  EXPECT_EQ(targetGroupFromTc(0, groups), "zero");
  EXPECT_EQ(targetGroupFromTc(255, groups), "last");
  for (const std::uint32_t tc : {256u, 511u, 0xffffff00u, 0xffffffffu}) {
    EXPECT_EQ(targetGroupFromTc(tc, groups), "") << tc;
  }
}

TEST(TargetGroup, ItIsWhatAWalkInNameOrderFinds) {
  std::mt19937 random(5);
  const auto groups = Rok::make<Groups>();
  for (int step = 0; step < 5000; ++step) {
    const Rok::String name(std::string(random() % 3, "ab\xff"[random() % 3]));
    if (random() % 3 == 0) {
      groups->forwardingGroupNameToTcDel(name);
    } else {
      groups->forwardingGroupNameToTcIs(name, static_cast<unsigned char>(random() % 3));
    }
    for (std::uint32_t tc = 0; tc < 3; ++tc) {
      Velmo::String expected;
      for (auto i = groups->forwardingGroupNameToTc().iterator(); i; ++i) {
        if (i.value()->value != tc) continue;
        expected = i.key().name;
        break;
      }
      ASSERT_EQ(targetGroupFromTc(tc, groups), expected) << "step " << step;
    }
  }
}

TEST(TargetGroup, TheLookupOpensWithALevelEightLine) {
  support::TraceCapture trace({0, 2, 8, 9});
  targetGroupFromTc(300, Rok::make<Groups>());
  EXPECT_THAT(trace.lines(),
              testing::ElementsAre("8 Velmo::String QosOc::targetGroupFromTc(uint32_t, const "
                                   "Rok::Ptr<const Qos::ForwardingGroupNameToTcMap>&), tc = 300"));
}

}  // namespace
}  // namespace QosOc::derivedNamesTest
