// The file of remembered accounts with these bytes. The first two lines are an account and its
// keyring that are then remembered.

#include "fuzz/property.h"
#include "fuzz/scratch_folder.h"
#include "platform/linux/keyring/remembered_accounts.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace corvane::platform;
using corvane::fuzz::require;

namespace {

const QString service = QStringLiteral("corvane.signing-key");
const QString other = QStringLiteral("other");

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    corvane::fuzz::Input input(data, size);
    const QString account = input.takeText();
    const RememberedAccount remembered{account, input.takeText()};
    const QByteArray before = input.rest();
    if (corvane::fuzz::hasByteOrderMark(before)) {
        return -1;
    }

    const corvane::fuzz::ScratchFolder folder;
    folder.write("accounts.json", before);
    RememberedAccounts accounts(folder.path("accounts.json"));
    const auto found = accounts.find(service);
    require(!found || !found->account.isEmpty());
    require(folder.contents("accounts.json") == before);
    const auto others = accounts.find(other);

    accounts.remember(service, remembered);
    require(accounts.find(service) ==
            (account.isEmpty() ? std::nullopt : std::optional(remembered)));
    require(accounts.find(other) == others);
    const QJsonObject entries =
        QJsonDocument::fromJson(folder.contents("accounts.json").value_or(QByteArray())).object();
    require(entries.contains(service));

    accounts.forget(service);
    require(!accounts.find(service) && accounts.find(other) == others);
    return 0;
}
