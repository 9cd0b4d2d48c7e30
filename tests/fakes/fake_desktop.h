#pragma once

#include "platform/application.h"
#include "platform/authenticator.h"
#include "platform/clipboard.h"
#include "platform/island_panel.h"
#include "platform/link_opener.h"
#include "platform/one_time_context.h"
#include "platform/pointer_monitor.h"
#include "platform/screens.h"
#include "platform/sound_player.h"

#include <QStringList>

#include <utility>

namespace corvane::tests {

/// Screens that a test adds and removes.
class FakeScreens final : public platform::Screens
{
public:
    [[nodiscard]] QList<platform::Screen> all() const override { return screens; }
    [[nodiscard]] std::optional<platform::Screen> main() const override { return mainScreen; }
    void observeChanges(std::function<void()> handler) override { m_changed = std::move(handler); }

    void change(QList<platform::Screen> now)
    {
        screens = std::move(now);
        mainScreen.reset();
        if (m_changed) {
            m_changed();
        }
    }

    QList<platform::Screen> screens;
    std::optional<platform::Screen> mainScreen;

private:
    std::function<void()> m_changed;
};

/// A plain screen, and one with a camera housing of the given size.
inline platform::Screen plainScreen(const QRectF &frame)
{
    platform::Screen screen;
    screen.frame = frame;
    return screen;
}

inline platform::Screen notchedScreen(const QRectF &frame, double notchWidth, double bandHeight)
{
    platform::Screen screen = plainScreen(frame);
    const double side = (frame.width() - notchWidth) / 2;
    const double y = frame.y() + frame.height() - bandHeight;
    screen.safeAreaTop = bandHeight;
    screen.auxiliaryTopLeftArea = QRectF(frame.x(), y, side, bandHeight);
    screen.auxiliaryTopRightArea = QRectF(frame.x() + frame.width() - side, y, side, bandHeight);
    return screen;
}

/// A pointer that is moved by the test.
class FakePointer final : public platform::PointerMonitor
{
public:
    [[nodiscard]] std::unique_ptr<Token> addGlobalMonitor(Handler handler) override
    {
        m_moved = std::move(handler);
        return std::make_unique<Token>();
    }
    [[nodiscard]] std::unique_ptr<Token> addLocalMonitor(Handler) override { return nullptr; }
    [[nodiscard]] std::optional<QPointF> location() const override { return position; }

    /// Moves the pointer and calls the monitors' handlers.
    void moveTo(const QPointF &point)
    {
        position = point;
        if (m_moved) {
            m_moved();
        }
    }

    std::optional<QPointF> position;

private:
    Handler m_moved;
};

/// A panel that records the calls on it.
class FakePanel final : public platform::IslandPanel
{
public:
    struct State
    {
        QRectF frame;
        Level level = Level::Resting;
        bool clickThrough = true;
        bool isActive = false;
        int orderedFront = 0;
        QRectF outline;
        double bottomRadius = 0;
        KeyboardObserver observer;

        /// Gives the panel the keyboard, or takes it away.
        void setActive(bool on)
        {
            if (std::exchange(isActive, on) != on && observer.focusChanged) {
                observer.focusChanged(on);
            }
        }
    };

    explicit FakePanel(State &state)
        : m_state(state)
    {}
    void setFrame(const QRectF &frame) override { m_state.frame = frame; }
    void setLevel(Level level) override { m_state.level = level; }
    void setClickThrough(bool on) override { m_state.clickThrough = on; }
    void setContent(QQuickItem *) override {}
    void setContentOutline(const QRectF &outline, double bottomRadius) override
    {
        m_state.outline = outline;
        m_state.bottomRadius = bottomRadius;
    }
    void show() override { ++m_state.orderedFront; }
    void activate() override { m_state.setActive(true); }
    void deactivate() override { m_state.setActive(false); }
    void observeKeyboard(KeyboardObserver observer) override
    {
        m_state.observer = std::move(observer);
    }

private:
    State &m_state;
};

class FakePanelFactory final : public platform::IslandPanelFactory
{
public:
    [[nodiscard]] std::unique_ptr<platform::IslandPanel> makePanel(const QRectF &frame) override
    {
        state = {};
        state.frame = frame;
        return std::make_unique<FakePanel>(state);
    }

    FakePanel::State state;
};

/// An authenticator whose replies come when the test triggers them, or immediately.
class FakeAuthenticator final : public platform::Authenticator
{
public:
    explicit FakeAuthenticator(std::optional<bool> agreesAtOnce = std::nullopt)
        : agrees(agreesAtOnce)
    {}

    [[nodiscard]] std::shared_ptr<platform::AuthenticationContext>
    makeContext(const QString &) override
    {
        return std::make_shared<platform::OneTimeContext>();
    }
    void canEvaluate(Availability reply) override
    {
        reply(available ? platform::PresenceMeans::Available : lacking);
    }
    void evaluate(std::shared_ptr<platform::AuthenticationContext> context,
                  platform::PresencePrompt prompt, Reply reply) override
    {
        if (!available) {
            reply(platform::PresenceAnswer::NobodyToAsk);
            return;
        }
        reasons.append(prompt.text);
        m_context = std::static_pointer_cast<platform::OneTimeContext>(context);
        m_reply = std::move(reply);
        if (agrees) {
            answer(*agrees);
        }
    }

    [[nodiscard]] bool isAsking() const override { return static_cast<bool>(m_reply); }
    void answer(bool success)
    {
        answer(success ? platform::PresenceAnswer::Passed : platform::PresenceAnswer::Refused);
    }
    void answer(platform::PresenceAnswer answer)
    {
        if (answer == platform::PresenceAnswer::Passed) {
            m_context->pass();
        }
        std::exchange(m_reply, nullptr)(answer);
    }

    bool available = true;
    /// What is missing while not available.
    platform::PresenceMeans lacking = platform::PresenceMeans::NoAgent;
    std::optional<bool> agrees;
    QStringList reasons;

private:
    std::shared_ptr<platform::OneTimeContext> m_context;
    Reply m_reply;
};

class FakeClipboard final : public platform::Clipboard
{
public:
    void setText(const QString &text) override { texts.append(text); }
    void setSecret(QStringView text) override { secrets.append(text.toString()); }
    void clearSecret() override { ++cleared; }
    QStringList texts;
    QStringList secrets;
    int cleared = 0;
};

class FakeSoundPlayer final : public platform::SoundPlayer
{
public:
    void play(platform::Sound sound) override { played.append(sound); }
    QList<platform::Sound> played;
};

class FakeLinkOpener final : public platform::LinkOpener
{
public:
    void open(const QUrl &page, std::function<void()> failed) override
    {
        opened.append(page);
        if (fails) {
            failed();
        }
    }
    QList<QUrl> opened;
    bool fails = false;
};

class FakeApplication final : public platform::Application
{
public:
    void terminate() override { ++terminations; }
    int terminations = 0;
};

} // namespace corvane::tests
