// A feed's consumers, and what each call brings them.
#pragma once

#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/Feed.h"
#include "host/ModelReader.h"
#include "tests/support/HostModel.h"

namespace support {

using HostLines = std::vector<std::string>;

// "- PATH" for each deletion, "+ PATH VALUE" for each update, in their order.
inline HostLines hostLines(const host::LeafChanges& changes) {
  HostLines lines;
  for (const std::string& node : changes.deleted) lines.push_back("- " + node);
  for (const auto& [path, type, value] : changes.updated) {
    lines.push_back("+ " + path + ' ' + host::leafText(type, value));
  }
  return lines;
}

// Brings the leaves that a consumer holds, by path, in step with the changes of a call.
inline void hostApply(const host::LeafChanges& changes, std::map<std::string, std::string>& known) {
  if (changes.isWhole) known.clear();
  for (const std::string& node : changes.deleted) {
    std::erase_if(known, [&](const auto& leaf) {
      return leaf.first == node || leaf.first.starts_with(node + '/');
    });
  }
  for (const auto& [path, type, value] : changes.updated) {
    known[path] = host::leafText(type, value);
  }
}

// Subscribes to leaves, and keeps the lines of the last call.
class HostConsumer {
 public:
  explicit HostConsumer(host::Feed& feed, const host::LeafRequest& request = {})
      : subscription_(feed.onLeaves(request, [this](const auto& changes) { hear(changes); })) {}
  HostConsumer(const HostConsumer&) = delete;
  HostConsumer& operator=(const HostConsumer&) = delete;

  // The lines of the calls since the last look.
  HostLines lines() { return std::exchange(lines_, {}); }
  int calls() const { return calls_; }
  bool wasWhole() const { return wasWhole_; }  // the last call
  // What it holds after all calls, by path.
  const std::map<std::string, std::string>& known() const { return known_; }
  void end() { subscription_.end(); }

 private:
  void hear(const host::LeafChanges& changes) {
    ++calls_;
    wasWhole_ = changes.isWhole;
    const HostLines lines = hostLines(changes);
    lines_.insert(lines_.end(), lines.begin(), lines.end());
    hostApply(changes, known_);
  }

  HostLines lines_;
  int calls_ = 0;
  bool wasWhole_ = false;
  std::map<std::string, std::string> known_;
  host::Feed::Subscription subscription_;
};

// Writes a record of each directory that has some, as it stands.
inline void writeAsItIs(const HostModel& built) {
  const host::Model& model = built.model;
  model.pfc->watchdogIs(model.pfc->watchdog());
  for (auto i = model.queues->q().iterator(); i; ++i) model.queues->qContentIs(i.key());
  for (auto i = model.classifiers->classifier().iterator(); i; ++i) {
    const auto classifier = model.classifiers->classifier(i.key());
    classifier->configIs(classifier->config());
    for (auto j = classifier->termsIs()->term().iterator(); j; ++j) {
      classifier->terms()->termIs(classifier->terms()->term(j.key()));
    }
  }
  for (auto i = model.schedulerPolicies->schedulerPolicy().iterator(); i; ++i) {
    const auto policy = model.schedulerPolicies->schedulerPolicy(i.key());
    policy->configIs(policy->config());
    const auto scheduler = policy->schedulersIs()->schedulerIs(1);
    scheduler->configIs(scheduler->config());
    scheduler->oneRateTwoColorIs(scheduler->oneRateTwoColor());
  }
  const auto output = built.interface("e")->outputIs();
  output->pfcIs(output->pfc());
  output->schedulerPolicyIs(output->schedulerPolicy());
  output->queuesIs("")->qContentIs("q");
}

// One of each record that has leaves, in the format `model`.
inline constexpr const char* hostOneOfEach = R"({
    "classifiers": {"c": {"config": {"name": "c", "type": 0}, "terms": {"t": {
        "config-id": "t", "actions": {"target-group": "f"},
        "conditions": {"ipv4": {"dscp": 46}, "ipv6": {"dscp-set": [1, 2]}}}}}},
    "forwarding-groups": {"f": {"name": "f", "output-queue": "q"}},
    "interfaces": {"e": {"config": {"interface-id": "e"},
        "input": {"classifiers": {"0": {"config": {"name": "c", "type": 0}}}},
        "output": {"pfc": {"priorities": "a0"}, "scheduler-policy": {"config": {"name": "s"}},
            "queues": {"q": {"config": {"name": "q", "queue-management-profile": "p"}}}}}},
    "pfc": {"watchdog": {"action": 5, "priorities": "8", "time-a": 0.5}},
    "queue-management-profiles": {"p": {"config": {"name": "p"}}},
    "queues": {"q": {"config": {"name": "q", "bandwidth": 40, "strict-priority": true},
        "ecn-config": {}}},
    "scheduler-policies": {"s": {"config": {"name": "s"}, "schedulers": {"1": {
        "config": {"sequence": 1, "priority": 0},
        "inputs": {"i": {"config": {"id": "i", "queue": "q", "weight": 7}}},
        "one-rate-two-color": {"cir": 1000, "cir-pct": 20}}}}}})";

// A model that is followed, by one consumer from its start on.
struct HostFollowed : HostModel {
  explicit HostFollowed(const char* text = "{}", const host::LeafRequest& request = {})
      : feed(model), consumer(feed, request) {
    host::readModelText(text, model);
    feed.commit();
    consumer.lines();
  }
  // What the consumer hears of the changes since the last commit.
  HostLines commit() {
    feed.commit();
    return consumer.lines();
  }

  QosOc::Config::Terms& terms() const { return *model.classifiers->classifierIs("c")->termsIs(); }
  QosOc::Config::InterfaceOutput& output() const { return *interface("e")->outputIs(); }
  QosOc::Config::Scheduler& scheduler() const {
    return *model.schedulerPolicies->schedulerPolicyIs("s")->schedulersIs()->schedulerIs(1);
  }

  host::Feed feed;
  HostConsumer consumer;
};

}  // namespace support
