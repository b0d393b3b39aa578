#include "host/ModelWriter.h"

#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::modelWriterTest {
namespace {

using support::hostDscps;
using support::HostModel;

std::string classifiersOf(const HostModel& built) {
  return support::hostPart(built.model, "classifiers");
}

TEST(ModelFormat, ShowsEveryMemberOfAnEmptyModel) {
  EXPECT_EQ(modelJson(Model(), Layout::compact),
            R"({"classifiers":{},"forwarding-groups":{},"interfaces":{},"pfc":{"watchdog":)"
            R"({"action":1,"priorities":"","time-a":0.0,"time-b":0.0,"time-c":0.0}},)"
            R"("queue-management-profiles":{},"queues":{},"scheduler-policies":{}})");
}

TEST(ModelFormat, ShowsAbsentTermsAsNullAndEmptyOnesAsAnObject) {
  const HostModel built;
  built.classifier("a");
  built.classifier("b", QosOc::Classifier::classifierTypeIpv6)->termsIs();
  EXPECT_EQ(classifiersOf(built), R"({"a":{"config":{"name":"a","type":0},"terms":null},)"
                                  R"("b":{"config":{"name":"b","type":1},"terms":{}}})");
}

TEST(ModelFormat, ShowsAClassifierThatHasNoConfigYet) {
  const HostModel built;
  built.model.classifiers->classifierIs("a");
  EXPECT_EQ(classifiersOf(built), R"({"a":{"config":{"name":"","type":null},"terms":null}})");
}

TEST(ModelFormat, TellsAbsentConditionsAndActionsFromDefaultOnes) {
  const HostModel built;
  built.termIs(built.term("absent"));
  auto blank = built.term("blank");
  blank.conditions = QosOc::Config::TermConditions();
  blank.actions = QosOc::Config::TermActions();
  built.termIs(blank);
  EXPECT_EQ(classifiersOf(built),
            R"({"c":{"config":{"name":"c","type":0},"terms":{)"
            R"("absent":{"actions":null,"conditions":null,"config-id":"absent"},)"
            R"("blank":{"actions":{"target-group":""},"conditions":{)"
            R"("ipv4":{"dscp":null,"dscp-set":[]},"ipv6":{"dscp":null,"dscp-set":[]}},)"
            R"("config-id":"blank"}}}})");
}

TEST(ModelFormat, ShowsEveryValueAsItIs) {
  const HostModel built;
  auto term = built.term("t");
  term.configId = "other";
  term.conditions = QosOc::Config::TermConditions{
      QosOc::Config::TermConditionsIpConfig(std::uint8_t{200}), hostDscps({9, 1, 9})};
  term.actions = QosOc::Config::TermActions{{"fg\n"}};
  built.termIs(term);
  EXPECT_EQ(classifiersOf(built),
            R"({"c":{"config":{"name":"c","type":0},"terms":{"t":{)"
            R"("actions":{"target-group":"fg\n"},"conditions":{)"
            R"("ipv4":{"dscp":200,"dscp-set":[]},"ipv6":{"dscp":null,"dscp-set":[9,1,9]}},)"
            R"("config-id":"other"}}}})");
}

TEST(ModelFormat, SortsNamesByTheirBytes) {
  const HostModel built;
  for (const char* name : {"b", "a", "é", "B", "", "a0"})
    built.model.classifiers->classifierIs(name);
  const std::string text = classifiersOf(built);
  std::size_t last = 0;
  for (const char* name : {"", "B", "a", "a0", "b", "é"}) {
    const std::size_t at = text.find("\"" + std::string(name) + "\":{\"config\"");
    ASSERT_NE(at, std::string::npos) << name;
    EXPECT_LE(last, at) << name;
    last = at;
  }
}

}  // namespace
}  // namespace host::modelWriterTest
