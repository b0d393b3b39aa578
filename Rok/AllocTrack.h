// Counts the live objects of each type and their bytes, for tests and for the search of a leak. A
// type is counted when its operator new and operator delete call blockNew and blockDel;
// StateMachine's do.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Dorpel/Export.h"

namespace Rok {

// The counts of one type.
class QOS_EXPORT AllocTrackTypeInfo {
 public:
  // Those of T, for the process.
  template <class T>
  static AllocTrackTypeInfo& of() {
    static constinit AllocTrackTypeInfo info;
    return info;
  }

  std::uint64_t blocks() const { return blocks_; }
  std::uint64_t bytes() const { return bytes_; }

  // An object of so many bytes was allocated, or given back.
  void blockNew(std::size_t size) {
    ++blocks_;
    bytes_ += size;
  }
  void blockDel(std::size_t size) noexcept {
    --blocks_;
    bytes_ -= size;
  }

 private:
  std::uint64_t blocks_ = 0;
  std::uint64_t bytes_ = 0;
};

}  // namespace Rok
