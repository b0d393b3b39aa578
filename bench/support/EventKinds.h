// The events that are measured: for each its device, what comes before it, the event itself, and
// what puts the device back afterwards. One table, for times and for instructions.
//
// A device is built for a number of class maps, tx queues or interfaces, starts, makes the change
// that an event is about from the number of a term, tx queue or interface, and checks its own
// output at the end.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "support/ClassMapDevice.h"
#include "support/ClassificationDevice.h"
#include "support/Floor.h"
#include "support/PfcDevice.h"
#include "support/QueueDevice.h"
#include "support/QueueManagementDevice.h"
#include "support/SchedulerDevice.h"

namespace Bench {
namespace Steps {

constexpr auto nothing = [](auto& /*device*/, const auto& /*change*/) {};
template <auto method>
constexpr auto call = [](auto& device, const auto& change) { (device.*method)(change); };
template <auto first, auto second>
constexpr auto both = [](auto& device, const auto& change) {
  first(device, change);
  second(device, change);
};

constexpr auto add = call<&ClassMapDevice::add>;
constexpr auto match = call<&ClassMapDevice::match>;
constexpr auto remove = call<&ClassMapDevice::remove>;
constexpr auto addRule = call<&ClassificationDevice::addRule>;
constexpr auto removeRule = call<&ClassificationDevice::removeRule>;
constexpr auto changeAction = call<&ClassificationDevice::changeAction>;
constexpr auto remap = call<&ClassificationDevice::remap>;
constexpr auto bind = call<&ClassificationDevice::bind>;
constexpr auto unbind = call<&ClassificationDevice::unbind>;
constexpr auto addComment = call<&QueueDevice::addComment>;
constexpr auto removeComment = call<&QueueDevice::removeComment>;
constexpr auto restoreComment = call<&QueueDevice::restoreComment>;
constexpr auto changeBandwidth = call<&QueueDevice::changeBandwidth>;
constexpr auto changeEcn = call<&QueueDevice::changeEcn>;
constexpr auto addTxQueue = call<&QueueDevice::add>;
constexpr auto removeTxQueue = call<&QueueDevice::remove>;
constexpr auto changeWatchdog = call<&PfcDevice::changeWatchdog>;
constexpr auto changePort = call<&PfcDevice::changePort>;
constexpr auto comment = call<&QueueManagementDevice::comment>;
constexpr auto otherComment = call<&QueueManagementDevice::otherComment>;
constexpr auto changeThreshold = call<&QueueManagementDevice::changeThreshold>;
constexpr auto nameQueue = call<&QueueManagementDevice::nameQueue>;
constexpr auto attach = call<&SchedulerDevice::attach>;
constexpr auto removeAttachment = call<&SchedulerDevice::removeComment>;
constexpr auto readPolicy = call<&SchedulerDevice::readPolicy>;
constexpr auto removePolicyComment = call<&SchedulerDevice::removeProfileComment>;
constexpr auto changeSchedulerBandwidth = call<&SchedulerDevice::changeBandwidth>;

}  // namespace Steps

inline constexpr const char* floorEvent = "floor";

// The events that change one record of the output and nothing else, and bring no text to be read.
inline constexpr const char* oneRecordEvents[] = {
    "class-map-match",   "acl-rule-add",       "action-change", "traffic-class-remap",
    "queue-bandwidth",   "queue-ecn",          "pfc-watchdog",  "pfc-port",
    "profile-threshold", "scheduler-bandwidth"};

// Calls kind<Device, before, event, after>(name) for each.
template <class Visitor>
void eachEventKind(Visitor& visitor) {
  using namespace Steps;
  visitor.template kind<Floor, nothing, call<&Floor::write>, nothing>(floorEvent);
  visitor.template kind<ClassMapDevice, remove, add, match>("class-map-add");
  visitor.template kind<ClassMapDevice, both<remove, add>, match, nothing>("class-map-match");
  visitor.template kind<ClassMapDevice, nothing, remove, both<add, match>>("class-map-remove");
  visitor.template kind<ClassificationDevice, nothing, addRule, removeRule>("acl-rule-add");
  visitor.template kind<ClassificationDevice, nothing, changeAction, nothing>("action-change");
  visitor.template kind<ClassificationDevice, nothing, remap, nothing>("traffic-class-remap");
  visitor.template kind<ClassificationDevice, nothing, bind, unbind>("interface-bind");
  visitor.template kind<ClassificationDevice, bind, unbind, nothing>("interface-unbind");
  visitor.template kind<QueueDevice, removeComment, addComment, restoreComment>("comment-add");
  visitor.template kind<QueueDevice, addComment, removeComment, restoreComment>("comment-remove");
  visitor.template kind<QueueDevice, nothing, changeBandwidth, nothing>("queue-bandwidth");
  visitor.template kind<QueueDevice, nothing, changeEcn, nothing>("queue-ecn");
  visitor.template kind<QueueDevice, removeTxQueue, addTxQueue, nothing>("queue-add");
  visitor.template kind<PfcDevice, nothing, changeWatchdog, nothing>("pfc-watchdog");
  visitor.template kind<PfcDevice, nothing, changePort, nothing>("pfc-port");
  visitor.template kind<QueueManagementDevice, otherComment, comment, nothing>("comment-profile");
  visitor.template kind<QueueManagementDevice, nothing, changeThreshold, nothing>(
      "profile-threshold");
  visitor.template kind<QueueManagementDevice, nothing, nameQueue, nothing>("queue-name");
  visitor.template kind<SchedulerDevice, removeAttachment, attach, nothing>("scheduler-attach");
  visitor.template kind<SchedulerDevice, nothing, changeSchedulerBandwidth, nothing>(
      "scheduler-bandwidth");
  visitor.template kind<SchedulerDevice, removePolicyComment, readPolicy, nothing>(
      "scheduler-policy-read");
}

struct KindNames {
  std::vector<std::string> names;
  template <class Device, auto before, auto event, auto after>
  void kind(const std::string& name) {
    names.push_back(name);
  }
};

// The names of all kinds, the floor first.
inline std::vector<std::string> kindNames() {
  KindNames kinds;
  eachEventKind(kinds);
  return kinds.names;
}

}  // namespace Bench
