// /qos/scheduler-policies
#include <algorithm>

#include "host/Text.h"
#include "host/openconfig/Lists.h"

namespace host {
namespace {

using namespace QosOc::Config;

// One policy. All that hangs under its name comes from one comment.
class PolicyJson {
 public:
  PolicyJson(Tree& tree, std::string_view policy) : tree_(tree), policy_(policy) {}

  static std::string profile(std::string_view policy) {
    return "the QoS profile " + quoted("__YANG_SP_[" + std::string(policy) + ']');
  }

  void write(const SchedulerPolicy& policy) {
    tree_.container("config", [&] { tree_.word("name", policy_); });
    tree_.word("name", policy_);
    if (!policy.schedulers()) return;
    tree_.list("schedulers", "scheduler", [&] {
      for (const Scheduler* entry : bySequence(*policy.schedulers())) scheduler(*entry);
    });
  }

 private:
  // In the order in which a device serves them.
  static std::vector<const Scheduler*> bySequence(const Schedulers& schedulers) {
    std::vector<const Scheduler*> ordered;
    for (auto i = schedulers.scheduler().unsafeIterator(); i; ++i) {
      ordered.push_back(i->value().get());
    }
    std::sort(ordered.begin(), ordered.end(),
              [](const Scheduler* a, const Scheduler* b) { return a->sequence() < b->sequence(); });
    return ordered;
  }

  void scheduler(const Scheduler& scheduler) {
    const std::string sequence = std::to_string(scheduler.sequence());
    const auto native = [&] { return comment(); };
    tree_.entry("sequence", sequence, native, [&] {
      tree_.container("config", [&] { config(scheduler.sequence(), scheduler.config()); });
      if (scheduler.inputs()) inputs(*scheduler.inputs());
      tree_.container("one-rate-two-color", [&] {
        tree_.container("config", [&] { rate(scheduler.oneRateTwoColor()); });
      });
      tree_.number("sequence", scheduler.sequence());
    });
  }
  void config(std::uint32_t sequence, const SchedulerConfig& config) {
    if (config.priority) {
      enumeration("priority", *config.priority, SchedulerPriority::STRICT, "STRICT",
                  "priority of a scheduler");
    }
    tree_.number("sequence", sequence);
    enumeration("type", config.schedulerType, SchedulerType::ONE_RATE_TWO_COLOR,
                "openconfig-qos-types:ONE_RATE_TWO_COLOR", "type of a scheduler");
  }
  void rate(const Scheduler::Rate& rate) {
    if (!rate) return;
    if (rate->cir) tree_.number64("cir", *rate->cir);
    if (rate->cirPct) tree_.number("cir-pct", rate->cirPct->value());
  }

  void inputs(const SchedulerInputs& inputs) {
    tree_.list(
        "inputs", "input", "id", inputs.input(), [&](std::string_view) { return comment(); },
        [&](std::string_view id, const SchedulerInput& entry) {
          tree_.container("config", [&] { input(id, entry.config); });
          tree_.word("id", id);
        });
  }
  void input(std::string_view id, const SchedulerInputConfig& config) {
    tree_.word("id", id);
    const bool isQueue = enumeration("input-type", config.inputType, SchedulerInputType::QUEUE,
                                     "QUEUE", "type of a scheduler's input");
    // The leaf is there only when the type is.
    if (isQueue) {
      tree_.name("queue", config.queue, [&] { return comment(); });
    } else if (!config.queue.empty()) {
      tree_.leftOut("queue", quoted(config.queue) + " is no queue, by its input-type", comment());
    }
    if (config.weight) tree_.number64("weight", *config.weight);
  }

  // A leaf of an enumeration of which one member is known. Returns whether it is that one.
  template <class Enum>
  bool enumeration(const char* leaf, Enum v, Enum known, const char* word, const char* what) {
    if (v == known) {
      tree_.word(leaf, word);
      return true;
    }
    tree_.leftOut(leaf, keyText(v) + " is no " + what, comment());
    return false;
  }

  std::string comment() const { return "the comment on " + profile(policy_); }

  Tree& tree_;
  std::string_view policy_;
};

}  // namespace

void schedulerPoliciesJson(Tree& tree, const SchedulerPoliciesDir& dir) {
  tree.list(
      "scheduler-policies", "scheduler-policy", "name", dir.schedulerPolicy(), PolicyJson::profile,
      [&](std::string_view name, const auto& policy) { PolicyJson(tree, name).write(*policy); });
}

}  // namespace host
