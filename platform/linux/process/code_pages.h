#pragma once

namespace corvane::platform {

/// Hands the memory back into which this process has mapped program code and constants. What is
/// used again is mapped again from the page cache, some microseconds a piece; what only the start
/// or an open card needed stays away. Touches nothing but pages that are never written.
void releaseCodePages() noexcept;

/// Hands memory that was freed back to the system, which the allocator otherwise keeps.
void releaseFreeMemory() noexcept;

} // namespace corvane::platform
