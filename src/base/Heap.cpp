#include "base/Heap.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace ondavia {

void shareHeapAmongThreads() {
#ifdef __GLIBC__
    // One for the main thread, one for all others; a single one would let them wait for each other.
    constexpr int heaps = 2;
    mallopt(M_ARENA_MAX, heaps);
#endif
}

} // namespace ondavia
