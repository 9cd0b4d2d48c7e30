#include "tests/transfers/schedule.h"

#include "core/wallet_settings.h"
#include "keys/key_vault.h"

#include <algorithm>
#include <utility>

namespace corvane::tests {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using core::SolNetwork;
using std::chrono::milliseconds;

namespace {

constexpr std::uint64_t lamportsPerSol = 1'000'000'000;
constexpr std::uint64_t payerBalance = 10 * lamportsPerSol;

/// The longest time of a person's answer to a prompt.
constexpr milliseconds slowestAnswer = 4s;
constexpr milliseconds doubleClick = 500ms;
/// One fate after the other is shown within this time.
constexpr milliseconds readingTime = 30s;
/// After this long without trouble everything must be settled.
constexpr milliseconds patience = 20min;
/// Blockhashes expire, and their expiry is final, within this time.
constexpr milliseconds lifeOfBlockhash = 90s;

platform::SecretBytes randomSeed(Dice &dice)
{
    platform::SecretBytes seed(platform::SigningKeys::seedSize);
    std::ranges::generate(seed.bytes(), [&] { return static_cast<std::uint8_t>(dice.below(256)); });
    return seed;
}

} // namespace

void SlowBackgroundTasks::run(std::function<void()> work)
{
    m_queue.after(m_dice.between(0ms, slowestAnswer), std::move(work));
}

Schedule::Schedule(LocalCluster &cluster, std::uint64_t seed)
    : m_cluster(cluster)
    , m_dice(seed)
    , m_http(cluster, m_queue, m_dice)
    , m_background(m_queue, m_dice)
    , m_amounts{{u"0.5"_s, lamportsPerSol / 2},
                {u".50"_s, lamportsPerSol / 2},
                {u"1"_s, lamportsPerSol},
                {u"0.0005"_s, lamportsPerSol / 2000},
                {u"2.000000001"_s, 2 * lamportsPerSol + 1},
                {u"9.9999"_s, payerBalance - lamportsPerSol / 10'000},
                {u"20"_s, 20 * lamportsPerSol}}
{
    m_screens.screens = {plainScreen({0, 0, 1512, 982})};
    m_endpoints.mainnet = cluster.endpoint(SolNetwork::Mainnet).toString();
    m_endpoints.devnet = cluster.endpoint(SolNetwork::Devnet).toString();
    m_endpoints.walletApp = cluster.walletApp();
    m_http.onTransfer = [this](const QUrl &url, const WireTransfer &transfer) {
        submitted(url, transfer);
    };

    const auto address = [this](const platform::SecretBytes &seedBytes) {
        return keys::Address(m_signingKeys.publicKey(seedBytes).value());
    };
    for (const std::uint64_t balance : {lamportsPerSol, std::uint64_t{0}}) {
        const keys::Address recipient = address(randomSeed(m_dice));
        m_cluster.setBalance(recipient, balance);
        m_recipients.push_back(recipient.text());
    }
    const platform::SecretBytes key = randomSeed(m_dice);
    const keys::Address payer = address(key);
    m_cluster.setBalance(payer, payerBalance);
    if (keys::KeyVault(m_keychain).storeStatus(key, payer) != platform::KeychainStatus::Success) {
        qFatal("a keychain in memory refused a key");
    }
    m_settings.setString(core::addressSetting, payer.text());
    for (const SolNetwork network : core::allSolNetworks) {
        static_cast<void>(m_cluster.ledger(network, m_ledgerEnd[network]));
    }
}

Schedule::~Schedule()
{
    endProgram();
}

QStringList Schedule::run()
{
    launch();
    openPane();
    wait(1s);
    for (std::uint64_t steps = 6 + m_dice.below(20); steps > 0; --steps) {
        step();
    }
    settle();

    std::vector<LedgerEntry> executed;
    for (const SolNetwork network : core::allSolNetworks) {
        for (LedgerEntry &entry : m_cluster.ledger(network, m_ledgerEnd[network])) {
            note(u"executed on %1: %2 to %3, %4"_s.arg(core::rawValue(network))
                     .arg(entry.lamports)
                     .arg(entry.to.left(4), entry.signature.left(8)));
            executed.push_back(std::move(entry));
        }
    }
    m_payments = executed.size();
    return m_intentions.judge(executed);
}

void Schedule::step()
{
    const std::vector<std::pair<unsigned, std::function<void()>>> actions{
        {25, [this] { fill(), press(); }},
        {10, [this] { press(); }},
        {6, [this] { press(), press(); }},
        {3, [this] { pressBetweenStates(); }},
        {6, [this] { edit(); }},
        {8, [this] { m_pane ? leavePane() : openPane(); }},
        {8, [this] { wait(m_dice.between(0ms, 400ms)); }},
        {12, [this] { wait(m_dice.between(400ms, 15s)); }},
        {8, [this] { wait(m_dice.between(15s, 150s)); }},
        {4, [this] { changeNetwork(); }},
        {4, [this] { changeEndpoint(); }},
        {5, [this] { restart(); }},
        {3, [this] { m_crashesAtNextTransfer = true; }},
        {3, [this] { m_keychain.refuses = !m_keychain.refuses; }},
        {3,
         [this] {
             note(u"blockhashes expire"_s);
             m_http.expireBlockhashes();
         }},
        {8,
         [this] {
             const std::vector<unsigned> shares{0, 10, 40, 80};
             m_http.setTrouble(m_dice.oneOf(shares));
         }},
    };
    unsigned total = 0;
    for (const auto &[weight, action] : actions) {
        total += weight;
    }
    std::uint64_t drawn = m_dice.below(total);
    for (const auto &[weight, action] : actions) {
        if (drawn < weight) {
            action();
            break;
        }
        drawn -= weight;
    }
    if (m_dice.chance(50)) {
        wait(m_dice.between(0ms, 3s));
    }
}

void Schedule::launch()
{
    m_wallet = std::make_unique<core::WalletModel>(
        core::WalletServices{m_queue, m_http, m_settings, m_keychain, m_signingKeys, m_background,
                             m_formatter, m_files, m_endpoints});
    m_island = std::make_unique<island::IslandController>(
        *m_wallet, island::IslandServices{m_queue, m_screens, m_pointer, m_panels, m_authenticator,
                                          m_clipboard, nullptr});
    m_cards = std::make_unique<panes::CardModels>(
        *m_wallet, *m_island,
        panes::CardServices{m_queue, m_clipboard, m_sounds, m_links, m_application, m_authenticator,
                            doubleClick});
}

void Schedule::endProgram()
{
    m_pane.reset();
    m_cards.reset();
    m_island.reset();
    m_wallet.reset();
    m_http.cancelAll();
}

void Schedule::restart()
{
    note(u"restart"_s);
    endProgram();
    launch();
    if (m_dice.chance(70)) {
        openPane();
    }
}

void Schedule::openPane()
{
    if (m_pane) {
        return;
    }
    note(u"open the pane"_s);
    m_pane.reset(m_cards->sendPane(nullptr));
    QObject::connect(m_pane.get(), &panes::SendPaneModel::changed, m_pane.get(),
                     [this] { observe(); });
    observe();
}

void Schedule::leavePane()
{
    note(u"leave the pane"_s);
    m_pane.reset();
}

void Schedule::fill()
{
    openPane();
    // Often the same again, since that is what must not be paid twice.
    if (!m_last || m_dice.chance(40)) {
        m_last = {m_dice.oneOf(m_recipients), m_dice.oneOf(m_amounts)};
    }
    m_pane->setRecipient(m_last->first);
    m_pane->setAmount(m_last->second.text);
    if (m_dice.chance(50)) {
        wait(m_dice.between(0ms, 1s));
    }
}

void Schedule::edit()
{
    if (!m_pane) {
        return;
    }
    if (m_dice.chance(50)) {
        m_pane->setRecipient(m_dice.oneOf(m_recipients));
    } else {
        m_pane->setAmount(m_dice.oneOf(m_amounts).text);
    }
}

void Schedule::press()
{
    if (!m_pane) {
        return;
    }
    const QString recipient = m_pane->recipient();
    const QString amount = m_pane->amount();
    const bool isReady = m_pane->isReady();
    note(u"press%1: %2 to %3 on %4"_s.arg(isReady ? u""_s : u" (not ready)"_s, amount,
                                          recipient.left(4), m_pane->networkName()));
    if (isReady) {
        const auto choice = std::ranges::find(m_amounts, amount, &Choice::text);
        m_endpointAtPress = m_wallet->rpcURL();
        m_intentions.press({recipient, choice->lamports, m_wallet->network()});
    }
    m_pane->send(recipient, amount);
}

void Schedule::pressBetweenStates()
{
    if (m_pane && m_pane->isReady()) {
        note(u"press while the card shows something else"_s);
        m_pane->send(m_pane->recipient(), m_dice.oneOf(m_amounts).text + u'0');
    }
}

void Schedule::changeNetwork()
{
    const bool isMainnet = m_wallet->network() == SolNetwork::Mainnet;
    m_wallet->setNetwork(isMainnet ? SolNetwork::Devnet : SolNetwork::Mainnet);
    note(u"network: "_s + core::rawValue(m_wallet->network()));
}

void Schedule::changeEndpoint()
{
    const std::vector<QString> choices{
        {}, {}, u"http://127.0.0.1:1/dead"_s, m_cluster.endpoint(m_wallet->network()).toString()};
    m_wallet->setCustomRPC(m_dice.oneOf(choices));
    note(u"endpoint: "_s + m_wallet->rpcURL().toString());
}

void Schedule::wait(milliseconds duration)
{
    m_queue.advance(duration);
}

void Schedule::settle()
{
    note(u"settle"_s);
    m_crashesAtNextTransfer = false;
    m_keychain.refuses = false;
    m_http.setTrouble(0);
    m_wallet->setCustomRPC({});
    wait(lifeOfBlockhash);
    openPane();
    for (milliseconds waited = 0ms; waited < patience; waited += 1s) {
        if (!m_http.isBusy() && !m_pane->isSending() &&
            m_pane->fate() != u"checking whether it went through…"_s) {
            break;
        }
        wait(1s);
        openPane();
    }
    wait(readingTime);
}

void Schedule::observe()
{
    const CardLines card{
        .sending = m_pane->isSending(),
        .sent = m_pane->isSent(),
        .signature = m_pane->shortSignature(),
        .error = m_pane->errorMsg(),
        .fate = m_pane->fate(),
        .subject = m_pane->fateSubject(),
    };
    const QString text = u"card: "_s + (card.sending ? u"sending "_s : QString()) +
                         (card.sent ? u"SENT "_s + m_pane->shortSignature() : QString()) +
                         u" | "_s + card.error + u" | "_s + card.fate + u' ' + card.subject;
    if (text != std::exchange(m_lastCard, text)) {
        note(text);
    }
    m_intentions.read(card, m_wallet->network());
}

void Schedule::submitted(const QUrl &url, const WireTransfer &transfer)
{
    note(u"submitted %1 to %2: %3"_s.arg(transfer.lamports)
             .arg(transfer.recipient.left(4), transfer.signature.left(8)));
    m_intentions.submit(transfer, url == m_endpointAtPress);
    if (std::exchange(m_crashesAtNextTransfer, false)) {
        // Exactly what is stored now survives.
        m_queue.post([this, stored = m_settings.values] {
            note(u"crash"_s);
            endProgram();
            m_settings.values = stored;
            launch();
        });
    }
}

void Schedule::note(const QString &text)
{
    const auto now = std::chrono::duration_cast<milliseconds>(m_queue.now());
    m_journal.append(QString::number(static_cast<double>(now.count()) / 1000, 'f', 3) + u"  "_s +
                     text);
}

} // namespace corvane::tests
