#include "platform/linux/process/process_hardening.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace corvane::platform {

bool hardenProcess() noexcept
{
    // Clearing the dumpable flag would suffice, but the kernel resets it when a process changes its
    // user.
    constexpr rlimit noCore{.rlim_cur = 0, .rlim_max = 0};
    const bool limited = setrlimit(RLIMIT_CORE, &noCore) == 0;
    const bool sealed = prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) == 0;
    return limited && sealed;
}

} // namespace corvane::platform
