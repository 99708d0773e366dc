#pragma once

namespace ondavia {

/// Keeps the memory that has been freed by one thread within reach of the others. Each film and each channel
/// has threads of its own, and where each of them has a heap of its own too, what they free stays with the
/// process: 1,000 starts of a film held some 50 MiB more than ten. At the start of the program, before its
/// threads. Nothing where the C library knows no such setting.
void shareHeapAmongThreads();

} // namespace ondavia
