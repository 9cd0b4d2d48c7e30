#pragma once

#include "island/island_controller.h"

#include "tests/core/wallet_fixture.h"
#include "tests/fakes/fake_desktop.h"

#include <memory>

namespace corvane::tests {

/// A wallet, and an island on a desktop that the test controls.
class IslandTest : public WalletTest
{
protected:
    /// Creates the wallet and the island; destroys those of a former launch.
    void launchIsland()
    {
        m_island.reset();
        launchAndSettle();
        m_island = std::make_unique<island::IslandController>(
            *model, island::IslandServices{queue, m_screens, m_pointer, m_panels, m_authenticator,
                                           m_clipboard, nullptr});
        m_island->show();
        queue.drain();
    }

    FakeScreens m_screens;
    FakePointer m_pointer;
    FakePanelFactory m_panels;
    FakeAuthenticator m_authenticator;
    FakeClipboard m_clipboard;
    std::unique_ptr<island::IslandController> m_island;
};

} // namespace corvane::tests
