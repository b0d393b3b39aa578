#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::classifiersJsonTest {
namespace {

using support::hostDscps;
using support::HostModel;
using support::HostRendered;
using testing::ElementsAre;
using testing::IsEmpty;

std::string tree(const std::string& classifiers) {
  return R"({"openconfig-qos:qos":{"classifiers":{"classifier":[)" + classifiers + "]}}}";
}
// The classifier "c" with these terms.
std::string terms(const std::string& terms) {
  return tree(R"({"config":{"name":"c","type":"IPV4"},"name":"c","terms":{"term":[)" + terms +
              "]}}");
}

TEST(ClassifiersJson, ListsClassifiersByName) {
  const HostModel built;
  built.classifier("b", QosOc::Classifier::classifierTypeIpv6);
  built.classifier("a");
  EXPECT_EQ(HostRendered(built).json, tree(R"({"config":{"name":"a","type":"IPV4"},"name":"a"},)"
                                           R"({"config":{"name":"b","type":"IPV6"},"name":"b"})"));
}

TEST(ClassifiersJson, MakesTheConfigFitTheKey) {
  const HostModel built;
  built.model.classifiers->classifierIs("a");
  built.model.classifiers->classifierIs("b")->configIs({"other", {}});
  auto term = built.term("t");
  term.configId = "other";
  built.model.classifiers->classifierIs("b")->termsIs()->termIs(term);
  EXPECT_EQ(HostRendered(built).json,
            tree(R"({"config":{"name":"a"},"name":"a"},{"config":{"name":"b"},"name":"b",)"
                 R"("terms":{"term":[{"config":{"id":"t"},"id":"t"}]}})"));
}

TEST(ClassifiersJson, ShowsConditionsAndActions) {
  const HostModel built;
  auto term = built.term("t");
  term.conditions = QosOc::Config::TermConditions{
      QosOc::Config::TermConditionsIpConfig(std::uint8_t{46}), hostDscps({10, 0, 63})};
  term.actions = QosOc::Config::TermActions{{"voice"}};
  built.termIs(term);
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.json,
            terms(R"({"actions":{"config":{"target-group":"voice"}},"conditions":{)"
                  R"("ipv4":{"config":{"dscp":46}},"ipv6":{"config":{"dscp-set":[10,0,63]}}},)"
                  R"("config":{"id":"t"},"id":"t"})"));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(ClassifiersJson, LeavesOutWhatOnlyBookkeepingNeeds) {
  const HostModel built;
  built.model.classifiers->classifierIs("");
  built.classifier("empty")->termsIs();
  built.termIs(built.term(""));
  auto blank = built.term("t");
  blank.conditions = QosOc::Config::TermConditions();
  blank.actions = QosOc::Config::TermActions();
  built.termIs(blank);
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.json,
            tree(R"({"config":{"name":"c","type":"IPV4"},"name":"c","terms":{"term":[)"
                 R"({"config":{"id":"t"},"id":"t"}]}},)"
                 R"({"config":{"name":"empty","type":"IPV4"},"name":"empty"})"));
  EXPECT_THAT(rendered.warnings, IsEmpty());
}

TEST(ClassifiersJson, LeavesOutDscpsThatTheLeafCannotHold) {
  const HostModel built;
  auto term = built.term("t");
  term.conditions = QosOc::Config::TermConditions{
      QosOc::Config::TermConditionsIpConfig(std::uint8_t{64}), hostDscps({5, 5, 255, 6})};
  built.termIs(term);
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.json, terms(R"({"conditions":{"ipv6":{"config":{"dscp-set":[5,6]}}},)"
                                 R"("config":{"id":"t"},"id":"t"})"));
  const std::string conditions =
      "/openconfig-qos:qos/classifiers/classifier[name='c']/terms/term[id='t']/conditions/";
  const std::string native = ": left out (from the access list \"__yang_[c]_[t]\")";
  EXPECT_THAT(rendered.warnings,
              ElementsAre(conditions + "ipv4/config/dscp: 64 is above 63" + native,
                          conditions + "ipv6/config/dscp-set: 5 is there twice" + native,
                          conditions + "ipv6/config/dscp-set: 255 is above 63" + native));
}

TEST(ClassifiersJson, LeavesOutNamesThatAStringCannotHold) {
  const HostModel built;
  built.classifier("bell\a");
  built.classifier("last\xef\xbf\xbf");
  built.termIs(built.term(std::string_view("nul\0", 4)));
  auto term = built.term("t");
  term.actions = QosOc::Config::TermActions{{"escape\x1b"}};
  built.termIs(term);
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.json, terms(R"({"config":{"id":"t"},"id":"t"})"));
  const std::string classifiers = "/openconfig-qos:qos/classifiers/classifier";
  EXPECT_THAT(
      rendered.warnings,
      ElementsAre(classifiers + "[name='bell\\u0007']: a name that YANG strings can't hold: left "
                                "out (from the class map \"__yang_[bell\\u0007]_[]\")",
                  classifiers + "[name='c']/terms/term[id='nul\\u0000']: an id that YANG strings "
                                "can't hold: left out (from the class map "
                                "\"__yang_[c]_[nul\\u0000]\")",
                  classifiers +
                      "[name='c']/terms/term[id='t']/actions/config/target-group: "
                      "\"escape\\u001b\" is a name that YANG strings can't hold: left out "
                      "(from the policy-map class \"__yang_[c]_[t]\")",
                  classifiers + "[name='last\\uffff']: a name that YANG strings can't hold: "
                                "left out (from the class map \"__yang_[last\\uffff]_[]\")"));
}

TEST(ClassifiersJson, KeepsNamesThatAStringCanHold) {
  const HostModel built;
  const std::string name = "tab\t lf\n cr\r del\x7f quote\" ' \\ [x]/é\xf0\x9f\x98\x80";
  built.classifier(name);
  const HostRendered rendered(built);
  EXPECT_THAT(rendered.warnings, IsEmpty());
  EXPECT_NE(rendered.json.find("tab\\t lf\\n cr\\r del\x7f quote\\\" ' \\\\ [x]/é"),
            std::string::npos);
}

TEST(ClassifiersJson, LeavesOutATypeThatHasNoName) {
  const HostModel built;
  built.classifier("c", QosOc::Classifier::Type{7});
  const HostRendered rendered(built);
  EXPECT_EQ(rendered.json, tree(R"({"config":{"name":"c"},"name":"c"})"));
  EXPECT_THAT(rendered.warnings,
              ElementsAre("/openconfig-qos:qos/classifiers/classifier[name='c']/config/type: 7 is "
                          "no type of a classifier: left out (from the class map "
                          "\"__yang_[c]_[]\")"));
}

}  // namespace
}  // namespace host::classifiersJsonTest
