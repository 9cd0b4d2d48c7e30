// Preloaded into a program to kill it at one exact step. Steps are messages sent, files
// synchronised and files renamed, counted from the moment at which the file CORVANE_KILL_ARMED
// exists. CORVANE_KILL_STEP is the number of the step; CORVANE_KILL_WHEN selects whether the
// program dies before or after it.

#include <dlfcn.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string_view>

namespace {

std::atomic<long> steps = 0;

template <typename Function, typename... Arguments>
auto step(const char *name, Function, Arguments... arguments)
{
    static const auto original = reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
    static const long last = std::atol(std::getenv("CORVANE_KILL_STEP"));
    static const bool before = std::string_view(std::getenv("CORVANE_KILL_WHEN")) == "before";
    static const char *armed = std::getenv("CORVANE_KILL_ARMED");
    const bool isLast = access(armed, F_OK) == 0 && ++steps == last;
    if (isLast && before) {
        kill(getpid(), SIGKILL);
    }
    const auto result = original(arguments...);
    if (isLast) {
        kill(getpid(), SIGKILL);
    }
    return result;
}

} // namespace

extern "C" {

[[gnu::visibility("default")]] int fsync(int file)
{
    return step("fsync", static_cast<int (*)(int)>(nullptr), file);
}

[[gnu::visibility("default")]] ssize_t sendmsg(int socket, const msghdr *message, int flags)
{
    return step("sendmsg", static_cast<ssize_t (*)(int, const msghdr *, int)>(nullptr), socket,
                message, flags);
}

[[gnu::visibility("default")]] int fdatasync(int file)
{
    return step("fdatasync", static_cast<int (*)(int)>(nullptr), file);
}

[[gnu::visibility("default")]] int rename(const char *from, const char *to) noexcept
{
    return step("rename", static_cast<int (*)(const char *, const char *)>(nullptr), from, to);
}
}
