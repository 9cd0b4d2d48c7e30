#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <optional>

namespace corvane::fuzz {

/// A folder for the files of one input, in memory where the system has a place for that: a real
/// disk would do most of the work.
class ScratchFolder
{
public:
    ScratchFolder()
        : m_folder(QFileInfo(shared()).isWritable()
                       ? shared() + QStringLiteral("/fuzz-XXXXXX")
                       : QDir::tempPath() + QStringLiteral("/fuzz-XXXXXX"))
    {}

    [[nodiscard]] QString path(const char *name) const
    {
        return m_folder.filePath(QString::fromLatin1(name));
    }
    void write(const char *name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size()) {
            qFatal("the folder for the files of an input cannot be written to");
        }
    }
    /// None when there is no such file.
    [[nodiscard]] std::optional<QByteArray> contents(const char *name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? std::optional(file.readAll()) : std::nullopt;
    }

private:
    static QString shared() { return QStringLiteral("/dev/shm"); }

    QTemporaryDir m_folder;
};

} // namespace corvane::fuzz
