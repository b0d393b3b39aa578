// Forwarding groups, the names of queues, and the PFC watchdog.
#include <algorithm>
#include <map>

#include "host/check/Rule.h"
#include "host/check/Rules.h"
#include "host/openconfig/Decimal64.h"

namespace host {
namespace {

constexpr unsigned noQueue = 16;

class GroupRules : Rule {
 public:
  using Rule::Rule;

  void judge() {
    judgeQueueNames();
    judgeGroups();
    judgeWatchdog();
  }

 private:
  void judgeQueueNames() {
    std::map<unsigned, std::string> names;
    for (const auto& [name, id] :
         native().qosConfig->queueNameToTxQueueIdMap()->queueNameToTxQueueId()) {
      const std::string text(std::string_view(name.name));
      const Tokens place{"queue-names", text};
      if (id.value == noQueue && !isOfInterface(noQueue)) {
        find("missing", place,
             "16 stands for no queue, so nothing uses the name; write another id");
        continue;
      }
      const auto [other, isFirst] = names.emplace(id.value, text);
      if (isFirst) continue;
      find("shadowed", {"queue-names", other->second},
           "queue " + std::to_string(id.value) + " has the name " + quoted(text) +
               ", too, and the last name in order takes its place; keep one name");
      other->second = text;
    }
  }

  // Whether an interface has a tx queue of that id, which then uses the name, also that of no queue.
  bool isOfInterface(unsigned id) const {
    const auto isOfId = [id](const DeviceQueue& queue) { return queue.queue.id.value == id; };
    return std::any_of(device().interfaces.begin(), device().interfaces.end(),
                       [&](const auto& interface) {
                         const auto& queues = interface.second;
                         return std::any_of(queues.begin(), queues.end(), isOfId);
                       });
  }

  void judgeGroups() {
    std::map<unsigned, std::string> groups;
    for (const auto& [name, tc] :
         native().qosConfig->forwardingGroupNameToTcMap()->forwardingGroupNameToTc()) {
      const std::string text(std::string_view(name.name));
      if (tc.value > noQueue) continue;
      judgeQueue(text, tc);
      const auto [other, isFirst] = groups.emplace(tc.value, text);
      if (isFirst) continue;
      find("shadowed", {"forwarding-groups", text},
           "traffic class " + std::to_string(tc.value) + " has the name " + quoted(other->second) +
               ", too: terms get the first name in order, and a change of the tx queue reaches the "
               "last; keep one name");
    }
  }

  void judgeQueue(const std::string& group, Qos::TrafficClass tc) {
    const unsigned id = native().qosConfig->tcToTxQueueMap(tc).value;
    const Tokens place{"forwarding-groups", group};
    const std::string number = std::to_string(tc.value);
    if (id == noQueue) {
      return find("missing", place,
                  "its traffic class " + number +
                      " has no tx queue, so it gets no output queue; add the traffic class to "
                      "tc-to-tx-queue");
    }
    if (device().queueNames.contains(id)) return;
    find("missing", place,
         "the tx queue " + std::to_string(id) + " of its traffic class " + number +
             " has no name, so it gets no output queue; add one to queue-names");
  }

  void judgeWatchdog() {
    const auto& config = *native().qosConfig;
    judgeTime("time-a", config.pfcWatchdogTimeA());
    judgeTime("time-b", config.pfcWatchdogTimeB());
    judgeTime("time-c", config.pfcWatchdogTimeC());
    judgeAction(config.pfcWatchdogAction());
  }
  void judgeAction(unsigned action) {
    if (action == 1 || action == 2 || action == 5) return;
    find("untranslated", {"pfc-watchdog", "action"},
         "of actions only 1, 2 and 5 are translated, and " + std::to_string(action) +
             " becomes 1; write one of them");
  }
  void judgeTime(const char* member, double time) {
    if (decimal64(time)) return;
    find("left-out", {"pfc-watchdog", member},
         "the time has more digits than its leaf, and is left out; write at most nine behind the "
         "point and ten before it");
  }
};

}  // namespace

void judgeGroups(const Device& device, const Findings& findings) {
  GroupRules(device, findings).judge();
}

}  // namespace host
