#pragma once

#include "platform/application_bundle.h"

#include <QString>
#include <QStringList>

#include <filesystem>

namespace corvane::platform {

/// Bundles as folders of the local file system.
class LocalApplicationBundle final : public ApplicationBundle
{
public:
    /// `executable`: absolute path of the running program. `relaunchArguments`: what a new instance
    /// is started with.
    LocalApplicationBundle(const QString &executable, QStringList relaunchArguments);

    /// The nearest folder above the executable whose name ends with ".app".
    [[nodiscard]] QString path() const override { return m_path; }
    [[nodiscard]] bool exists(const QString &path) const override;
    /// The bundle is put aside under a hidden name first. Should the disk then keep a part of it,
    /// that part remains there; at `path` nothing does. The running bundle is never removed, under
    /// whatever path it is found.
    bool remove(const QString &path) override;
    bool copy(const QString &from, const QString &to) override;
    void openNewInstance(const QString &path) override;

private:
    [[nodiscard]] bool isRunningBundle(const std::filesystem::path &target) const;

    QString m_path;
    /// The executable inside of the bundle.
    QString m_program = QStringLiteral("bin/corvane");
    QStringList m_relaunchArguments;
};

} // namespace corvane::platform
