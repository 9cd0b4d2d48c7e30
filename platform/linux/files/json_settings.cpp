#include "platform/linux/files/json_settings.h"

#include "platform/linux/files/whole_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonValue>

#include <algorithm>
#include <optional>
#include <utility>

namespace corvane::platform {

namespace {

constexpr QFileDevice::Permissions ownerOnlyFile = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions ownerOnlyFolder = ownerOnlyFile | QFileDevice::ExeOwner;
constexpr int setAsideAttempts = 1000;

/// Parses the object in `text`; empty if it is anything else.
std::optional<QJsonObject> parseObject(const QByteArray &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject()) {
        return std::nullopt;
    }
    return document.object();
}

/// Renames the file so that its content is not lost; false on failure.
bool setAside(const QString &path)
{
    const QString target = path + QStringLiteral(".damaged");
    if (QFile::rename(path, target)) {
        return true;
    }
    for (int number = 2; number <= setAsideAttempts; ++number) {
        const QString numbered = target + QStringLiteral(".%1").arg(number);
        if (!QFileInfo::exists(numbered)) {
            return QFile::rename(path, numbered);
        }
    }
    return false;
}

} // namespace

JsonSettings::JsonSettings(QString path)
    : m_path(std::move(path))
{
    load();
}

void JsonSettings::load()
{
    const QFileInfo info(m_path);
    // A dangling link is treated as absent; the first write creates the file that it points to.
    if (!info.exists()) {
        return;
    }
    QFile file(m_path);
    // A folder or pipe at this path does not belong to the program and is not read, renamed or
    // replaced.
    if (!info.isFile() || !file.open(QIODevice::ReadOnly)) {
        m_writable = false;
        return;
    }
    // Reading one byte more than the limit detects a file that is too long. The file's size bounds
    // the buffer.
    const QByteArray text = file.read(std::min(file.size(), maximumSize) + 1);
    const bool readFailed = file.error() != QFileDevice::NoError;
    file.close();
    if (readFailed) {
        m_writable = false;
        return;
    }
    if (text.size() <= maximumSize) {
        if (auto values = parseObject(text)) {
            m_values = *std::move(values);
            return;
        }
    }
    m_writable = setAside(m_path);
}

std::optional<QString> JsonSettings::string(const QString &key) const
{
    const QJsonValue value = m_values.value(key);
    return value.isString() ? std::optional(value.toString()) : std::nullopt;
}

std::optional<bool> JsonSettings::boolean(const QString &key) const
{
    const QJsonValue value = m_values.value(key);
    return value.isBool() ? std::optional(value.toBool()) : std::nullopt;
}

void JsonSettings::setString(const QString &key, const QString &value)
{
    // A null QString would be written as JSON null.
    set(key, QJsonValue(value.isNull() ? QStringLiteral("") : value));
}

void JsonSettings::setBoolean(const QString &key, bool value)
{
    set(key, QJsonValue(value));
}

void JsonSettings::set(const QString &key, const QJsonValue &value)
{
    if (!m_stale && m_values.value(key) == value) {
        return;
    }
    m_values.insert(key, value);
    write();
}

void JsonSettings::write()
{
    m_stale = true;
    if (!m_writable) {
        return;
    }
    const QString folder = QFileInfo(m_path).absolutePath();
    if (!QFileInfo::exists(folder)) {
        if (!QDir().mkpath(folder)) {
            return;
        }
        QFile::setPermissions(folder, ownerOnlyFolder);
    }
    m_stale = !replaceFile(m_path, QJsonDocument(m_values).toJson(), ownerOnlyFile);
}

} // namespace corvane::platform
