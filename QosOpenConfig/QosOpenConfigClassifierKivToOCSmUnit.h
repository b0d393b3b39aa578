// What the sources of the classifier unit share. For no other code.
#pragma once

#include <cstdint>
#include <string_view>

#include "QosOpenConfig/QosOpenConfigClassifierKivToOCSmTerms.h"
#include "Rok/Rok.h"

namespace QosOc::ClassifierUnit {

[[gnu::visibility("hidden")]] extern Rok::TraceHandle traceHandle;

inline constexpr Rok::TraceLevel fault{traceHandle, 0};
inline constexpr Rok::TraceLevel handler{traceHandle, 8};

// The name of the class map and of the ACL of a term; of the placeholder when `term` is empty.
Velmo::String configObjName(std::string_view classifier, std::string_view term);

// The way that the name of a class map or an ACL leads. A native object never changes its name, so
// its machine decodes it once.
TermPath pathOf(std::string_view name);

// The first forwarding-group name of a traffic class; null when there is none.
const Qos::ForwardingGroupName* firstGroupName(std::uint32_t tc,
                                               const Qos::ForwardingGroupNameToTcMap& map);

}  // namespace QosOc::ClassifierUnit
