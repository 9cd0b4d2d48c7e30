#include "panes/qr.h"
#include "panes/receive_pane_model.h"
#include "tests/panes/card_fixture.h"

namespace corvane::panes {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

class ReceivePaneModelTest : public tests::CardTest
{
protected:
    ReceivePaneModelTest() { open(m_card); }

    ReceivePaneModel m_card;
};

TEST_F(ReceivePaneModelTest, ShowsTheTrimmedAddress)
{
    struct Case
    {
        QString address;
        QString shown;
    };
    const Case cases[] = {
        {{}, {}},
        {QString(31, u'1').chopped(1), {}},
        {tests::addressA, tests::addressA},
        {u"\t"_s + tests::addressA + u' ', tests::addressA},
        {tests::addressA + u'\n', {}},
    };
    for (const Case &expected : cases) {
        SCOPED_TRACE(expected.address.toStdString());
        model->setAddress(expected.address);
        EXPECT_EQ(m_card.address(), expected.shown);
        EXPECT_EQ(m_card.hasAddress(), !expected.shown.isEmpty());
    }
    model->setNetwork(core::SolNetwork::Devnet);
    EXPECT_EQ(m_card.networkName(), u"DEVNET"_s);
    EXPECT_FALSE(m_card.isMainnet());
}

TEST_F(ReceivePaneModelTest, CopiesAndSaysSoForAMoment)
{
    model->setAddress(tests::addressA);
    EXPECT_EQ(m_card.copyLabel(), u"COPY ADDRESS"_s);
    m_card.copyAddress();
    EXPECT_EQ(m_clipboard.texts, QStringList{tests::addressA});
    queue.advance(1199ms);
    EXPECT_EQ(m_card.copyLabel(), u"COPIED"_s);
    queue.advance(1ms);
    EXPECT_EQ(m_card.copyLabel(), u"COPY ADDRESS"_s);

    m_island->setPane(island::IslandPane::Receive);
    m_card.close();
    EXPECT_EQ(m_island->pane(), island::IslandPane::Balance);
}

TEST(QR, HasAQuietZoneOfOneModule)
{
    const auto code = QR::modules(tests::addressA);
    ASSERT_TRUE(code);
    // 44 bytes at level M need 33 modules.
    EXPECT_EQ(code->size(), QSize(35, 35));
    for (int i = 0; i < 35; ++i) {
        for (const QPoint &edge : {QPoint(i, 0), QPoint(i, 34), QPoint(0, i), QPoint(34, i)}) {
            EXPECT_EQ(code->pixelColor(edge), QColor(Qt::white));
        }
    }
    // The corner of a finder pattern, and the ring in it.
    EXPECT_EQ(code->pixelColor(1, 1), QColor(Qt::black));
    EXPECT_EQ(code->pixelColor(2, 2), QColor(Qt::white));
    EXPECT_EQ(code->pixelColor(3, 3), QColor(Qt::black));
    // The format bits under the upper left finder pattern tell level M: 00, masked by 10.
    EXPECT_EQ(code->pixelColor(1, 9), QColor(Qt::black));
    EXPECT_EQ(code->pixelColor(2, 9), QColor(Qt::white));
}

TEST(QR, FillsItsSideWithWholePixels)
{
    for (const double scale : {1.0, 1.25, 1.5, 2.0, 3.0}) {
        SCOPED_TRACE(scale);
        const auto code = QR::modules(tests::addressA);
        const auto image = QR::image(tests::addressA, 144, scale);
        ASSERT_TRUE(image);
        EXPECT_EQ(image->width(), qRound(144 * scale));
        EXPECT_EQ(image->height(), image->width());
        EXPECT_EQ(image->deviceIndependentSize(), QSizeF(144, 144));
        const double module = static_cast<double>(image->width()) / code->width();
        for (int y = 0; y < code->height(); ++y) {
            for (int x = 0; x < code->width(); ++x) {
                const QPoint middle(static_cast<int>((x + 0.5) * module),
                                    static_cast<int>((y + 0.5) * module));
                ASSERT_EQ(image->pixelColor(middle), code->pixelColor(x, y)) << x << ' ' << y;
            }
        }
        for (int y = 0; y < image->height(); ++y) {
            for (int x = 0; x < image->width(); ++x) {
                const int grey = qGray(image->pixel(x, y));
                ASSERT_TRUE(grey == 0 || grey == 255);
            }
        }
    }
}

TEST(QR, HasNoneForNothingAndForTooMuch)
{
    EXPECT_FALSE(QR::modules({}));
    EXPECT_FALSE(QR::image(QString(3000, u'x'), 144));
}

} // namespace
} // namespace corvane::panes
