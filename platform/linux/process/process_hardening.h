#pragma once

namespace corvane::platform {

/// Protects this process's memory from other processes of the same user: no core dump, no debugger,
/// no reading of `/proc/<pid>/mem`. Returns false if the kernel refused any of it. Must be called
/// first, before a secret exists. Child processes inherit only the ban on core dumps.
[[nodiscard]] bool hardenProcess() noexcept;

} // namespace corvane::platform
