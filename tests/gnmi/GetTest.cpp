// Capabilities, Get and Set, as a client has them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>

#include "host/OpenConfigJson.h"
#include "host/openconfig/Leaves.h"
#include "tests/support/FlatDocument.h"
#include "tests/support/GnmiServed.h"

namespace server::getTest {
namespace {

using support::gnmiMessage;
using support::GnmiServed;
using support::HostLines;
using support::hostOneOfEach;
using testing::ElementsAre;
using testing::IsEmpty;

const std::string queue = "/qos/queues/queue[name=q]";

gnmi::CapabilityResponse capabilities(GnmiServed& served) {
  grpc::ClientContext context;
  support::gnmiDeadline(context);
  gnmi::CapabilityResponse response;
  EXPECT_TRUE(served.stub->Capabilities(&context, {}, &response).ok());
  return response;
}

TEST(Capabilities, NameModulesEncodingsAndVersion) {
  GnmiServed served;
  const gnmi::CapabilityResponse response = capabilities(served);
  HostLines models;
  for (const auto& model : response.supported_models()) {
    models.push_back(model.name() + ' ' + model.version() + ' ' + model.organization());
  }
  EXPECT_THAT(models, ElementsAre("openconfig-qos 2.2.0 OpenConfig working group",
                                  "openconfig-qos-types 1.0.1 OpenConfig working group",
                                  "qosoc-augments 2026-11-22 The qosoc project"));
  EXPECT_THAT(response.supported_encodings(),
              ElementsAre(gnmi::JSON, gnmi::JSON_IETF, gnmi::PROTO));
  EXPECT_EQ(response.gnmi_version(), "0.10.0");
}

TEST(Capabilities, NameTheLatestRevisionOfTheAugmentingModule) {
  std::ifstream file(QOS_SOURCE_DIR "/yang/qosoc-augments.yang");
  const std::string text(std::istreambuf_iterator<char>(file), {});
  const std::size_t revision = text.find("revision ");
  ASSERT_NE(revision, std::string::npos);
  GnmiServed served;
  EXPECT_EQ(capabilities(served).supported_models(2).version(), text.substr(revision + 9, 10));
}

TEST(Capabilities, NameTheModulesOfTheView) {
  GnmiServed served("{}", {.augments = false, .interfaceRef = true});
  const gnmi::CapabilityResponse response = capabilities(served);
  HostLines names;
  for (const auto& model : response.supported_models()) names.push_back(model.name());
  EXPECT_THAT(names,
              ElementsAre("openconfig-qos", "openconfig-qos-types", "openconfig-interfaces"));
}

TEST(Set, IsRefusedAndSaysWhy) {
  GnmiServed served;
  grpc::ClientContext context;
  gnmi::SetResponse response;
  EXPECT_EQ(served.shown(served.stub->Set(&context, {}, &response)),
            "UNIMPLEMENTED Set is not served: the direction is native to OpenConfig, and the model "
            "follows the native configuration");
}

// ===== What Get answers

TEST(Get, AnswersALeaf) {
  GnmiServed served(hostOneOfEach);
  EXPECT_THAT(served.get({queue + "/config/qosoc-augments:bandwidth"}),
              ElementsAre("+ " + queue + "/config/qosoc-augments:bandwidth 40"));
  EXPECT_THAT(served.get({queue + "/config/bandwidth"}, gnmi::PROTO),
              ElementsAre("+ " + queue + "/config/qosoc-augments:bandwidth uint_val: 40"));
}

TEST(Get, AnswersASubtreeAsOneObject) {
  GnmiServed served(hostOneOfEach);
  const std::string group = "/qos/forwarding-groups";
  EXPECT_THAT(
      served.get({group}),
      ElementsAre(
          "+ " + group +
          R"( {"openconfig-qos:forwarding-group":[{"config":{"name":"f","output-queue":"q"},)"
          R"("name":"f"}]})"));
  EXPECT_THAT(served.get({group}, gnmi::JSON),
              ElementsAre("+ " + group +
                          R"( {"forwarding-group":[{"config":{"name":"f","output-queue":"q"},)"
                          R"("name":"f"}]})"));
}

TEST(Get, AnswersASubtreeByItsLeavesAsProto) {
  GnmiServed served(hostOneOfEach);
  const std::string group = "/qos/forwarding-groups/forwarding-group[name=f]";
  EXPECT_THAT(served.get({"/qos/forwarding-groups"}, gnmi::PROTO),
              ElementsAre("+ " + group + "/config/name string_val: \"f\"",
                          "+ " + group + "/config/output-queue string_val: \"q\"",
                          "+ " + group + "/name string_val: \"f\""));
}

TEST(Get, AnswersTheRootAsTheDocument) {
  GnmiServed served(hostOneOfEach);
  host::OpenConfigJson writer([](const std::string& /*warning*/) {});
  const std::string document = writer.json(served.model, host::Layout::compact);
  const HostLines answer = served.get({"/"});
  ASSERT_EQ(answer.size(), 1u);
  EXPECT_EQ(support::flatDocument(answer[0].substr(4)), support::flatDocument(document));
}

TEST(Get, AnswersAnEmptyModelByAnEmptyNotification) {
  GnmiServed served;
  EXPECT_THAT(served.get({"/"}), IsEmpty());
}

TEST(Get, AnswersEachPathByANotification) {
  GnmiServed served(hostOneOfEach);
  gnmi::GetResponse response;
  ASSERT_TRUE(served
                  .get(gnmiMessage<gnmi::GetRequest>(R"(
                      prefix { target: "t" origin: "openconfig" elem { name: "qos" } }
                      path { elem { name: "queues" } } path { elem { name: "interfaces" } })"),
                       response)
                  .ok());
  ASSERT_EQ(response.notification_size(), 2);
  for (const auto& notification : response.notification()) {
    EXPECT_EQ(notification.prefix().ShortDebugString(), R"(origin: "openconfig" target: "t")");
    EXPECT_EQ(notification.timestamp(), served.store.head().timestamp);
    EXPECT_EQ(notification.update_size(), 1);
  }
}

TEST(Get, AnswersWildcardsByANodeEach) {
  GnmiServed served;
  served.queueIs("a");
  served.queueIs("b");
  served.commit();
  const HostLines names{"+ /qos/queues/queue[name=a]/name \"a\"",
                        "+ /qos/queues/queue[name=b]/name \"b\""};
  EXPECT_EQ(served.get({"/qos/queues/queue[name=*]/name"}), names);
  EXPECT_EQ(served.get({"/qos/queues/queue/name"}), names);
  EXPECT_EQ(served.get({"/qos/*/queue/name"}), names);
  EXPECT_THAT(served.get({"/qos/queues/queue"}),
              ElementsAre(R"(+ /qos/queues/queue[name=a] {"openconfig-qos:config":{"name":"a"},)"
                          R"("openconfig-qos:name":"a"})",
                          R"(+ /qos/queues/queue[name=b] {"openconfig-qos:config":{"name":"b"},)"
                          R"("openconfig-qos:name":"b"})"));
  EXPECT_THAT(served.get({"/.../queue[name=b]/name"}), ElementsAre(names[1]));
  EXPECT_THAT(served.get({"/qos/classifiers/classifier[name=*]"}), IsEmpty());
}

TEST(Get, AnswersTheSameForConfigAndNothingForState) {
  GnmiServed served(hostOneOfEach);
  const auto answer = [&](gnmi::GetRequest::DataType type) {
    gnmi::GetRequest request;
    request.set_type(type);
    *request.add_path() = support::gnmiPath("/qos");
    gnmi::GetResponse response;
    EXPECT_TRUE(served.get(request, response).ok());
    return support::gnmiLines(response.notification(0));
  };
  EXPECT_EQ(answer(gnmi::GetRequest::ALL).size(), 1u);
  EXPECT_EQ(answer(gnmi::GetRequest::CONFIG), answer(gnmi::GetRequest::ALL));
  EXPECT_THAT(answer(gnmi::GetRequest::STATE), IsEmpty());
  EXPECT_THAT(answer(gnmi::GetRequest::OPERATIONAL), IsEmpty());
}

TEST(Get, HonoursADepth) {
  GnmiServed served(hostOneOfEach);
  const auto answer = [&](int level) {
    gnmi::GetRequest request;
    request.add_extension()->mutable_depth()->set_level(static_cast<unsigned>(level));
    *request.add_path() = support::gnmiPath("/qos/queues/queue[name=q]");
    request.set_encoding(gnmi::JSON);
    gnmi::GetResponse response;
    EXPECT_TRUE(served.get(request, response).ok());
    return support::gnmiLines(response.notification(0));
  };
  EXPECT_THAT(answer(1), ElementsAre("+ " + queue + R"( {"name":"q"})"));
  EXPECT_THAT(
      answer(2),
      ElementsAre("+ " + queue +
                  R"( {"config":{"name":"q","bandwidth":40,"strict-priority":true},"name":"q"})"));
  EXPECT_EQ(answer(0), answer(3));
}

// ===== What Get refuses

TEST(Get, RefusesByThePath) {
  GnmiServed served(hostOneOfEach);
  EXPECT_THAT(served.get({"/qos/queus"}),
              ElementsAre("UNIMPLEMENTED path[0].elem[1]: there is no element \"queus\" below "
                          "/qos: did you mean queues?"));
  EXPECT_THAT(served.get({"/qos", "/qos/queues/queue[name=x]"}),
              ElementsAre("NOT_FOUND path[1]: it is not there"));
  EXPECT_THAT(served.get({"/qos/classifiers/classifier[name=c]/terms/term[id=t]/conditions/ipv6/"
                          "config/dscp"}),
              ElementsAre("NOT_FOUND path[0]: it is not there"));
  EXPECT_THAT(served.get({"/qos/queues/queue[id=q]"}),
              ElementsAre("INVALID_ARGUMENT path[0].elem[2].key: \"id\" is asked for, and there is "
                          "the key name"));
}

TEST(Get, RefusesByTheRequest) {
  GnmiServed served(hostOneOfEach);
  EXPECT_EQ(served.getRefusal("encoding: ASCII"),
            "UNIMPLEMENTED encoding: ASCII is not served; JSON, JSON_IETF and PROTO are");
  EXPECT_EQ(served.getRefusal("encoding: BYTES"),
            "UNIMPLEMENTED encoding: BYTES is not served; JSON, JSON_IETF and PROTO are");
  EXPECT_EQ(served.getRefusal("path { origin: 'cli' }"),
            "UNIMPLEMENTED path[0].origin: \"cli\" is not served, \"openconfig\" is");
  EXPECT_EQ(served.getRefusal("prefix { origin: 'openconfig' } path { origin: 'openconfig' }"),
            "INVALID_ARGUMENT path[0].origin: the prefix has one, too");
  EXPECT_EQ(served.getRefusal("use_models { name: 'openconfig-bgp' }"),
            "UNIMPLEMENTED use_models[0]: \"openconfig-bgp\" is not served");
  EXPECT_EQ(served.getRefusal("use_models { name: 'openconfig-qos' version: '0.5.0' }"),
            "UNIMPLEMENTED use_models[0]: \"openconfig-qos\" of version \"0.5.0\" is not served");
}

TEST(Get, RefusesExtensionsThatWouldChangeTheAnswerAndIgnoresOthers) {
  GnmiServed served(hostOneOfEach);
  EXPECT_EQ(served.getRefusal("extension { history {} }"),
            "UNIMPLEMENTED extension.history: it is not served");
  EXPECT_EQ(served.getRefusal("extension { master_arbitration {} }"),
            "UNIMPLEMENTED extension.master_arbitration: it is not served");
  EXPECT_EQ(served.getRefusal("extension { registered_ext { id: EID_EXPERIMENTAL } }"), "OK");
}

}  // namespace
}  // namespace server::getTest
