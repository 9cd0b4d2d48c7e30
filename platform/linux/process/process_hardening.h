#pragma once

namespace corvane::platform {

/// Keeps this process's memory from core files and from other processes of the same user: no core
/// dump, no debugger, no reading of `/proc/<pid>/mem`. False when the kernel refused any of it.
/// To be called first of all, before a secret exists. Programs that this one starts inherit only
/// the ban on core files.
[[nodiscard]] bool hardenProcess() noexcept;

} // namespace corvane::platform
