// Native classification into OpenConfig classifiers: class maps make classifiers and terms exist,
// ACLs give the terms their conditions, policy maps their actions. The three know nothing of each
// other and meet in the output.
//
// A class map or an ACL takes part only when its name is a derived one: `__yang_[C]_[]` stands for
// classifier C, `__yang_[C]_[T]` for its term T. A policy map takes part when its name gives a
// classifier for one family or both: `__yang_[IPV4__A][IPV6__B]`.
//
// What wakes what:
//   cmap of Qos::Input::ClassMapTypeConfig      ClassMapTypeSm::handleClassMapConfig(name)
//   match of Qos::ClassMapConfig                ClassMapSm::handleClassMapMatch(option)
//   acl of Acl::Input::AclTypeConfig            AclTypeSm::handleAclConfig(name)
//   aclSubConfig of Acl::AclConfig              AclConfigSm::handleAclSubConfig()
//   ruleBySequence of Acl::AclSubConfig         AclSubConfigSm::handleRuleBySequence(sequence)
//   pmapType of Qos::Input::AclConfig           ClassActionKivToOcSm::handlePmapTypeConfig(type)
//   pmap of Qos::Input::PolicyMapTypeConfig     PmapTypeSm::handlePmapConfig(name)
//   classAction of Qos::PolicyMapConfig         PmapConfigSm::handleClassAction(class map's name)
//   policyAction of Qos::ClassAction            ClassActionSm::handlePolicyAction(type)
//   forwardingGroupNameToTcMap of Qos::Input::Config    re-points ClassActionSm's chained input
//   forwardingGroupNameToTc of that map         ClassActionSm::handleForwardingGroupNameToTcMap()
//   value of Qos::Action                        PolicyActionSm::handlePolicyActionValue()
#pragma once

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmAcl.h"
#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmClassMap.h"
#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmPolicyMap.h"
#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
