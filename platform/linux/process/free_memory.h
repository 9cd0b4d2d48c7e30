#pragma once

namespace corvane::platform {

/// Makes all threads share one heap, which keeps some freed memory. By default the allocator gives
/// each thread a heap of its own, also those that only wait for a bus or a file, and takes large
/// blocks from the system one by one. Must be called before any other thread is started.
void setUpHeap() noexcept;

/// Returns freed memory to the system. Takes a few milliseconds. Thread-safe.
void releaseFreeMemory() noexcept;

} // namespace corvane::platform
