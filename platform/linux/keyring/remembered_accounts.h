#pragma once

#include <QString>

#include <mutex>
#include <optional>

namespace corvane::platform {

/// The public data of a stored item.
struct RememberedAccount
{
    QString account;
    /// The D-Bus path of the keyring that holds the item.
    QString collection;

    [[nodiscard]] bool operator==(const RememberedAccount &) const = default;
};

/// The accounts of stored items by service, in a small JSON file, for use while the keyring is
/// locked or unavailable. A file that cannot be read is treated as empty; a failed write is not
/// reported, because the keyring is authoritative. Thread-safe.
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
