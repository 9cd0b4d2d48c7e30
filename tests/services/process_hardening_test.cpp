#include "child_process.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace corvane::tests {

namespace {

/// Whether a process of this user may look into the memory of `pid`.
bool isOpenToItsUser(pid_t pid)
{
    return std::ifstream("/proc/" + std::to_string(pid) + "/mem").is_open();
}

TEST(ProcessHardeningTest, ClosesTheMemoryToItsOwnUserAndWritesNoCore)
{
    ChildProcess ordinary({"sh", "-c", "echo ready; read line"});
    ASSERT_EQ(ordinary.readLine(), "ready");
    if (!qEnvironmentVariableIsSet("CORVANE_TESTER") || !isOpenToItsUser(ordinary.pid())) {
        GTEST_SKIP()
            << "process hardening is NOT tested here; it needs with_polkit.py, root, and a "
               "kernel that does not close every process";
    }
    const QTemporaryDir folder;
    ChildProcess hardened({qEnvironmentVariable("WALLET_ACTOR").toStdString(),
                           folder.filePath(QStringLiteral("accounts.json")).toStdString(),
                           "willing"});
    ASSERT_EQ(hardened.readLine(), "ready");
    EXPECT_FALSE(isOpenToItsUser(hardened.pid()));
    std::ifstream file("/proc/" + std::to_string(hardened.pid()) + "/limits");
    const std::string limits(std::istreambuf_iterator<char>(file), {});
    EXPECT_NE(limits.find("Max core file size        0                    0 "), std::string::npos);
}

} // namespace

} // namespace corvane::tests
