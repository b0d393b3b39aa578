#include "support/Sizes.h"

namespace Bench {
namespace {

std::vector<std::size_t> all = {1000, 10'000, 100'000, 1'000'000};
bool quick = false;

}  // namespace

const std::vector<std::size_t>& sizes() { return all; }
bool isQuick() { return quick; }
std::size_t documentMegabytes() { return quick ? 10 : 100; }

void quickIs() {
  quick = true;
  all = {1000, 100'000};
}

}  // namespace Bench
