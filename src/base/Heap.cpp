#include "base/Heap.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace ondavia {

void keepHeapSmall() {
#ifdef __GLIBC__
    // One for the main thread, one for all others; a single one would let them wait for each other.
    constexpr int heaps = 2;
    mallopt(M_ARENA_MAX, heaps);
    // Bytes from which memory comes from the system and goes back to it when it is freed. Left alone, the C
    // library raises this to the size of a picture, and keeps as many of them as there ever were at once.
    constexpr int large = 1 << 20;
    mallopt(M_MMAP_THRESHOLD, large);
#endif
}

} // namespace ondavia
