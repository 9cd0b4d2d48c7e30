#pragma once

#include "platform/application_bundle.h"
#include "platform/instance.h"
#include "platform/login_item.h"
#include "platform/status_item.h"

#include <QStringList>

#include <utility>

namespace corvane::tests {

/// A panel that keeps the last menu it was given.
class FakeStatusBar final : public platform::StatusBar
{
public:
    [[nodiscard]] std::unique_ptr<platform::StatusItem>
    makeStatusItem(platform::StatusPicture drawing, QList<platform::MenuItem> items) override
    {
        picture = std::move(drawing);
        menu = std::move(items);
        return std::make_unique<platform::StatusItem>();
    }

    platform::StatusPicture picture;
    QList<platform::MenuItem> menu;
};

class FakeLoginItem final : public platform::LoginItem
{
public:
    [[nodiscard]] bool isEnabled() const override { return enabled; }
    bool enable() override
    {
        ++registrations;
        return false;
    }

    bool enabled = false;
    int registrations = 0;
};

/// A bundle that can be asked for its path only.
class FakeBundle final : public platform::ApplicationBundle
{
public:
    [[nodiscard]] QString path() const override { return bundlePath; }
    [[nodiscard]] bool exists(const QString &) const override { qFatal("unexpected"); }
    bool remove(const QString &) override { qFatal("unexpected"); }
    bool copy(const QString &, const QString &) override { qFatal("unexpected"); }
    void openNewInstance(const QString &) override { qFatal("unexpected"); }

    QString bundlePath = QStringLiteral("/home/ada/corvane/build/app");
};

/// A session in which another instance may run and may answer.
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
