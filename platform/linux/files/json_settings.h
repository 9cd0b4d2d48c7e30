#pragma once

#include "platform/settings_store.h"

#include <QJsonObject>

namespace corvane::platform {

/// The settings as one JSON object in a file that only the user can read.
///
/// A file that contains no JSON object is renamed to `<name>.damaged` (with a number if that
/// exists) and the settings start empty. A file that cannot be read or renamed stays unchanged, and
/// the settings are kept in memory only. Unknown members are preserved.
class JsonSettings final : public SettingsStore
{
public:
    /// In bytes. A larger file is treated as damaged: the settings are a few short values.
    static constexpr qint64 maximumSize = 1024 * 1024;

    /// `path`: the file, which need not exist yet.
    explicit JsonSettings(QString path);

    [[nodiscard]] std::optional<QString> string(const QString &key) const override;
    [[nodiscard]] std::optional<bool> boolean(const QString &key) const override;
    void setString(const QString &key, const QString &value) override;
    void setBoolean(const QString &key, bool value) override;

private:
    void load();
    void set(const QString &key, const QJsonValue &value);
    void write();

    QString m_path;
    QJsonObject m_values;
    bool m_writable = true;
    /// The file does not contain the current values, because an earlier write failed.
    bool m_stale = false;
};

} // namespace corvane::platform
