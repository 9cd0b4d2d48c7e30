#include "child_process.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

namespace corvane::tests {

namespace {

constexpr uid_t nobody = 65534;

/// Whether a process of the same user may look into the memory of `pid`.
bool isOpenToItsUser(pid_t pid)
{
    const std::string memory = "/proc/" + std::to_string(pid) + "/mem";
    return ChildProcess({"sh", "-c", "exec 2>&- 3<" + memory}, {}, nobody).waitForEnd() == 0;
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
    const std::string limits = "/proc/" + std::to_string(hardened.pid()) + "/limits";
    EXPECT_EQ(ChildProcess({"grep", "-E", "Max core file size +0 +0 ", limits}).waitForEnd(), 0);
}

} // namespace

} // namespace corvane::tests
