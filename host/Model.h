// The output side: the OpenConfig records that the roots write.
#pragma once

#include "Dorpel/Export.h"
#include "Rok/Rok.h"
#include "models/openconfig/Classifier.h"
#include "models/openconfig/ForwardingGroup.h"
#include "models/openconfig/Interface.h"
#include "models/openconfig/Pfc.h"
#include "models/openconfig/Queue.h"
#include "models/openconfig/SchedulerPolicy.h"

namespace QOS_EXPORT host {

struct Model {
  Rok::Ptr<QosOc::Config::ClassifiersDir> classifiers = Rok::make<QosOc::Config::ClassifiersDir>();
  Rok::Ptr<QosOc::Config::ForwardingGroupsDir> forwardingGroups =
      Rok::make<QosOc::Config::ForwardingGroupsDir>();
  Rok::Ptr<QosOc::Config::InterfacesDir> interfaces = Rok::make<QosOc::Config::InterfacesDir>();
  Rok::Ptr<QosOc::Config::Pfc> pfc = Rok::make<QosOc::Config::Pfc>();
  Rok::Ptr<QosOc::Config::QueueManagementProfilesDir> queueManagementProfiles =
      Rok::make<QosOc::Config::QueueManagementProfilesDir>();
  Rok::Ptr<QosOc::Config::QueuesDir> queues = Rok::make<QosOc::Config::QueuesDir>();
  Rok::Ptr<QosOc::Config::SchedulerPoliciesDir> schedulerPolicies =
      Rok::make<QosOc::Config::SchedulerPoliciesDir>();

  // Of all directories; null: none.
  void journalIs(QosOc::Config::Journal* journal) const {
    classifiers->journalIs(journal);
    forwardingGroups->journalIs(journal);
    interfaces->journalIs(journal);
    pfc->journalIs(journal);
    queueManagementProfiles->journalIs(journal);
    queues->journalIs(journal);
    schedulerPolicies->journalIs(journal);
  }
};

}  // namespace host
