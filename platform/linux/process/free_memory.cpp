#include "platform/linux/process/free_memory.h"

#include <malloc.h>

namespace corvane::platform {

void setUpHeap() noexcept
{
    mallopt(M_ARENA_MAX, 1);
    // Each frame of a motion needs pictures of megabytes. They come from memory that stays with the
    // process until `releaseFreeMemory`, instead of new pages that the kernel has to clear every
    // time.
    mallopt(M_MMAP_THRESHOLD, 32 << 20); // the largest threshold there is
    mallopt(M_TRIM_THRESHOLD, 16 << 20);
}

void releaseFreeMemory() noexcept
{
    malloc_trim(0);
}

} // namespace corvane::platform
