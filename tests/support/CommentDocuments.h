// Short ways to build what a comment says, and two documents as texts.
#pragma once

#include <cstdint>
#include <initializer_list>

#include "QosOpenConfig/QosOpenConfigHelper.h"

namespace support::commentDocuments {

using namespace QosOc;

using Input = SchedulerInputCommentInfo;
using Rate = OneRateTwoColorCommentInfo;
using Scheduler = SchedulerCommentInfo;
using Profile = SchedulerPolicyProfileCommentInfo;

inline CommentInfo comment(const Rok::String& schedulerPolicy, const Rok::String& profile) {
  return {SchedulerPolicyCommentInfo(schedulerPolicy), QueueManagementProfileCommentInfo(profile)};
}

inline Input input(const Rok::String& inputId, const Rok::String& q = "",
                   std::uint64_t weight = 0) {
  Input result(inputId);
  result.qIs(q);
  result.weightIs(weight);
  return result;
}

inline Scheduler scheduler(std::uint32_t sequence, const Rate& rate = {},
                           std::initializer_list<Input> inputs = {}) {
  Scheduler result(sequence);
  result.oneRateTwoColorIs(rate);
  for (const Input& one : inputs) result.inputsIs(one);
  return result;
}

inline Profile profile(std::initializer_list<Scheduler> schedulers) {
  Profile result("");
  for (const Scheduler& one : schedulers) result.schedulersIs(one);
  return result;
}

inline const char* const bothParts =
    R"({"MetaData-OpenConfig":{"scheduler-policy":{"name":"sp-gold"},)"
    R"("queue-management-profile":{"name":"qmp-wred"}}})";
inline const char* const twoSchedulers =
    R"({"MetaData-OpenConfig":{"1":{"priority":"STRICT","one-rate-two-color":)"
    R"({"cir":1000000000,"cir-pct":40},"inputs":{"in-a":{"queue":"q7","weight":30},)"
    R"("in-b":{"queue":"q6"}}},"2":{"inputs":{}}}})";

}  // namespace support::commentDocuments
