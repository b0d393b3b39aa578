// The lists of the OpenConfig tree, each rendered in a file of its own, in the order of their
// names.
#pragma once

#include "host/Model.h"
#include "host/openconfig/Tree.h"

namespace host {

void classifiersJson(Tree& tree, const QosOc::Config::ClassifiersDir& dir);
void forwardingGroupsJson(Tree& tree, const QosOc::Config::ForwardingGroupsDir& dir);
void interfacesJson(Tree& tree, const QosOc::Config::InterfacesDir& dir);
void pfcJson(Tree& tree, const QosOc::Config::Pfc& pfc);
void queueManagementProfilesJson(Tree& tree, const QosOc::Config::QueueManagementProfilesDir& dir);
void queuesJson(Tree& tree, const QosOc::Config::QueuesDir& dir);
void schedulerPoliciesJson(Tree& tree, const QosOc::Config::SchedulerPoliciesDir& dir);

// The name of a classifier's type; null for a number that has none.
const char* classifierTypeName(QosOc::Classifier::Type type);
// The leaf `priorities` of priority flow control.
void prioritiesJson(Tree& tree, std::string_view priorities, const std::string& native);

}  // namespace host
