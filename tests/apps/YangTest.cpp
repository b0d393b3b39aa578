// What the program prints is valid by the published OpenConfig modules. They are not part of this
// project: OPENCONFIG_YANG_DIR names the folder that holds them.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "Paths.h"
#include "tests/support/HostProgram.h"

namespace {

using support::HostFolder;
using support::HostRun;
using support::hostRun;

// Validates a document, as `get` (references may dangle) or as `data` (they must resolve).
class Yang : public testing::Test {
 protected:
  static bool isHere() {
    const char* modules = std::getenv("OPENCONFIG_YANG_DIR");
    const bool here = modules != nullptr && std::filesystem::is_directory(modules) &&
                      hostRun({"yanglint", "--version"}).exit == 0;
    if (!here) std::cout << "no OpenConfig modules: not validated\n";
    return here;
  }
  HostRun yanglint(const std::string& type, const std::string& document) const {
    const std::string modules = std::getenv("OPENCONFIG_YANG_DIR");
    return hostRun({"yanglint", "-D", "-p", modules, "-t", type, "-e", "-f", "json",
                    modules + "/openconfig-qos.yang", modules + "/openconfig-qos-types.yang",
                    folder_.file("document.json", document)});
  }
  void expectValid(const std::string& type, const std::string& document) const {
    const HostRun run = yanglint(type, document);
    EXPECT_EQ(run.exit, 0) << type << ": " << run.err << document.substr(0, 2000);
  }
  // A model as it stands: the one root that is built sweeps nothing.
  HostRun translate(const std::string& model) const {
    return hostRun({paths::qosoc, "translate", folder_.file("native.json", "{}"), "--initial",
                    folder_.file("model.json", model), "--roots", "forwarding-group"});
  }

  HostFolder folder_;
};

TEST_F(Yang, TheValidatorRefusesWhatIsNotValid) {
  if (!isHere()) return;
  EXPECT_NE(yanglint("get", R"({"openconfig-qos:qos": {"nothing": {}}})").exit, 0);
}

TEST_F(Yang, TheExamplesAreValidAsAWhole) {
  if (!isHere()) return;
  for (const auto& entry : std::filesystem::directory_iterator(paths::examples)) {
    if (!entry.is_directory()) continue;
    for (const char* file : {"01-openconfig.json", "02-openconfig.json"}) {
      const std::string document = support::hostText((entry.path() / file).string());
      ASSERT_FALSE(document.empty()) << entry.path() << file;
      expectValid("get", document);
      expectValid("data", document);
    }
  }
}

TEST_F(Yang, AnEmptyModelIsValid) {
  if (!isHere()) return;
  const HostRun run = translate("{}");
  expectValid("get", run.out);
  expectValid("data", run.out);
}

int occurrences(const std::string& text, const std::string& part) {
  int n = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++n;
  return n;
}

// As they stand in a JSON text.
std::vector<std::string> nastyNames() {
  std::vector<std::string> names{" ",
                                 "'",
                                 "\\\"",
                                 "'\\\"",
                                 "a/b",
                                 "[",
                                 "\\\\",
                                 "..",
                                 "*",
                                 "&lt;",
                                 "\\u0085",
                                 "\\u2028",
                                 "\\ufdd0",
                                 "\\ufffd",
                                 "\\ufffe",
                                 "\\uffff",
                                 "\\ufeffx",
                                 "\\u202ex",
                                 "\\ud83d\\ude00",
                                 "\\ud83f\\udffe",
                                 "\\udbff\\udfff",
                                 std::string(100'000, 'n')};
  for (int control = 0; control < 0x20; ++control) {
    constexpr const char* digits = "0123456789abcdef";
    names.push_back(std::string("\\u00") + digits[control >> 4] + digits[control & 15]);
  }
  names.emplace_back("\x7f");
  return names;
}

// A member of the model format: an entry for each name.
std::string part(const char* part, const std::vector<std::string>& names,
                 std::string (*entry)(const std::string& name)) {
  std::string text = '"' + std::string(part) + "\": {\"\": {}";
  for (const std::string& name : names) text += ", \"" + name + "\": " + entry(name);
  return text + '}';
}

// Its values fit nowhere, its names may or may not.
std::string nastyClassifier(const std::string& name) {
  const std::string dscps = R"({"dscp": 64, "dscp-set": [63, 3, 3, 64, 255, 63]})";
  return R"({"config": {"name": "x", "type": 9}, "terms": {"": {}, "t": {"config-id": "x",)"
         R"("conditions": {"ipv4": )" +
         dscps + R"(, "ipv6": )" + dscps + "}, " + R"("actions": {"target-group": ")" + name +
         R"("}}, ")" + name + R"(": {"actions": {"target-group": ""}, "conditions": {}}}})";
}
std::string forwardingGroup(const std::string& name) {
  return R"({"name": "x", "output-queue": ")" + name + R"("})";
}
std::string queue(const std::string& /*name*/) {
  return R"({"config": {"bandwidth": 100, "strict-priority": true}, "ecn-config": {)"
         R"("max-drop-probability-percent": 100, "max-threshold": 4294967294,)"
         R"("threshold-unit": 255, "weight": 4294967295}})";
}
std::string profile(const std::string& /*name*/) {
  return R"({"wred-uniform": {"min-threshold": 18446744073709551615, "weight": 4294967295,)"
         R"("enable-ecn": true}})";
}
std::string nastyInterface(const std::string& name) {
  const std::string config = R"({"config": {"name": ")" + name + R"("}})";
  return R"({"input": {"classifiers": {"0": )" + config + R"(, "1": )" + config + R"(, "9": )" +
         config + R"(}}, "output": {"queues": {"": {"config": {"name": "x"}}, "blank": {}, ")" +
         name + R"(": {"config": {"name": "x", "queue-management-profile": ")" + name + R"("}}}}})";
}

TEST_F(Yang, NastyNamesAndValuesAreValid) {
  if (!isHere()) return;
  const std::vector<std::string> names = nastyNames();
  const std::string model = '{' + part("classifiers", names, nastyClassifier) + ", " +
                            part("forwarding-groups", names, forwardingGroup) + ", " +
                            part("interfaces", names, nastyInterface) + ", " +
                            part("queue-management-profiles", names, profile) + ", " +
                            part("queues", names, queue) + '}';
  const HostRun run = translate(model);
  EXPECT_EQ(run.exit, 0) << run.err.substr(0, 1000);
  EXPECT_NE(run.err, "");
  expectValid("get", run.out);
  // A name that fits in one place fits wherever it stands, so no reference has lost its target.
  expectValid("data", run.out);
}

TEST_F(Yang, ReferencesMayDangle) {
  if (!isHere()) return;
  const HostRun run =
      translate(R"({"classifiers": {"c": {"terms": {"t": {"actions": {"target-group": "gone"}}}}},)"
                R"("forwarding-groups": {"f": {"output-queue": "gone"}}, "interfaces": {"e": {)"
                R"("input": {"classifiers": {"0": {"config": {"name": "gone"}}}}, "output": {)"
                R"("queues": {"q": {"config": {"name": "q", "queue-management-profile": "gone"}}},)"
                R"("scheduler-policy": {"config": {"name": "gone"}}}}}})");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(occurrences(run.out, "\"gone\""), 5);
  expectValid("get", run.out);
  EXPECT_NE(yanglint("data", run.out).exit, 0);
}

}  // namespace
