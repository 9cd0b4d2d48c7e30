#include "platform/linux/process/code_pages.h"

#include <malloc.h>
#include <sys/mman.h>

#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

namespace corvane::platform {

void releaseFreeMemory() noexcept
{
    malloc_trim(0);
}

void releaseCodePages() noexcept
{
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> maps(
        std::fopen("/proc/self/smaps", "re"), &std::fclose);
    if (!maps) {
        return;
    }
    char line[512];
    std::uintptr_t start = 0;
    std::uintptr_t end = 0;
    bool isOfFile = false;
    while (std::fgets(line, sizeof line, maps.get()) != nullptr) {
        char permissions[5] = {};
        std::uint64_t anonymous = 0;
        std::uintptr_t from = 0;
        std::uintptr_t to = 0;
        if (std::sscanf(line, "%" SCNxPTR "-%" SCNxPTR " %4s", &from, &to, permissions) == 3) {
            start = from;
            end = to;
            const bool isReadOnly =
                std::strcmp(permissions, "r-xp") == 0 || std::strcmp(permissions, "r--p") == 0;
            isOfFile = isReadOnly && std::strstr(line, " /usr/") != nullptr;
        } else if (isOfFile && std::sscanf(line, "Anonymous: %" SCNu64, &anonymous) == 1 &&
                   anonymous == 0) {
            // Not one page differs from the file, so nothing is lost. Compiled scripts, for
            // example, do differ.
            // NOLINTNEXTLINE(performance-no-int-to-ptr): the kernel tells addresses as numbers
            madvise(reinterpret_cast<void *>(start), end - start, MADV_DONTNEED);
        }
    }
}

} // namespace corvane::platform
