#pragma once

#include "tests/island/island_fixture.h"

namespace corvane::tests {

/// An island with cards on it.
class CardTest : public IslandTest
{
protected:
    CardTest() { m_screens.screens = {plainScreen({0, 0, 1512, 982})}; }

    /// Gives `card` what a view would give it.
    template <typename Card>
    void open(Card &card)
    {
        card.setProperty("wallet", QVariant::fromValue(model.get()));
        card.setProperty("island", QVariant::fromValue(m_island.get()));
        if constexpr (requires { card.componentComplete(); }) {
            card.componentComplete();
        }
    }

    /// A wallet with a key that was created before, and is in memory.
    QString launchWithKey()
    {
        launchIsland();
        EXPECT_TRUE(std::holds_alternative<platform::SecretBytes>(model->createWallet()));
        model->setPendingBackup(std::nullopt);
        queue.drain();
        return model->signingPubkey().value_or(QString());
    }

    /// The same, but locked, as after a start.
    QString launchLocked()
    {
        launchWithKey();
        launchIsland();
        EXPECT_FALSE(model->sessionSecret());
        return model->signingPubkey().value_or(QString());
    }

    /// The keychain is asked twice for every key, with and without protection.
    void refuseNextKey()
    {
        keychain.failures = {platform::keychainAuthFailed, platform::keychainAuthFailed};
    }

    /// Lets the background and the main queue do their work.
    void settle()
    {
        while (background.held() > 0) {
            background.runNext();
            queue.drain();
        }
        queue.drain();
    }

    void close()
    {
        m_island.reset();
        model.reset();
    }
};

/// And one card of which the test knows the model.
template <typename Card>
class OneCardTest : public CardTest
{
protected:
    Card m_card;
};

} // namespace corvane::tests
