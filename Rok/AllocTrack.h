// Counts the live objects of each type and their bytes, for tests and for the search of a leak. A
// type is counted when its operator new and operator delete call blockNew and blockDel;
// StateMachine's do.
#pragma once

#include <cstddef>
#include <cstdint>

#include "Dorpel/Export.h"

namespace Rok {

class QOS_EXPORT AllocTrackTypeInfo {
 public:
  template <class T>
  static AllocTrackTypeInfo& of() {
    static constinit AllocTrackTypeInfo info;
    return info;
  }

  std::uint64_t blocks() const { return blocks_; }
  std::uint64_t bytes() const { return bytes_; }

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
