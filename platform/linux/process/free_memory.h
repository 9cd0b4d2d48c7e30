#pragma once

namespace corvane::platform {

/// Lets all threads share one heap, where the allocator would give each of those that wait for a bus or
/// a file a heap of its own. Before any other thread is started.
void shareHeap() noexcept;

/// Hands memory that has been freed back to the system. Takes some milliseconds. Any thread.
void releaseFreeMemory() noexcept;

} // namespace corvane::platform
