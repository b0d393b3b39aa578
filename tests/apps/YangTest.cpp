// What the program prints is valid by the published OpenConfig modules and the module of this
// project that augments them. The former are not part of it: OPENCONFIG_YANG_DIR names their
// folder.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <iostream>

#include "Paths.h"
#include "tests/support/HostProgram.h"
#include "tests/support/Scenarios.h"

namespace yangTest {
namespace {

using support::HostFolder;
using support::HostRun;
using support::hostRun;

// A text with each "@" of a pattern replaced.
std::string filled(const std::string& pattern, const std::string& text) {
  std::string result;
  for (const char c : pattern) {
    if (c == '@') {
      result += text;
    } else {
      result += c;
    }
  }
  return result;
}

int occurrences(const std::string& text, const std::string& part) {
  int n = 0;
  for (std::size_t at = 0; (at = text.find(part, at)) != std::string::npos; ++at) ++n;
  return n;
}

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
    std::vector<std::string> command{"yanglint",
                                     "-D",
                                     "-p",
                                     modules,
                                     "-t",
                                     type,
                                     "-e",
                                     "-f",
                                     "json",
                                     modules + "/openconfig-qos.yang",
                                     modules + "/openconfig-qos-types.yang",
                                     paths::augments};
    if (std::filesystem::exists(interfaceTypes())) command.push_back(interfaceTypes());
    command.push_back(folder_.file("document.json", document));
    return hostRun(command);
  }
  // The types of interfaces, which the validator's own package has among its examples.
  static std::string interfaceTypes() {
    std::string beside = std::string(std::getenv("OPENCONFIG_YANG_DIR")) + "/iana-if-type.yang";
    if (std::filesystem::exists(beside)) return beside;
    return "/usr/share/doc/libyang2-tools/examples/iana-if-type.yang";
  }
  void expectValid(const std::string& type, const std::string& document) const {
    const HostRun run = yanglint(type, document);
    EXPECT_EQ(run.exit, 0) << type << ": " << run.err << document.substr(0, 2000);
  }
  // What the options give for a native document is valid, whatever combination of them is given.
  void expectValidInAllViews(const std::string& native) const {
    for (unsigned bits = 0; bits < 8; ++bits) {
      std::vector<std::string> command{paths::qosoc, "translate", native};
      if ((bits & 1) != 0) command.emplace_back("--no-augments");
      if ((bits & 2) != 0) command.emplace_back("--state");
      if ((bits & 4) != 0) command.emplace_back("--interface-ref");
      if ((bits & 4) != 0 && !std::filesystem::exists(interfaceTypes())) {
        std::cout << "no iana-if-type.yang: --interface-ref is not validated\n";
        continue;
      }
      const std::string document = hostRun(command).out;
      ASSERT_EQ(document.find("{\n  \"openconfig-"), 0u) << native;
      expectValid("get", document);
      expectValid("data", document);
    }
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

TEST_F(Yang, TheModuleOfThisProjectIsValidWithoutAWarning) {
  if (!isHere()) return;
  const HostRun run =
      hostRun({"yanglint", "-V", "-p", std::getenv("OPENCONFIG_YANG_DIR"), paths::augments});
  EXPECT_EQ(run.exit, 0);
  EXPECT_GE(occurrences(run.err, "libyang verb: "), 1);
  EXPECT_EQ(occurrences(run.err, "libyang warn: "), 0) << run.err;
}

TEST_F(Yang, TheModuleOfThisProjectKnowsItsRanges) {
  if (!isHere()) return;
  const std::string queue = R"("queues": {"queue": [{"name": "q", "config": {"name": "q")";
  struct {
    std::string leaves;  // "@" is the leaf
    std::vector<std::pair<std::string, std::string>> goodAndBad;
  } const parts[] = {
      {queue + R"(, "qosoc-augments:@}}]})",
       {{R"(bandwidth": 100)", R"(bandwidth": 101)"},
        {R"(strict-priority": false)", R"(strict-priority": 0)"}}},
      {queue + R"(}, "qosoc-augments:ecn": {"config": {"@}}}]})",
       {{R"(max-drop-probability-percent": 100)", R"(max-drop-probability-percent": 101)"},
        {R"(max-threshold": 4294967294)", R"(max-threshold": 4294967295)"},
        {R"(min-threshold": 4294967294)", R"(min-threshold": 4294967295)"},
        {R"(threshold-unit": 255)", R"(threshold-unit": 256)"},
        {R"(weight": 4294967295)", R"(weight": 4294967296)"}}},
      {R"("qosoc-augments:pfc": {"watchdog": {"config": {"@}}})",
       {{R"(action": 255)", R"(action": 256)"},
        {R"(priorities": "0")", R"(priorities": "00")"},
        {R"(priorities": "f0")", R"(priorities": "F0")"},
        {R"(priorities": "10")", R"(priorities": "100")"},
        {R"(time-a": "9223372036.854775807")", R"(time-a": "9223372036.854775808")"},
        {R"(time-b": "-0.000000001")", R"(time-b": "0.0000000001")"},
        {R"(time-c": "0.0")", R"(time-c": 0.0)"}}}};
  for (const auto& [leaves, goodAndBad] : parts) {
    const std::string tree = R"({"openconfig-qos:qos": {)" + leaves + "}}";
    for (const auto& [good, bad] : goodAndBad) {
      expectValid("data", filled(tree, good));
      EXPECT_NE(yanglint("get", filled(tree, bad)).exit, 0) << bad;
    }
  }
}

TEST_F(Yang, TheExamplesAreValidAsAWhole) {
  if (!isHere()) return;
  for (const std::string& scenario : support::scenarios(paths::examples)) {
    for (const char* file : {"/01-openconfig.json", "/02-openconfig.json"}) {
      const std::string document =
          support::hostText(std::string(paths::examples) + '/' + scenario + file);
      ASSERT_FALSE(document.empty()) << scenario << file;
      expectValid("get", document);
      expectValid("data", document);
    }
  }
}

TEST_F(Yang, TheExamplesAreValidInEachView) {
  if (!isHere()) return;
  for (const std::string& scenario : support::scenarios(paths::examples)) {
    expectValidInAllViews(std::string(paths::examples) + '/' + scenario + "/01-native.json");
  }
}

TEST_F(Yang, AnEmptyModelIsValid) {
  if (!isHere()) return;
  const HostRun run = translate("{}");
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

// A member of the model format: an entry for each name, which the pattern has as "@".
std::string part(const char* part, const std::vector<std::string>& names, const char* pattern) {
  std::string text = '"' + std::string(part) + "\": {\"\": {}";
  for (const std::string& name : names) text += ", \"" + name + "\": " + filled(pattern, name);
  return text + '}';
}

// Values fit or they don't, and so do the names.
std::string nastyModel(const std::vector<std::string>& names) {
  return '{' + part("classifiers", names, R"({"config": {"name": "x", "type": 9}, "terms": {
             "": {}, "@": {"actions": {"target-group": ""}, "conditions": {}},
             "t": {"config-id": "x", "actions": {"target-group": "@"}, "conditions": {
                 "ipv4": {"dscp": 64, "dscp-set": [255]},
                 "ipv6": {"dscp": 63, "dscp-set": [63, 3, 3, 64, 255, 63]}}}}})") +
         ", " + part("forwarding-groups", names, R"({"name": "x", "output-queue": "@"})") + ", " +
         part("interfaces", names, R"({"input": {"classifiers": {"0": {"config": {"name": "@"}},
             "1": {"config": {"name": "@"}}, "9": {"config": {"name": "@"}}}}, "output": {
             "pfc": {"priorities": "@"}, "scheduler-policy": {"config": {"name": "@"}},
             "queues": {"": {"config": {"name": "x"}}, "blank": {},
                 "@": {"config": {"name": "x", "queue-management-profile": "@"}}}}})") +
         R"(, "pfc": {"watchdog": {"action": 9, "priorities": "zz", "time-a": 0.1,
             "time-b": 1e-10, "time-c": -1e300}}, )" +
         part("queue-management-profiles", names, R"({"wred-uniform": {
             "min-threshold": 18446744073709551615, "weight": 4294967295, "drop": true}})") +
         ", " + part("queues", names, R"({"config": {"bandwidth": 100, "strict-priority": true},
             "ecn-config": {"max-drop-probability-percent": 100, "max-threshold": 4294967294,
                 "min-threshold": 4294967294, "threshold-unit": 255, "weight": 4294967295}})") +
         ", " + part("scheduler-policies", names, R"({"schedulers": {"0": {},
             "1": {"config": {"priority": 0}, "inputs": {}, "one-rate-two-color": {}},
             "4294967295": {"config": {"priority": 9, "scheduler-type": 9},
                 "inputs": {"": {}, "t": {"config": {"queue": "@", "input-type": 9}},
                     "@": {"config": {"queue": "@", "weight": 18446744073709551615}}},
                 "one-rate-two-color": {"cir": 18446744073709551615, "cir-pct": 100}}}})") +
         '}';
}

TEST_F(Yang, NastyNamesAndValuesAreValid) {
  if (!isHere()) return;
  const HostRun run = translate(nastyModel(nastyNames()));
  EXPECT_EQ(run.exit, 0) << run.err.substr(0, 1000);
  EXPECT_NE(run.err, "");
  expectValid("get", run.out);
  // A name that fits in one place fits wherever it stands, so no reference has lost its target.
  expectValid("data", run.out);
}

// One of each, and nothing is left out.
TEST_F(Yang, AFullModelIsValidAsAWhole) {
  if (!isHere()) return;
  const HostRun run = translate(R"({
      "classifiers": {"c": {"config": {"name": "c", "type": 1}, "terms": {"t": {
          "actions": {"target-group": "f"}, "conditions": {"ipv6": {"dscp-set": [1, 2]}}}}}},
      "forwarding-groups": {"f": {"name": "f", "output-queue": "q"}},
      "interfaces": {"e": {"config": {"interface-id": "e"},
          "input": {"classifiers": {"1": {"config": {"name": "c", "type": 1}}}},
          "output": {"pfc": {"priorities": "a0"}, "scheduler-policy": {"config": {"name": "s"}},
              "queues": {"q": {"config": {"name": "q", "queue-management-profile": "p"}}}}}},
      "pfc": {"watchdog": {"action": 5, "priorities": "8", "time-a": 0.5}},
      "queue-management-profiles": {"p": {"config": {"name": "p"}}},
      "queues": {"q": {"config": {"bandwidth": 40, "strict-priority": true}, "ecn-config": {}}},
      "scheduler-policies": {"s": {"schedulers": {"1": {"config": {"priority": 0},
          "inputs": {"i": {"config": {"queue": "q", "weight": 7}}},
          "one-rate-two-color": {"cir": 1000, "cir-pct": 20}}}}}})");
  EXPECT_EQ(run.err, "");
  for (const char* member : {"classifiers", "forwarding-groups", "interfaces", "qosoc-augments:pfc",
                             "queue-management-profiles", "queues", "scheduler-policies"}) {
    EXPECT_GE(occurrences(run.out, '"' + std::string(member) + "\": {"), 1) << member;
  }
  expectValid("get", run.out);
  expectValid("data", run.out);
}

// The same from the native side, by all roots.
TEST_F(Yang, ADeviceWithEverythingIsValidAsAWhole) {
  if (!isHere()) return;
  const std::string native = folder_.file("native.json", R"({
      "class-maps": {"qos": {"__yang_[c4]_[]": {"match": ["ip-access-group"]},
          "__yang_[c4]_[v]": {"match": ["ip-access-group"]},
          "__yang_[c6]_[]": {"match": ["ipv6-access-group"]},
          "__yang_[c6]_[w]": {"match": ["ipv6-access-group"]}}},
      "access-lists": {
          "ipv4": {"__yang_[c4]_[v]": {"rules": {"10": {"dscp": 46}, "20": {"dscp": 10}}}},
          "ipv6": {"__yang_[c6]_[w]": {"rules": {"10": {"tc": 184, "tc-mask": 252}}}}},
      "policy-maps": {"qos": {"__yang_[IPV4__c4][IPV6__c6]": {"classes": {
          "__yang_[c4]_[v]": {"actions": {"set-traffic-class": 5}},
          "__yang_[c6]_[w]": {"actions": {"set-traffic-class": 6}}}}}},
      "service-policies": {"1:__yang_[IPV4__c4][IPV6__c6]": {"interfaces": {"Ethernet1": true}}},
      "interfaces": {"Ethernet1": {"pfc": {"priorities": 8}, "tx-queues": {"mc-4": {},
          "uc-3": {"priority": "strict", "bandwidth": 40, "ecn": {"min-threshold": 10,
              "max-threshold": 20, "threshold-unit": 1, "max-drop-percent": 30, "weight": 2}}}}},
      "tc-to-tx-queue": {"5": 3, "6": 4}, "forwarding-groups": {"voice": 5, "video": 6},
      "queue-names": {"EF": 3, "AF": 4}, "pfc-watchdog": {"time-a": 0.5, "priorities": 255}})");
  const HostRun run = hostRun({paths::qosoc, "translate", native});
  EXPECT_EQ(run.exit, 0);
  EXPECT_EQ(run.err, "");
  for (const char* part :
       {R"("dscp-set": [)", R"("dscp": 46)", R"("target-group": "voice")", R"("type": "IPV6")",
        R"("output-queue": "EF")", R"("qosoc-augments:strict-priority": true)", R"("weight": 2)",
        R"("name": "Ethernet1-multicast-4")", R"("priorities": "8")", R"("time-a": "0.5")"}) {
    EXPECT_GE(occurrences(run.out, part), 1) << part;
  }
  expectValidInAllViews(native);
}

TEST_F(Yang, ReferencesMayDangle) {
  if (!isHere()) return;
  const HostRun run = translate(R"({
      "classifiers": {"c": {"terms": {"t": {"actions": {"target-group": "gone"}}}}},
      "forwarding-groups": {"f": {"output-queue": "gone"}},
      "interfaces": {"e": {
          "input": {"classifiers": {"0": {"config": {"name": "gone"}}}},
          "output": {"scheduler-policy": {"config": {"name": "gone"}},
              "queues": {"q": {"config": {"name": "q", "queue-management-profile": "gone"}}}}}},
      "scheduler-policies": {"s": {"schedulers": {"1": {
          "inputs": {"i": {"config": {"queue": "gone"}}}}}}}})");
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(occurrences(run.out, "\"gone\""), 6);
  expectValid("get", run.out);
  EXPECT_NE(yanglint("data", run.out).exit, 0);
}

}  // namespace
}  // namespace yangTest
