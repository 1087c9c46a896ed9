// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlTicker.h"

#include "ControlHand.h"
#include "GoldenImage.h"
#include "PaintedRegion.h"
#include "ToldToTools.h"

#include <QAccessible>
#include <QPainter>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace lantern {
namespace {

constexpr QRgb kBlackPixel = 0xFF000000;
constexpr QRgb kOrange = 0xFFFFAB08;

class ctlTickerTest : public ::testing::Test {
protected:
    ctlTickerTest() { ticker.grab(); }

    QString Shown() const { return ticker.ShownText(); }
    QImage Strip() const { return ticker.SurfaceImage().copy(); }

    // The strip put together from the pictures, each where it belongs.
    QImage Composed(const QString& shown) const
    {
        const double ratio = ticker.SurfaceImage().devicePixelRatio();
        RetainedSurface surface;
        surface.Fit(QSize(kTickerWidth, kTickerHeight), ratio);
        const auto put = [&surface](const QString& name, int left, int width) {
            const QString path = QStringLiteral(":/ticker/%1.svg").arg(name);
            surface.DrawPicture(*Picture::FromFile(path, QSize(width, 24)), left, 0);
        };
        if (!shown.contains(QLatin1Char(':'))) {
            put(shown, 0, 69);
            return surface.Image();
        }
        put(QStringLiteral("colon"), 31, 7);
        put(shown.mid(0, 1), 5, 13);
        put(shown.mid(1, 1), 18, 13);
        put(shown.mid(3, 1), 38, 13);
        put(shown.mid(4, 1), 51, 13);
        return surface.Image();
    }

    ctlTicker ticker{nullptr};
};

TEST_F(ctlTickerTest, StartsWithWhatTheProgramIsCalled)
{
    EXPECT_EQ(ticker.size(), QSize(69, 24));
    EXPECT_EQ(Shown(), QStringLiteral("Lyric Lantern CDG Player"));
    EXPECT_EQ(Strip(), Composed(QStringLiteral("title")));
}

TEST_F(ctlTickerTest, ShowsTheTimeInDigitsAroundAColon)
{
    ticker.SetTicker(754, true);
    EXPECT_EQ(Shown(), QStringLiteral("12:34"));
    EXPECT_EQ(Strip(), Composed(QStringLiteral("12:34")));
    ticker.SetTicker(5968, true);
    EXPECT_EQ(Strip(), Composed(QStringLiteral("99:28")));
    ticker.SetTicker(3405, false);
    EXPECT_EQ(Strip(), Composed(QStringLiteral("56:45")));
}

TEST_F(ctlTickerTest, TheMarginsAreBlack)
{
    ticker.SetTicker(5328, true);
    for (int y = 0; y < 24; ++y) {
        for (int x = 0; x < 5; ++x) {
            EXPECT_EQ(ShownAt(ticker, x, y), kBlackPixel);
            EXPECT_EQ(ShownAt(ticker, 68 - x, y), kBlackPixel);
        }
    }
}

TEST_F(ctlTickerTest, GoesRoundAtAHundredMinutes)
{
    ticker.SetTicker(3599, true);
    EXPECT_EQ(Strip(), Composed(QStringLiteral("59:59")));
    ticker.SetTicker(3600, true);
    EXPECT_EQ(Strip(), Composed(QStringLiteral("60:00")));
    ticker.SetTicker(5999, true);
    EXPECT_EQ(Strip(), Composed(QStringLiteral("99:59")));
    ticker.SetTicker(6000, true);
    EXPECT_EQ(Strip(), Composed(QStringLiteral("00:00")));
}

TEST_F(ctlTickerTest, TheStartOfATrackTakesTheCoverAway)
{
    ticker.SetTicker(-1, false);
    EXPECT_EQ(Strip(), Composed(QStringLiteral("loading")));
    ticker.SetTicker(0, true);
    EXPECT_EQ(Strip(), Composed(QStringLiteral("00:00")));
    ticker.SetTicker(0, false);
    EXPECT_EQ(Strip(), Composed(QStringLiteral("title")));
}

TEST_F(ctlTickerTest, TheDigitsStayAsTheyWereBeneathTheCover)
{
    ticker.SetTicker(754, true);
    ticker.SetTicker(-1, true);
    EXPECT_EQ(Strip(), Composed(QStringLiteral("loading")));
    ticker.SetTicker(734, true);
    EXPECT_EQ(Strip(), Composed(QStringLiteral("12:14")));
}

TEST_F(ctlTickerTest, WritesTheSecondsWithoutMinutesBack)
{
    std::int32_t seconds = 754;
    ticker.SetTicker(seconds, true);
    EXPECT_EQ(seconds, 34);
    seconds = 59;
    ticker.SetTicker(seconds, true);
    EXPECT_EQ(seconds, 59);
    seconds = -1;
    ticker.SetTicker(seconds, true);
    EXPECT_EQ(seconds, -1);
}

TEST_F(ctlTickerTest, TheSameCallAgainDoesNothingAndLeavesTheSecondsAlone)
{
    ticker.SetTicker(34, true);
    ticker.SetTicker(754, true); // kept as 34
    std::int32_t seconds = 34;
    ticker.SetTicker(seconds, true); // so this is found to be like the last
    EXPECT_EQ(Shown(), QStringLiteral("12:34"));
    ticker.SetTicker(34, false);
    EXPECT_EQ(Shown(), QStringLiteral("00:34"));
}

TEST_F(ctlTickerTest, OnlyTheDigitsThatChangedAreDrawnAnew)
{
    ticker.show();
    QApplication::processEvents();
    PaintedRegion painted(ticker);
    ticker.SetTicker(754, true);
    QApplication::processEvents();
    EXPECT_EQ(painted.Take().boundingRect(), ticker.rect());
    ticker.SetTicker(755, true);
    QApplication::processEvents();
    EXPECT_EQ(painted.Take(), QRegion(51, 0, 13, 24));
    ticker.SetTicker(760, true);
    QApplication::processEvents();
    EXPECT_EQ(painted.Take(), QRegion(38, 0, 26, 24));
    ticker.SetTicker(760, true);
    ticker.SetTicker(760, false);
    QApplication::processEvents();
    EXPECT_EQ(painted.Take(), QRegion());
    EXPECT_EQ(Strip(), Composed(QStringLiteral("12:40")));
}

TEST_F(ctlTickerTest, LoadingTwiceIsDrawnOnce)
{
    ticker.show();
    ticker.SetTicker(-1, false);
    QApplication::processEvents();
    PaintedRegion painted(ticker);
    ticker.SetTicker(-1, false);
    QApplication::processEvents();
    EXPECT_EQ(painted.Take(), QRegion());
}

TEST_F(ctlTickerTest, ATimeBelowMinusOneHarmsNothing)
{
    ticker.SetTicker(754, true);
    ticker.SetTicker(-2, true);
    EXPECT_EQ(Shown(), QStringLiteral("00:04")); // the units have no glyph for -2
    ticker.SetTicker(-2000000000, true);
    ticker.SetTicker(1, true);
    EXPECT_EQ(Shown(), QStringLiteral("00:01"));
    EXPECT_EQ(Strip(), Composed(QStringLiteral("00:01")));
}

TEST_F(ctlTickerTest, IsBlackBeyondTheStrip)
{
    ticker.SetTicker(754, true);
    ticker.resize(100, 40);
    ticker.grab();
    EXPECT_EQ(ShownAt(ticker, 99, 39), kBlackPixel);
    EXPECT_EQ(ShownAt(ticker, 99, 0), kBlackPixel);
    const QSize strip = Composed(QStringLiteral("12:34")).size();
    QImage shown = Strip().copy(QRect(QPoint(), strip));
    EXPECT_EQ(shown, Composed(QStringLiteral("12:34")));
}

TEST_F(ctlTickerTest, TellsOfTheMouseInTwipsWhateverItShows)
{
    std::vector<MouseReport> down;
    std::vector<MouseReport> up;
    ticker.MouseDown = [&](const MouseReport& report) { down.push_back(report); };
    ticker.MouseUp = [&](const MouseReport& report) { up.push_back(report); };
    ControlHand hand(ticker);
    hand.Hold(Qt::ShiftModifier | Qt::AltModifier);
    hand.Press(60, 20, Qt::RightButton);
    ticker.SetTicker(10, true);
    hand.Release(4, 2, Qt::RightButton);
    ASSERT_EQ(down.size(), 1U);
    EXPECT_EQ(down[0].button, RightButton);
    EXPECT_EQ(down[0].shift, 5);
    EXPECT_EQ(down[0].x, 900.0F);
    EXPECT_EQ(down[0].y, 300.0F);
    ASSERT_EQ(up.size(), 1U);
    EXPECT_EQ(up[0].button, RightButton);
    EXPECT_EQ(up[0].x, 60.0F);
    EXPECT_EQ(up[0].y, 30.0F);
}

TEST_F(ctlTickerTest, TheHostMayDestroyItInAnyEvent)
{
    auto own = std::make_unique<ctlTicker>(nullptr);
    own->MouseDown = [&own](const MouseReport&) { own.reset(); };
    ControlHand(*own).Press(1, 1);
    EXPECT_EQ(own, nullptr);
}

TEST_F(ctlTickerTest, AssistiveToolsReadTheTime)
{
    ticker.setAccessibleName(QStringLiteral("Time"));
    ticker.SetTicker(754, true);
    QAccessibleInterface* known = QAccessible::queryAccessibleInterface(&ticker);
    EXPECT_EQ(known->role(), QAccessible::StaticText);
    EXPECT_EQ(known->text(QAccessible::Name), QStringLiteral("Time"));
    EXPECT_EQ(known->text(QAccessible::Value), QStringLiteral("12:34"));
    EXPECT_EQ(known->text(QAccessible::Description), QStringLiteral("12:34"));
    EXPECT_EQ(known->valueInterface(), nullptr);
    ticker.SetTicker(-1, false);
    EXPECT_EQ(known->text(QAccessible::Value), QStringLiteral("LOADING"));
    EXPECT_EQ(known->text(QAccessible::Description), QStringLiteral("LOADING"));
}

TEST_F(ctlTickerTest, AssistiveToolsAreToldOfEachTimeOnce)
{
    ticker.SetTicker(754, true);
    ToldToTools told;
    for (int i = 0; i < 3; ++i)
        ticker.SetTicker(755, true);
    ASSERT_EQ(told.Types(), std::vector{QAccessible::DescriptionChanged});
    EXPECT_EQ(told.Events()[0].object, &ticker);
    ticker.SetTicker(759, true);
    ticker.SetTicker(760, true); // two digits
    EXPECT_EQ(told.Events().size(), 3U);
    ticker.SetTicker(-1, true);
    ticker.SetTicker(-1, true);
    EXPECT_EQ(told.Events().size(), 4U);
    ticker.SetTicker(760, true); // the same digits without the cover
    EXPECT_EQ(told.Events().size(), 5U);
}

TEST_F(ctlTickerTest, EachGlyphIsItsOwnInNothingButOrangeOnBlack)
{
    std::vector<QImage> seen;
    for (int digit = 0; digit < 10; ++digit) {
        const PictureReference glyph =
            Picture::FromFile(QStringLiteral(":/ticker/%1.svg").arg(digit), QSize(13, 24));
        ASSERT_NE(glyph, nullptr) << digit;
        const QImage& image = glyph->ImageAt(3);
        int orange = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QRgb colour = image.pixel(x, y);
                orange += colour == kOrange;
                ASSERT_EQ(qAlpha(colour), 255);
                ASSERT_NEAR(qGreen(colour), qRed(colour) * 171 / 255, 2);
                ASSERT_NEAR(qBlue(colour), qRed(colour) * 8 / 255, 2);
            }
        }
        EXPECT_GT(orange, 200) << digit;
        for (const QImage& other : seen)
            EXPECT_NE(image, other) << digit;
        seen.push_back(image);
    }
}

TEST_F(ctlTickerTest, LooksAsItWasDrawn)
{
    QImage sheet(Strip().width(), Strip().height() * 5, QImage::Format_RGB32);
    QPainter painter(&sheet);
    int top = 0;
    for (const auto& [seconds, state] :
         {std::pair{0, false}, {-1, false}, {83, true}, {2747, true}, {5360, true}}) {
        ticker.SetTicker(std::int32_t{seconds}, state);
        QImage strip = Strip();
        strip.setDevicePixelRatio(1);
        painter.drawImage(0, top, strip);
        top += strip.height();
    }
    painter.end();
    const int ratio = qRound(ticker.devicePixelRatioF() * 100);
    EXPECT_TRUE(MatchesGolden(sheet, QStringLiteral("ticker-%1").arg(ratio)));
}

} // namespace
} // namespace lantern
