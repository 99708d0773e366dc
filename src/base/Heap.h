#pragma once

namespace ondavia {

/// Keeps memory that has been freed within reach of other threads, or gives it back to the system. Each film
/// and each channel has threads of its own and pictures of some megabytes; without this, what they free stays
/// with the process: 1,000 starts of a film held some 50 MiB more than ten. At the start of the program,
/// before its threads. Nothing where the C library knows no such settings.
void keepHeapSmall();

} // namespace ondavia
