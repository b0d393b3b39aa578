#include "host/Changes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"

namespace host::changesTest {
namespace {

using support::HostDevice;
using support::HostNotifiee;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* device = R"({"class-maps": {"qos": {
    "A": {"match": ["ip-access-group"]}, "B": {"match": ["ip-access-group", 7]}, "C": {}},
    "7": {"X": {}, "Y": {}}}})";

std::string operation(const std::string& op, const std::string& path,
                      const std::string& value = "") {
  return support::hostOperation(op, path, value);
}
std::string one(const std::string& op, const std::string& path, const std::string& value = "") {
  return support::hostLine(op, path, value);
}

// ===== Entries

TEST(Changes, AddOfAnEntryBuildsItAndInsertsItThen) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(one("add", "/class-maps/qos/D", R"({"match": [1, 2, 9]})")),
              ElementsAre("cmap 1/D"));
  EXPECT_THAT(d.contents(), ElementsAre("A 1", "B 1 7", "C", "D 1 2 9"));
  EXPECT_EQ(d.classMap("D")->type(), Qos::mapQos);
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(Changes, AddOfAnEntryThatIsThereRemovesItFirst) {
  HostDevice d(device);
  const auto before = d.classMap("A");
  EXPECT_THAT(d.heardFrom(one("add", "/class-maps/qos/A", R"({"match": [1]})")),
              ElementsAre("cmap 1/A", "cmap 1/A"));
  EXPECT_NE(d.classMap("A"), before);
}

TEST(Changes, ReplaceOfAnEntryRemovesItAndAddsIt) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(one("replace", "/class-maps/qos/B", "{}")),
              ElementsAre("cmap 1/B", "cmap 1/B"));
  EXPECT_THAT(d.contents(), ElementsAre("A 1", "B", "C"));
}

TEST(Changes, RemoveOfAnEntryNotifiesOnce) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(one("remove", "/class-maps/qos/B")), ElementsAre("cmap 1/B"));
  EXPECT_THAT(d.contents(), ElementsAre("A 1", "C"));
}

TEST(Changes, AMapTypeIsAnEntryLikeAnyOther) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(one("add", "/class-maps/9", R"({"Z": {"match": [1]}})")),
              ElementsAre("cmapType 9"));
  EXPECT_THAT(d.contents(9), ElementsAre("Z 1"));
  EXPECT_THAT(d.heardFrom(one("replace", "/class-maps/9", "{}")),
              ElementsAre("cmapType 9", "cmapType 9"));
  EXPECT_THAT(d.heardFrom(one("add", "/class-maps/9/W", "{}")), ElementsAre("cmap 9/W"));
  EXPECT_THAT(d.heardFrom(one("remove", "/class-maps/9")), ElementsAre("cmapType 9"));
  EXPECT_FALSE(d.classMaps(9));
}

TEST(Changes, TheNumberOfAMapTypeMeansTheSameAsItsName) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(one("remove", "/class-maps/1/A")), ElementsAre("cmap 1/A"));
}

TEST(Changes, NamesInPathsAreUnescaped) {
  HostDevice d;
  d.line(one("add", "/class-maps/qos/a~1b~0c", "{}"));
  EXPECT_TRUE(d.classMap("a/b~c"));
  d.line(one("remove", "/class-maps/qos/a~1b~0c"));
  EXPECT_FALSE(d.classMap("a/b~c"));
}

TEST(Changes, TheEmptyNameIsAName) {
  HostDevice d;
  d.line(one("add", "/class-maps/qos/", "{}"));
  EXPECT_TRUE(d.classMap(""));
}

// ===== match

TEST(Changes, AddAtTheEndOfMatchNotifiesTheOption) {
  HostDevice d(device);
  const auto before = d.classMap("A");
  EXPECT_THAT(d.heardFrom(one("add", "/class-maps/qos/A/match/-", "\"ipv6-access-group\"")),
              ElementsAre("match A 2"));
  EXPECT_EQ(d.classMap("A"), before);
  EXPECT_THAT(d.contents(), ElementsAre("A 1 2", "B 1 7", "C"));
}

TEST(Changes, MatchAsAWholeIsADifferenceOfEachAddedThenEachRemovedOption) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    EXPECT_THAT(d.heardFrom(one(op, "/class-maps/qos/B/match", R"([9, 2, "7"])")),
                ElementsAre("match B 2", "match B 9", "match B 1"));
    EXPECT_THAT(d.contents(), ElementsAre("A 1", "B 2 7 9", "C"));
  }
}

TEST(Changes, AnEqualMatchNotifiesNothing) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(one("replace", "/class-maps/qos/B/match", R"([7, "ip-access-group"])")),
              IsEmpty());
}

TEST(Changes, RemoveOfMatchRemovesEachOption) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(one("remove", "/class-maps/qos/B/match")),
              ElementsAre("match B 1", "match B 7"));
  EXPECT_THAT(d.heardFrom(one("remove", "/class-maps/qos/B/match")), IsEmpty());
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(Changes, MatchIsThereAlsoWhenTheDocumentLeftItOut) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(one("replace", "/class-maps/qos/C/match", "[1]")),
              ElementsAre("match C 1"));
}

// ===== Collections

TEST(Changes, ReplaceOfTheQosEntryIsDoneOnEachOfItsEntries) {
  for (const char* op : {"add", "replace"}) {
    HostDevice d(device);
    const auto mounted = d.classMaps();
    EXPECT_THAT(d.heardFrom(one(op, "/class-maps/qos", R"({"D": {}, "B": {"match": [1, 7]}})")),
                ElementsAre("cmap 1/A", "cmap 1/C", "cmap 1/D", "cmap 1/B", "cmap 1/B"));
    EXPECT_EQ(d.classMaps(), mounted);
    EXPECT_THAT(d.contents(), ElementsAre("B 1 7", "D"));
  }
}

TEST(Changes, RemoveOfTheQosEntryRemovesEachOfItsEntries) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(one("remove", "/class-maps/qos")),
              ElementsAre("cmap 1/A", "cmap 1/B", "cmap 1/C"));
  EXPECT_THAT(d.contents(), IsEmpty());
  EXPECT_THAT(d.heardFrom(one("remove", "/class-maps/qos")), IsEmpty());
}

TEST(Changes, RemoveOfTheSectionKeepsTheMountedEntry) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(one("remove", "/class-maps")),
              ElementsAre("cmapType 7", "cmap 1/A", "cmap 1/B", "cmap 1/C"));
  EXPECT_TRUE(d.classMaps());
  EXPECT_FALSE(d.classMaps(7));
}

TEST(Changes, ReplaceOfTheSectionIsDoneOnEachOfItsEntries) {
  HostDevice d(device);
  EXPECT_THAT(
      d.heardFrom(one("replace", "/class-maps", R"({"qos": {"A": {}}, "8": {}})")),
      ElementsAre("cmapType 7", "cmap 1/B", "cmap 1/C", "cmap 1/A", "cmap 1/A", "cmapType 8"));
  EXPECT_THAT(d.contents(), ElementsAre("A"));
}

TEST(Changes, AReplacedSectionLosesAllThatGoesBeforeAnythingComes) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(one("replace", "/class-maps", R"({"8": {"M": {}}})")),
              ElementsAre("cmapType 7", "cmap 1/A", "cmap 1/B", "cmap 1/C", "cmapType 8"));
}

TEST(Changes, ASectionThatTheDocumentLeftOutIsThere) {
  HostDevice d("{}");
  EXPECT_THAT(d.heardFrom(one("replace", "/class-maps", R"({"qos": {"A": {}}})")),
              ElementsAre("cmap 1/A"));
}

// ===== test

TEST(Changes, TestComparesByMeaning) {
  HostDevice d(device);
  for (const char* value : {R"({"match": [7, "ip-access-group"]})", R"({"match": ["1", "7"]})"}) {
    EXPECT_EQ(d.line(one("test", "/class-maps/1/B", value)), Changes::Outcome::applied) << value;
  }
  d.line(one("test", "/class-maps/qos/C", "{}"));
  d.line(one("test", "/class-maps/qos/C", R"({"match": []})"));
  d.line(one("test", "/class-maps/qos/C/match", "[]"));
  d.line(one("test", "/class-maps/7", R"({"Y": {}, "X": {}})"));
  d.line(one(
      "test", "/class-maps",
      R"({"7": {"X": {}, "Y": {}}, "1": {"A": {"match": [1]}, "B": {"match": [1, 7]}, "C": {}}})"));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(Changes, TestThatFailsRefusesTheLine) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("[" + operation("remove", "/class-maps/qos/A") + "," +
                          operation("test", "/class-maps/qos/B", R"({"match": [1]})") + "]"),
              IsEmpty());
  d.line(one("test", "/class-maps/qos/B/match", R"(["ip"])"));
  d.line(one("test", "/class-maps/qos/Z", "{}"));
  EXPECT_THAT(d.reports,
              ElementsAre("line 1: refused: /class-maps/qos/B: test failed: at /match: expected "
                          "[\"ip-access-group\"], and [\"ip-access-group\",7] is there",
                          "line 2: refused: /class-maps/qos/B/match: test failed: "
                          "[\"ip-access-group\",7] is there; at /0: expected a "
                          "match option: ip-access-group, ipv6-access-group or a number from 0 to "
                          "255, not \"ip\"",
                          "line 3: refused: /class-maps/qos/Z: nothing is there"));
}

// ===== A line as a whole

TEST(Changes, LaterOperationsOfALineSeeTheEarlierOnes) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("[" + operation("add", "/class-maps/9", "{}") + "," +
                          operation("add", "/class-maps/9/Z", "{}") + "," +
                          operation("add", "/class-maps/9/Z/match/-", "3") + "," +
                          operation("test", "/class-maps/9", R"({"Z": {"match": [3]}})") + "," +
                          operation("remove", "/class-maps/9/Z") + "," +
                          operation("test", "/class-maps/9", "{}") + "]"),
              ElementsAre("cmapType 9", "cmap 9/Z", "match Z 3", "cmap 9/Z"));
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(Changes, AnElementThatALineAddsTakesItsPlaceInTheOrderOfTheSet) {
  HostDevice d(device);
  d.line("[" + operation("add", "/class-maps/qos/B/match/-", "2") + "," +
         operation("test", "/class-maps/qos/B/match", "[1, 2, 7]") + "]");
  EXPECT_THAT(d.reports, IsEmpty());
}

TEST(Changes, TestSeesTheNativeStateUnderTheChangesOfItsLine) {
  HostDevice d(device);
  d.line("[" + operation("remove", "/class-maps/7/X") + "," +
         operation("add", "/class-maps/7/Z", R"({"match": [1]})") + "," +
         operation("add", "/class-maps/7/Y/match/-", "2") + "," +
         operation("test", "/class-maps/7", R"({"Y": {"match": [2]}, "Z": {"match": [1]}})") + "]");
  EXPECT_THAT(d.reports, IsEmpty());
  EXPECT_THAT(d.contents(7), ElementsAre("Y 2", "Z 1"));
}

TEST(Changes, ARemovedEntryIsGoneForTheRestOfTheLine) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("[" + operation("remove", "/class-maps/qos/A") + "," +
                          operation("add", "/class-maps/qos/A/match/-", "2") + "]"),
              IsEmpty());
  EXPECT_THAT(d.reports, ElementsAre("line 1: refused: /class-maps/qos/A/match/-: nothing is at "
                                     "/class-maps/qos/A"));
}

TEST(Changes, ARefusedLineChangesNothingAndTheNextOneIsRead) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom("[" + operation("remove", "/class-maps/qos/A") + "," +
                          operation("remove", "/class-maps/qos/Z") + "]"),
              IsEmpty());
  EXPECT_THAT(d.contents(), ElementsAre("A 1", "B 1 7", "C"));
  EXPECT_THAT(d.heardFrom(one("remove", "/class-maps/qos/A")), ElementsAre("cmap 1/A"));
  EXPECT_FALSE(d.changes.isClean());
}

TEST(Changes, BlankLinesAreSkippedButCount) {
  HostDevice d;
  EXPECT_EQ(d.line(""), Changes::Outcome::blank);
  EXPECT_EQ(d.line(" \t\r"), Changes::Outcome::blank);
  EXPECT_EQ(d.line("[]\r"), Changes::Outcome::applied);
  EXPECT_EQ(d.line("x"), Changes::Outcome::refused);
  EXPECT_THAT(d.reports,
              ElementsAre("line 4: refused: (line): not JSON: at byte 1: Invalid value."));
}

// ===== Refusals

TEST(Changes, ARefusedLineAsksForTheKeyThatWasProbablyMeant) {
  HostDevice d(R"({"class-maps": {"qos": {"MGMT-SSH": {}}}})");
  d.line(one("remove", "/class-maps/qos/MGMT-SHH"));
  d.line(one("add", "/class-maps/qos/mgmt-ssh/match", "[]"));
  d.line("[" + operation("add", "/class-maps/qos/VOICE", "{}") + "," +
         operation("remove", "/class-maps/qos/VIOCE") + "]");
  d.line("[" + operation("remove", "/class-maps/qos/MGMT-SSH") + "," +
         operation("remove", "/class-maps/qos/MGMT-SHH") + "]");
  EXPECT_THAT(
      d.reports,
      ElementsAre("line 1: refused: /class-maps/qos/MGMT-SHH: nothing is there: did you mean "
                  "MGMT-SSH?",
                  "line 2: refused: /class-maps/qos/mgmt-ssh/match: nothing is at "
                  "/class-maps/qos/mgmt-ssh: did you mean MGMT-SSH?",
                  "line 3: refused: /class-maps/qos/VIOCE: nothing is there: did you mean VOICE?",
                  "line 4: refused: /class-maps/qos/MGMT-SHH: nothing is there"));
}

TEST(Changes, ARefusedLineAsksForANameWithASlashThatIsThere) {
  HostDevice d(R"({"interfaces": {"Slot1/Port2": {}}, "class-maps": {"qos": {"web/dns": {}}}})");
  d.line(one("remove", "/interfaces/Slot1/Port2/pfc"));
  d.line(one("remove", "/interfaces/Slot1~1Port3"));
  d.line(one("replace", "/class-maps/qos/web/dns/match", "[]"));
  d.line(one("remove", "/class-maps/qos/web/dnz"));
  EXPECT_THAT(
      d.reports,
      ElementsAre(
          "line 1: refused: /interfaces/Slot1/Port2/pfc: unknown member \"Port2\" (legal: "
          "tx-queues, pfc): a \"/\" in a name is written \"~1\": did you mean "
          "/interfaces/Slot1~1Port2/pfc?",
          "line 2: refused: /interfaces/Slot1~1Port3: nothing is there",
          "line 3: refused: /class-maps/qos/web/dns/match: unknown member \"dns\" (legal: "
          "match): a \"/\" in a name is written \"~1\": did you mean "
          "/class-maps/qos/web~1dns/match?",
          "line 4: refused: /class-maps/qos/web/dnz: unknown member \"dnz\" (legal: match)"));
}

TEST(Changes, AKeyThatWasProbablyMeantIsWrittenAsAPointerWritesIt) {
  HostDevice d(R"({"interfaces": {"Ethernet1/1": {}}})");
  d.line(one("remove", "/interfaces/Etherent1~11"));
  EXPECT_THAT(d.reports,
              ElementsAre("line 1: refused: /interfaces/Etherent1~11: nothing is there: did "
                          "you mean Ethernet1~11?"));
}

TEST(Changes, ATestThatFailsNamesTheFirstDifferenceOfLargeValues) {
  std::string queues;
  for (int i = 0; i < 30; ++i) {
    queues +=
        (i == 0 ? "\"uc-" : ", \"uc-") + std::to_string(i) + R"(": {"bandwidth": 40, "shape": 7})";
  }
  HostDevice d(R"({"interfaces": {"E": {"tx-queues": {)" + queues + "}}}}");
  std::string other = queues;
  other.replace(other.find(R"(17": {"bandwidth": 40)"), 21, R"(17": {"bandwidth": 41)");
  d.line(one("test", "/interfaces/E", R"({"tx-queues": {)" + queues + "}}"));
  d.line(one("test", "/interfaces/E", R"({"tx-queues": {)" + other + "}}"));
  d.line(one("test", "/interfaces/E/tx-queues/uc-3/shape", "\"7\""));
  EXPECT_THAT(
      d.reports,
      ElementsAre("line 2: refused: /interfaces/E: test failed: at /tx-queues/uc-17/bandwidth: "
                  "expected 41, and 40 is there",
                  "line 3: refused: /interfaces/E/tx-queues/uc-3/shape: test failed: 7 is there; "
                  "expected a whole number from 0 to 4294967295, not \"7\""));
}

TEST(Changes, ACollectionWithManyKeysIsNotSearchedForOneThatWasMeant) {
  for (const int count : {999, 1001}) {
    std::string names = R"("VOICE": {})";
    for (int i = 1; i < count; ++i) names += ", \"C" + std::to_string(i) + "\": {}";
    HostDevice d(R"({"class-maps": {"qos": {)" + names + "}}}");
    d.line(one("remove", "/class-maps/qos/VIOCE"));
    EXPECT_THAT(d.reports, ElementsAre("line 1: refused: /class-maps/qos/VIOCE: nothing is there" +
                                       std::string(count < 1000 ? ": did you mean VOICE?" : "")));
  }
}

struct Refusal {
  std::string line;
  std::string report;
  friend std::ostream& operator<<(std::ostream& out, const Refusal& refusal) {
    return out << refusal.line;
  }
};

class RefusedLine : public testing::TestWithParam<Refusal> {};

TEST_P(RefusedLine, IsReportedWithItsPlaceAndReason) {
  HostDevice d(device);
  EXPECT_THAT(d.heardFrom(GetParam().line), IsEmpty());
  EXPECT_THAT(d.reports, ElementsAre("line 1: refused: " + GetParam().report));
}

const std::string legalSections =
    " (legal: class-maps, access-lists, policy-maps, service-policies, interfaces, qos-profiles, "
    "comments, tc-to-tx-queue, forwarding-groups, queue-names, pfc-watchdog)";
constexpr const char* notAnIndex =
    "\"match\" is a set and its elements have no index: change it as a whole, or add to it at "
    "\"-\"";
constexpr const char* notAnOption =
    "expected a match option: ip-access-group, ipv6-access-group or a number from 0 to 255, not ";

INSTANTIATE_TEST_SUITE_P(
    Changes, RefusedLine,
    testing::Values(
        Refusal{
            one("add", "", "{}"),
            "(document): the document can't be changed or tested as a whole: name a place in it"},
        Refusal{
            one("test", "", "{}"),
            "(document): the document can't be changed or tested as a whole: name a place in it"},
        Refusal{
            one("add", "/class-map", "{}"),
            "/class-map: unknown member \"class-map\": did you mean class-maps?" + legalSections},
        Refusal{one("add", "/", "{}"), "/: unknown member \"\"" + legalSections},
        Refusal{one("remove", "/class-maps/01"),
                "/class-maps/01: \"01\" is not a map type: qos or a number from 0 to 255"},
        Refusal{one("remove", "/class-maps/9"), "/class-maps/9: nothing is there"},
        Refusal{one("replace", "/class-maps/9", "{}"), "/class-maps/9: nothing is there"},
        Refusal{one("add", "/class-maps/9/Z", "{}"),
                "/class-maps/9/Z: nothing is at /class-maps/9"},
        Refusal{one("replace", "/class-maps/qos/Z", "{}"), "/class-maps/qos/Z: nothing is there"},
        Refusal{one("remove", "/class-maps/qos/Z"), "/class-maps/qos/Z: nothing is there"},
        Refusal{one("add", "/class-maps/qos/Z/match", "[]"),
                "/class-maps/qos/Z/match: nothing is at /class-maps/qos/Z"},
        Refusal{one("add", "/class-maps/qos/A/type", "1"),
                "/class-maps/qos/A/type: unknown member \"type\" (legal: match)"},
        Refusal{
            one("remove", "/class-maps/Qos/A"),
            "/class-maps/Qos/A: \"Qos\" is not a map type: qos or a number from 0 to 255: did you "
            "mean qos?"},
        Refusal{one("add", "/interfaces/Ethernet1/1/tx-queues/uc-3", "{}"),
                "/interfaces/Ethernet1/1/tx-queues/uc-3: unknown member \"1\" (legal: tx-queues, "
                "pfc): a \"/\" in a name is written \"~1\": did you mean "
                "/interfaces/Ethernet1~11/tx-queues/uc-3?"},
        Refusal{one("add", "/interfaces/Ethernet1/2/3", "{}"),
                "/interfaces/Ethernet1/2/3: unknown member \"2\" (legal: tx-queues, pfc): a \"/\" "
                "in a name is written \"~1\": did you mean /interfaces/Ethernet1~12~13?"},
        Refusal{
            one("add", "/comments/if-Et1/1-uc-3-txq", "\"\""),
            "/comments/if-Et1/1-uc-3-txq: nothing can stand below \"if-Et1\": a \"/\" in a name "
            "is written \"~1\": did you mean /comments/if-Et1~11-uc-3-txq?"},
        Refusal{
            one("add", "/interfaces/Ethernet1/1/tx-queue/uc-3", "{}"),
            "/interfaces/Ethernet1/1/tx-queue/uc-3: unknown member \"1\" (legal: tx-queues, pfc): "
            "a \"/\" in a name is written \"~1\": did you mean /interfaces/Ethernet1~11?"},
        Refusal{one("add", "/access-lists/ipv4/acl/10/dscp", "1"),
                "/access-lists/ipv4/acl/10/dscp: unknown member \"10\" (legal: rules)"},
        Refusal{one("add", "/queue-names/EF/3", "1"),
                "/queue-names/EF/3: nothing can stand below \"EF\""},
        Refusal{
            one("add", "/service-policies/1:P/interfaces/Ethernet1/1", "true"),
            "/service-policies/1:P/interfaces/Ethernet1/1: nothing can stand below \"Ethernet1\": "
            "a \"/\" in a name is written \"~1\": did you mean "
            "/service-policies/1:P/interfaces/Ethernet1~11?"},
        Refusal{one("add", "/interfaces/Ethernet1/speed", "{}"),
                "/interfaces/Ethernet1/speed: unknown member \"speed\" (legal: tx-queues, pfc)"},
        Refusal{one("add", "/class-maps/qos/Z", "null"),
                "/class-maps/qos/Z: null is never a value here: expected an object"},
        Refusal{one("add", "/class-maps/qos/Z", "[]"),
                "/class-maps/qos/Z: expected an object, not an array"},
        Refusal{one("add", "/class-maps/qos/Z", R"({"match": [300]})"),
                "/class-maps/qos/Z: at /match/0: " + std::string(notAnOption) + "300"},
        Refusal{one("add", "/class-maps/qos/A/match/-", "300"),
                "/class-maps/qos/A/match/-: " + std::string(notAnOption) + "300"},
        Refusal{one("add", "/class-maps/qos/A/match/-", "\"1\""),
                "/class-maps/qos/A/match/-: the set holds this value already"},
        Refusal{one("add", "/class-maps/qos/A/match", R"([1, "ip-access-group"])"),
                "/class-maps/qos/A/match: at /1: the same value twice"},
        Refusal{one("add", "/class-maps/qos/A/match/0", "2"),
                "/class-maps/qos/A/match/0: " + std::string(notAnIndex)},
        Refusal{one("remove", "/class-maps/qos/A/match/0"),
                "/class-maps/qos/A/match/0: " + std::string(notAnIndex)},
        Refusal{one("test", "/class-maps/qos/A/match/0", "1"),
                "/class-maps/qos/A/match/0: " + std::string(notAnIndex)},
        Refusal{one("remove", "/class-maps/qos/A/match/-"),
                "/class-maps/qos/A/match/-: nothing stands at \"-\": it is only for add"},
        Refusal{one("replace", "/class-maps/qos/A/match/-", "2"),
                "/class-maps/qos/A/match/-: nothing stands at \"-\": it is only for add"},
        Refusal{one("add", "/class-maps/qos/A/match/-/x", "2"),
                "/class-maps/qos/A/match/-/x: nothing can stand below \"-\""},
        Refusal{one("add", "/class-maps", R"({"qos": {}, "1": {}})"),
                "/class-maps: at /1: the same key twice"},
        Refusal{one("add", "/class-maps/qos/a\\nb", "3"),
                "/class-maps/qos/a\\u000ab: expected an object, not 3"},
        Refusal{one("copy", "/class-maps/qos/Z"),
                "/class-maps/qos/Z: copy is not supported: use remove and add"}));

// ===== Exceptions

TEST(Changes, AnExceptionThatLeavesAHandlerIsReportedAndTheWriteStands) {
  HostDevice d(device);
  int calls = 0;
  const auto thrower = Rok::make<HostNotifiee>(*d.classMaps(), [&](Rok::AttributeId, const void*) {
    if (++calls == 1) Rok::throwRangeException("too far");
    throw Rok::MutatorReinstantiatingException("twice", "cmapConfig", 130);
  });
  EXPECT_EQ(d.line("[]"), Changes::Outcome::applied);
  EXPECT_THAT(d.heardFrom("[" + operation("replace", "/class-maps/qos/A", "{}") + "," +
                          operation("remove", "/class-maps/qos/B") + "]"),
              ElementsAre("cmap 1/A", "cmap 1/A", "cmap 1/B"));
  EXPECT_THAT(d.contents(), ElementsAre("A", "C"));
  EXPECT_THAT(d.reports,
              ElementsAre("line 2: range: too far", "line 2: reinstantiating: cmapConfig",
                          "line 2: reinstantiating: cmapConfig"));
  EXPECT_FALSE(d.changes.isClean());
}

TEST(Changes, EachMatchOptionIsAWriteOfItsOwn) {
  HostDevice d(device);
  const auto thrower =
      Rok::make<HostNotifiee>(*d.classMap("B"), [&](Rok::AttributeId, const void*) {
        throw Rok::MutatorArgNullPointerException("null", "aclConfig", 130);
      });
  d.line(one("replace", "/class-maps/qos/B/match", "[2, 3]"));
  EXPECT_THAT(d.contents(), ElementsAre("A 1", "B 2 3", "C"));
  EXPECT_THAT(d.reports,
              ElementsAre("line 1: null argument: aclConfig", "line 1: null argument: aclConfig",
                          "line 1: null argument: aclConfig", "line 1: null argument: aclConfig"));
}

}  // namespace
}  // namespace host::changesTest
