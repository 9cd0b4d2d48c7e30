// Before Qt, whose keywords the GIO headers use as identifiers.
#include <polkit/polkit.h>

#include "platform/linux/keyring/polkit_authenticator.h"

#include "platform/linux/bus/gio_calls.h"
#include "platform/one_time_context.h"

#include <unistd.h>

#include <optional>
#include <utility>

namespace corvane::platform {

namespace {

using std::chrono::milliseconds;

/// Time limit for requests that need no prompt; polkit may have to be started first.
constexpr milliseconds quickBound{3000};

constexpr PresenceReason everyReason[] = {PresenceReason::Unlock, PresenceReason::Reveal,
                                          PresenceReason::Send};

const char *actionFor(PresenceReason reason)
{
    switch (reason) {
    case PresenceReason::Unlock:
        return "org.corvane.unlock";
    case PresenceReason::Reveal:
        return "org.corvane.reveal";
    case PresenceReason::Send:
        return "org.corvane.send";
    }
    return "";
}

/// polkit's decision on an action.
enum class Verdict {
    Authorized,
    NeedsAgent, ///< the user could authenticate if an agent is running
    Refused,
    Unknown, ///< polkit did not reply, or does not know the action
};

/// Sends this process's requests to polkit, with one time limit for all of them.
class PolkitConversation
{
public:
    explicit PolkitConversation(milliseconds bound)
        : m_calls(bound)
        // The user is passed explicitly, so that polkit need not read it from a process that may
        // have been replaced.
        , m_process(polkit_unix_process_new_for_owner(getpid(), 0, static_cast<gint>(getuid())))
        , m_authority(openAuthority())
    {}

    [[nodiscard]] Verdict check(PresenceReason reason, PolkitCheckAuthorizationFlags flags)
    {
        if (m_authority == nullptr) {
            return Verdict::Unknown;
        }
        const auto answer = m_calls.await([&](auto *cancellable, auto done, auto data) {
            polkit_authority_check_authorization(m_authority.get(), m_process.get(),
                                                 actionFor(reason), nullptr, flags, cancellable,
                                                 done, data);
        });
        const GioPtr<PolkitAuthorizationResult> result(
            answer != nullptr ? polkit_authority_check_authorization_finish(m_authority.get(),
                                                                            answer.get(), nullptr)
                              : nullptr);
        if (result == nullptr) {
            return Verdict::Unknown;
        }
        if (polkit_authorization_result_get_is_authorized(result.get()) != FALSE) {
            return Verdict::Authorized;
        }
        return polkit_authorization_result_get_is_challenge(result.get()) != FALSE &&
                       polkit_authorization_result_get_dismissed(result.get()) == FALSE
                   ? Verdict::NeedsAgent
                   : Verdict::Refused;
    }

    /// Checks all reasons, without a prompt. An installation without one of the actions could store
    /// a key that it cannot read again.
    [[nodiscard]] Verdict checkAll()
    {
        Verdict all = Verdict::Authorized;
        for (const PresenceReason reason : everyReason) {
            const Verdict verdict = check(reason, POLKIT_CHECK_AUTHORIZATION_FLAGS_NONE);
            if (verdict == Verdict::Unknown || verdict == Verdict::Refused) {
                return verdict;
            }
            if (verdict == Verdict::NeedsAgent) {
                all = verdict;
            }
        }
        return all;
    }

private:
    /// A separate authority object, because the library's shared one keeps the name of a stopped
    /// polkit until GLib's main loop runs, and keeps the error of a missing bus.
    [[nodiscard]] GioPtr<PolkitAuthority> openAuthority()
    {
        const auto result = m_calls.await([](auto *cancellable, auto done, auto data) {
            g_async_initable_new_async(POLKIT_TYPE_AUTHORITY, G_PRIORITY_DEFAULT, cancellable, done,
                                       data, nullptr);
        });
        if (result == nullptr) {
            return nullptr;
        }
        const GioPtr<GObject> source(g_async_result_get_source_object(result.get()));
        GObject *made =
            g_async_initable_new_finish(G_ASYNC_INITABLE(source.get()), result.get(), nullptr);
        return GioPtr<PolkitAuthority>(made != nullptr ? POLKIT_AUTHORITY(made) : nullptr);
    }

    BoundedCalls m_calls;
    GioPtr<PolkitSubject> m_process;
    GioPtr<PolkitAuthority> m_authority;
};

PresenceAnswer answerOf(Verdict verdict)
{
    switch (verdict) {
    case Verdict::Authorized:
        return PresenceAnswer::Passed;
    case Verdict::NeedsAgent:
        return PresenceAnswer::NobodyToAsk;
    case Verdict::Refused:
    case Verdict::Unknown:
        break;
    }
    return PresenceAnswer::Refused;
}

PresenceMeans meansOf(Verdict verdict, bool lacksAgent)
{
    switch (verdict) {
    case Verdict::Authorized:
        return PresenceMeans::Available;
    case Verdict::NeedsAgent:
        return lacksAgent ? PresenceMeans::NoAgent : PresenceMeans::Available;
    case Verdict::Refused:
    case Verdict::Unknown:
        break;
    }
    return PresenceMeans::NotInstalled;
}

} // namespace

PolkitAuthenticator::PolkitAuthenticator(BackgroundTasks &background, milliseconds userBound)
    : m_background(background)
    , m_userBound(userBound)
{}

std::shared_ptr<AuthenticationContext> PolkitAuthenticator::makeContext(const QString &)
{
    return std::make_shared<OneTimeContext>();
}

void PolkitAuthenticator::canEvaluate(Availability reply)
{
    m_background.run([reply = std::move(reply), lacksAgent = m_lacksAgent] {
        const Verdict verdict = PolkitConversation(quickBound).checkAll();
        reply(meansOf(verdict, *lacksAgent));
    });
}

void PolkitAuthenticator::evaluate(std::shared_ptr<AuthenticationContext> context,
                                   PresencePrompt prompt, Reply reply)
{
    const auto oneTime = std::dynamic_pointer_cast<OneTimeContext>(std::move(context));
    if (oneTime == nullptr) {
        reply(PresenceAnswer::Refused);
        return;
    }
    ++*m_open;
    m_background.run([oneTime, reason = prompt.reason, reply = std::move(reply),
                      bound = m_userBound, open = m_open, lacksAgent = m_lacksAgent] {
        const PresenceAnswer answer = answerOf(PolkitConversation(bound).check(
            reason, POLKIT_CHECK_AUTHORIZATION_FLAGS_ALLOW_USER_INTERACTION));
        *lacksAgent = answer == PresenceAnswer::NobodyToAsk;
        if (answer == PresenceAnswer::Passed) {
            oneTime->pass();
        }
        --*open;
        reply(answer);
    });
}

} // namespace corvane::platform
