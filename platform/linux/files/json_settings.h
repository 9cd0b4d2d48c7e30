#pragma once

#include "platform/settings_store.h"

#include <QJsonObject>

namespace corvane::platform {

/// The settings as one JSON object in a file that only the user can read.
///
/// A file that holds no JSON object is renamed to `<name>.damaged` (numbered when that is taken)
/// and the settings start empty. A file that cannot be read or set aside stays untouched, and the
/// settings live in memory. Members that the program does not know survive a rewrite.
class JsonSettings final : public SettingsStore
{
public:
    /// Larger files are damaged: the settings are a handful of short values.
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
    /// The file lags behind the values, because an earlier write was refused.
    bool m_stale = false;
};

} // namespace corvane::platform
