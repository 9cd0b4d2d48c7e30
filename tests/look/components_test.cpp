#include "assets/bundled_fonts.h"
#include "look/controls/plain_line.h"
#include "look/paint/pictogram.h"
#include "look/theme.h"
#include "tests/fakes/fake_font_registry.h"

#include <QAccessible>
#include <QClipboard>
#include <QFile>
#include <QGlyphRun>
#include <QGuiApplication>
#include <QInputMethodEvent>
#include <QMetaEnum>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>
#include <QTextLayout>

#include <gtest/gtest.h>

#include <functional>
#include <utility>
#include <vector>

namespace corvane::look {
namespace {

using namespace Qt::StringLiterals;
using tests::FakeFontRegistry;

TEST(Theme, FallsBackToTheDesktopsFontsWhereAFaceIsMissing)
{
    const QString mono = u"DejaVu Sans Mono"_s;
    const FakeFontRegistry all({{u"Silkscreen-Regular"_s, u"Silkscreen"_s},
                                {u"Pixelify Sans"_s, u"Pixelify Sans"_s},
                                {u"JetBrainsMono-Regular"_s, u"JetBrains Mono"_s}});
    EXPECT_EQ(Theme(all).pixel(9).family(), u"Silkscreen"_s);
    EXPECT_EQ(Theme(all).term(9, Theme::Heavy).family(), u"JetBrains Mono"_s);
    // The family is not used if only another face of it exists.
    const FakeFontRegistry other({{u"JetBrains Mono"_s, u"JetBrains Mono"_s}});
    EXPECT_EQ(Theme(other).term(9).family(), mono);
    EXPECT_EQ(Theme(other).pixel(9).family(), mono);
    EXPECT_EQ(Theme(other).pixel(9).weight(), QFont::ExtraBold);
}

TEST(Theme, DrawsEveryCharacterOfAnAddress)
{
    assets::registerBundledFonts();
    const FakeFontRegistry fonts = FakeFontRegistry::bundled();
    const auto glyphs = [&](const QString &text) {
        QTextLayout layout(text, Theme(fonts).term(10));
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        return layout.glyphRuns().constFirst().glyphIndexes();
    };
    const QString text = u"://->==www"_s;
    QList<quint32> single;
    for (const QChar character : text) {
        single += glyphs(QString(character));
    }
    EXPECT_EQ(glyphs(text), single);
}

TEST(Pictogram, HasAnIconForEverySymbol)
{
    assets::registerBundledFonts();
    const auto symbols = QMetaEnum::fromType<Pictogram::Symbol>();
    for (int index = 1; index < symbols.keyCount(); ++index) {
        const char *name = symbols.key(index);
        EXPECT_TRUE(QFile::exists(u":/corvane/pictograms/%1.svg"_s.arg(QLatin1String(name))))
            << name;
    }
}

/// Shows one component in a separate window.
class ComponentsTest : public testing::Test
{
protected:
    QQuickItem *show(const char *qml)
    {
        m_engine.addImportPath(u"qrc:/qt/qml"_s);
        QQmlComponent component(&m_engine);
        component.setData(
            "import QtQuick\nimport Corvane.Look\nimport Corvane.Look.Controls\n"
            "import Corvane.Look.Motion\nimport Corvane.Look.Paint\nimport Corvane.Look.Secrets\n" +
                QByteArray(qml),
            {});
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

    FakeFontRegistry m_fonts{{}};
    Theme m_theme{m_fonts};
    QQmlEngine m_engine;
    QQuickWindow m_window;
    std::unique_ptr<QQuickItem> m_item;
};

TEST_F(ComponentsTest, TheIslandCoversItsShadowAndHasItsOutlineInside)
{
    const auto picture = [&](const char *inset, const char *trim) {
        m_window.setColor(Qt::white);
        EXPECT_TRUE(show(QByteArray("Item { width: 300; height: 200\n"
                                    "SoftShadow { x: 50; y: 12; width: 200; height: 100\n"
                                    "radius: 26; hangingInset: Qt.size(")
                             .append(inset)
                             .append(") }\nNotchShape { x: 50; width: 200; height: 100\n"
                                     "bottomRadius: 16; lineColor: \"white\"; trimOpacity: ")
                             .append(trim)
                             .append(" } }")));
        return m_window.grabWindow();
    };
    const QImage bare = picture("0, 0", "0");
    // What is left out of the shadow lies behind the island.
    EXPECT_EQ(picture("16, 12", "0"), bare);
    for (int x = 50; x < 250; ++x) {
        EXPECT_EQ(bare.pixelColor(x, 83), Qt::black) << x;
    }
    EXPECT_GT(bare.pixelColor(50, 99).red(), 60) << "the rounded corner";
    EXPECT_LT(bare.pixelColor(49, 60).red(), 200) << "the shadow";
    for (int x = 1; x < 300; ++x) {
        // Below the island the shadow has no step, and is the same from both sides.
        EXPECT_NEAR(bare.pixelColor(x, 104).red(), bare.pixelColor(x - 1, 104).red(), 6) << x;
        EXPECT_EQ(bare.pixelColor(x, 104), bare.pixelColor(299 - x, 104)) << x;
    }
    const QImage trimmed = picture("16, 12", "1");
    for (const QPoint edge : {QPoint(50, 40), QPoint(249, 40), QPoint(150, 0), QPoint(150, 99)}) {
        EXPECT_EQ(trimmed.pixelColor(edge), Qt::white) << edge.x() << ", " << edge.y();
    }
    EXPECT_EQ(trimmed.pixelColor(49, 40), bare.pixelColor(49, 40)) << "nothing outside";
    const auto grains = [&](int firstRow) {
        int count = 0;
        for (int y = firstRow; y < firstRow + 8; ++y) {
            for (int x = 80; x < 160; ++x) {
                count += trimmed.pixelColor(x, y) == QColor(13, 13, 13) ? 1 : 0;
            }
        }
        return count;
    };
    // From cell row to cell row, the density of the grain rises from 0 to 0.28.
    EXPECT_EQ(grains(1), 0);
    EXPECT_EQ(grains(50), 8 * 80 * 3 / 16);
    EXPECT_EQ(grains(90), 8 * 80 / 4);
}

TEST_F(ComponentsTest, ABlurKeepsTheTransparencyAroundOpaqueContent)
{
    m_window.setColor(Qt::green);
    QQuickItem *content = show("ContentFx { width: 100; height: 60\n"
                               "Rectangle { x: 40; y: 20; width: 20; height: 20; color: \"red\" } "
                               "}");
    ASSERT_NE(content, nullptr);
    QQuickItem *veil = content->childItems().constLast();
    content->setProperty("blur", 4.0);
    content->setHeight(120); // as a card that is laid out after it has been shown
    ASSERT_TRUE(QTest::qWaitFor([&] { return veil->property("showing").toBool(); }));
    EXPECT_FALSE(veil->property("capturing").toBool());
    const QImage blurred = m_window.grabWindow();
    EXPECT_EQ(blurred.pixelColor(5, 5), Qt::green);
    EXPECT_GE(blurred.pixelColor(50, 30).red(), 253);
    EXPECT_GT(blurred.pixelColor(41, 30).green(), 20) << "the blurred edge";
    content->setProperty("blur", 0.0);
    EXPECT_EQ(m_window.grabWindow().pixelColor(41, 30), Qt::red);
}

TEST_F(ComponentsTest, ButtonsAreTriggeredByPointerAndKeys)
{
    QQuickItem *button = show("PillButton { label: \"SEND\" }");
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
    int presses = 1;
    for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(&m_window, static_cast<Qt::Key>(key));
        EXPECT_EQ(triggered.count(), ++presses);
        QKeyEvent held(QEvent::KeyPress, key, {}, {}, true);
        QCoreApplication::sendEvent(&m_window, &held);
        EXPECT_EQ(triggered.count(), presses) << "a key that is held down";
    }
}

TEST_F(ComponentsTest, ButtonsAnswerThePointerAndGoBackToTheirLook)
{
    for (const char *qml :
         {"PillButton { label: \"A\" }",
          "GreenButton { title: \"A\"; horizontalPadding: 18; verticalPadding: 6 }",
          "OutlineButton { title: \"A\"; font: Theme.term(8); color: \"red\"; horizontalPadding: "
          "8; verticalPadding: 5 }",
          "LinkText { title: \"A LINK\"; color: \"red\" }",
          "IconButton { symbol: Pictogram.XMark; label: \"A\" }"}) {
        SCOPED_TRACE(qml);
        QTest::mouseMove(&m_window, {390, 190});
        QQuickItem *button = show(qml);
        ASSERT_NE(button, nullptr);
        button->setPosition({40, 40});
        const QImage resting = m_window.grabWindow();
        const QPoint centre = button->mapRectToScene(button->boundingRect()).center().toPoint();
        const auto differs = [&](const QImage &other) {
            return QTest::qWaitFor([&] { return m_window.grabWindow() != other; });
        };
        QTest::mouseMove(&m_window, centre);
        EXPECT_TRUE(differs(resting)) << "under the pointer";
        const QQuickItem *face = button->childItems().constFirst();
        if (!QByteArray(qml).startsWith("IconButton")) {
            QTest::mousePress(&m_window, Qt::LeftButton, {}, centre);
            EXPECT_TRUE(QTest::qWaitFor([&] { return face->scale() < 0.95; })) << "pressed";
            QTest::mouseRelease(&m_window, Qt::LeftButton, {}, centre);
        }
        QTest::mouseMove(&m_window, {390, 190});
        EXPECT_TRUE(QTest::qWaitFor([&] { return button->scale() == 1 && face->scale() == 1; }));
    }
}

TEST_F(ComponentsTest, ADimmedButtonGlowsLessAndNotThroughItself)
{
    QQuickItem *button = show("PillButton { x: 30; y: 30; label: \"A\"; filled: true }");
    ASSERT_NE(button, nullptr);
    m_window.setColor(Qt::black);
    const auto green = [&](double x) {
        const QPointF point(x + 0.5, button->y() + button->height() / 2);
        return m_window.grabWindow()
            .pixelColor((point * m_window.devicePixelRatio()).toPoint())
            .green();
    };
    const int glow = green(button->x() - 2);
    EXPECT_GT(glow, 10);
    button->setEnabled(false);
    button->setOpacity(0.4);
    EXPECT_NEAR(green(button->x() - 2), 0.4 * glow, 2);
    EXPECT_NEAR(green(button->x() + 1), 0.4 * Theme::green().green(), 2);
}

TEST_F(ComponentsTest, TheFocusRingIsEvenWhereverItsControlLies)
{
    QQuickItem *parent =
        show("Item { x: 50.3; y: 40.6; width: 41; height: 20; scale: 1.05; FocusRing {} }");
    ASSERT_NE(parent, nullptr);
    m_window.setColor(Qt::black);
    const QImage image = m_window.grabWindow();
    const double scale = m_window.devicePixelRatio();
    const QPoint centre =
        (parent->mapRectToScene(parent->boundingRect()).center() * scale).toPoint();
    // Ink on black, from the centre outwards: where the line begins and ends.
    for (const QPoint &step : {QPoint(1, 0), QPoint(-1, 0), QPoint(0, 1), QPoint(0, -1)}) {
        QList<QRgb> line;
        for (QPoint at = centre; image.valid(at); at += step) {
            if (image.pixel(at) != 0xff000000) {
                line.append(image.pixel(at));
            }
        }
        const int thickness = qRound(1.5 * scale);
        EXPECT_EQ(line, QList<QRgb>(thickness, Theme::ink().rgb()));
    }
}

TEST_F(ComponentsTest, ContentThatComesIsNeverSeenAsWhatLeft)
{
    QQuickItem *presence = show(R"(Presence {
        width: 100; enterBlur: 5; leaveBlur: 5
        property Component red: Rectangle { implicitHeight: 40; color: "red" }
        property Component blue: Rectangle { implicitHeight: 40; color: "blue" }
    })");
    ASSERT_NE(presence, nullptr);
    m_window.setColor(Qt::black);
    auto *motion = presence->property("motion").value<QObject *>();
    // Long enough that the animation is always running during the test.
    QMetaObject::invokeMethod(motion, "useEaseOut", Q_ARG(double, 100));
    const auto moveTo = [&](double amount) {
        QMetaObject::invokeMethod(motion, "jumpTo", Q_ARG(double, amount));
    };
    const auto isVeiled = [&] {
        const QQuickItem *live = presence->childItems().constFirst()->childItems().constFirst();
        return live->opacity() == 0;
    };
    for (const bool leavesWholly : {true, false}) {
        presence->setProperty("content", presence->property("red"));
        presence->setProperty("present", true);
        moveTo(1);
        presence->setProperty("present", false);
        moveTo(0.5);
        EXPECT_TRUE(QTest::qWaitFor(isVeiled));
        moveTo(leavesWholly ? 0 : 0.5);
        presence->setProperty("content", presence->property("blue"));
        presence->setProperty("present", true);
        for (const double amount : {0.3, 0.7}) {
            moveTo(amount);
            const QColor seen = m_window.grabWindow().pixelColor(50, 20);
            EXPECT_LT(seen.red(), 5) << amount;
            EXPECT_GT(seen.blue(), 50) << amount;
        }
    }
}

TEST_F(ComponentsTest, ACardThatComesBackWhileItLeavesTurnsRound)
{
    QQuickItem *cards = show(R"(CardSwitcher {
        width: 100
        property Component one: Rectangle { implicitHeight: 40 }
        property Component two: Rectangle { implicitHeight: 50 }
    })");
    ASSERT_NE(cards, nullptr);
    const auto bring = [&](const char *card) {
        QMetaObject::invokeMethod(cards, "show", Q_ARG(QVariant, cards->property(card)));
    };
    const auto motionOf = [](QQuickItem *presence) {
        return presence->property("motion").value<QObject *>();
    };
    bring("one");
    auto *first = cards->property("current").value<QQuickItem *>();
    auto *second = cards->property("other").value<QQuickItem *>();
    const QVariant item = first->property("item");
    for (QQuickItem *presence : {first, second}) {
        QMetaObject::invokeMethod(motionOf(presence), "useEaseOut", Q_ARG(double, 100));
    }
    bring("two");
    QMetaObject::invokeMethod(motionOf(first), "jumpTo", Q_ARG(double, 0.6));
    QMetaObject::invokeMethod(motionOf(second), "jumpTo", Q_ARG(double, 0.4));
    bring("one");
    EXPECT_EQ(cards->property("current").value<QQuickItem *>(), first);
    EXPECT_EQ(first->property("item"), item);
    EXPECT_EQ(first->property("amount"), 0.6);
    EXPECT_EQ(second->property("amount"), 0.4);
    EXPECT_TRUE(first->property("present").toBool());
    EXPECT_FALSE(second->property("present").toBool());
}

TEST_F(ComponentsTest, RowsThatMakeRoomMoveOnceTheStackHasBeenSeen)
{
    QQuickItem *stack = show(R"(Stack {
        Rectangle { height: 20 } Rectangle { height: 0 } Rectangle { height: 20 }
    })");
    ASSERT_NE(stack, nullptr);
    QQuickItem *line = stack->childItems().at(1);
    const QQuickItem *last = stack->childItems().at(2);
    stack->setVisible(false);
    line->setHeight(4);
    EXPECT_EQ(last->y(), 24) << "not seen";
    stack->setVisible(true);
    QSignalSpy frames(&m_window, &QQuickWindow::frameSwapped);
    m_window.update();
    EXPECT_TRUE(frames.wait());
    line->setHeight(10);
    EXPECT_EQ(stack->implicitHeight(), 50);
    EXPECT_LT(last->y(), 30);
    EXPECT_TRUE(QTest::qWaitFor([&] { return last->y() > 24 && last->y() < 30; }));
    EXPECT_TRUE(QTest::qWaitFor([&] { return last->y() == 30; }));
    line->setHeight(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return last->y() == 20; }));
    stack->childItems().constFirst()->setHeight(26);
    EXPECT_EQ(line->y(), 26) << "what is not seen does not move";
}

TEST(PlainLine, HoldsNothingThatCannotBeSeen)
{
    for (const auto &[text, line] : std::vector<std::pair<QString, QString>>{
             {u"https://a.test/ä?b=\U0001F4B0 \u00A0"_s, u"https://a.test/ä?b=\U0001F4B0 \u00A0"_s},
             {u"1\r\n2\t3\v4\f5"_s, u"1  2 3 4 5"_s},
             {u"1\u0085\u2028\u2029\uFFFC2"_s, u"1    2"_s},
             {u"1\0\b\u001B\u007F\u009F2"_s, u"12"_s},
             {u"\uFEFF\u202E1\u200B\u200F\u2066\u00AD\U000E0041"_s, u"1"_s},
             {u"1\u034F\u115F\u17B5\u180E\u2065\u3164\uFE0F\uFFA0\uFFF8\U000E0100"_s, u"1"_s},
             {QString(QChar(0xD800)), u"\uFFFD"_s},
         }) {
        EXPECT_EQ(plainLine(text), line);
    }
}

/// A field and its owner, which holds `held` and is told of every change.
class TextFieldTest : public ComponentsTest
{
protected:
    TextFieldTest()
    {
        // Such as a binding that changes itself.
        QObject::connect(&m_engine, &QQmlEngine::warnings, [](const QList<QQmlError> &warnings) {
            ADD_FAILURE() << warnings.first().toString().toStdString();
        });
        QQuickItem *field = show(R"(TextField {
            id: field
            property string held: "1"
            property bool refuses: false
            property string suffix
            width: 160; label: "AMOUNT"; placeholder: "0.00"; text: held
            onEdited: text => held = refuses ? held : text + suffix
        })");
        m_line = field->property("line").value<QQuickItem *>();
        m_window.requestActivate();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        m_line->forceActiveFocus();
    }

    [[nodiscard]] QString held() const { return m_item->property("held").toString(); }
    [[nodiscard]] QString shown() const { return m_item->property("shown").toString(); }
    void compose(const QString &preedit, const QString &committed)
    {
        QInputMethodEvent event(preedit, {});
        event.setCommitString(committed);
        QCoreApplication::sendEvent(m_line, &event);
    }

    QQuickItem *m_line = nullptr;
};

TEST_F(TextFieldTest, ReportsEveryChangeWhateverMakesIt)
{
    using std::function;
    const auto paste = [this](const QString &text) {
        QGuiApplication::clipboard()->setText(text);
        QTest::keySequence(&m_window, QKeySequence::Paste);
    };
    for (const auto &[change, text] : std::vector<std::pair<function<void()>, QString>>{
             {[&] { QTest::keyClick(&m_window, '2'); }, u"12"_s},
             {[&] { paste(u"\u2028\r\n3\n\u202E4\r\n"_s); }, u"123 4"_s},
             {[&] { QTest::keyClick(&m_window, Qt::Key_Backspace); }, u"123 "_s},
             {[&] { QTest::keySequence(&m_window, QKeySequence::Undo); }, u"123 4"_s},
             {[&] { QTest::keySequence(&m_window, QKeySequence::Redo); }, u"123 "_s},
             {[&] { compose({}, u"6"_s); }, u"123 6"_s},
             {[&] {
                  QAccessible::queryAccessibleInterface(m_line)->setText(QAccessible::Value,
                                                                         u"7\u200B\n"_s);
              },
              u"7 "_s},
             {[&] { m_line->setProperty("text", u"8"_s); }, u"8"_s},
             {[&] { QTest::keyClick(&m_window, '9'); }, u"89"_s},
             {[&] {
                  QTest::keySequence(&m_window, QKeySequence::SelectAll);
                  QTest::keySequence(&m_window, QKeySequence::Cut);
              },
              QString()},
             {[&] { paste(QString(100'000, u'1')); }, QString(32'767, u'1')},
         }) {
        change();
        EXPECT_EQ(held(), text);
        EXPECT_EQ(shown(), text);
    }
}

TEST_F(TextFieldTest, ShowsWhatItsOwnerHolds)
{
    const auto give = [this](const QString &text) { m_item->setProperty("held", text); };
    QTest::keyClick(&m_window, '2');
    give(u"5"_s);
    EXPECT_EQ(shown(), u"5"_s) << "also after typing";

    // What is being composed is shown, but is no value yet; the owner's value replaces it.
    compose(u"6"_s, {});
    EXPECT_EQ(held(), u"5"_s);
    EXPECT_EQ(shown(), u"56"_s);
    give({});
    EXPECT_EQ(shown(), QString());

    // An owner that makes something else of a change, or refuses it.
    m_item->setProperty("suffix", u"0"_s);
    QTest::keyClick(&m_window, '7');
    EXPECT_EQ(held(), u"70"_s);
    EXPECT_EQ(shown(), u"70"_s);
    m_item->setProperty("refuses", true);
    QTest::keyClick(&m_window, '7');
    EXPECT_EQ(shown(), u"70"_s);
    m_item->setProperty("refuses", false);
    m_item->setProperty("suffix", {});

    // An owner that starts with what cannot be shown gets what is shown.
    give(u"8\n\u200B"_s);
    EXPECT_EQ(shown(), u"8 "_s);
    EXPECT_TRUE(QTest::qWaitFor([this] { return held() == u"8 "_s; }));
}

} // namespace
} // namespace corvane::look
