#include "platform/linux/keyring/remembered_accounts.h"

#include "platform/linux/files/whole_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <utility>

namespace corvane::platform {

namespace {

constexpr qint64 maximumSize = 64 * 1024;
constexpr QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QLatin1StringView accountKey("account");
constexpr QLatin1StringView collectionKey("collection");

QJsonObject load(const QString &path)
{
    QFile file(path);
    if (!QFileInfo(path).isFile() || !file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QJsonDocument::fromJson(file.read(maximumSize)).object();
}

void save(const QString &path, const QJsonObject &accounts)
{
    QDir().mkpath(QFileInfo(path).absolutePath());
    // A failed write is harmless: the account is then looked up in the keyring again.
    static_cast<void>(replaceFile(path, QJsonDocument(accounts).toJson(), ownerOnly));
}

} // namespace

RememberedAccounts::RememberedAccounts(QString path)
    : m_path(std::move(path))
{}

std::optional<RememberedAccount> RememberedAccounts::find(const QString &service) const
{
    const std::scoped_lock lock(m_mutex);
    const QJsonObject entry = load(m_path).value(service).toObject();
    RememberedAccount account{entry.value(accountKey).toString(),
                              entry.value(collectionKey).toString()};
    return account.account.isEmpty() ? std::nullopt : std::optional(std::move(account));
}

void RememberedAccounts::remember(const QString &service, const RememberedAccount &account)
{
    const std::scoped_lock lock(m_mutex);
    QJsonObject accounts = load(m_path);
    const QJsonObject entry{{accountKey, account.account}, {collectionKey, account.collection}};
    if (accounts.value(service) != entry) {
        accounts.insert(service, entry);
        save(m_path, accounts);
    }
}

void RememberedAccounts::forget(const QString &service)
{
    const std::scoped_lock lock(m_mutex);
    QJsonObject accounts = load(m_path);
    if (accounts.contains(service)) {
        accounts.remove(service);
        save(m_path, accounts);
    }
}

} // namespace corvane::platform
