#include "support/ClassificationDevice.h"

#include <algorithm>
#include <iterator>

#include "support/Check.h"

namespace Bench {
namespace {

constexpr std::size_t classMapsOfClassifier = 10;
constexpr unsigned char trafficClasses = 8;
constexpr const char* groupNames[trafficClasses] = {
    "scavenger", "best-effort", "bulk", "transactional", "video", "voice", "signaling", "control"};

Qos::TrafficClass trafficClassOf(std::size_t number) { return number % trafficClasses; }
// The other number of a pair: 0 and 1, 2 and 3.
std::uint32_t otherOf(std::uint32_t v) { return v ^ 1u; }
std::string queueName(std::size_t id) { return "queue-" + std::to_string(id); }
std::string interfaceName(std::size_t number) { return "Ethernet" + std::to_string(number); }
std::string policyMapName(std::size_t classifier) {
  return "__yang_[IPV4__" + classifierName(classifier * classMapsOfClassifier) + "]";
}

Acl::IpRuleConfig dscpRule(std::size_t number) {
  Acl::IpRuleConfig rule;
  rule.filter.dscp = static_cast<std::uint8_t>(number % 64);
  rule.filter.matchDscp = true;
  return rule;
}

// The names of all groups and queues; every traffic class has a queue.
void mountNames(Qos::Input::Config& input) {
  const auto groups = Rok::make<Qos::ForwardingGroupNameToTcMap>();
  const auto queues = Rok::make<Qos::QueueNameToTxQueueIdMap>();
  for (unsigned char tc = 0; tc < trafficClasses; ++tc) {
    groups->forwardingGroupNameToTcIs(Qos::ForwardingGroupName(groupNames[tc]), tc);
    queues->queueNameToTxQueueIdIs(Qos::QueueName(queueName(tc)), tc);
    input.tcToTxQueueMapIs(tc, tc);
  }
  input.forwardingGroupNameToTcMapIs(groups);
  input.queueNameToTxQueueIdMapIs(queues);
}

}  // namespace

// ===== The whole path

ClassificationDevice::ClassificationDevice(std::size_t classMaps)
    : size_(classMaps),
      rules_(classMaps),
      actions_(classMaps),
      policyMaps_(classMaps / classMapsOfClassifier),
      servicePolicies_(classMaps / classMapsOfClassifier) {
  aclConfig_->cmapTypeIs(Qos::mapQos, Rok::make<Qos::Input::ClassMapTypeConfig>(Qos::mapQos));
  aclConfig_->pmapTypeIs(Qos::mapQos, Rok::make<Qos::Input::PolicyMapTypeConfig>(Qos::mapQos));
  for (const Acl::AclType type : {Acl::aclTypeIpv4, Acl::aclTypeIpv6}) {
    aclInput_->configIs(type, Rok::make<Acl::Input::AclTypeConfig>(type));
  }
  mountNames(*input_);
  Random random(1);
  const auto order = shuffledNumbers(size_, random);
  for (const std::size_t number : order) {
    if (number % classMapsOfClassifier == 0) addClassifier(number / classMapsOfClassifier);
  }
  for (const std::size_t number : order) addTerm(number);
}

void ClassificationDevice::addClassifier(std::size_t number) {
  const Rok::String name(policyMapName(number));
  policyMaps_[number] = Rok::make<Qos::PolicyMapConfig>(name);
  (*aclConfig_->pmapType().find(Qos::mapQos))->pmapIs(name, policyMaps_[number]);
  const Qos::ServicePolicyKey key{1, name};
  servicePolicies_[number] = Rok::make<Qos::ServicePolicyConfig>(key);
  servicePolicies_[number]->intfIdsIs(Nerit::IntfId(interfaceName(number)), true);
  input_->servicePolicyConfigIs(key, servicePolicies_[number]);
}

void ClassificationDevice::addTerm(std::size_t number) {
  const Rok::String name(classMapName(number));
  const auto classMap = Rok::make<Qos::ClassMapConfig>(name, Qos::mapQos);
  classMap->matchIs(Qos::matchIpAccessGroup, Rok::make<Qos::ClassMapMatch>());
  (*aclConfig_->cmapType().find(Qos::mapQos))->cmapIs(name, classMap);
  if (number % classMapsOfClassifier == 0) return;
  const Umb::UniqueId id(static_cast<std::uint32_t>(number), 0, 0);
  rules_[number] = Rok::make<Acl::AclSubConfig>();
  rules_[number]->ipRuleByIdIs(id, dscpRule(number));
  rules_[number]->ruleBySequenceIs(10, id);
  const auto acl = Rok::make<Acl::AclConfig>(name, Acl::aclTypeIpv4);
  acl->aclSubConfigIs(rules_[number]);
  (*aclInput_->config().find(Acl::aclTypeIpv4))->aclIs(name, acl);
  actions_[number] = Rok::make<Qos::Action>(Qos::actionSetTc, trafficClassOf(number).value);
  const auto classAction = Rok::make<Qos::ClassAction>(name);
  classAction->policyActionIs(Qos::actionSetTc, actions_[number]);
  policyMaps_[number / classMapsOfClassifier]->classActionIs(name, classAction);
}

void ClassificationDevice::start() {
  classifiers_ = Rok::make<QosOc::Config::ClassifiersDir>();
  interfaces_ = Rok::make<QosOc::Config::InterfacesDir>();
  groups_ = Rok::make<QosOc::Config::ForwardingGroupsDir>();
  queues_ = Rok::make<QosOc::Config::QueuesDir>();
  roots_ = {QosOc::classMapKivToOcSmFactory(aclConfig_, classifiers_),
            QosOc::aclKivToOcSmFactory(aclInput_, classifiers_),
            QosOc::classActionKivToOcSmFactory(aclConfig_, input_, classifiers_),
            QosOc::interfaceClassifierKivToOcSmFactory(input_, interfaces_),
            QosOc::forwardingGroupKivToOcSmFactory(input_, groups_, queues_)};
}

void ClassificationDevice::outputDel() {
  classifiers_ = nullptr;
  interfaces_ = nullptr;
  groups_ = nullptr;
  queues_ = nullptr;
}

ClassificationDevice::Change ClassificationDevice::change(std::size_t number) {
  return {number, Umb::UniqueId(static_cast<std::uint32_t>(number), 1, 0), dscpRule(number + 1),
          Nerit::IntfId("Port-Channel" + std::to_string(number))};
}

void ClassificationDevice::addRule(const Change& change) {
  Acl::AclSubConfig& rules = *rules_[change.number];
  rules.ipRuleByIdIs(change.ruleId, change.rule);
  rules.ruleBySequenceIs(20, change.ruleId);
}

void ClassificationDevice::removeRule(const Change& change) {
  Acl::AclSubConfig& rules = *rules_[change.number];
  rules.ruleBySequenceDel(20);
  rules.ipRuleByIdDel(change.ruleId);
}

void ClassificationDevice::changeAction(const Change& change) {
  Qos::Action& action = *actions_[change.number];
  action.valueIs(otherOf(action.value()));
}

void ClassificationDevice::remap(const Change& change) {
  const Qos::TrafficClass tc = trafficClassOf(change.number);
  input_->tcToTxQueueMapIs(tc,
                           static_cast<unsigned char>(otherOf(input_->tcToTxQueueMap(tc).value)));
}

void ClassificationDevice::bind(const Change& change) {
  servicePolicies_[change.number / classMapsOfClassifier]->intfIdsIs(change.port, true);
}

void ClassificationDevice::unbind(const Change& change) {
  servicePolicies_[change.number / classMapsOfClassifier]->intfIdsDel(change.port);
}

void ClassificationDevice::check() const {
  for (std::size_t number = 0; number < size_; ++number) {
    if (number % classMapsOfClassifier != 0) checkTerm(number);
  }
  for (unsigned char tc = 0; tc < trafficClasses; ++tc) checkGroup(tc);
  for (std::size_t number = 0; number < servicePolicies_.size(); ++number) {
    const auto interface = interfaces_->interface(interfaceName(number));
    require(interface && interface->input() && interface->input()->classifiers(),
            "input of an interface");
    const auto bound =
        interface->input()->classifiers()->classifier(QosOc::Classifier::classifierTypeIpv4);
    require(bound.config.name == classifierName(number * classMapsOfClassifier),
            "classifier of an interface");
  }
}

void ClassificationDevice::checkTerm(std::size_t number) const {
  const auto term =
      classifiers_->classifier(classifierName(number))->terms()->term(termName(number));
  require(term.conditions && term.conditions->ipv4, "conditions of " + classMapName(number));
  require(term.actions && term.actions->config.targetGroup ==
                              Rok::String(groupNames[actions_[number]->value()]),
          "target group of " + classMapName(number));
}

void ClassificationDevice::checkGroup(unsigned char tc) const {
  const auto group = groups_->forwardingGroup(groupNames[tc]);
  require(group && group->config().outputQueue ==
                       Rok::String(queueName(input_->tcToTxQueueMap(tc).value)),
          "queue of a forwarding group");
}

// ===== Policy maps

PolicyDevice::PolicyDevice(std::size_t policyMaps, std::size_t classes, std::size_t interfaces)
    : policyMaps_(policyMaps), classes_(classes), bound_(std::min(interfaces, policyMaps)) {
  mountNames(*input_);
  classifiers_ = Rok::make<QosOc::Config::ClassifiersDir>();
  const auto type = Rok::make<Qos::Input::PolicyMapTypeConfig>(Qos::mapQos);
  for (std::size_t number = 0; number < policyMaps_; ++number) {
    const std::string classifier = classifierName(number * classMapsOfClassifier);
    const auto output = classifiers_->classifierIs(classifier);
    output->configIs({classifier, QosOc::Classifier::classifierTypeIpv4});
    const auto terms = output->termsIs();
    const Rok::String name(policyMapName(number));
    const auto policyMap = Rok::make<Qos::PolicyMapConfig>(name);
    for (std::size_t i = 0; i < classes_; ++i) {
      const std::string id = "app-" + std::to_string(i);
      QosOc::Config::Term term{Rok::String(id)};
      term.configId = term.id;
      terms->termIs(term);
      const Rok::String className("__yang_[" + classifier + "]_[" + id + "]");
      const auto classAction = Rok::make<Qos::ClassAction>(className);
      classAction->policyActionIs(
          Qos::actionSetTc,
          Rok::make<Qos::Action>(Qos::actionSetTc, trafficClassOf(number + i).value));
      policyMap->classActionIs(className, classAction);
    }
    type->pmapIs(name, policyMap);
    if (number >= bound_) continue;
    const Qos::ServicePolicyKey key{1, name};
    const auto servicePolicy = Rok::make<Qos::ServicePolicyConfig>(key);
    servicePolicy->intfIdsIs(Nerit::IntfId(interfaceName(number)), true);
    input_->servicePolicyConfigIs(key, servicePolicy);
  }
  aclConfig_->pmapTypeIs(Qos::mapQos, type);
}

void PolicyDevice::start() {
  interfaces_ = Rok::make<QosOc::Config::InterfacesDir>();
  roots_ = {QosOc::classActionKivToOcSmFactory(aclConfig_, input_, classifiers_),
            QosOc::interfaceClassifierKivToOcSmFactory(input_, interfaces_)};
}

void PolicyDevice::check() const {
  for (std::size_t number = 0; number < policyMaps_; ++number) {
    const auto classifier =
        classifiers_->classifier(classifierName(number * classMapsOfClassifier));
    for (std::size_t i = 0; i < classes_; ++i) {
      const auto term = classifier->terms()->term(Rok::String("app-" + std::to_string(i)));
      require(term.actions && term.actions->config.targetGroup ==
                                  Rok::String(groupNames[trafficClassOf(number + i).value]),
              "target group of a policy map's class");
    }
  }
  require(interfaces_->interface().members() == bound_, "number of bound interfaces");
}

}  // namespace Bench
