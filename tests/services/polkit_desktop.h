#pragma once

#include "child_process.h"

#include <memory>
#include <optional>
#include <string>

namespace corvane::tests {

/// A system bus with polkit and an ordinary user, made for the test in a mount namespace of this
/// process's own, so that nothing of it is seen or left outside.
class PolkitDesktop
{
public:
    static constexpr uid_t user = 61234;
    static constexpr char userName[] = "corvane-tester";
    static constexpr char password[] = "open-sesame";

    /// What this machine lacks for it; none when it has everything. To be asked first.
    [[nodiscard]] static std::optional<std::string> enter();

    PolkitDesktop();

    /// `actions`: the folder from which polkit takes its actions gets Corvane's.
    [[nodiscard]] bool startPolkit(bool actions = true);
    void killPolkit() { m_polkit.reset(); }

private:
    std::unique_ptr<ChildProcess> m_bus;
    std::unique_ptr<ChildProcess> m_polkit;
};

} // namespace corvane::tests
