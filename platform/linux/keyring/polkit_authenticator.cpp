#include "platform/linux/keyring/polkit_authenticator.h"

#include "platform/linux/bus/gio_calls.h"
#include "platform/one_time_context.h"

#include <QByteArray>
#include <QFile>
#include <QList>

#include <unistd.h>

#include <atomic>
#include <utility>

namespace corvane::platform {

namespace {

using std::chrono::milliseconds;

/// Bound on questions that polkit answers by itself; it may have to be started first.
constexpr milliseconds quickBound{3000};

constexpr char polkitName[] = "org.freedesktop.PolicyKit1";
constexpr char polkitPath[] = "/org/freedesktop/PolicyKit1/Authority";
constexpr char polkitInterface[] = "org.freedesktop.PolicyKit1.Authority";
constexpr char login1Name[] = "org.freedesktop.login1";
constexpr char propertiesInterface[] = "org.freedesktop.DBus.Properties";

constexpr char unlockAction[] = "org.corvane.unlock";
constexpr char revealAction[] = "org.corvane.reveal";
constexpr char sendAction[] = "org.corvane.send";

constexpr guint32 noInteraction = 0;
constexpr guint32 allowUserInteraction = 1;

/// When this process was started, in clock ticks since boot; 0 lets polkit find out itself.
guint64 startTime()
{
    QFile file(QStringLiteral("/proc/self/stat"));
    if (!file.open(QIODevice::ReadOnly)) {
        return 0;
    }
    // The second field, the program's name in parentheses, may hold anything.
    const QByteArray text = file.readAll();
    const QList<QByteArray> fields = text.mid(text.lastIndexOf(')') + 2).split(' ');
    constexpr qsizetype startTimeField = 22 - 3;
    return fields.size() > startTimeField ? fields[startTimeField].toULongLong() : 0;
}

/// This process as polkit's subject. The user is named so that polkit need not read it from a
/// process that might have been replaced.
GVariant *thisProcess()
{
    GVariantBuilder details;
    g_variant_builder_init(&details, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&details, "{sv}", "pid",
                          g_variant_new_uint32(static_cast<guint32>(getpid())));
    g_variant_builder_add(&details, "{sv}", "start-time", g_variant_new_uint64(startTime()));
    g_variant_builder_add(&details, "{sv}", "uid",
                          g_variant_new_int32(static_cast<gint32>(getuid())));
    return g_variant_new("(sa{sv})", "unix-process", &details);
}

GVariant *sessionSubject(const char *id)
{
    GVariantBuilder details;
    g_variant_builder_init(&details, G_VARIANT_TYPE_VARDICT);
    g_variant_builder_add(&details, "{sv}", "session-id", g_variant_new_string(id));
    return g_variant_new("(sa{sv})", "unix-session", &details);
}

struct Verdict
{
    bool authorized = false;
    bool challenge = false;
};

class Polkit
{
public:
    explicit Polkit(milliseconds bound)
        : m_calls(bound)
        , m_bus(m_calls.bus(G_BUS_TYPE_SYSTEM, m_error))
    {}

    [[nodiscard]] Verdict check(const char *action, guint32 flags, const char *cancellation)
    {
        GVariantBuilder noDetails;
        g_variant_builder_init(&noDetails, G_VARIANT_TYPE("a{ss}"));
        const auto reply = call("CheckAuthorization",
                                g_variant_new("(@(sa{sv})sa{ss}us)", thisProcess(), action,
                                              &noDetails, flags, cancellation),
                                "((bba{ss}))");
        if (reply == nullptr) {
            return {};
        }
        gboolean authorized = FALSE;
        gboolean challenge = FALSE;
        g_variant_get(reply.get(), "((bba{ss}))", &authorized, &challenge, nullptr);
        return {authorized != FALSE, challenge != FALSE};
    }

    void cancel(const char *cancellation)
    {
        m_calls.restart(quickBound);
        const auto reply =
            call("CancelCheckAuthorization", g_variant_new("(s)", cancellation), "()");
    }

    /// polkit has no question for this, so an agent that is not ours is asked to be removed, which
    /// polkit always refuses: with one reason when there is none, and with another when there is.
    [[nodiscard]] bool hasAgent()
    {
        if (isRegistered(thisProcess())) {
            return true;
        }
        const QByteArray session = sessionId();
        return !session.isEmpty() && isRegistered(sessionSubject(session.constData()));
    }

    [[nodiscard]] bool expired() const { return m_calls.expired(); }

private:
    [[nodiscard]] bool isRegistered(GVariant *subject)
    {
        const auto reply =
            call("UnregisterAuthenticationAgent",
                 g_variant_new("(@(sa{sv})s)", subject, "/org/corvane/nobody"), "()");
        if (reply != nullptr || m_error == nullptr ||
            !g_dbus_error_is_remote_error(m_error.get())) {
            return false;
        }
        const QByteArray reason(m_error->message);
        return reason.contains("System bus names do not match") ||
               reason.contains("Object paths do not match");
    }

    /// The login session that polkit counts this process to: its own, or for a program started by
    /// the user's service manager the one on the user's display.
    [[nodiscard]] QByteArray sessionId()
    {
        const auto path = callLogin("/org/freedesktop/login1", "org.freedesktop.login1.Manager",
                                    "GetSessionByPID",
                                    g_variant_new("(u)", static_cast<guint32>(getpid())), "(o)");
        if (path != nullptr) {
            const char *session = nullptr;
            g_variant_get(path.get(), "(&o)", &session);
            const auto id =
                callLogin(session, propertiesInterface, "Get",
                          g_variant_new("(ss)", "org.freedesktop.login1.Session", "Id"), "(v)");
            return id != nullptr ? textIn(id.get(), "s") : QByteArray();
        }
        const auto display =
            callLogin("/org/freedesktop/login1/user/self", propertiesInterface, "Get",
                      g_variant_new("(ss)", "org.freedesktop.login1.User", "Display"), "(v)");
        return display != nullptr ? textIn(display.get(), "(so)") : QByteArray();
    }

    /// The text, or the text at the front of the pair, that `reply` carries as a variant.
    [[nodiscard]] static QByteArray textIn(GVariant *reply, const char *type)
    {
        GVariant *child = nullptr;
        g_variant_get(reply, "(v)", &child);
        const GioPtr<GVariant> value(child);
        if (!g_variant_is_of_type(value.get(), G_VARIANT_TYPE(type))) {
            return {};
        }
        if (g_variant_is_of_type(value.get(), G_VARIANT_TYPE_STRING)) {
            return g_variant_get_string(value.get(), nullptr);
        }
        const char *text = nullptr;
        g_variant_get_child(value.get(), 0, "&s", &text);
        return text;
    }

    GioPtr<GVariant> call(const char *method, GVariant *parameters, const char *replyType)
    {
        return callOn(polkitName, polkitPath, polkitInterface, method, parameters, replyType);
    }

    GioPtr<GVariant> callLogin(const char *path, const char *interface, const char *method,
                               GVariant *parameters, const char *replyType)
    {
        return callOn(login1Name, path, interface, method, parameters, replyType);
    }

    GioPtr<GVariant> callOn(const char *name, const char *path, const char *interface,
                            const char *method, GVariant *parameters, const char *replyType)
    {
        const GioPtr<GVariant> owned(g_variant_ref_sink(parameters));
        if (m_bus == nullptr) {
            return nullptr;
        }
        return m_calls.call(m_bus.get(), name, path, interface, method, owned.get(), replyType,
                            m_error);
    }

    BoundedCalls m_calls;
    GioPtr<GError> m_error;
    GioPtr<GDBusConnection> m_bus;
};

/// Cancellation ids are told apart by the caller's connection, which all evaluations share.
QByteArray nextCancellationId()
{
    static std::atomic<unsigned> count = 0;
    return "evaluation-" + QByteArray::number(++count);
}

} // namespace

PolkitAuthenticator::PolkitAuthenticator(BackgroundTasks &background, milliseconds userBound)
    : m_background(background)
    , m_userBound(userBound)
{}

std::optional<QString> PolkitAuthenticator::actionFor(const QString &reason)
{
    if (reason == u"unlock Corvane") {
        return QString::fromLatin1(unlockAction);
    }
    if (reason == u"reveal your wallet backup key") {
        return QString::fromLatin1(revealAction);
    }
    if (reason.startsWith(u"send ")) {
        return QString::fromLatin1(sendAction);
    }
    return std::nullopt;
}

std::shared_ptr<AuthenticationContext> PolkitAuthenticator::makeContext(const QString &)
{
    return std::make_shared<OneTimeContext>();
}

bool PolkitAuthenticator::canEvaluate(const AuthenticationContext &)
{
    Polkit polkit(quickBound);
    bool mustAsk = false;
    // An installation that lacks one of the actions could store a key that it cannot open again.
    for (const char *action : {unlockAction, revealAction, sendAction}) {
        const Verdict verdict = polkit.check(action, noInteraction, "");
        if (!verdict.authorized && !verdict.challenge) {
            return false;
        }
        mustAsk = mustAsk || !verdict.authorized;
    }
    return !mustAsk || polkit.hasAgent();
}

void PolkitAuthenticator::evaluate(std::shared_ptr<AuthenticationContext> context,
                                   const QString &reason, Reply reply)
{
    const auto oneTime = std::dynamic_pointer_cast<OneTimeContext>(std::move(context));
    const std::optional<QString> action = oneTime != nullptr ? actionFor(reason) : std::nullopt;
    m_background.run([oneTime, action, reply = std::move(reply), bound = m_userBound] {
        bool success = false;
        if (action) {
            Polkit polkit(bound);
            const QByteArray cancellation = nextCancellationId();
            success = polkit
                          .check(action->toLatin1().constData(), allowUserInteraction,
                                 cancellation.constData())
                          .authorized;
            if (!success && polkit.expired()) {
                polkit.cancel(cancellation.constData());
            }
        }
        if (success) {
            oneTime->pass();
        }
        reply(success);
    });
}

} // namespace corvane::platform
