#pragma once

#include "platform/appearance.h"
#include "platform/application_bundle.h"
#include "platform/floating_window.h"
#include "platform/instance.h"
#include "platform/login_item.h"
#include "platform/status_item.h"

#include <QPointer>
#include <QQuickItem>
#include <QStringList>

#include <gtest/gtest.h>

#include <utility>

namespace corvane::tests {

/// A status bar that records the last menu.
class FakeStatusBar final : public platform::StatusBar
{
public:
    [[nodiscard]] std::unique_ptr<platform::StatusItem>
    makeStatusItem(platform::StatusPicture, QList<platform::MenuItem> items) override
    {
        menu = std::move(items);
        return std::make_unique<platform::StatusItem>();
    }

    QList<platform::MenuItem> menu;
};

class FakeLoginItem final : public platform::LoginItem
{
public:
    [[nodiscard]] bool isEnabled() const override { return enabled; }
    bool enable() override
    {
        ++registrations;
        return enabled = true;
    }

    bool enabled = false;
    int registrations = 0;
};

/// A set of bundles that records the operations on them.
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

/// Creates windows that record the calls on them.
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
            void show() override { m_desktop.visible = true; }
            void hide() override { m_desktop.visible = false; }

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

/// A desktop with configurable appearance settings.
class FakeAppearance final : public platform::Appearance
{
public:
    void read(Reply reply) override { reply(settings); }

    platform::AppearanceSettings settings;
};

/// A session in which another instance may be running and may reply.
class FakeInstance final : public platform::Instance
{
public:
    [[nodiscard]] Claim claim(std::chrono::milliseconds waits) override
    {
        patience = waits;
        return answerToClaim;
    }
    [[nodiscard]] bool send(const platform::InstanceRequest &request) override
    {
        sent.append(request);
        return answers;
    }
    void serve(platform::MainQueue &, Handler) override { qFatal("unexpected"); }

    Claim answerToClaim = Claim::Granted;
    bool answers = true;
    std::optional<std::chrono::milliseconds> patience;
    QList<platform::InstanceRequest> sent;
};

} // namespace corvane::tests
