// The instance on a real session bus, with callers that ask for too much.

// Before Qt, whose keywords the GIO headers use as identifiers.
#include "platform/linux/bus/gio_calls.h"

#include "platform/linux/bus/session_bus_instance.h"
#include "tests/fakes/hand_driven_queue.h"
#include "tests/platform/wait_until.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace corvane::tests {
namespace {

using namespace std::chrono_literals;
using platform::GioPtr;

constexpr char name[] = "org.corvane.Test";

class SessionBus : public testing::Test
{
protected:
    SessionBus()
        : m_bus(g_test_dbus_new(G_TEST_DBUS_NONE))
    {
        g_test_dbus_up(m_bus);
        instance = std::make_unique<platform::SessionBusInstance>(QString::fromLatin1(name));
        EXPECT_EQ(instance->claim(0ms), platform::Instance::Claim::Granted);
    }
    ~SessionBus() override
    {
        instance.reset();
        g_test_dbus_stop(m_bus);
        g_object_unref(m_bus);
    }

    [[nodiscard]] GioPtr<GDBusConnection> makeCaller() const
    {
        constexpr auto flags =
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION);
        return GioPtr<GDBusConnection>(g_dbus_connection_new_for_address_sync(
            g_test_dbus_get_bus_address(m_bus), flags, nullptr, nullptr, nullptr));
    }

    /// Asks for `action`; the outcome is counted in `outcomes`.
    void ask(GDBusConnection *caller, const char *action)
    {
        GVariantBuilder none;
        g_variant_builder_init(&none, G_VARIANT_TYPE("av"));
        g_dbus_connection_call(
            caller, name, "/org/corvane/Test", "org.freedesktop.Application", "ActivateAction",
            g_variant_new("(sav@a{sv})", action, &none,
                          g_variant_new_array(G_VARIANT_TYPE("{sv}"), nullptr, 0)),
            nullptr, G_DBUS_CALL_FLAGS_NONE, G_MAXINT, nullptr,
            [](GObject *connection, GAsyncResult *result, gpointer test) {
                GError *error = nullptr;
                const GioPtr<GVariant> reply(
                    g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, &error));
                std::string outcome = "done";
                if (error != nullptr) {
                    char *remote = g_dbus_error_get_remote_error(error);
                    outcome = std::string(remote).substr(std::string(remote).rfind('.') + 1);
                    g_free(remote);
                    g_error_free(error);
                }
                ++static_cast<SessionBus *>(test)->outcomes[outcome];
            },
            this);
    }

    bool waitForOutcome(const std::string &outcome, int count)
    {
        return waitUntil([&] {
            g_main_context_iteration(nullptr, FALSE);
            return outcomes[outcome] >= count;
        });
    }

    HandDrivenQueue queue;
    std::unique_ptr<platform::SessionBusInstance> instance;
    std::map<std::string, int> outcomes;

private:
    GTestDBus *m_bus;
};

TEST_F(SessionBus, LetsFewRequestsWaitAndTakesOneInEachTurn)
{
    std::vector<QString> handled;
    int others = 0;
    instance->serve(queue, [&](const platform::InstanceRequest &request) {
        EXPECT_EQ(static_cast<std::size_t>(others), handled.size())
            << "everything else had its turn";
        queue.post([&] { ++others; });
        handled.push_back(request.action);
        return true;
    });
    // Eight requests of each caller may wait, and 64 of all.
    std::vector<GioPtr<GDBusConnection>> callers;
    for (int caller = 0; caller < 3; ++caller) {
        callers.push_back(makeCaller());
        for (int request = 0; request < 20; ++request) {
            ask(callers.back().get(), "refresh");
        }
    }
    ASSERT_TRUE(waitForOutcome("LimitsExceeded", 36));
    for (int caller = 0; caller < 7; ++caller) {
        callers.push_back(makeCaller());
        for (int request = 0; request < 8; ++request) {
            ask(callers.back().get(), "open");
        }
    }
    ASSERT_TRUE(waitForOutcome("LimitsExceeded", 36 + 16));
    EXPECT_TRUE(handled.empty());
    queue.drain();
    EXPECT_EQ(handled.size(), 1U);
    queue.advance(1s);
    EXPECT_EQ(handled.size(), 64U);
    EXPECT_EQ(others, 64);
    EXPECT_EQ(handled.front(), QStringLiteral("refresh"));
    EXPECT_EQ(handled.back(), QStringLiteral("open"));
    ASSERT_TRUE(waitForOutcome("done", 64));
    // There is room again.
    ask(callers.front().get(), "refresh");
    ASSERT_TRUE(waitUntil([&] {
        queue.drain();
        return handled.size() == 65;
    }));
    ASSERT_TRUE(waitForOutcome("done", 65));
    EXPECT_EQ(outcomes["LimitsExceeded"], 52);
}

TEST_F(SessionBus, RefusesALargeMessageAndHearsTheNext)
{
    instance->serve(queue, [](const platform::InstanceRequest &) { return true; });
    const GioPtr<GDBusConnection> caller = makeCaller();
    ask(caller.get(), std::string(30'000'000, 'x').c_str());
    ask(caller.get(), "refresh");
    ASSERT_TRUE(waitForOutcome("InvalidArgs", 1));
    EXPECT_TRUE(waitUntil([&] {
        queue.drain();
        g_main_context_iteration(nullptr, FALSE);
        return outcomes["done"] == 1;
    }));
}

} // namespace
} // namespace corvane::tests

int main(int argc, char *argv[])
{
    // The tests wait in this application's event loop.
    const QCoreApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
