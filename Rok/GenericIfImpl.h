// The generic face of a class: its name and the names of its attributes, as exceptions and traces
// show them.
#pragma once

#include <span>
#include <string_view>

#include "Rok/Ptr.h"

namespace Rok {

// Describes a class. Attribute i has the id firstAttributeId + i.
struct FwkType {
  std::string_view name;
  std::span<const std::string_view> attributes;

  // The attribute's name, or an empty text for an id that the class does not have.
  std::string_view attributeName(AttributeId id) const {
    const auto index = static_cast<std::size_t>(id) - firstAttributeId;
    return index < attributes.size() ? attributes[index] : std::string_view();
  }
};

}  // namespace Rok
