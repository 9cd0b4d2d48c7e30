#pragma once

#include <QString>

#include <mutex>
#include <optional>

namespace corvane::platform {

/// What is public about a stored item.
struct RememberedAccount
{
    QString account;
    /// The keyring that holds the item, by its D-Bus path.
    QString collection;

    [[nodiscard]] bool operator==(const RememberedAccount &) const = default;
};

/// The accounts of stored items by service, in a small JSON file, for the times when the keyring
/// tells nothing. A file that cannot be read counts as empty; a refused write is not reported,
/// because the keyring stays the truth. May be used from any thread.
class RememberedAccounts
{
public:
    /// `path`: the file, which need not exist yet.
    explicit RememberedAccounts(QString path);

    [[nodiscard]] std::optional<RememberedAccount> find(const QString &service) const;
    void remember(const QString &service, const RememberedAccount &account);
    void forget(const QString &service);

private:
    const QString m_path;
    mutable std::mutex m_mutex;
};

} // namespace corvane::platform
