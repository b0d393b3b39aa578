#include "support/OutputModel.h"

#include <tuple>
#include <type_traits>

#include "support/EventKinds.h"

namespace Bench {

// Here and not in the header: what the events program is made of decides what the compiler inlines
// there, and so what it counts.
template <class Device>
host::Model outputOf(const Device& device) {
  host::Model model;
  const auto parts =
      std::tie(model.classifiers, model.forwardingGroups, model.interfaces, model.pfc,
               model.queueManagementProfiles, model.queues, model.schedulerPolicies);
  device.eachOutput([&](const auto& directory) {
    std::get<std::remove_cvref_t<decltype(directory)>&>(parts) = directory;
  });
  return model;
}

template host::Model outputOf(const Floor&);
template host::Model outputOf(const ClassMapDevice&);
template host::Model outputOf(const ClassificationDevice&);
template host::Model outputOf(const PfcDevice&);
template host::Model outputOf(const QueueDevice&);
template host::Model outputOf(const QueueManagementDevice&);
template host::Model outputOf(const SchedulerDevice&);

}  // namespace Bench
