// The rules of `check`, a function for each topic. Each goes over the native objects, as a start finds
// them, and hands on what it finds.
#pragma once

#include "host/check/Device.h"
#include "host/check/Finding.h"

namespace host {

// Names that are almost of a form that is read, and those that the model can't hold.
void judgeNames(const Device& device, const Findings& findings);
// Class maps, ACLs and policy maps.
void judgeClassifiers(const Device& device, const Findings& findings);
// What the objects of a classifier need beside them.
void judgeTerms(const Device& device, const Findings& findings);
// Service policies.
void judgeBindings(const Device& device, const Findings& findings);
// Forwarding groups, the names of queues, and the PFC watchdog.
void judgeGroups(const Device& device, const Findings& findings);
// The tx queues of interfaces.
void judgeQueues(const Device& device, const Findings& findings);
// QoS profiles.
void judgeProfiles(const Device& device, const Findings& findings);
// Values over which a translator raises.
void judgeRanges(const Device& device, const Findings& findings);
// Comments that nearly say something, and those whose key leads nowhere.
void judgeComments(const Device& device, const Findings& findings);

}  // namespace host
