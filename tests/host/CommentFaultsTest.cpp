// Comments that would end the process, found beforehand.
#include "host/CommentFaults.h"

#include <gtest/gtest.h>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "tests/support/HostDevice.h"

namespace host::commentFaultsTest {
namespace {

using support::HostDevice;

std::string shown(const std::optional<CommentFault>& fault) {
  return fault ? fault->place + ": " + fault->expected : "fine";
}

std::string attachment(const std::string& parts) {
  return R"({"MetaData-OpenConfig":)" + parts + "}";
}
std::string scheduler(const std::string& members) { return attachment(R"({"1":)" + members + "}"); }

struct Case {
  std::string comment;
  std::string fault;  // "place: expected", or "fine"
};

const Case attachments[] = {
    {"", "fine"},
    {"ask the night shift", "fine"},
    {"[1]", "fine"},
    {R"({"other":1})", "fine"},
    {R"({"MetaData-OpenConfig":1} )" + std::string(1, '\0'), "fine"},
    {attachment("{}"), "fine"},
    {attachment(R"({"scheduler-policy":{"name":"a"},"queue-management-profile":{"name":"b"}})"),
     "fine"},
    {attachment(R"({"further":1,"scheduler-policy":{"name":"a","further":[]}})"), "fine"},
    {attachment(R"({"1":{"inputs":1}})"), "fine"},
    {attachment("[]"), "/MetaData-OpenConfig: an object"},
    {attachment("null"), "/MetaData-OpenConfig: an object"},
    {attachment(R"({"scheduler-policy":"a"})"), "/MetaData-OpenConfig/scheduler-policy: an object"},
    {attachment(R"({"scheduler-policy":{"name":1}})"),
     "/MetaData-OpenConfig/scheduler-policy/name: a string"},
    {attachment(R"({"queue-management-profile":[]})"),
     "/MetaData-OpenConfig/queue-management-profile: an object"},
    {attachment(R"({"queue-management-profile":{"name":null}})"),
     "/MetaData-OpenConfig/queue-management-profile/name: a string"},
    // A part without a name ends the reading before the second part is looked at.
    {attachment(R"({"scheduler-policy":{},"queue-management-profile":1})"), "fine"},
    // Of two members with one key the first is read.
    {attachment(R"({"scheduler-policy":{"name":"a"},"scheduler-policy":1})"), "fine"},
};

const Case profiles[] = {
    {"", "fine"},
    {R"({"other":1})", "fine"},
    {attachment("{}"), "fine"},
    {attachment(R"({"scheduler-policy":{"name":1}})"), "fine"},
    {scheduler(R"({"priority":1,"further":2})"), "fine"},
    {scheduler(R"({"one-rate-two-color":{"cir":18446744073709551615,"cir-pct":4294967295}})"),
     "fine"},
    {scheduler(R"({"inputs":{"a":{"queue":"q","weight":1,"further":[]}}})"), "fine"},
    {attachment("1"), "/MetaData-OpenConfig: an object"},
    {scheduler("1"), "/MetaData-OpenConfig/1: an object"},
    {scheduler(R"({"one-rate-two-color":1})"),
     "/MetaData-OpenConfig/1/one-rate-two-color: an object"},
    {scheduler(R"({"one-rate-two-color":{"cir":-1}})"),
     "/MetaData-OpenConfig/1/one-rate-two-color/cir: a whole number of at most 64 bits"},
    {scheduler(R"({"one-rate-two-color":{"cir":1.5}})"),
     "/MetaData-OpenConfig/1/one-rate-two-color/cir: a whole number of at most 64 bits"},
    {scheduler(R"({"one-rate-two-color":{"cir":18446744073709551616}})"),
     "/MetaData-OpenConfig/1/one-rate-two-color/cir: a whole number of at most 64 bits"},
    {scheduler(R"({"one-rate-two-color":{"cir-pct":4294967296}})"),
     "/MetaData-OpenConfig/1/one-rate-two-color/cir-pct: a whole number of at most 32 bits"},
    {scheduler(R"({"one-rate-two-color":{"cir-pct":"40"}})"),
     "/MetaData-OpenConfig/1/one-rate-two-color/cir-pct: a whole number of at most 32 bits"},
    {scheduler(R"({"inputs":[]})"), "/MetaData-OpenConfig/1/inputs: an object"},
    {scheduler(R"({"inputs":{"a":1}})"), "/MetaData-OpenConfig/1/inputs/a: an object"},
    {scheduler(R"({"inputs":{"a":{"queue":1}}})"),
     "/MetaData-OpenConfig/1/inputs/a/queue: a string"},
    {scheduler(R"({"inputs":{"a":{"weight":-1}}})"),
     "/MetaData-OpenConfig/1/inputs/a/weight: a whole number of at most 64 bits"},
};

TEST(CommentFaults, AreFoundInAttachmentsWithTheirPlace) {
  for (const auto& [comment, fault] : attachments) {
    EXPECT_EQ(shown(attachmentFault(comment)), fault) << comment;
  }
}

TEST(CommentFaults, AreFoundInProfilesWithTheirPlace) {
  for (const auto& [comment, fault] : profiles) {
    EXPECT_EQ(shown(profileFault(comment)), fault) << comment;
  }
}

TEST(CommentFaults, OfADeviceAreThoseOfItsTxQueuesAndSchedulerPolicies) {
  const HostDevice device(R"({
      "interfaces": {"Ethernet7/1": {"tx-queues": {"uc-3": {}, "mc-0": {}, "uc-4": {}}}},
      "qos-profiles": {"__YANG_SP_[gold]": {}, "__YANG_QMP_[wred]": {}, "LEGACY": {}},
      "comments": {
          "if-Et7/1-uc-txq-3": "{\"MetaData-OpenConfig\":1}",
          "if-Et7/1-mc-txq-0": "{\"MetaData-OpenConfig\":{\"1\":1}}",
          "if-Et7/1-uc-txq-5": "{\"MetaData-OpenConfig\":1}",
          "qos-profile-__YANG_SP_[gold]": "{\"MetaData-OpenConfig\":{\"1\":1}}",
          "qos-profile-__YANG_SP_[gone]": "{\"MetaData-OpenConfig\":1}",
          "qos-profile-__YANG_QMP_[wred]": "{\"MetaData-OpenConfig\":1}",
          "qos-profile-LEGACY": "{\"MetaData-OpenConfig\":1}",
          "note": "{\"MetaData-OpenConfig\":1}"}})");
  EXPECT_EQ(commentFaults(device.native),
            (std::vector<std::string>{
                "/comments/if-Et7~11-uc-txq-3: at /MetaData-OpenConfig of this comment: expected "
                "an object; it ends the program that translates it",
                "/comments/qos-profile-__YANG_SP_[gold]: at /MetaData-OpenConfig/1 of this "
                "comment: expected an object; it ends the program that translates it"}));
}

TEST(CommentFaultsDeathTest, AreJustThoseThatEndTheProcessOfAReader) {
  for (const auto& [comment, fault] : attachments) {
    const Velmo::String text{std::string_view(comment)};
    if (fault == "fine") {
      deserializeJsonComment(text);
    } else {
      EXPECT_DEATH(deserializeJsonComment(text), "wrong type") << comment;
    }
  }
  for (const auto& [comment, fault] : profiles) {
    const Velmo::String text{std::string_view(comment)};
    if (fault == "fine") {
      deserializeJsonProfileComment(text);
    } else {
      EXPECT_DEATH(deserializeJsonProfileComment(text), "wrong type") << comment;
    }
  }
}

}  // namespace
}  // namespace host::commentFaultsTest
