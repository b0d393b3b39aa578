// A class's description: its name and the names of its attributes, as exceptions and traces show
// them.
#pragma once

#include <span>
#include <string_view>

#include "Rok/Ptr.h"

namespace Rok {

struct FwkType {
  std::string_view name;
  std::span<const std::string_view> attributes;  // the first one's id is firstAttributeId

  // The attribute's name, empty for an id that the class doesn't have.
  std::string_view attributeName(AttributeId id) const {
    const auto index = static_cast<std::size_t>(id) - firstAttributeId;
    return index < attributes.size() ? attributes[index] : std::string_view();
  }
};

}  // namespace Rok
