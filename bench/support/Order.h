// Random orders that are the same in every run.
#pragma once

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <random>
#include <vector>

namespace Bench {

using Random = std::mt19937_64;

// std::shuffle, but with the same result under every standard library.
template <class T>
void shuffle(std::vector<T>& values, Random& random) {
  for (std::size_t left = values.size(); left > 1; --left) {
    std::swap(values[left - 1], values[random() % left]);
  }
}

// The numbers from 0 to size - 1, shuffled.
inline std::vector<std::size_t> shuffledNumbers(std::size_t size, Random& random) {
  std::vector<std::size_t> numbers(size);
  std::iota(numbers.begin(), numbers.end(), std::size_t{0});
  shuffle(numbers, random);
  return numbers;
}

}  // namespace Bench
