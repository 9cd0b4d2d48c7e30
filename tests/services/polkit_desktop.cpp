#include "polkit_desktop.h"

#include "keyring_desktop.h"
#include "tests/platform/wait_until.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace corvane::tests {

namespace {

namespace fs = std::filesystem;

constexpr char polkitDaemon[] = "/usr/lib/polkit-1/polkitd";
constexpr char busFolder[] = "/run/dbus";
constexpr char actionsFolder[] = "/usr/share/polkit-1/actions";
/// "open-sesame", salted and hashed as account passwords are.
constexpr char passwordHash[] = "$6$corvane$YvmO9UBODFCu2X/ySzser2Hy.yhm2vYyg7ag6hu/"
                                "X3GPgFe2MjEAJoulpo6dXb32vfAubQybJCoOGTZxr9yCZ.";

bool mountEmpty(const char *folder)
{
    std::error_code ignored;
    fs::create_directories(folder, ignored);
    return mount("tmpfs", folder, "tmpfs", 0, "mode=0755") == 0;
}

/// Puts a copy of `file` with one more line in its place.
bool extend(const std::string &folder, const std::string &file, const std::string &line)
{
    std::ifstream original(file);
    const std::string copy = folder + '/' + fs::path(file).filename().string();
    std::ofstream(copy) << std::string(std::istreambuf_iterator<char>(original), {}) << line
                        << '\n';
    return mount(copy.c_str(), file.c_str(), nullptr, MS_BIND, nullptr) == 0;
}

} // namespace

std::optional<std::string> PolkitDesktop::enter()
{
    if (geteuid() != 0) {
        return "root, to make a user and a system bus for the test";
    }
    if (!fs::exists(polkitDaemon)) {
        return std::string("polkit, at ") + polkitDaemon;
    }
    if (unshare(CLONE_NEWNS) != 0 ||
        mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) {
        return "the right to a mount namespace";
    }
    static const TemporaryFolder accounts;
    const std::string name = userName;
    const std::string id = std::to_string(user);
    if (!mountEmpty(busFolder) || !mountEmpty(actionsFolder) ||
        !extend(accounts.path(), "/etc/passwd", name + ":x:" + id + ':' + id + "::/tmp:/bin/sh") ||
        !extend(accounts.path(), "/etc/group", name + ":x:" + id + ':') ||
        !extend(accounts.path(), "/etc/shadow",
                name + ':' + passwordHash + ":19000:0:99999:7:::")) {
        return "the right to mount";
    }
    return std::nullopt;
}

PolkitDesktop::PolkitDesktop()
{
    const std::string configuration = std::string(busFolder) + "/bus.conf";
    const std::string socket = std::string(busFolder) + "/system_bus_socket";
    fs::remove(socket);
    std::ofstream(configuration) << busConfiguration("system", socket);
    m_bus = std::make_unique<ChildProcess>(
        std::vector<std::string>{"dbus-daemon", "--config-file=" + configuration, "--nofork",
                                 "--nopidfile", "--print-address=1"});
    if (!m_bus->readLine()) {
        throw std::runtime_error("no system bus");
    }
}

bool PolkitDesktop::startPolkit(bool actions)
{
    const std::string action = std::string(actionsFolder) + "/org.corvane.policy";
    fs::remove(action);
    if (actions) {
        fs::copy_file(POLICY_FILE, action);
        fs::permissions(action, fs::perms(0644));
    }
    m_polkit = std::make_unique<ChildProcess>(std::vector<std::string>{polkitDaemon, "--no-debug"});
    return waitUntil([] {
        ChildProcess question(
            {"dbus-send", "--system", "--print-reply=literal", "--reply-timeout=2000",
             "--dest=org.freedesktop.PolicyKit1", "/org/freedesktop/PolicyKit1/Authority",
             "org.freedesktop.PolicyKit1.Authority.EnumerateActions", "string:C"});
        return question.waitForEnd() == 0;
    });
}

} // namespace corvane::tests
