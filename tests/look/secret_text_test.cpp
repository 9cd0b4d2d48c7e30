#include "look/secrets/secret_field.h"
#include "look/secrets/secret_label.h"
#include "look/secrets/secret_text.h"
#include "tests/look/item_fixture.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMetaProperty>
#include <QPainter>
#include <QSignalSpy>

#include <vector>

namespace corvane::look {
namespace {

using namespace Qt::StringLiterals;

TEST(SecretText, IsEditedLikeATextAndWipesWhatIsRemoved)
{
    SecretText secret;
    QSignalSpy changed(&secret, &SecretText::changed);
    EXPECT_EQ(secret.insert(0, u"world"), 5);
    EXPECT_EQ(secret.insert(0, u"hello "), 6);
    EXPECT_EQ(secret.insert(11, u"!"), 1);
    EXPECT_EQ(secret.view(), u"hello world!");
    secret.remove(5, 6);
    EXPECT_EQ(secret.view(), u"hello!");
    EXPECT_EQ(changed.count(), 4);
    // The units after the end belong to the same guarded memory, and must be wiped.
    EXPECT_EQ(QStringView(secret.view().utf16(), 12), QStringView(u"hello!\0\0\0\0\0\0", 12));
    secret.clear();
    EXPECT_TRUE(secret.isEmpty());
    secret.assign(std::vector<std::uint8_t>{'k', 'e', 'y'});
    EXPECT_EQ(secret.view(), u"key");
}

TEST(SecretText, GrowsAsFarAsItMay)
{
    SecretText secret;
    secret.insert(0, QString(300, u'x'));
    secret.insert(150, u"y");
    EXPECT_EQ(secret.view(), QString(150, u'x') + u'y' + QString(150, u'x'));
    EXPECT_EQ(secret.insert(0, QString(SecretText::capacity, u'z')), SecretText::capacity - 301);
    EXPECT_EQ(secret.view().last(1), u"x");
}

template <typename Item>
class SecretItemTest : public tests::ItemTest<Item>
{
protected:
    SecretItemTest()
    {
        this->m_item.setSecret(&m_secret);
        this->m_item.setSize({300, 40});
    }

    void type(const char *text)
    {
        for (const char *c = text; *c != '\0'; ++c) {
            QTest::sendKeyEvent(QTest::Click, &this->m_window, Qt::Key_unknown,
                                QString(QLatin1Char(*c)), Qt::NoModifier);
        }
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&this->m_window, key, modifiers);
    }

    SecretText m_secret;
};

using SecretFieldTest = SecretItemTest<SecretField>;

TEST_F(SecretFieldTest, TakesFromTheClipboardAndGivesNothingBack)
{
    QClipboard *clipboard = QGuiApplication::clipboard();
    clipboard->setText(u"pasted\n"_s);
    type("<>");
    press(Qt::Key_Left);
    press(Qt::Key_V, Qt::ControlModifier);
    EXPECT_EQ(m_secret.view(), u"<pasted>");

    clipboard->setText(u"before"_s);
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    press(Qt::Key_X, Qt::ControlModifier);
    EXPECT_EQ(clipboard->text(), u"before"_s);
    EXPECT_EQ(m_secret.view(), u"<pasted>");
}

TEST_F(SecretFieldTest, ShowsBulletsOnly)
{
    const auto picture = [this](const char *text) {
        m_secret.clear();
        type(text);
        QImage image(300, 40, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        m_item.paint(&painter);
        return image;
    };
    EXPECT_EQ(picture("iiii"), picture("WWWW"));
    EXPECT_NE(picture("iiii"), picture("iii"));
}

TEST_F(SecretFieldTest, IsNotKnownToInputMethodsAndAssistiveTechnology)
{
    type("shown");
    // How assistive technology sets the text of a field.
    m_item.setProperty("text", u"hidden"_s);
    EXPECT_EQ(m_secret.view(), u"hidden"_s);
    EXPECT_TRUE(m_item.dynamicPropertyNames().isEmpty());
    EXPECT_FALSE(m_item.inputMethodQuery(Qt::ImEnabled).toBool());
    for (int index = 0; index < m_item.metaObject()->propertyCount(); ++index) {
        const QMetaProperty property = m_item.metaObject()->property(index);
        EXPECT_FALSE(property.read(&m_item).toString().contains(u"hidden"_s)) << property.name();
    }
}

using SecretLabelTest = SecretItemTest<SecretLabel>;

TEST_F(SecretLabelTest, AsksToCopyWhatIsSelected)
{
    QFont font(u"DejaVu Sans Mono"_s);
    font.setPixelSize(10);
    m_item.setFont(font);
    const double advance = QFontMetricsF(font).horizontalAdvance(u'0');
    m_secret.insert(0, u"0123456789");
    QSignalSpy copies(&m_item, &SecretLabel::copyRequested);
    press(Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copies.count(), 0);

    // Dragged from right to left.
    QTest::mousePress(&m_window, Qt::LeftButton, {}, QPointF(advance * 7, 3).toPoint());
    QTest::mouseMove(&m_window, QPointF(advance * 3, 3).toPoint());
    QTest::mouseRelease(&m_window, Qt::LeftButton, {}, QPointF(advance * 3, 3).toPoint());
    press(Qt::Key_C, Qt::ControlModifier);
    ASSERT_EQ(copies.count(), 1);
    EXPECT_EQ(copies.takeFirst(), (QVariantList{3, 4}));
    press(Qt::Key_A, Qt::ControlModifier);
    press(Qt::Key_C, Qt::ControlModifier);
    ASSERT_EQ(copies.count(), 1);
    EXPECT_EQ(copies.takeFirst(), (QVariantList{0, 10}));
}

} // namespace
} // namespace corvane::look
