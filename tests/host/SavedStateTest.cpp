#include "host/SavedState.h"

#include <gtest/gtest.h>

#include "host/ModelWriter.h"
#include "host/NativeWriter.h"
#include "host/Roots.h"
#include "host/Sections.h"
#include "tests/support/HostDevice.h"

namespace host::savedStateTest {
namespace {

using support::HostDevice;

// A device with what the roots make of it.
struct Translated {
  explicit Translated(std::string_view document) : device(document) {
    roots = buildRoots({}, device.native, model, [](const std::string&) {});
  }
  std::string saved(Layout layout = Layout::compact) const {
    return savedStateJson(device.native, model, layout);
  }

  HostDevice device;
  Model model;
  std::vector<Rok::Ptr<Rok::PtrInterface>> roots;
};

constexpr const char* device = R"({
    "class-maps": {"7": {}, "qos": {"__yang_[c\u0000/]_[]": {"match": [1]},
                                    "__yang_[c\u0000/]_[t]": {"match": [1]}}},
    "access-lists": {"ipv4": {"__yang_[c\u0000/]_[t]": {"rules": {"10": {"dscp": 46}}}}},
    "interfaces": {"Ethernet1": {"tx-queues": {"uc-3": {"bandwidth": 40, "ecn": {}}}, "pfc": {}}},
    "qos-profiles": {"__YANG_SP_[s]": {}},
    "comments": {"qos-profile-__YANG_SP_[s]":
      "{\"MetaData-OpenConfig\":{\"1\":{\"one-rate-two-color\":{\"cir\":18446744073709551615},\"inputs\":{}}}}"},
    "queue-names": {"q": 3},
    "pfc-watchdog": {"time-a": 0.1}})";

std::string faultOf(std::string_view text) {
  const Native native;
  const Model model;
  try {
    readSavedStateText(text, native, model);
  } catch (const Refusal& refusal) {
    std::string lines;
    for (const Fault& fault : refusal.faults()) {
      lines += (lines.empty() ? "" : "\n") + fault.inFile("s");
    }
    return lines;
  }
  return "";
}

TEST(SavedState, HoldsItsVersionTheNativeDocumentAndTheModel) {
  const Translated t(R"({"comments": {"a": "b"}})");
  EXPECT_EQ(t.saved(), R"({"qosoc-save":1,"native":)" +
                           nativeJson(t.device.native, Layout::compact) + R"(,"model":)" +
                           modelJson(t.model, Layout::compact) + "}");
  EXPECT_EQ(t.saved(Layout::pretty).find("{\n  \"qosoc-save\": 1,\n  \"native\": {\n    \"comm"),
            0u);
}

TEST(SavedState, IsReadBackAsItWasSaved) {
  const Translated t(device);
  for (const Layout layout : {Layout::compact, Layout::pretty}) {
    const Native native;
    const Model model;
    readSavedStateText(t.saved(layout), native, model);
    EXPECT_EQ(nativePlace(native)->value(), nativePlace(t.device.native)->value());
    EXPECT_EQ(savedStateJson(native, model, layout), t.saved(layout));
  }
  EXPECT_NE(t.saved().find("18446744073709551615"), std::string::npos);
}

TEST(SavedState, HasItsMembersInAnyOrder) {
  const Translated t(device);
  const Native native;
  const Model model;
  readSavedStateText(R"({"model":)" + modelJson(t.model, Layout::compact) + R"(,"native":)" +
                         nativeJson(t.device.native, Layout::compact) + R"(,"qosoc-save":1})",
                     native, model);
  EXPECT_EQ(savedStateJson(native, model, Layout::compact), t.saved());
}

TEST(SavedState, HasAnEmptyDeviceAndModel) {
  EXPECT_EQ(faultOf(R"({"qosoc-save": 1, "native": {}, "model": {}})"), "");
}

TEST(SavedState, IsRefusedWithoutOneOfItsMembers) {
  EXPECT_EQ(faultOf("{}"),
            "s: (document): the member \"qosoc-save\" is missing: this is no saved state");
  EXPECT_EQ(faultOf(R"({"qosoc-save": 1, "model": {}})"),
            "s: (document): the member \"native\" is missing: this is no saved state");
  EXPECT_EQ(faultOf(R"({"qosoc-save": 1, "native": {}})"),
            "s: (document): the member \"model\" is missing: this is no saved state");
}

TEST(SavedState, IsNoOtherDocument) {
  EXPECT_EQ(faultOf(R"({"class-maps": {}})"),
            "s:1:2: /class-maps: unknown member: this is no saved state");
  EXPECT_EQ(faultOf(R"({"openconfig-qos:qos": {}})"),
            "s:1:2: /openconfig-qos:qos: unknown member: this is no saved state");
  EXPECT_EQ(faultOf(R"({"qosoc-save": 1, "more": {}})"),
            "s:1:19: /more: unknown member (legal: qosoc-save, native, model)");
  EXPECT_EQ(faultOf("[]"), "s:1:1: (document): expected an object, not an array");
  EXPECT_EQ(faultOf(""), "s:1:1: (document): not JSON: The document is empty.");
}

TEST(SavedState, HasNoOtherVersion) {
  EXPECT_EQ(faultOf(R"({"qosoc-save": 2, "else": []})"),
            "s:1:16: /qosoc-save: expected version 1 of a saved state, not 2");
  EXPECT_EQ(faultOf(R"({"qosoc-save": "1"})"),
            "s:1:16: /qosoc-save: expected version 1 of a saved state, not \"1\"");
  EXPECT_EQ(faultOf(R"({"qosoc-save": {}})"),
            "s:1:16: /qosoc-save: expected version 1 of a saved state, not an object");
}

TEST(SavedState, IsRefusedWhereverItIsCutOff) {
  const std::string text = Translated(device).saved(Layout::pretty);
  const std::string whole = text.substr(0, text.size() - 1);  // the last line end may be missing
  for (std::size_t size = 0; size < whole.size(); ++size) {
    ASSERT_NE(faultOf(text.substr(0, size)), "") << size;
  }
  EXPECT_EQ(faultOf(whole), "");
  EXPECT_EQ(faultOf("{\"qosoc-save\": 1,\n \"native\": {\"comments\": {\"a\": \"b\"}"),
            "s:2:35: /native/comments: not JSON: Missing a comma or '}' after an object member.");
}

TEST(SavedState, SaysWhereAValueDoesNotFit) {
  EXPECT_EQ(faultOf("{\"qosoc-save\": 1, \"native\": {\n  \"queue-names\": {\"q\": 256}}}"),
            "s:2:24: /native/queue-names/q: expected a whole number from 0 to 255, not 256");
  EXPECT_EQ(
      faultOf("{\"qosoc-save\": 1, \"native\": {\"access-lists\": {\"ipv4\":\n{\"a\": []}}}}"),
      "s:2:7: /native/access-lists/ipv4/a: expected an object, not an array");
  EXPECT_EQ(faultOf("{\"native\": {\"class-maps\": {\"1\": {},\n\"qos\": {}}}}"),
            "s:2:1: /native/class-maps/qos: the same key twice");
  EXPECT_EQ(faultOf("{\"native\": {\"comments\": {\"a\": \"\",\n\"a\": \"\"}}}"),
            "s:2:1: /native/comments/a: the same key twice");
  EXPECT_EQ(faultOf("{\"model\": {\"queues\": {\n\"q\": {\"config\": {\"bandwidth\": 101}}}}}"),
            "s:2:31: /model/queues/q/config/bandwidth: expected a whole number from 0 to 100 or "
            "null, not 101");
  EXPECT_EQ(faultOf("{\"model\": {\"queues\": {},\n\"queues\": {}}}"),
            "s:2:1: /model/queues: the same member twice");
  EXPECT_EQ(faultOf("{\"model\": {},\n\"model\": {}}"), "s:2:1: /model: the same member twice");
  EXPECT_EQ(faultOf("{\"native\": null}"),
            "s:1:12: /native: null is never a value here: expected an object");
}

}  // namespace
}  // namespace host::savedStateTest
