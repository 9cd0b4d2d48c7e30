#include "platform/linux/process/free_memory.h"

#include <malloc.h>

namespace corvane::platform {

void shareHeap() noexcept
{
    mallopt(M_ARENA_MAX, 1);
}

void releaseFreeMemory() noexcept
{
    malloc_trim(0);
}

} // namespace corvane::platform
