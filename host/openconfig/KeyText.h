// The keys of a directory as the document has them.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Rok/Rok.h"
#include "models/openconfig/Classifier.h"

namespace host {

// The types of classifiers that OpenConfig knows.
inline constexpr std::string_view classifierTypes[] = {"IPV4", "IPV6", "MPLS", "ETHERNET"};
// The name of a classifier's type; empty for a number that has none.
std::string_view classifierTypeName(QosOc::Classifier::Type type);

// How the keys of a directory stand in the document: their texts, and what is wrong with them.
struct KeyText {
  using Type = QosOc::Classifier::Type;

  // As the document has it.
  static std::string_view text(const Rok::String& key) { return key; }
  static std::string text(std::uint32_t key) { return std::to_string(key); }
  static std::string text(Type key);

  // The inverse; nothing for a text that is no key of the type.
  static std::optional<Rok::String> key(std::string_view text, const Rok::String*) {
    return {text};
  }
  static std::optional<std::uint32_t> key(std::string_view text, const std::uint32_t*);
  static std::optional<Type> key(std::string_view text, const Type*);

  // Whether the document can hold an entry of that key.
  static bool isHeld(const Rok::String& key);
  static bool isHeld(std::uint32_t /*key*/) { return true; }
  static bool isHeld(Type key) { return !classifierTypeName(key).empty(); }

  // Why the leaf of that name can't hold the key; empty when it can.
  static std::string misfit(const Rok::String& key, std::string_view leaf);
  static std::string misfit(std::uint32_t /*key*/, std::string_view /*leaf*/) { return {}; }
  static std::string misfit(Type key, std::string_view leaf);
};

}  // namespace host
