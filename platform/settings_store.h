#pragma once

#include <QString>

#include <optional>

namespace corvane::platform {

/// The per-user settings: string and boolean values by key.
///
/// Used on the main thread. A value of another type than the one asked for counts as absent. A
/// written value is on disk when the call returns. A failed write is not reported; the new value
/// then applies until the program exits.
class SettingsStore
{
public:
    SettingsStore() = default;
    SettingsStore(const SettingsStore &) = delete;
    SettingsStore &operator=(const SettingsStore &) = delete;
    virtual ~SettingsStore() = default;

    /// Empty if the key is absent or holds another type.
    [[nodiscard]] virtual std::optional<QString> string(const QString &key) const = 0;
    [[nodiscard]] virtual std::optional<bool> boolean(const QString &key) const = 0;
    /// Replaces whatever the key holds.
    virtual void setString(const QString &key, const QString &value) = 0;
    virtual void setBoolean(const QString &key, bool value) = 0;
};

} // namespace corvane::platform
