#include "host/OpenConfigJson.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/support/HostModel.h"

namespace host::openConfigJsonTest {
namespace {

using support::HostModel;
using support::HostRendered;

TEST(OpenConfigFormat, OfAnEmptyModelIsAnEmptyTree) {
  EXPECT_EQ(HostRendered(HostModel()).json, R"({"openconfig-qos:qos":{}})");
}

TEST(OpenConfigFormat, ShowsTheListsInTheOrderOfTheirNames) {
  const HostModel built;
  built.model.schedulerPolicies->schedulerPolicyIs("s");
  built.queueIs("q");
  built.model.queueManagementProfiles->queueManagementProfileIs(
      QosOc::Config::QueueManagementProfile("p"));
  built.model.pfc->watchdogIs({1, 1, 1, 1, "1"});
  built.interface("e");
  built.forwardingGroupIs("f", "");
  built.classifier("c");
  std::size_t last = 0;
  for (const char* list : {"classifiers", "forwarding-groups", "interfaces", "qosoc-augments:pfc",
                           "queue-management-profiles", "queues", "scheduler-policies"}) {
    const std::size_t at = HostRendered(built).json.find('"' + std::string(list) + "\":{");
    ASSERT_NE(at, std::string::npos) << list;
    EXPECT_LT(last, at) << list;
    last = at;
  }
}

TEST(OpenConfigFormat, WritesNoContainerWithoutALeaf) {
  const HostModel built;
  built.interface("e")->outputIs()->queuesIs("");
  built.interface("e")->inputIs()->classifiersIs();
  built.outputQueueIs("blank", "", "");
  built.termIs(QosOc::Config::Term("t"));
  EXPECT_EQ(HostRendered(built).tree(),
            R"("classifiers":{"classifier":[{"config":{"name":"c","type":"IPV4"},"name":"c",)"
            R"("terms":{"term":[{"config":{"id":"t"},"id":"t"}]}}]},)"
            R"("interfaces":{"interface":[{"config":{"interface-id":"e"},"interface-id":"e"}]})");
}

TEST(OpenConfigFormat, QuotesAKeyInAWarningByTheQuoteThatItHasNot) {
  const HostModel built;
  built.classifier("it's", QosOc::Classifier::Type{7});
  EXPECT_EQ(
      HostRendered(built).warnings.at(0),
      "/openconfig-qos:qos/classifiers/classifier[name=\"it's\"]/config/type: 7 is no type of a "
      "classifier: left out (from the class map \"__yang_[it's]_[]\")");
}

TEST(OpenConfigFormat, WarnsOnceInTheLifeOfARenderer) {
  const HostModel built;
  built.classifier("c", QosOc::Classifier::Type{7});
  int warnings = 0;
  OpenConfigJson renderer([&](const std::string&) { ++warnings; });
  renderer.json(built.model, Layout::compact);
  renderer.json(built.model, Layout::compact);
  EXPECT_EQ(warnings, 1);
}

}  // namespace
}  // namespace host::openConfigJsonTest
