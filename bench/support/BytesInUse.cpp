#include "support/BytesInUse.h"

#include <malloc.h>

#include "Dorpel/Slab.h"

namespace Bench {

std::uint64_t bytesInUse() {
  const Dorpel::SlabUse slabs = Dorpel::slabUse();
  const struct mallinfo2 heap = mallinfo2();
  return slabs.bytes + slabs.mapped + heap.uordblks + heap.hblkhd - slabs.chunks;
}

}  // namespace Bench
