#include "child_process.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>

namespace corvane::tests {

namespace {

constexpr uid_t nobody = 65534;

/// Whether a process of the same user may look into the memory of `pid`.
bool isOpenToItsUser(pid_t pid)
{
    const std::string memory = "/proc/" + std::to_string(pid) + "/mem";
    return ChildProcess({"sh", "-c", "exec 2>&- 3<" + memory}, {}, nobody).waitForEnd() == 0;
}

std::string coreLimit(pid_t pid)
{
    std::ifstream limits("/proc/" + std::to_string(pid) + "/limits");
    for (std::string line; std::getline(limits, line);) {
        if (line.starts_with("Max core file size")) {
            return line;
        }
    }
    return {};
}

TEST(ProcessHardeningTest, ClosesTheMemoryToItsOwnUserAndWritesNoCore)
{
    if (geteuid() != 0) {
        GTEST_SKIP() << "process hardening is NOT tested here; this needs root, for another user";
    }
    const TemporaryFolder folder(nobody);
    const std::string program = folder.path() + "/wallet_actor";
    std::filesystem::copy_file(WALLET_ACTOR, program);
    ChildProcess ordinary({"sh", "-c", "echo ready; read line"}, {}, nobody);
    ASSERT_EQ(ordinary.readLine(), "ready");
    if (!isOpenToItsUser(ordinary.pid())) {
        GTEST_SKIP() << "process hardening is NOT tested here; the kernel closes every process";
    }
    ChildProcess hardened({program, folder.path() + "/accounts.json", "willing"}, {}, nobody);
    ASSERT_EQ(hardened.readLine(), "ready");
    EXPECT_FALSE(isOpenToItsUser(hardened.pid()));
    EXPECT_EQ(coreLimit(hardened.pid()).find_first_not_of("Max corefilsz0bytes"), std::string::npos)
        << coreLimit(hardened.pid());
    EXPECT_FALSE(coreLimit(hardened.pid()).empty());
}

} // namespace

} // namespace corvane::tests
