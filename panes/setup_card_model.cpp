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

core::KeySession::Publication SetupCardModel::animated()
{
    return [transaction = QPointer(&m_transaction)](const std::function<void()> &change) {
        if (transaction) {
            transaction->run(cardSpring(), change);
        } else {
            change();
        }
    };
}

void SetupCardModel::createWallet()
{
    if (!m_wallet.isStoringKey()) {
        report(this, m_wallet.createWallet(animated()));
    }
}

void SetupCardModel::importKey()
{
    if (canImport() && !m_wallet.isStoringKey()) {
        report(this, m_wallet.importSigningKey(m_importText.view(), animated()));
    }
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
QCoro::Task<> SetupCardModel::report(QPointer<SetupCardModel> card,
                                     QCoro::Task<core::SendResult<Value>> storing)
{
    const core::SendResult<Value> result = co_await storing;
    if (!card) {
        co_return;
    }
    const auto *error = std::get_if<core::SendError>(&result);
    if (error == nullptr) {
        // Another card takes over; the form must not be seen empty while it leaves.
        card->m_importText.forget();
    }
    card->m_transaction.run(cardSpring(), [&] {
        card->setErrorMsg(error != nullptr ? error->description() : QString());
    });
}

void SetupCardModel::setErrorMsg(const QString &message)
{
    if (m_errorMsg != message) {
        m_errorMsg = message;
        Q_EMIT errorMsgChanged();
    }
}

} // namespace corvane::panes
