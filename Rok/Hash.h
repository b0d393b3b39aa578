// OVERVIEW
//   Hashes of keys, and the seed that varies the walk order of every hash collection.
//
// RULES
//   - A class whose values are keys has `hash(seed)`, which chains hashSingleAttr over its
//     attributes, and operator==. Equal values have equal hashes.
//   - A hash shows in the walk order of the hash collections and nowhere else.
//
// EXAMPLE
//   struct PortId {
//     unsigned slot = 0;
//     Velmo::String name;
//     std::uint32_t hash(std::uint32_t seed) const {
//       return Rok::hashSingleAttr(Rok::hashSingleAttr(seed, slot), name);
//     }
//     bool operator==(const PortId&) const = default;
//   };
#pragma once

#include <concepts>
#include <cstdint>
#include <type_traits>

#include "Dorpel/Export.h"
#include "Velmo/Hash.h"
#include "Velmo/String.h"

namespace Rok {

// What all hashes and hash collections of the process have in common.
struct QOS_EXPORT HashHelper {
  // The seed from which every hash of a value class starts.
  static constexpr std::uint32_t hashSeed32() { return 0x9d7c3f21u; }

  // The process-wide walk-order seed, 0 at start. Collections that are filled while another seed is
  // in force are walked in another order. For tests: results that may depend on it are few, and
  // docs/framework.md lists them.
  static std::uint32_t orderSeed() { return orderSeed_; }
  static void orderSeedIs(std::uint32_t seed) { orderSeed_ = seed; }

  // A version that no map has had yet.
  static std::uint64_t nextVersion() { return ++version_; }

 private:
  static std::uint32_t orderSeed_;
  static std::uint64_t version_;
};

// The hash of one attribute, on top of what `seed` already holds. A value class with several chains
// them: each one's result is the next one's seed.
inline std::uint32_t hashSingleAttr(std::uint32_t seed, const Velmo::String& value) {
  return Velmo::hashWord(seed, value.hash());
}
template <class T>
requires std::integral<T> || std::is_enum_v<T>
constexpr std::uint32_t hashSingleAttr(std::uint32_t seed, T value) {
  return Velmo::hashWord(seed, static_cast<std::uint64_t>(value));
}
template <class T>
requires requires(const T& value, std::uint32_t seed) { value.hash(seed); }
std::uint32_t hashSingleAttr(std::uint32_t seed, const T& value) { return value.hash(seed); }

}  // namespace Rok
