#pragma once

#include "island/island_controller.h"

#include "tests/core/wallet_fixture.h"
#include "tests/fakes/fake_desktop.h"
#include "tests/fakes/stubborn_keychain.h"

#include <memory>

namespace corvane::tests {

/// A wallet, and an island with cards on it.
class CardTest : public WalletTest
{
protected:
    /// Makes the wallet and the island.
    void launchIsland()
    {
        m_screens.screens = {plainScreen({0, 0, 1512, 982})};
        model = std::make_unique<core::WalletModel>(core::WalletServices{
            queue, http, settings, m_chain, signingKeys, background, formatter, files, endpoints});
        queue.drain();
        m_island = std::make_unique<island::IslandController>(
            *model, island::IslandServices{queue, m_screens, m_pointer, m_panels, m_authenticator,
                                           m_clipboard, m_sounds, m_links, m_application, nullptr});
        m_island->show();
    }

    /// Launches and gives `card` what a view would give it.
    template <typename Card>
    void open(Card &card)
    {
        if (!m_island) {
            launchIsland();
        }
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
        close();
        launchIsland();
        EXPECT_FALSE(model->sessionSecret());
        return model->signingPubkey().value_or(QString());
    }

    /// The keychain is asked twice for every key, with and without protection.
    void refuseNextKey()
    {
        m_chain.failures = {platform::keychainAuthFailed, platform::keychainAuthFailed};
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

    StubbornKeychain m_chain;
    FakeScreens m_screens;
    FakePointer m_pointer;
    FakePanelFactory m_panels;
    FakeAuthenticator m_authenticator;
    FakeClipboard m_clipboard;
    FakeSoundPlayer m_sounds;
    FakeLinkOpener m_links;
    FakeApplication m_application;
    std::unique_ptr<island::IslandController> m_island;
};

} // namespace corvane::tests
