#include <gtest/gtest.h>

#include "tests/support/HostDevice.h"
#include "tests/support/HostModel.h"

namespace host::interfacesPartTest {
namespace {

using support::hostFault;
using support::hostModelWith;
using support::hostPart;
using Type = QosOc::Classifier::Type;

constexpr const char* part = "interfaces";

TEST(InterfacesPart, ReadsAndWritesEveryField) {
  const std::string text = R"({"Ethernet1":{"config":{"interface-id":"other"},)"
                           R"("input":{"classifiers":{"0":{"config":{"name":"c","type":1}},)"
                           R"("255":{"config":{"name":"","type":0}}}},)"
                           R"("output":{"pfc":{"priorities":"ff"},"queues":{)"
                           R"("":{"config":{"name":"","queue-management-profile":""}},)"
                           R"("q":{"config":{"name":"r","queue-management-profile":"p"}}},)"
                           R"("scheduler-policy":{"config":{"name":"s"}}}}})";
  const Model model = hostModelWith(part, text);
  EXPECT_EQ(hostPart(model, part), text);

  const auto interface = model.interfaces->interface("Ethernet1");
  EXPECT_EQ(interface->config().interfaceId, "other");
  const auto classifier = interface->input()->classifiers()->classifier(Type{0});
  EXPECT_EQ(classifier.type, Type{0});
  EXPECT_EQ(classifier.config.name, "c");
  EXPECT_EQ(classifier.config.type, Type{1});
  const auto& output = *interface->output();
  EXPECT_EQ(output.pfc().priorities, "ff");
  EXPECT_EQ(output.queues()->name(), "");
  EXPECT_EQ(output.queues()->q("q").config.name, "r");
  EXPECT_EQ(output.queues()->q("q").config.queueManagementProfile, "p");
  EXPECT_EQ(output.schedulerPolicy()->config.name, "s");
}

TEST(InterfacesPart, TellsWhatIsAbsentFromWhatIsEmpty) {
  const std::string text =
      R"({"a":{"config":{"interface-id":""},"input":null,"output":null},)"
      R"("b":{"config":{"interface-id":""},"input":{"classifiers":null},)"
      R"("output":{"pfc":{"priorities":""},"queues":null,"scheduler-policy":null}},)"
      R"("c":{"config":{"interface-id":""},"input":{"classifiers":{}},)"
      R"("output":{"pfc":{"priorities":""},"queues":{},)"
      R"("scheduler-policy":{"config":{"name":""}}}}})";
  const Model model = hostModelWith(part, text);
  EXPECT_EQ(hostPart(model, part), text);
  EXPECT_FALSE(model.interfaces->interface("a")->output());
  EXPECT_FALSE(model.interfaces->interface("b")->output()->schedulerPolicy());
  EXPECT_TRUE(model.interfaces->interface("c")->output()->schedulerPolicy());
}

TEST(InterfacesPart, SortsTypesByTheirBytes) {
  const Model model =
      hostModelWith(part, R"({"a": {"input": {"classifiers": {"2": {}, "10": {}}}}})");
  const std::string text = hostPart(model, part);
  EXPECT_LT(text.find("\"10\""), text.find("\"2\""));
}

TEST(InterfacesPart, TakesWhatIsLeftOutAsAbsentOrDefault) {
  const Model model = hostModelWith(part, R"({"a": {}, "b": {"input": {}, "output": {}}})");
  EXPECT_FALSE(model.interfaces->interface("a")->input());
  EXPECT_FALSE(model.interfaces->interface("b")->input()->classifiers());
  EXPECT_FALSE(model.interfaces->interface("b")->output()->queues());
}

TEST(InterfacesPart, RefusesWhatIsNoInterface) {
  const auto faultOf = [](const std::string& interface) {
    return hostFault([&] { hostModelWith(part, R"({"a": )" + interface + "}"); });
  };
  EXPECT_EQ(faultOf(R"({"input": {"classifiers": {"256": {}}}})"),
            "/interfaces/a/input/classifiers/256: this key is not a whole number from 0 to 255");
  EXPECT_EQ(faultOf(R"({"input": {"classifiers": {"00": {}}}})"),
            "/interfaces/a/input/classifiers/00: this key is not a whole number from 0 to 255");
  EXPECT_EQ(faultOf(R"({"output": {"pfc": null}})"),
            "/interfaces/a/output/pfc: null is never a value here: expected an object");
}

}  // namespace
}  // namespace host::interfacesPartTest
