// The memory of a process whose key goes the whole path to a settled transfer: a real keyring, the
// real HTTP client, and the real Solana runtime behind its JSON-RPC port.

#include "core/wallet_model.h"
#include "keyring_desktop.h"
#include "keys/base58.h"
#include "keys/secret_key_text.h"
#include "platform/linux/files/json_settings.h"
#include "platform/linux/files/local_file_system.h"
#include "platform/linux/http/curl_http_client.h"
#include "platform/linux/keyring/secret_service_keychain.h"
#include "platform/linux/toolkit/icu_number_formatter.h"
#include "platform/linux/toolkit/qt_main_queue.h"
#include "platform/sodium_signing_keys.h"
#include "platform/thread_background_tasks.h"
#include "tests/fakes/fake_desktop.h"
#include "tests/fakes/secrets.h"
#include "tests/platform/wait_until.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLoggingCategory>

#include <gtest/gtest.h>
#include <sodium.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <vector>

namespace corvane::tests {
namespace {

using namespace Qt::StringLiterals;

constexpr qint64 funds = 2'000'000'000;
const QString recipient = u"9WzDXwBbmkg8ZTbNMqUxvQRAyrZzDsGYdLVL9zYtAWWM"_s;

template <typename Value>
Value finish(QCoro::Task<Value> task)
{
    std::optional<Value> result;
    task.then([&](Value value) { result.emplace(std::move(value)); });
    EXPECT_TRUE(waitUntil([&] { return result.has_value(); })) << "no answer";
    return *std::move(result);
}

bool isSignature(const QString &text)
{
    return keys::Base58::decode(text).value_or(std::vector<std::uint8_t>()).size() == 64;
}

/// Looks for a seed, in the forms in which it could have been written down. It keeps these with
/// every bit flipped, so as not to find itself.
class SeedSearch
{
public:
    explicit SeedSearch(const platform::SecretBytes &seed)
    {
        add(seed.bytes(), 1);
        addText(keys::Base58::encodeSecret(seed.bytes()));
        addText(keys::backupText(seed, platform::SodiumSigningKeys().publicKey(seed).value()));
        platform::SecretBytes hex(2 * seed.size() + 1);
        sodium_bin2hex(reinterpret_cast<char *>(hex.bytes().data()), hex.size(),
                       seed.bytes().data(), seed.size());
        addText(platform::SecretBytes::copyOf(hex.bytes().first(hex.size() - 1)));
    }

    /// The number of places in all memory of this process that can be read.
    [[nodiscard]] int places() const
    {
        int places = 0;
        std::ifstream maps("/proc/self/maps");
        for (std::string line; std::getline(maps, line);) {
            std::uintptr_t start = 0;
            std::uintptr_t end = 0;
            char readable = 0;
            const bool isSpecial = line.find("[v") != std::string::npos;
            if (std::sscanf(line.c_str(), "%lx-%lx %c", &start, &end, &readable) == 3 &&
                readable == 'r' && !isSpecial) {
                places += placesIn({reinterpret_cast<const std::uint8_t *>(start), end - start});
            }
        }
        return places;
    }
    [[nodiscard]] int placesIn(std::span<const std::uint8_t> memory) const
    {
        int places = 0;
        for (const std::vector<std::uint8_t> &form : m_forms) {
            const auto isThere = [](std::uint8_t byte, std::uint8_t flipped) {
                return byte == static_cast<std::uint8_t>(~flipped);
            };
            const auto find = [&](auto from) {
                return std::search(from, memory.end(), form.begin(), form.end(), isThere);
            };
            for (auto hit = find(memory.begin()); hit != memory.end(); hit = find(hit + 1)) {
                ++places;
            }
        }
        return places;
    }

private:
    void add(std::span<const std::uint8_t> bytes, std::size_t width)
    {
        std::vector<std::uint8_t> form(bytes.size() * width, 0xff);
        for (std::size_t index = 0; index < bytes.size(); ++index) {
            form[index * width] = static_cast<std::uint8_t>(~bytes[index]);
        }
        m_forms.push_back(std::move(form));
    }
    /// As bytes, and as QString holds it.
    void addText(const platform::SecretBytes &text)
    {
        add(text.bytes(), 1);
        add(text.bytes(), 2);
    }

    std::vector<std::vector<std::uint8_t>> m_forms;
};

std::span<const std::uint8_t> bytesOf(const QByteArray &text)
{
    return {reinterpret_cast<const std::uint8_t *>(text.data()),
            static_cast<std::size_t>(text.size())};
}

class WalletOnLocalnetTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_desktop.startKeyring());
        const auto line = m_localnet.readLine();
        ASSERT_TRUE(line) << "the local cluster does not start";
        const QString url =
            QJsonDocument::fromJson(QByteArray::fromStdString(*line))[u"url"_s].toString();
        m_endpoints.mainnet = url + u"/mainnet"_s;
        m_endpoints.devnet = url + u"/devnet"_s;
        m_endpoints.walletApp = url + u"/wallet"_s;
        m_endpoints.coingecko = url + u"/coingecko"_s;
        m_endpoints.binance = url + u"/binance"_s;
        m_endpoints.coinbase = url + u"/coinbase"_s;
        launch();
    }

    /// Starts the wallet anew; what it knows of its key then comes from the keyring.
    void launch()
    {
        m_model.reset();
        m_keychain = std::make_unique<platform::SecretServiceKeychain>(
            m_owner, m_desktop.file("accounts.json"));
        m_model = std::make_unique<core::WalletModel>(
            core::WalletServices{m_queue, m_http, m_settings, *m_keychain, m_keys, m_background,
                                 m_formatter, m_files, m_endpoints});
    }

    /// The signature, or the error's description.
    QString send(double amount)
    {
        const auto result = finish(m_model->sendSOL(recipient, amount));
        const auto *error = std::get_if<core::SendError>(&result);
        return error != nullptr ? error->description() : std::get<QString>(result);
    }

    SessionBus m_bus;
    KeyringDesktop m_desktop{m_bus};
    ChildProcess m_localnet{{NODE, LOCALNET_SERVER}};
    FakeAuthenticator m_owner{true};
    platform::QtMainQueue m_queue;
    platform::CurlHttpClient m_http;
    platform::JsonSettings m_settings{m_desktop.file("settings.json")};
    platform::SodiumSigningKeys m_keys;
    platform::ThreadBackgroundTasks m_background;
    platform::IcuNumberFormatter m_formatter{"en_US"};
    platform::LocalFileSystem m_files;
    core::Endpoints m_endpoints;
    QString m_address;
    std::unique_ptr<platform::SecretServiceKeychain> m_keychain;
    std::unique_ptr<core::WalletModel> m_model;
};

TEST_F(WalletOnLocalnetTest, LeavesTheSeedNowhereButInItsGuardedPages)
{
    const platform::SecretBytes seed = m_keys.makeSeed();
    const SeedSearch search(seed);
    {
        const QByteArray planted(reinterpret_cast<const char *>(seed.bytes().data()), 32);
        const QByteArray plantedHex = planted.toHex();
        EXPECT_GE(search.places(), 3) << "the search does not find anything";
        sodium_memzero(const_cast<char *>(planted.data()), 32);
        sodium_memzero(const_cast<char *>(plantedHex.data()), 64);
    }
    // The dynamic loader may have spilled registers of the code that made the forms.
    sodium_stackzero(1U << 16);
    ASSERT_EQ(search.places(), 1) << "the test's own guarded page";

    static QByteArray logged;
    logged.clear();
    QLoggingCategory::setFilterRules(u"*=true"_s);
    const auto previousHandler =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &text) {
            logged += text.toUtf8() + '\n';
        });
    qDebug("the log is read");

    // Pasted, stored, used, revealed, read back from the keyring and used again.
    {
        const platform::SecretBytes text = keys::Base58::encodeSecret(seed.bytes());
        platform::SecretBytes pasted(2 * text.size());
        for (std::size_t index = 0; index < text.size(); ++index) {
            pasted.bytes()[2 * index] = text.bytes()[index];
        }
        const QStringView view(reinterpret_cast<const char16_t *>(pasted.bytes().data()),
                               static_cast<qsizetype>(text.size()));
        ASSERT_TRUE(std::holds_alternative<QString>(m_model->importSigningKey(view)));
    }
    m_address = m_model->address();
    static_cast<void>(finish(m_model->rpc(u"requestAirdrop"_s, {m_address, double(funds)})));
    ASSERT_TRUE(isSignature(send(0.1)));
    ASSERT_TRUE(finish(m_model->backupSecret()));
    launch();
    ASSERT_TRUE(isSignature(send(0.2)));
    ASSERT_TRUE(m_model->sessionSecret());
    qInstallMessageHandler(previousHandler);
    QLoggingCategory::setFilterRules({});
    EXPECT_TRUE(logged.contains("the log is read"));
    EXPECT_EQ(search.placesIn(bytesOf(logged)), 0);
    for (const char *name : {"settings.json", "accounts.json"}) {
        QFile file(m_desktop.file(name));
        ASSERT_TRUE(file.open(QIODevice::ReadOnly)) << name;
        const QByteArray written = file.readAll();
        EXPECT_TRUE(written.contains(m_address.toLatin1())) << name;
        EXPECT_EQ(search.placesIn(bytesOf(written)), 0) << name;
    }
    // The session's guarded page holds it, and the test's own; nothing else does.
    EXPECT_EQ(search.places(), 2);
}

} // namespace
} // namespace corvane::tests
