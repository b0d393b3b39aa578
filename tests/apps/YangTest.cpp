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
  HostRun translate(const std::vector<std::string>& words) const {
    std::vector<std::string> command{paths::qosoc, "translate"};
    command.insert(command.end(), words.begin(), words.end());
    return hostRun(command);
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
  const HostRun run = translate({folder_.file("native.json", "{}")});
  expectValid("get", run.out);
  expectValid("data", run.out);
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

TEST_F(Yang, NastyNamesAndValuesAreValid) {
  if (!isHere()) return;
  std::string native = R"({"class-maps": {"qos": {"PLAIN": {})";
  std::string model = R"({"classifiers": {"": {})";
  int dscp = 0;
  for (const std::string& name : nastyNames()) {
    for (const std::string& term : {std::string(), name, std::string("t")}) {
      native += R"(, "__yang_[)" + name + "]_[" + term + R"(]": {"match": [1]})";
    }
    const std::string dscps = std::to_string(dscp) + ", 3, 3, 64, 255, " + std::to_string(dscp);
    dscp = (dscp + 7) % 256;
    model += ", \"" + name + R"(": {"config": {"name": "x", "type": 9}, "terms": {"": {}, "t": {
        "config-id": "x", "conditions": {"ipv4": {"dscp": )" +
             std::to_string(dscp) + R"(}, "ipv6": {"dscp-set": [)" + dscps +
             R"(]}}, "actions": {"target-group": ")" + name + R"("}}, ")" + name +
             R"(": {"actions": {"target-group": ""}, "conditions": {}}}})";
  }
  const HostRun run = translate({folder_.file("native.json", native + "}}}"), "--initial",
                                 folder_.file("model.json", model + "}}")});
  EXPECT_EQ(run.exit, 0) << run.err.substr(0, 1000);
  EXPECT_NE(run.err, "");
  expectValid("get", run.out);
}

}  // namespace
