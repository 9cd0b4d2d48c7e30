#pragma once

#include "onboarding/onboarding.h"

#include "tests/panes/card_fixture.h"

#include <QQuickItem>

namespace corvane::tests {

/// A disk that holds bundles, and notes what is done to them.
class FakeBundle final : public platform::ApplicationBundle
{
public:
    [[nodiscard]] QString path() const override { return runningFrom; }
    [[nodiscard]] bool exists(const QString &path) const override { return present.contains(path); }
    bool remove(const QString &path) override
    {
        done.append(QStringLiteral("remove ") + path);
        return removable && present.removeAll(path) > 0;
    }
    bool copy(const QString &from, const QString &to) override
    {
        done.append(QStringLiteral("copy ") + from);
        EXPECT_FALSE(exists(to)) << "a copy over what is there";
        if (copyable) {
            present.append(to);
        }
        return copyable;
    }
    void openNewInstance(const QString &path) override
    {
        done.append(QStringLiteral("open ") + path);
    }

    QString runningFrom = QStringLiteral("/home/ada/build/app");
    QStringList present;
    bool removable = true;
    bool copyable = true;
    QStringList done;
};

class FakeLoginItem final : public platform::LoginItem
{
public:
    [[nodiscard]] bool isEnabled() const override { return enabled; }
    bool enable() override { return enabled = true; }
    bool enabled = false;
};

/// Makes windows that note what is done to them.
class FakeFloatingWindows final : public platform::FloatingWindowFactory
{
public:
    [[nodiscard]] std::unique_ptr<platform::FloatingWindow>
    makeWindow(const QString &title, const QRectF &frame,
               std::unique_ptr<QQuickItem> content) override
    {
        class Window final : public platform::FloatingWindow
        {
        public:
            Window(FakeFloatingWindows &desktop, std::unique_ptr<QQuickItem> content)
                : m_desktop(desktop)
                , m_content(std::move(content))
            {}
            ~Window() override { --m_desktop.existing; }
            void makeKeyAndOrderFront() override { m_desktop.visible = true; }
            void orderOut() override { m_desktop.visible = false; }

        private:
            FakeFloatingWindows &m_desktop;
            std::unique_ptr<QQuickItem> m_content;
        };
        titles.append(title);
        latestFrame = frame;
        latestContent = content.get();
        ++existing;
        return std::make_unique<Window>(*this, std::move(content));
    }

    QStringList titles;
    QRectF latestFrame;
    QPointer<QQuickItem> latestContent;
    int existing = 0;
    bool visible = false;
};

/// An island, and a tour that ends with it.
class OnboardingTest : public CardTest
{
protected:
    OnboardingTest() { launchIsland(); }
    ~OnboardingTest() override { m_onboarding.reset(); }

    FakeBundle m_bundle;
    FakeLoginItem m_loginItem;
    FakeFloatingWindows m_windows;
    std::optional<onboarding::Onboarding> m_onboarding{
        std::in_place,
        onboarding::OnboardingServices{
            queue, settings, m_bundle, m_loginItem, m_application, m_windows,
            [](onboarding::Onboarding &) { return std::make_unique<QQuickItem>(); }}};
};

} // namespace corvane::tests
