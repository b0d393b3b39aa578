// The vectors of the models: a standard vector over the slab allocator, with the checked mutators
// of a vector attribute.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <vector>

#include "Dorpel/Export.h"
#include "Dorpel/Slab.h"

namespace Velmo {

// Takes what a standard container needs from the slabs.
template <class T>
struct Allocator {
  using value_type = T;
  Allocator() noexcept = default;
  template <class U>
  Allocator(const Allocator<U>&) noexcept {}
  // Room for n objects, and the end of it. Throws: std::bad_alloc.
  T* allocate(std::size_t n) {
    return static_cast<T*>(Dorpel::slabAllocOrStdMalloc(n * sizeof(T)));
  }
  void deallocate(T* block, std::size_t n) noexcept {
    Dorpel::slabFreeOrStdFree(block, n * sizeof(T));
  }
  friend bool operator==(const Allocator&, const Allocator&) noexcept { return true; }
};

using ByteVector = std::vector<unsigned char, Allocator<unsigned char>>;

// Raised by access outside a vector.
class QOS_EXPORT VectorException : public std::out_of_range {
 public:
  using std::out_of_range::out_of_range;
};

namespace Impl {
[[noreturn]] QOS_EXPORT void throwVectorOutOfRangeException(std::size_t index, std::size_t size);
[[noreturn]] QOS_EXPORT void throwVectorEmptyBackException();
[[noreturn]] QOS_EXPORT void throwVectorEmptyFrontException();
}  // namespace Impl

// The forms xIs(index, value), xPush, xPop and xPopAll of a vector attribute stand on these.
// Throws: VectorException for an index past the end.
template <class T>
void vectorIs(std::vector<T, Allocator<T>>& vector, std::size_t index, const T& value) {
  if (index >= vector.size()) Impl::throwVectorOutOfRangeException(index, vector.size());
  vector[index] = value;
}

// Throws: VectorException when there is nothing to read or to take.
template <class T>
const T& vectorBack(const std::vector<T, Allocator<T>>& vector) {
  if (vector.empty()) Impl::throwVectorEmptyBackException();
  return vector.back();
}
template <class T>
const T& vectorFront(const std::vector<T, Allocator<T>>& vector) {
  if (vector.empty()) Impl::throwVectorEmptyFrontException();
  return vector.front();
}
template <class T>
void vectorPop(std::vector<T, Allocator<T>>& vector) {
  if (vector.empty()) Impl::throwVectorEmptyBackException();
  vector.pop_back();
}

}  // namespace Velmo
