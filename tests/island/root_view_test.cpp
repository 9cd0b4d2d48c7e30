#include "assets/bundled_fonts.h"
#include "island/island_controller.h"
#include "look/theme.h"
#include "tests/core/wallet_fixture.h"
#include "tests/fakes/fake_desktop.h"

#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>
#include <QTest>

#include <gtest/gtest.h>

namespace corvane::island {
namespace {

using namespace std::chrono_literals;

class SystemFonts final : public platform::FontRegistry
{
public:
    [[nodiscard]] std::optional<QString> familyOf(const QString &name) const override
    {
        return name == QLatin1String("JetBrainsMono-Regular") ? QStringLiteral("JetBrains Mono")
                                                              : QStringLiteral("Silkscreen");
    }
    [[nodiscard]] QString monospacedFamily() const override { return QStringLiteral("monospace"); }
};

/// The root view in a window, on a screen with a notch of 180 × 38 points.
class RootViewTest : public tests::WalletTest
{
protected:
    RootViewTest()
    {
        m_screens.screens = {tests::notchedScreen({0, 0, 1512, 982}, 180, 38)};
        launchAndSettle();
        assets::registerBundledFonts();
        m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
    }

    ~RootViewTest() override
    {
        // The view reads the wallet and the island until it is gone.
        m_root.reset();
    }

    void show()
    {
        m_island = std::make_unique<IslandController>(
            *model, IslandServices{queue, m_screens, m_pointer, m_panels, m_authenticator,
                                   m_clipboard, m_sounds, m_links, m_application, nullptr});
        m_island->show();
        QQmlComponent component(&m_engine,
                                QUrl(QStringLiteral("qrc:/qt/qml/Corvane/Island/IslandRoot.qml")));
        m_root.reset(qobject_cast<QQuickItem *>(component.createWithInitialProperties(
            {{QStringLiteral("model"), QVariant::fromValue(model.get())},
             {QStringLiteral("island"), QVariant::fromValue(m_island.get())}})));
        ASSERT_TRUE(m_root) << qPrintable(component.errorString());
        m_root->setParentItem(m_window.contentItem());
        m_root->setSize(m_panels.state.frame.size());
        m_window.resize(m_panels.state.frame.size().toSize());
        m_window.show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&m_window));
    }

    /// Waits until the island is drawn there.
    [[nodiscard]] bool settlesAt(const QRectF &outline, double radius)
    {
        return QTest::qWaitFor(
            [&] {
                return m_panels.state.outline == outline && m_panels.state.bottomRadius == radius;
            },
            5000);
    }

    [[nodiscard]] QQuickItem *itemWith(const char *property, const QString &value) const
    {
        return search(m_root.get(), property, value);
    }

    void click(const QQuickItem *item)
    {
        const QPointF centre = item->mapToScene({item->width() / 2, item->height() / 2});
        QTest::mouseClick(&m_window, Qt::LeftButton, {}, centre.toPoint());
    }

    static QQuickItem *search(QQuickItem *item, const char *property, const QString &value)
    {
        if (item->isVisible() && item->property(property).toString() == value) {
            return item;
        }
        for (QQuickItem *child : item->childItems()) {
            if (QQuickItem *found = search(child, property, value)) {
                return found;
            }
        }
        return nullptr;
    }

    tests::FakeScreens m_screens;
    tests::FakePointer m_pointer;
    tests::FakePanelFactory m_panels;
    tests::FakeAuthenticator m_authenticator;
    tests::FakeClipboard m_clipboard;
    tests::FakeSoundPlayer m_sounds;
    tests::FakeLinkOpener m_links;
    tests::FakeApplication m_application;
    SystemFonts m_fonts;
    look::Theme m_theme{m_fonts};
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<IslandController> m_island;
    std::unique_ptr<QQuickItem> m_root;
};

TEST_F(RootViewTest, DrawsEachStateAtItsSize)
{
    show();
    // Twenty points left of the middle, where the notch's ear is.
    EXPECT_TRUE(settlesAt({218, 0, 232, 38}, 8));
    m_pointer.moveTo({756, 970});
    queue.drain();
    EXPECT_TRUE(settlesAt({218 - 232 * 0.0175, 0, 232 * 1.035, 38 * 1.035}, 8));
    queue.advance(120ms);
    EXPECT_TRUE(settlesAt({44, 0, 620, 38}, 16));
    m_authenticator.answer(true);
    queue.advance(100ms);
    // A slot that nobody has filled has the size of its card.
    EXPECT_TRUE(settlesAt({44, 0, 620, 38 + 238}, 16));
    m_island->setPane(IslandPane::Send);
    EXPECT_TRUE(settlesAt({44, 0, 620, 38 + 296}, 16));
    m_island->setPane(IslandPane::Balance);
    m_pointer.moveTo({100, 100});
    queue.advance(2s);
    EXPECT_TRUE(settlesAt({218, 0, 232, 38}, 8));
}

TEST_F(RootViewTest, FollowsTheScreens)
{
    show();
    EXPECT_TRUE(settlesAt({218, 0, 232, 38}, 8));
    m_screens.change({tests::plainScreen({0, 0, 1920, 1080})});
    queue.drain();
    EXPECT_TRUE(settlesAt({274, 0, 160, 32}, 8));
}

TEST_F(RootViewTest, StaysLockedUntilTheOwnerIsThere)
{
    show();
    m_pointer.moveTo({756, 970});
    queue.advance(220ms);
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return itemWith("text", QStringLiteral("CORVANE LOCKED")) != nullptr; }, 5000));
    EXPECT_NE(itemWith("name", QStringLiteral("lock.fill")), nullptr);
    EXPECT_EQ(itemWith("symbol", QStringLiteral("gearshape")), nullptr);
    m_authenticator.answer(false);
    queue.drain();
    EXPECT_NE(itemWith("text", QStringLiteral("CORVANE LOCKED")), nullptr);

    const QQuickItem *unlock = itemWith("label", QStringLiteral("UNLOCK"));
    ASSERT_NE(unlock, nullptr);
    // 40 above, the mark, 14, the title, 14, the button, 46 below.
    const double title = itemWith("text", QStringLiteral("CORVANE LOCKED"))->height();
    EXPECT_TRUE(settlesAt({44, 0, 620, 38 + 40 + 26 + 14 + title + 14 + unlock->height() + 46}, 16))
        << m_panels.state.outline.height();
    const QByteArray pictures = qgetenv("CORVANE_PICTURES");
    if (!pictures.isEmpty()) {
        QTest::qWait(600);
        m_window.grabWindow().save(QString::fromLocal8Bit(pictures) +
                                   QStringLiteral("/locked.png"));
    }
    click(unlock);
    ASSERT_TRUE(m_authenticator.isAsking());
    m_authenticator.answer(true);
    queue.drain();
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return itemWith("text", QStringLiteral("CORVANE LOCKED")) == nullptr; }, 5000));

    // The strip's buttons have taken the lock's place.
    EXPECT_EQ(itemWith("name", QStringLiteral("lock.fill")), nullptr);
    click(itemWith("symbol", QStringLiteral("gearshape")));
    EXPECT_EQ(m_island->pane(), IslandPane::Settings);
    http.forgetRequests();
    click(itemWith("symbol", QStringLiteral("arrow.clockwise")));
    queue.drain();
    EXPECT_EQ(http.count(tests::chart), 1);
}

} // namespace
} // namespace corvane::island
