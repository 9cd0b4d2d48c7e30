#pragma once

#include "panes/card_models.h"
#include "tests/island/island_fixture.h"

#include <type_traits>

namespace corvane::tests {

/// An island with the models of its cards.
class CardTest : public IslandTest
{
protected:
    CardTest()
    {
        m_screens.screens = {plainScreen({0, 0, 1512, 982})};
        // What the send pane asks about; a cluster that knows nothing.
        http.answer(QStringLiteral("getMinimumBalanceForRentExemption"), R"({"result": 890880})");
        for (const QString &question :
             {QStringLiteral("getAccountInfo"), QStringLiteral("getSignaturesForAddress"),
              QStringLiteral("getBlockHeight"), QStringLiteral("getSignatureStatuses")}) {
            http.answer(question, platform::HttpError::TimedOut);
        }
    }

    /// Creates the cards of the launched island.
    [[nodiscard]] panes::CardModels cards()
    {
        return {
            *model,
            *m_island,
            {queue, m_clipboard, m_sounds, m_links, m_application, m_authenticator, doubleClick}};
    }

    /// Launches a wallet with an unlocked key.
    QString launchWithKey()
    {
        launchIsland();
        createKey();
        model->setPendingBackup(std::nullopt);
        queue.drain();
        return model->signingPubkey().value_or(QString());
    }

    /// The same, but locked, as after a restart.
    QString launchLocked()
    {
        launchWithKey();
        launchIsland();
        EXPECT_FALSE(model->sessionSecret());
        return model->signingPubkey().value_or(QString());
    }

    /// Both attempts to store a key, with and without protection, fail.
    void refuseNextKey()
    {
        keychain.failures = {platform::KeychainStatus::AuthFailed,
                             platform::KeychainStatus::AuthFailed};
    }

    void close()
    {
        m_island.reset();
        model.reset();
    }

    std::chrono::milliseconds doubleClick{400};
    FakeSoundPlayer m_sounds;
    FakeLinkOpener m_links;
    FakeApplication m_application;
};

/// With the model of one card, which `make` creates.
template <auto make>
class OneCardTest : public CardTest
{
protected:
    using Card =
        std::remove_pointer_t<std::invoke_result_t<decltype(make), panes::CardModels &, QObject *>>;

    void openCard()
    {
        panes::CardModels models = cards();
        m_card.reset((models.*make)(nullptr));
    }

    std::unique_ptr<Card> m_card;
};

} // namespace corvane::tests
