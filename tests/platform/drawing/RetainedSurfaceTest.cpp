// SPDX-License-Identifier: GPL-3.0-or-later
#include "RetainedSurface.h"

#include <QFontMetrics>

#include <gtest/gtest.h>

#include <algorithm>

namespace lantern {
namespace {

constexpr QRgb kRed = 0xFFFF0000;
constexpr QRgb kBlue = 0xFF0000FF;
constexpr QRgb kBlackPixel = 0xFF000000;

class RetainedSurfaceTest : public ::testing::Test {
protected:
    RetainedSurfaceTest() { m_surface.Fit(QSize(20, 10), 1.0); }

    QRgb At(int x, int y) const { return m_surface.Image().pixel(x, y); }
    int Count(QRgb colour) const
    {
        int count = 0;
        for (int y = 0; y < m_surface.Image().height(); ++y) {
            for (int x = 0; x < m_surface.Image().width(); ++x)
                count += At(x, y) == colour;
        }
        return count;
    }
    static QFont Font()
    {
        QFont font(QStringLiteral("Liberation Sans"));
        font.setPixelSize(11);
        return font;
    }

    RetainedSurface m_surface;
};

TEST_F(RetainedSurfaceTest, FitTellsWhetherTheImageIsNew)
{
    EXPECT_FALSE(m_surface.Fit(QSize(20, 10), 1.0));
    EXPECT_TRUE(m_surface.Fit(QSize(20, 10), 2.0));
    EXPECT_EQ(m_surface.Image().size(), QSize(40, 20));
    EXPECT_TRUE(m_surface.Fit(QSize(0, 10), 2.0));
    EXPECT_TRUE(m_surface.IsEmpty());
}

TEST_F(RetainedSurfaceTest, AFilledBoxEndsBeforeItsRightAndBottomEdges)
{
    m_surface.Fill({2, 3, 5, 4}, kRed);
    EXPECT_EQ(Count(kRed), 3);
    EXPECT_EQ(At(2, 3), kRed);
    EXPECT_EQ(At(4, 3), kRed);
    EXPECT_EQ(At(5, 3), kBlackPixel);
}

TEST_F(RetainedSurfaceTest, AnEmptyOrReversedBoxDrawsNothing)
{
    m_surface.Fill({5, 0, 5, 10}, kRed);
    m_surface.Fill({5, 0, 2, 10}, kRed);
    EXPECT_EQ(Count(kRed), 0);
}

TEST_F(RetainedSurfaceTest, ALineLeavesOutItsEnd)
{
    m_surface.Line(3, 9, 3, 0, kRed);
    EXPECT_EQ(At(3, 9), kRed);
    EXPECT_EQ(At(3, 0), kBlackPixel);
    EXPECT_EQ(Count(kRed), 9);
    m_surface.Line(0, 5, 2, 5, kBlue);
    EXPECT_EQ(Count(kBlue), 2);
    EXPECT_EQ(At(0, 5), kBlue);
}

TEST_F(RetainedSurfaceTest, AtARatioOfTwoALineIsTwoDevicePixelsWide)
{
    m_surface.Fit(QSize(20, 10), 2.0);
    m_surface.Line(0, 1, 20, 1, kRed);
    EXPECT_EQ(Count(kRed), 80);
    EXPECT_EQ(At(0, 2), kRed);
    EXPECT_EQ(At(39, 3), kRed);
}

TEST_F(RetainedSurfaceTest, ARuleIsOneLineWide)
{
    m_surface.Rule(2, 5, 3, kRed);
    EXPECT_EQ(Count(kRed), 3);
    EXPECT_EQ(At(2, 3), kRed);
    EXPECT_EQ(At(4, 3), kRed);
    m_surface.Rule(5, 2, 4, kBlue);
    m_surface.Rule(5, 5, 4, kBlue);
    EXPECT_EQ(Count(kBlue), 0);
}

TEST_F(RetainedSurfaceTest, ARuleIsAsThickWhereverItLies)
{
    for (const qreal ratio : {1.25, 1.5, 1.75, 2.0, 2.5, 3.0}) {
        const int thickness = static_cast<int>(ratio);
        for (int y = 0; y < 10; ++y) {
            m_surface.Fit(QSize(20, 12), ratio);
            m_surface.Clear(kBlackPixel);
            m_surface.Rule(4, 12, y, kRed);
            EXPECT_EQ(Count(kRed), thickness * static_cast<int>(8 * ratio)) << ratio << ", " << y;
            const int left = static_cast<int>(5 * ratio);
            const int top = qRound(y * ratio);
            EXPECT_EQ(At(left, top), kRed);
            m_surface.Rule(4, 12, y, kBlue, 1);
            EXPECT_EQ(At(left, top + thickness - 1), kRed);
            EXPECT_EQ(At(left, top + thickness), kBlue);
        }
    }
}

TEST_F(RetainedSurfaceTest, TheRightAndBottomSidesOwnTheirCorners)
{
    m_surface.DrawEdge({0, 0, 20, 10}, EdgeSunkenOuter, EdgeAllSides);
    const QRgb leftTop = ResolveColour(SystemColour::ButtonShadow);
    const QRgb rightBottom = ResolveColour(SystemColour::ButtonHighlight);
    EXPECT_EQ(At(0, 0), leftTop);
    EXPECT_EQ(At(18, 0), leftTop);
    EXPECT_EQ(At(19, 0), rightBottom);
    EXPECT_EQ(At(0, 9), rightBottom);
    EXPECT_EQ(At(1, 1), kBlackPixel);
}

TEST_F(RetainedSurfaceTest, ADoubleEdgeStandsInsideItsOuterLine)
{
    m_surface.DrawEdge({0, 0, 20, 10}, EdgeRaisedOuter | EdgeRaisedInner, EdgeAllSides);
    EXPECT_EQ(At(0, 0), ResolveColour(SystemColour::Light));
    EXPECT_EQ(At(1, 1), ResolveColour(SystemColour::ButtonHighlight));
    EXPECT_EQ(At(18, 8), ResolveColour(SystemColour::ButtonShadow));
    EXPECT_EQ(At(19, 9), ResolveColour(SystemColour::DarkShadow));
    EXPECT_EQ(At(2, 2), kBlackPixel);
}

TEST_F(RetainedSurfaceTest, OnlyTheSidesAskedForAreDrawn)
{
    m_surface.Clear(kRed);
    m_surface.DrawEdge({0, 0, 20, 10}, EdgeSunkenOuter | EdgeSunkenInner, EdgeTop);
    EXPECT_EQ(At(0, 0), ResolveColour(SystemColour::ButtonShadow));
    EXPECT_EQ(At(19, 0), ResolveColour(SystemColour::ButtonShadow));
    EXPECT_EQ(At(0, 1), ResolveColour(SystemColour::DarkShadow));
    EXPECT_EQ(Count(kRed), 20 * 8);
}

TEST_F(RetainedSurfaceTest, AFlatEdgeHasOneColour)
{
    m_surface.Clear(kRed);
    m_surface.DrawEdge({0, 0, 20, 10}, EdgeSunkenOuter, EdgeAllSides | EdgeMonochrome);
    EXPECT_EQ(Count(ResolveColour(SystemColour::WindowFrame)), 2 * 20 + 2 * 8);
}

TEST_F(RetainedSurfaceTest, MeasuringShrinksTheBoxToTheText)
{
    const QFontMetrics metrics(Font());
    const Box box =
        RetainedSurface::MeasureText(QStringLiteral("Text"), {3, 4, 500, 400}, TextWrapped, Font());
    EXPECT_EQ(box.left, 3);
    EXPECT_EQ(box.top, 4);
    EXPECT_NEAR(box.Width(), metrics.horizontalAdvance(QStringLiteral("Text")), 1);
    EXPECT_NEAR(box.Height(), metrics.height(), 1);
}

TEST_F(RetainedSurfaceTest, WrappingBreaksAtBlanks)
{
    const QFontMetrics metrics(Font());
    const QString text = QStringLiteral("one two");
    const int narrow = metrics.horizontalAdvance(QStringLiteral("one two")) - 2;
    const Box wrapped = RetainedSurface::MeasureText(text, {0, 0, narrow, 99}, TextWrapped, Font());
    const Box plain = RetainedSurface::MeasureText(text, {0, 0, narrow, 99}, TextLeft, Font());
    EXPECT_NEAR(plain.Height(), metrics.height(), 1);
    EXPECT_NEAR(wrapped.Height(), 2 * plain.Height(), 2);
}

TEST_F(RetainedSurfaceTest, AnEmptyTextMeasuresNothing)
{
    const Box box = RetainedSurface::MeasureText({}, {3, 4, 50, 40}, TextWrapped, Font());
    EXPECT_EQ(box, (Box{3, 4, 3, 4}));
}

TEST_F(RetainedSurfaceTest, AnAmpersandMarksAnAccessKeyAndIsNotMeasured)
{
    const Box marked =
        RetainedSurface::MeasureText(QStringLiteral("&Open"), {0, 0, 99, 99}, TextLeft, Font());
    const Box plain =
        RetainedSurface::MeasureText(QStringLiteral("Open"), {0, 0, 99, 99}, TextLeft, Font());
    EXPECT_EQ(marked, plain);
}

TEST_F(RetainedSurfaceTest, PlainTextShowsItsAmpersands)
{
    const auto measure = [](const char* text, TextFlags flags) {
        return RetainedSurface::MeasureText(QString::fromLatin1(text), Box{0, 0, 200, 50}, flags,
                                            QFont());
    };
    EXPECT_EQ(measure("A&B", TextPlain), measure("A&&B", TextLeft));
    EXPECT_GT(measure("A&B", TextPlain).Width(), measure("A&B", TextLeft).Width());
}

TEST_F(RetainedSurfaceTest, ASingleLineStaysOne)
{
    const auto height = [](TextFlags flags) {
        return RetainedSurface::MeasureText(QStringLiteral("A\nB"), Box{0, 0, 200, 50}, flags,
                                            QFont())
            .Height();
    };
    EXPECT_LT(height(TextSingleLine), height(TextLeft));
}

TEST_F(RetainedSurfaceTest, TextIsDrawnInItsBoxAndColour)
{
    m_surface.Fit(QSize(60, 20), 1.0);
    m_surface.DrawText(QStringLiteral("HHH"), {10, 2, 60, 20}, TextLeft, Font(), kRed);
    EXPECT_LT(Count(kBlackPixel), 60 * 20 - 30);
    for (int y = 0; y < 20; ++y)
        EXPECT_EQ(At(9, y), kBlackPixel);
}

// Each pixel of another colour than its neighbours.
QImage Checks(QSize size, qreal ratio)
{
    QImage image(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x)
            image.setPixel(x, y, qRgb(x, y, (x + y) % 2 * 255));
    }
    image.setDevicePixelRatio(ratio);
    return image;
}

TEST_F(RetainedSurfaceTest, AnImageOfTheSurfacesRatioKeepsEachPixelWhereverItStands)
{
    for (const qreal ratio : {1.0, 1.25, 1.5, 1.75, 2.0, 3.0}) {
        m_surface.Fit(QSize(40, 30), ratio);
        const QImage image = Checks(QSize(13, 9), ratio);
        for (int at = 0; at < 12; ++at) {
            m_surface.DrawImage(image, at, at);
            EXPECT_EQ(m_surface.Part(at, at, image.size()), image) << ratio << " at " << at;
        }
    }
}

TEST_F(RetainedSurfaceTest, AnImageOfAnotherRatioKeepsItsSizeInTheLayout)
{
    m_surface.Fit(QSize(20, 10), 2.0);
    QImage image(2, 1, QImage::Format_RGB32);
    image.fill(kRed);
    m_surface.DrawImage(image, 3, 4);
    EXPECT_EQ(Count(kRed), 8);
    EXPECT_EQ(At(6, 8), kRed);
    EXPECT_EQ(At(9, 9), kRed);
}

TEST_F(RetainedSurfaceTest, APartBeyondTheEdgesIsBlackThere)
{
    m_surface.Clear(kRed);
    const QImage part = m_surface.Part(18, -1, QSize(4, 3));
    ASSERT_EQ(part.size(), QSize(4, 3));
    EXPECT_EQ(part.pixel(1, 1), kRed);
    EXPECT_EQ(part.pixel(2, 1) & 0xFFFFFF, 0U);
    EXPECT_EQ(part.pixel(1, 0) & 0xFFFFFF, 0U);
    EXPECT_TRUE(m_surface.Part(0, 0, QSize(0, 3)).isNull());
}

TEST_F(RetainedSurfaceTest, DrawingOnNoImageDoesNothing)
{
    RetainedSurface none;
    none.Clear(kRed);
    none.Fill({0, 0, 5, 5}, kRed);
    none.DrawText(QStringLiteral("x"), {0, 0, 5, 5}, TextLeft, Font(), kRed);
    none.DrawEdge({0, 0, 5, 5}, EdgeRaisedOuter, EdgeAllSides);
    EXPECT_TRUE(none.IsEmpty());
}

TEST_F(RetainedSurfaceTest, APrintedLineStandsAsItIsAtItsPlace)
{
    const QString text = QStringLiteral("&");
    const QSize size = RetainedSurface::PrintedSize(text, Font());
    EXPECT_EQ(size.width(), QFontMetrics(Font()).horizontalAdvance(text));
    m_surface.Clear(kBlue);
    m_surface.Print(text, QPoint(3, -2), Font(), kRed);
    EXPECT_LT(Count(kBlue), 200 - 8); // it is shown
    EXPECT_GT(Count(kBlue), 200 - size.width() * size.height());
    for (int y = 0; y < 10; ++y) {
        EXPECT_EQ(At(2, y), kBlue);
        EXPECT_EQ(At(4 + size.width(), y), kBlue);
    }
}

TEST_F(RetainedSurfaceTest, AnOpaqueLineHidesWhatLiesBehindIt)
{
    m_surface.Clear(kBlue);
    const QString blanks = QStringLiteral("  ");
    const QSize size = RetainedSurface::PrintedSize(blanks, Font());
    m_surface.PrintOpaque(blanks, QPoint(2, 1), Font(), kRed, kBlackPixel);
    EXPECT_EQ(Count(kBlackPixel), size.width() * std::min(size.height(), 9));
    m_surface.Clear(kBlue);
    m_surface.PrintOpaque(QString(), QPoint(2, 1), Font(), kRed, kBlackPixel);
    EXPECT_EQ(Count(kBlue), 200);
}

TEST_F(RetainedSurfaceTest, AnEmptyLineIsAsHighAsAny)
{
    EXPECT_EQ(RetainedSurface::PrintedSize(QString(), Font()),
              QSize(0, RetainedSurface::PrintedSize(QStringLiteral("x"), Font()).height()));
}

} // namespace
} // namespace lantern
