// A device with interfaces, QoS profiles, comments and queue names, and the scheduler policies and
// attachments that a root keeps for them.
#pragma once

#include <cstdint>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigHelper.h"
#include "QosOpenConfig/QosOpenConfigSchedulerPolicyKivToOCSm.h"
#include "tests/support/TraceCapture.h"

namespace support {

// Interface to its scheduler policy; "none" for an output without one, "no output" without an
// output.
using AttachmentModel = std::map<std::string, std::string>;

// Policy to its schedulers in order, as "1 STRICT cir 5000 40% [in-a q7 30, in-b]; 2", without what
// is absent; "-" for schedulers that were never made. Fields that are wrong follow in "!".
using PolicyModel = std::map<std::string, std::string>;

struct SchedulerDevice {
  Rok::Ptr<Cli::Config> cli = Rok::make<Cli::Config>();
  Rok::Ptr<Qos::Input::Config> config = Rok::make<Qos::Input::Config>();
  Rok::Ptr<Qos::QueueNameToTxQueueIdMap> queueNames = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  Rok::Ptr<Qos::QosProfileConfigDir> profiles = Rok::make<Qos::QosProfileConfigDir>();
  Rok::Ptr<QosOc::Config::SchedulerPoliciesDir> policies =
      Rok::make<QosOc::Config::SchedulerPoliciesDir>();
  Rok::Ptr<QosOc::Config::InterfacesDir> interfaces = Rok::make<QosOc::Config::InterfacesDir>();
  Rok::Ptr<QosOc::SchedulerPolicyKivToOCSm> root;

  SchedulerDevice() { config->queueNameToTxQueueIdMapIs(queueNames); }

  // Native writes: interfaces and their tx queues.
  static Nerit::IntfId id(const Rok::String& name) { return Nerit::IntfId(name); }
  static Qos::TxQueue unicast(unsigned char number) { return {number, Qos::unicast}; }
  static Qos::TxQueue multicast(unsigned char number) { return {number, Qos::multicast}; }
  // The interface of that name, made if it isn't there.
  Rok::Ptr<Qos::IntfConfig> intf(const Rok::String& name) {
    if (const auto* found = config->intfConfig().find(id(name))) return *found;
    auto made = Rok::make<Qos::IntfConfig>(id(name));
    config->intfConfigIs(id(name), made);
    return made;
  }
  Rok::Ptr<Qos::TxQueueConfig> queue(const Rok::String& name, const Qos::TxQueue& txQueue) {
    auto made = Rok::make<Qos::TxQueueConfig>(txQueue);
    intf(name)->txQueueConfigIs(txQueue, made);
    return made;
  }
  void removeQueue(const Rok::String& name, const Qos::TxQueue& txQueue) {
    intf(name)->txQueueConfigDel(txQueue);
  }
  void remove(const Rok::String& name) { config->intfConfigDel(id(name)); }

  // Native writes: comments and queue names.
  static Rok::String document(const std::string& members) {
    return R"({"MetaData-OpenConfig":{)" + members + "}}";
  }
  static Rok::String naming(const std::string& policy) {
    return document(R"("scheduler-policy":{"name":")" + policy + R"("})");
  }
  static Rok::String key(const Rok::String& name, const Qos::TxQueue& txQueue) {
    return QosOc::CommentHelper::commentKey(id(name), txQueue);
  }
  void comment(const Rok::String& name, const Qos::TxQueue& txQueue, const Rok::String& text) {
    cli->commentIs(key(name, txQueue), text);
  }
  // The comment of a tx queue names a policy.
  void name(const Rok::String& name, const Qos::TxQueue& txQueue, const std::string& policy) {
    comment(name, txQueue, naming(policy));
  }
  void queueName(const char* name, unsigned char number) {
    queueNames->queueNameToTxQueueIdIs(name, number);
  }

  // Native writes: QoS profiles, by the names of the policies.
  static Rok::String native(const Rok::String& policy) {
    return policy.addLeft("__YANG_SP_[").addRight("]");
  }
  void profile(const Rok::String& policy) { foreignProfile(native(policy)); }
  void profileDel(const Rok::String& policy) { profiles->configDel(native(policy)); }
  // One of any name.
  void foreignProfile(const Rok::String& name) {
    profiles->configIs(name, Rok::make<Qos::QosProfileConfig>(name));
  }
  static Rok::String profileKey(const Rok::String& policy) {
    return QosOc::CommentHelper::profileCommentKey(native(policy));
  }
  void profileComment(const Rok::String& policy, const Rok::String& text) {
    cli->commentIs(profileKey(policy), text);
  }

  // Starts and stops the root.
  void start() {
    root = QosOc::schedulerPolicyKivToOCSmFactory(cli, config, profiles, policies, interfaces);
  }
  void stop() { root = nullptr; }
  void restart() {
    stop();
    start();
  }
  // The machines; null for what is not mirrored.
  Rok::Ptr<QosOc::SchedulerPolicyIntfSm> machine(const Rok::String& name) const {
    return root->intfSm().child(id(name));
  }
  Rok::Ptr<QosOc::SchedulerPolicyTxQueueSm> machine(const Rok::String& name,
                                                    const Qos::TxQueue& txQueue) const {
    return machine(name)->txQueueSm().child(txQueue);
  }

  // The output.
  AttachmentModel attachments() const {
    AttachmentModel result;
    for (auto i = interfaces->interface().iterator(); i; ++i) {
      result[text(i.key())] = attachment(*i.currNodeNonStale()->value());
    }
    return result;
  }
  static std::string attachment(const QosOc::Config::Interface& interface) {
    if (!interface.output()) return "no output";
    const auto& policy = interface.output()->schedulerPolicy();
    return policy ? text(policy->config.name) : "none";
  }
  PolicyModel model() const {
    PolicyModel result;
    for (auto i = policies->schedulerPolicy().iterator(); i; ++i) {
      result[text(i.key())] = schedulers(*i.currNodeNonStale()->value());
    }
    return result;
  }
  static std::string schedulers(const QosOc::Config::SchedulerPolicy& policy) {
    const std::string wrong =
        policy.config().name == policy.name() ? "" : "!config " + text(policy.config().name);
    if (!policy.schedulers()) return "-" + wrong;
    std::map<std::uint32_t, std::string> texts;
    for (auto i = policy.schedulers()->scheduler().iterator(); i; ++i) {
      texts[i.key()] = scheduler(*i.currNodeNonStale()->value());
    }
    std::string result;
    for (const auto& [sequence, text] : texts) result += (result.empty() ? "" : "; ") + text;
    return result + wrong;
  }
  static std::string scheduler(const QosOc::Config::Scheduler& scheduler) {
    std::ostringstream out;
    const auto& config = scheduler.config();
    out << scheduler.sequence();
    if (config.sequence != scheduler.sequence()) out << "!" << config.sequence;
    if (config.priority) out << " " << *config.priority;
    if (const auto& rate = scheduler.oneRateTwoColor()) {
      if (rate->cir) out << " cir " << *rate->cir;
      if (rate->cirPct) out << " " << *rate->cirPct << "%";
      if (!rate->cir && !rate->cirPct) out << " !no rate";
    }
    if (scheduler.inputs()) out << " [" << inputs(*scheduler.inputs()) << "]";
    return out.str();
  }
  static std::string inputs(const QosOc::Config::SchedulerInputs& inputs) {
    std::map<std::string, std::string> texts;
    for (auto i = inputs.input().iterator(); i; ++i) {
      const auto& input = i.currNodeNonStale()->value();
      std::ostringstream out;
      out << input.id;
      if (input.config.id != input.id) out << "!" << input.config.id;
      if (!input.config.queue.empty()) out << " " << input.config.queue;
      if (input.config.weight) out << " " << *input.config.weight;
      texts[text(i.key())] = out.str();
    }
    std::string result;
    for (const auto& [id, text] : texts) result += (result.empty() ? "" : ", ") + text;
    return result;
  }
  static std::string text(const Rok::String& string) {
    return std::string(std::string_view(string));
  }

  // Output of an earlier run, or of another writer.
  Rok::Ptr<QosOc::Config::InterfaceOutput> earlierAttachment(const Rok::String& name,
                                                             const Rok::String& policy) {
    const auto output = interfaces->interfaceIs(name)->outputIs();
    output->schedulerPolicyIs(QosOc::Config::InterfaceOutputSchedulerPolicy{{policy}});
    return output;
  }
  Rok::Ptr<QosOc::Config::SchedulerPolicy> earlierPolicy(const Rok::String& name) {
    auto policy = policies->schedulerPolicyIs(name);
    policy->configIs({name});
    return policy;
  }
};

// The lines of the scheduler unit, without addresses: those that the reading of a comment adds
// are tested elsewhere.
inline std::vector<std::string> schedulerLines(const TraceCapture& trace) {
  std::vector<std::string> result;
  for (const std::string& line : trace.linesWithoutAddresses()) {
    const bool isOfReading = line.starts_with("2 deserializeJson") ||
                             line.starts_with("2 Comment ") ||
                             line.find("InfoFromComment ( ") != std::string::npos;
    if (!isOfReading) result.push_back(line);
  }
  return result;
}

}  // namespace support
