#pragma once

namespace ondavia {

/// Begins to load the libraries of the graphics driver on the thread pool: they are large, and a program
/// waits for them when it opens its first window. Without effect where there is none to be found. To be
/// called once; any thread.
void readGraphicsDriver();

} // namespace ondavia
