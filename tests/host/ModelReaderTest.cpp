#include "host/ModelReader.h"

#include <gtest/gtest.h>

#include "host/ModelWriter.h"
#include "tests/support/HostDevice.h"
#include "tests/support/HostModel.h"

namespace host::modelReaderTest {
namespace {

using support::hostDscps;
using support::hostFault;
using support::HostModel;

std::string faultOf(std::string_view text) {
  const Model model;
  return hostFault([&] { readModelText(text, model); });
}

TEST(ModelReader, ReadsBackWhatTheWriterWrote) {
  const HostModel built;
  built.classifier("plain");
  built.classifier("six", QosOc::Classifier::classifierTypeIpv6)->termsIs();
  built.model.classifiers->classifierIs("");
  built.termIs(built.term("absent"));
  auto blank = built.term("");
  blank.conditions = QosOc::Config::TermConditions();
  blank.actions = QosOc::Config::TermActions();
  built.termIs(blank);
  auto full = built.term("full\n/[]");
  full.configId = "other";
  full.conditions = QosOc::Config::TermConditions{
      QosOc::Config::TermConditionsIpConfig(std::uint8_t{200}), hostDscps({9, 1, 9})};
  full.actions = QosOc::Config::TermActions{{"fg"}};
  built.termIs(full);

  const std::string text = modelJson(built.model, Layout::pretty);
  const Model read;
  readModelText(text, read);
  EXPECT_EQ(modelJson(read, Layout::pretty), text);
  EXPECT_EQ(read.classifiers->classifier("c")->terms()->term("full\n/[]"), full);
}

TEST(ModelReader, TakesWhatIsLeftOutAsAbsentOrDefault) {
  const Model model;
  readModelText(R"({"classifiers": {"c": {"terms": {"t": {}}}, "d": {}}})", model);
  const auto c = model.classifiers->classifier("c");
  EXPECT_FALSE(c->config());
  ASSERT_TRUE(c->terms());
  EXPECT_EQ(c->terms()->term("t"), QosOc::Config::Term("t"));
  EXPECT_FALSE(model.classifiers->classifier("d")->terms());
}

TEST(ModelReader, ReadsAnEmptyModel) {
  EXPECT_EQ(faultOf("{}"), "");
  EXPECT_EQ(faultOf(R"({"pfc": {}, "queues": {}})"), "");
}

TEST(ModelReader, RefusesTheSameKeyTwice) {
  EXPECT_EQ(faultOf(R"({"queues": {"q": {}, "r": {}, "q": {}}})"), "/queues/q: the same key twice");
  EXPECT_EQ(faultOf(R"({"interfaces": {"e": {}, "e": {}}})"), "/interfaces/e: the same key twice");
  EXPECT_EQ(faultOf(R"({"classifiers": {"c": {"terms": {"t": {}, "t": {}}}}})"),
            "/classifiers/c/terms/t: the same key twice");
  EXPECT_EQ(faultOf(R"({"pfc": {}, "pfc": {}})"), "/pfc: the same member twice");
}

TEST(ModelReader, RefusesWhatIsNoModel) {
  EXPECT_EQ(faultOf(R"({"openconfig-qos:qos": {}})"),
            "/openconfig-qos:qos: this is an OpenConfig document: translate --format model prints "
            "what --initial reads");
  EXPECT_EQ(faultOf(R"({"classes": {}})"),
            "/classes: unknown member (legal: classifiers, forwarding-groups, "
            "interfaces, pfc, queue-management-profiles, queues, scheduler-policies)");
  EXPECT_EQ(faultOf(R"({"classifiers": {"c": {"config": null}}})"),
            "/classifiers/c/config: null is never a value here: expected an object");
  EXPECT_EQ(faultOf(R"({"classifiers": {"c": {"config": {"type": 256}}}})"),
            "/classifiers/c/config/type: expected a whole number from 0 to 255 or null, not 256");
  EXPECT_EQ(faultOf(R"({"classifiers": {"c": {"terms": {"t": {"conditions": {"ipv4":
                        {"dscp-set": [0, -1]}}}}}}})"),
            "/classifiers/c/terms/t/conditions/ipv4/dscp-set/1: expected a whole number from 0 to "
            "255, not -1");
  EXPECT_EQ(faultOf(R"({"classifiers": {"c": {}, "c": {}}})"),
            "/classifiers/c: the same key twice");
}

}  // namespace
}  // namespace host::modelReaderTest
