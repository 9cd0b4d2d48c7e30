#pragma once

#include "platform/application_bundle.h"

#include <QString>
#include <QStringList>

#include <filesystem>

namespace corvane::platform {

/// Bundles as folders in the local file system.
class LocalApplicationBundle final : public ApplicationBundle
{
public:
    /// `executable`: absolute path of the running program. `relaunchArguments`: the arguments for a
    /// new instance.
    LocalApplicationBundle(const QString &executable, QStringList relaunchArguments);

    /// The nearest folder above the executable whose name ends with ".app".
    [[nodiscard]] QString path() const override { return m_path; }
    [[nodiscard]] bool exists(const QString &path) const override;
    /// Renames the bundle to a hidden name first. If it cannot be removed completely, the rest
    /// stays there; nothing stays at `path`. Never removes the running bundle, whatever path leads
    /// to it.
    bool remove(const QString &path) override;
    bool copy(const QString &from, const QString &to) override;
    void openNewInstance(const QString &path) override;

private:
    [[nodiscard]] bool isRunningBundle(const std::filesystem::path &target) const;

    QString m_path;
    /// The executable's path inside the bundle.
    QString m_program = QStringLiteral("bin/corvane");
    QStringList m_relaunchArguments;
};

} // namespace corvane::platform
