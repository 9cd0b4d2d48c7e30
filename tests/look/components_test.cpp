#include "assets/bundled_fonts.h"
#include "look/theme.h"

#include <QFile>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace corvane::look {
namespace {

class NamedFonts final : public platform::FontRegistry
{
public:
    explicit NamedFonts(QHash<QString, QString> families)
        : m_families(std::move(families))
    {}
    [[nodiscard]] std::optional<QString> familyOf(const QString &name) const override
    {
        const auto found = m_families.constFind(name);
        return found != m_families.cend() ? std::optional(*found) : std::nullopt;
    }
    [[nodiscard]] QString monospacedFamily() const override { return QStringLiteral("Mono"); }

private:
    QHash<QString, QString> m_families;
};

TEST(Theme, TakesTheFirstPixelFontThatExists)
{
    const auto entry = [](const char *name, const char *family) {
        return std::pair(QString::fromLatin1(name), QString::fromLatin1(family));
    };
    struct Case
    {
        QHash<QString, QString> fonts;
        QString pixel;
        int pixelWeight;
        QString term;
    };
    const Case cases[] = {
        {{entry("Silkscreen-Regular", "Silkscreen"), entry("Pixelify Sans", "Pixelify Sans"),
          entry("JetBrainsMono-Regular", "JetBrains Mono")},
         QStringLiteral("Silkscreen"),
         QFont::Normal,
         QStringLiteral("JetBrains Mono")},
        {{entry("Pixelify Sans", "Pixelify Sans")},
         QStringLiteral("Pixelify Sans"),
         QFont::Normal,
         QStringLiteral("Mono")},
        // Another face of the family is no reason to use it.
        {{entry("JetBrains Mono", "JetBrains Mono")},
         QStringLiteral("Mono"),
         QFont::ExtraBold,
         QStringLiteral("Mono")},
    };
    for (const Case &expected : cases) {
        const NamedFonts fonts(expected.fonts);
        const Theme theme(fonts);
        const QFont pixel = theme.pixel(9, 1.5);
        EXPECT_EQ(pixel.family(), expected.pixel);
        EXPECT_EQ(pixel.weight(), expected.pixelWeight);
        EXPECT_EQ(pixel.pixelSize(), 9);
        EXPECT_EQ(pixel.letterSpacing(), 1.5);
        const QFont term = theme.term(14, Theme::Heavy);
        EXPECT_EQ(term.family(), expected.term);
        EXPECT_EQ(term.weight(), QFont::ExtraBold);
    }
}

/// Shows one component in a window of its own.
class ComponentsTest : public testing::Test
{
protected:
    QQuickItem *show(const char *qml)
    {
        m_engine.addImportPath(QStringLiteral("qrc:/qt/qml"));
        QQmlComponent component(&m_engine);
        component.setData("import QtQuick\nimport Corvane.Look\n" + QByteArray(qml), {});
        m_item.reset(qobject_cast<QQuickItem *>(component.create()));
        EXPECT_TRUE(m_item) << qPrintable(component.errorString());
        if (m_item) {
            m_item->setParentItem(m_window.contentItem());
            m_window.resize(400, 200);
            m_window.show();
            EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_window));
        }
        return m_item.get();
    }

    NamedFonts m_fonts{{}};
    Theme m_theme{m_fonts};
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_item;
};

TEST_F(ComponentsTest, ButtonsAreTriggeredByPointerAndKeys)
{
    for (const char *qml :
         {"PillButton { label: \"SEND\"; icon: \"paperplane.fill\"; filled: true }",
          "PillButton { label: \"RECEIVE\" }",
          "IconButton { symbol: \"gearshape\"; label: \"Settings\" }",
          "GreenButton { title: \"SET ADDRESS\"; horizontalPadding: 14;"
          " verticalPadding: 7 }"}) {
        SCOPED_TRACE(qml);
        QQuickItem *button = show(qml);
        ASSERT_NE(button, nullptr);
        QSignalSpy triggered(button, SIGNAL(triggered()));
        const QPoint centre(static_cast<int>(button->width()) / 2,
                            static_cast<int>(button->height()) / 2);
        QTest::mouseClick(&m_window, Qt::LeftButton, {}, centre);
        EXPECT_EQ(triggered.count(), 1);
        QTest::mousePress(&m_window, Qt::LeftButton, {}, centre);
        QTest::mouseRelease(&m_window, Qt::LeftButton, {}, {390, 190});
        EXPECT_EQ(triggered.count(), 1);
        m_window.requestActivate();
        button->childItems().constLast()->forceActiveFocus();
        QTest::keyClick(&m_window, Qt::Key_Space);
        EXPECT_EQ(triggered.count(), 2);
    }
}

TEST_F(ComponentsTest, APillHasAGapOnlyBesideAPictogram)
{
    const double plain = show("PillButton { label: \"SEND\" }")->implicitWidth();
    const double withPictogram =
        show("PillButton { label: \"SEND\"; icon: \"paperplane.fill\" }")->implicitWidth();
    EXPECT_EQ(withPictogram - plain, 10 + 4);
}

TEST_F(ComponentsTest, APillStaysWholeWhileItSwells)
{
    QQuickItem *pill = show("PillButton { x: 40; y: 50; label: \"SEND\"; filled: true }");
    ASSERT_NE(pill, nullptr);
    m_window.setColor(Qt::black);
    QTest::mouseMove(&m_window, QPoint(62, 62));
    EXPECT_TRUE(QTest::qWaitFor([&] { return pill->scale() == 1.05; }));
    // Where its edges fall between pixels depends on its size.
    for (int size = 20; size < 32; ++size) {
        pill->setSize({50.0 + size, static_cast<double>(size)});
        const QImage picture = m_window.grabWindow();
        const QRect inside =
            pill->mapRectToScene(pill->boundingRect()).toAlignedRect().adjusted(3, 6, -3, -6);
        for (int y = inside.top(); y <= inside.bottom(); ++y) {
            EXPECT_EQ(picture.pixelColor(inside.left(), y), Theme::green()) << size << ' ' << y;
            EXPECT_EQ(picture.pixelColor(inside.right(), y), Theme::green()) << size << ' ' << y;
        }
    }
}

TEST_F(ComponentsTest, ContentThatLeavesIsUnloadedInTheEnd)
{
    QQuickItem *reveal =
        show("IslandReveal { width: 100; revealed: true; content: Item { implicitHeight: 40 } }");
    ASSERT_NE(reveal, nullptr);
    EXPECT_EQ(reveal->implicitHeight(), 40);
    EXPECT_NE(reveal->property("item").value<QQuickItem *>(), nullptr);
    reveal->setProperty("revealed", false);
    EXPECT_NE(reveal->property("item").value<QQuickItem *>(), nullptr);
    EXPECT_TRUE(QTest::qWaitFor(
        [&] { return reveal->property("item").value<QQuickItem *>() == nullptr; }, 5000));
}

TEST(Pictograms, AreAllThere)
{
    assets::registerBundledFonts();
    for (const char *name :
         {"arrow.clockwise", "gearshape", "lock.fill", "touchid", "paperplane.fill", "sparkles",
          "key.fill", "doc.on.doc", "chevron.up", "arrow.down.circle.fill", "arrow.right",
          "checkmark.circle.fill", "cursorarrow.motionlines", "exclamationmark.triangle.fill",
          "folder.fill", "sunrise.fill"}) {
        EXPECT_TRUE(QFile::exists(
            QStringLiteral(":/corvane/pictograms/%1.svg").arg(QString::fromLatin1(name))))
            << name;
    }
}

} // namespace
} // namespace corvane::look
