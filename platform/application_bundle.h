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
    /// slash behind it; the folder of the executable when it is not in a bundle.
    [[nodiscard]] virtual QString path() const = 0;
    /// True when anything is at `path`, also a dangling link.
    [[nodiscard]] virtual bool exists(const QString &path) const = 0;
    /// Removes what is at `path` with all that it holds. False when that failed; what is there is
    /// then as it was.
    virtual bool remove(const QString &path) = 0;
    /// Copies a bundle, with permissions and links. False when that failed; nothing is left at
    /// `to` then.
    virtual bool copy(const QString &from, const QString &to) = 0;
    /// Starts the bundle at `path` as a new instance, which takes over when this one has ended.
    /// Does not tell whether it started.
    virtual void openNewInstance(const QString &path) = 0;
};

} // namespace corvane::platform
