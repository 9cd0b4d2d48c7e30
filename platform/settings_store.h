#pragma once

#include <QString>

#include <optional>

namespace corvane::platform {

/// The per-user settings: string and boolean values by key.
///
/// Used on the main thread. A value of another type than the one asked for counts as absent. A
/// write is on disk when the call returns; a write that the disk refuses keeps the new value for
/// the rest of the run and is not reported.
class SettingsStore
{
public:
    SettingsStore() = default;
    SettingsStore(const SettingsStore &) = delete;
    SettingsStore &operator=(const SettingsStore &) = delete;
    virtual ~SettingsStore() = default;

    /// None where the key is absent or holds another type.
    [[nodiscard]] virtual std::optional<QString> string(const QString &key) const = 0;
    [[nodiscard]] virtual std::optional<bool> boolean(const QString &key) const = 0;
    /// Replaces whatever the key holds.
    virtual void setString(const QString &key, const QString &value) = 0;
    virtual void setBoolean(const QString &key, bool value) = 0;
};

} // namespace corvane::platform
