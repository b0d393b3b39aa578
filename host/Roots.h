// The roots: one for each translator. A root keeps the output in line with the native objects for
// as long as it lives.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "Dorpel/Export.h"
#include "host/Model.h"
#include "host/Native.h"

namespace QOS_EXPORT host {

// A translator, by its name on the command line and in messages.
struct Root {
  std::string_view name;
  Rok::Ptr<Rok::PtrInterface> (*factory)(const Native& native, const Model& model);
};

// All roots, in the order in which they are built.
std::span<const Root> roots();
// Null for a name that no root has.
const Root* rootNamed(std::string_view name);

// Builds one root. One that throws is reported, as "root <name>: <what>" and, where that is known, the
// places of the native document that it raised over: " at <place>, <place>". Null then.
Rok::Ptr<Rok::PtrInterface> buildRoot(const Root& root, const Native& native, const Model& model,
                                      const std::function<void(const std::string&)>& report);

// Builds the roots of those names, or all when `names` is empty, always in the order
// of the table. One that throws is reported, as buildRoot does, and left out.
std::vector<Rok::Ptr<Rok::PtrInterface>> buildRoots(
    std::span<const std::string> names, const Native& native, const Model& model,
    const std::function<void(const std::string&)>& report);

}  // namespace host
