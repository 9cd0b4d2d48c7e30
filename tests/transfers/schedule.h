#pragma once

#include "core/wallet_model.h"
#include "island/island_controller.h"
#include "panes/card_models.h"
#include "platform/background_tasks.h"
#include "platform/sodium_signing_keys.h"
#include "tests/fakes/english_number_formatter.h"
#include "tests/fakes/fake_desktop.h"
#include "tests/fakes/hand_driven_queue.h"
#include "tests/fakes/memory_file_system.h"
#include "tests/fakes/memory_settings_store.h"
#include "tests/fakes/stubborn_keychain.h"
#include "tests/transfers/intentions.h"
#include "tests/transfers/local_cluster.h"
#include "tests/transfers/unreliable_http.h"

#include <QStringList>

#include <chrono>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

namespace corvane::tests {

/// Runs work after a random time of the hand-driven clock, as long as a person takes to answer.
class SlowBackgroundTasks final : public platform::BackgroundTasks
{
public:
    SlowBackgroundTasks(HandDrivenQueue &queue, Dice &dice)
        : m_queue(queue)
        , m_dice(dice)
    {}

    void run(std::function<void()> work) override;

private:
    HandDrivenQueue &m_queue;
    Dice &m_dice;
};

/// One random sequence of what a user, the network and the machine may do to transfers of a wallet
/// with a real key on a real cluster. The same seed always gives the same sequence.
class Schedule
{
public:
    Schedule(LocalCluster &cluster, std::uint64_t seed);
    ~Schedule();

    /// Runs to the end, when nothing is under way any more. Returns what must never happen.
    [[nodiscard]] QStringList run();

    /// What happened, with the time of the hand-driven clock.
    [[nodiscard]] const QStringList &journal() const { return m_journal; }
    [[nodiscard]] std::size_t payments() const { return m_payments; }

private:
    struct Choice
    {
        QString text;
        std::uint64_t lamports;
    };

    void step();
    void launch();
    void endProgram();
    void restart();
    void openPane();
    void leavePane();
    void fill();
    void edit();
    void press();
    /// A press while the card's text is not what the model holds.
    void pressBetweenStates();
    void changeNetwork();
    void changeEndpoint();
    void wait(std::chrono::milliseconds duration);
    void settle();
    void observe();
    void submitted(const QUrl &url, const WireTransfer &transfer);
    void note(const QString &text);

    LocalCluster &m_cluster;
    Dice m_dice;
    HandDrivenQueue m_queue;
    UnreliableHttp m_http;
    MemorySettingsStore m_settings;
    StubbornKeychain m_keychain;
    platform::SodiumSigningKeys m_signingKeys;
    SlowBackgroundTasks m_background;
    EnglishNumberFormatter m_formatter;
    MemoryFileSystem m_files;
    FakeScreens m_screens;
    FakePointer m_pointer;
    FakePanelFactory m_panels;
    FakeAuthenticator m_authenticator;
    FakeClipboard m_clipboard;
    FakeSoundPlayer m_sounds;
    FakeLinkOpener m_links;
    FakeApplication m_application;
    core::Endpoints m_endpoints;

    std::vector<QString> m_recipients;
    const std::vector<Choice> m_amounts;
    std::map<core::SolNetwork, std::uint64_t> m_ledgerEnd;

    std::unique_ptr<core::WalletModel> m_wallet;
    std::unique_ptr<island::IslandController> m_island;
    std::unique_ptr<panes::CardModels> m_cards;
    std::unique_ptr<panes::SendPaneModel> m_pane;
    /// What was typed last: recipient and amount.
    std::optional<std::pair<QString, Choice>> m_last;
    QUrl m_endpointAtPress;
    bool m_crashesAtNextTransfer = false;

    Intentions m_intentions;
    QString m_lastCard;
    QStringList m_journal;
    std::size_t m_payments = 0;
};

} // namespace corvane::tests
