// Counts the live objects of each type, so that a test, or an engineer with a leak, can ask.
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
