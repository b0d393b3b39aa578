// A device with the whole classification path: class maps, ACLs, policy maps, service policies, the
// names of forwarding groups and queues; the five translators that follow them, and what these
// write.
//
// Each classifier has a placeholder and its terms, a policy map that gives every term a traffic
// class, and an interface that the policy map is bound to.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSm.h"
#include "QosOpenConfig/QosOpenConfigForwardingGroupKivToOcSm.h"
#include "QosOpenConfig/QosOpenConfigIntfClassifierKivToOcSm.h"
#include "support/ClassMapDevice.h"

namespace Bench {

class ClassificationDevice {
 public:
  // What a host has at hand when an event arrives.
  struct Change {
    std::size_t number;
    Umb::UniqueId ruleId;
    Acl::IpRuleConfig rule;
    Nerit::IntfId port;  // one that nothing is bound to
  };

  // The native side only.
  explicit ClassificationDevice(std::size_t classMaps);
  // The translators and their output come, and go.
  void start();
  void machinesDel() { roots_.clear(); }
  void outputDel();

  // The directories that the translators write, once they are there.
  template <class Visitor>
  void eachOutput(const Visitor& visit) const {
    visit(classifiers_);
    visit(interfaces_);
    visit(groups_);
    visit(queues_);
  }

  static Change change(std::size_t number);

  // The events, all of them at a term or at its classifier.
  void addRule(const Change& change);
  void removeRule(const Change& change);
  // The term gets the other one of two traffic classes.
  void changeAction(const Change& change);
  // The term's traffic class gets the other one of two queues.
  void remap(const Change& change);
  // The classifier's policy map is bound to another interface, and loses it.
  void bind(const Change& change);
  void unbind(const Change& change);

  // Ends the process unless the output has what the native side stands for.
  void check() const;

 private:
  void addTerm(std::size_t number);
  void addClassifier(std::size_t number);
  void checkTerm(std::size_t number) const;
  void checkGroup(unsigned char tc) const;

  std::size_t size_;
  Rok::Ptr<Qos::Input::AclConfig> aclConfig_ = Rok::make<Qos::Input::AclConfig>();
  Rok::Ptr<Acl::Input::Config> aclInput_ = Rok::make<Acl::Input::Config>();
  Rok::Ptr<Qos::Input::Config> input_ = Rok::make<Qos::Input::Config>();
  // By the number of a term, and by that of a classifier.
  std::vector<Rok::Ptr<Acl::AclSubConfig>> rules_;
  std::vector<Rok::Ptr<Qos::Action>> actions_;
  std::vector<Rok::Ptr<Qos::PolicyMapConfig>> policyMaps_;
  std::vector<Rok::Ptr<Qos::ServicePolicyConfig>> servicePolicies_;
  Rok::Ptr<QosOc::Config::ClassifiersDir> classifiers_;
  Rok::Ptr<QosOc::Config::InterfacesDir> interfaces_;
  Rok::Ptr<QosOc::Config::ForwardingGroupsDir> groups_;
  Rok::Ptr<QosOc::Config::QueuesDir> queues_;
  std::vector<Rok::Ptr<Rok::PtrInterface>> roots_;
};

// A device with policy maps and their classes alone: the classifiers, with all terms that the
// classes are of, and the interfaces stand for the policy-map and the service-policy translators
// to fill.
class PolicyDevice {
 public:
  PolicyDevice(std::size_t policyMaps, std::size_t classes, std::size_t interfaces);
  void start();
  // Ends the process unless each term has its target group and each interface its classifiers.
  void check() const;

 private:
  std::size_t policyMaps_;
  std::size_t classes_;
  std::size_t bound_;
  Rok::Ptr<Qos::Input::AclConfig> aclConfig_ = Rok::make<Qos::Input::AclConfig>();
  Rok::Ptr<Qos::Input::Config> input_ = Rok::make<Qos::Input::Config>();
  Rok::Ptr<QosOc::Config::ClassifiersDir> classifiers_;
  Rok::Ptr<QosOc::Config::InterfacesDir> interfaces_;
  std::vector<Rok::Ptr<Rok::PtrInterface>> roots_;
};

}  // namespace Bench
