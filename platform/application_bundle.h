#pragma once

#include <QString>

namespace corvane::platform {

/// The application directory ("Corvane.app") that the program runs from, and what can be done with
/// such directories. Main thread; copying blocks for as long as the disk takes.
class ApplicationBundle
{
public:
    ApplicationBundle() = default;
    ApplicationBundle(const ApplicationBundle &) = delete;
    ApplicationBundle &operator=(const ApplicationBundle &) = delete;
    virtual ~ApplicationBundle() = default;

    /// Absolute path of the bundle that the program runs from, ending with ".app" and without a
    /// trailing slash; the folder of the executable if it is not in a bundle.
    [[nodiscard]] virtual QString path() const = 0;
    /// True if anything exists at `path`, including a dangling link.
    [[nodiscard]] virtual bool exists(const QString &path) const = 0;
    /// Removes the file or folder at `path` with its contents. Returns false on failure and then
    /// leaves it as it was.
    virtual bool remove(const QString &path) = 0;
    /// Copies a bundle, with permissions and links. Returns false on failure and then leaves
    /// nothing at `to`.
    virtual bool copy(const QString &from, const QString &to) = 0;
    /// Starts the bundle at `path` as a new instance, which takes over when this one has exited.
    /// Does not report whether it started.
    virtual void openNewInstance(const QString &path) = 0;
};

} // namespace corvane::platform
