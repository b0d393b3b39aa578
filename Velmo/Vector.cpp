#include "Velmo/Vector.h"

#include <string>

namespace Velmo::Impl {

void throwVectorOutOfRangeException(std::size_t index, std::size_t size) {
  throw VectorException("vector index " + std::to_string(index) + " is outside a vector of size " +
                        std::to_string(size));
}

void throwVectorEmptyBackException() { throw VectorException("back of an empty vector"); }

void throwVectorEmptyFrontException() { throw VectorException("front of an empty vector"); }

}  // namespace Velmo::Impl
