#include "panes/setup_card_model.h"

#include "core/blank_trimming.h"
#include "core/wallet_model.h"

namespace corvane::panes {

namespace {

/// The animation between the two sides of the card.
look::Animation faceSpring()
{
    return look::Animation::spring(0.35, 0.85);
}

/// The animation to another card.
look::Animation cardSpring()
{
    return look::Animation::spring(0.42, 0.88);
}

} // namespace

SetupCardModel::SetupCardModel(core::WalletModel &wallet, look::Transaction &transaction,
                               QObject *parent)
    : QObject(parent)
    , m_wallet(wallet)
    , m_transaction(transaction)
{
    connect(&m_importText, &look::SecretText::changed, this, &SetupCardModel::canImportChanged);
}

bool SetupCardModel::canImport() const
{
    return !core::trimmingBlanks(m_importText.view()).isEmpty();
}

void SetupCardModel::createWallet()
{
    m_transaction.run(cardSpring(), [this] { report(m_wallet.createWallet()); });
}

void SetupCardModel::importKey()
{
    if (!canImport()) {
        return;
    }
    m_transaction.run(cardSpring(), [this] {
        const auto imported = m_wallet.importSigningKey(m_importText.view());
        if (std::holds_alternative<QString>(imported)) {
            m_importText.clear();
        }
        report(imported);
    });
}

void SetupCardModel::showImport()
{
    show(true);
}

void SetupCardModel::back()
{
    show(false);
    m_importText.clear();
}

void SetupCardModel::show(bool importing)
{
    m_transaction.run(faceSpring(), [this, importing] {
        m_importing = importing;
        Q_EMIT importingChanged();
        setErrorMsg({});
    });
}

template <typename Value>
void SetupCardModel::report(const core::SendResult<Value> &result)
{
    const auto *error = std::get_if<core::SendError>(&result);
    setErrorMsg(error != nullptr ? error->description() : QString());
}

void SetupCardModel::setErrorMsg(const QString &message)
{
    if (m_errorMsg != message) {
        m_errorMsg = message;
        Q_EMIT errorMsgChanged();
    }
}

} // namespace corvane::panes
