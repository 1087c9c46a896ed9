// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureSurface.h"

#include <QCoreApplication>
#include <QPaintEvent>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>

namespace lantern {
namespace {

// A surface that remembers what it was asked to paint.
class WatchedSurface : public PictureSurface {
public:
    using PictureSurface::PictureSurface;
    QRegion Painted;

protected:
    void paintEvent(QPaintEvent* event) override
    {
        Painted += event->region();
        PictureSurface::paintEvent(event);
    }
};

class PictureSurfaceTest : public ::testing::Test {
protected:
    PictureSurfaceTest() : surface(&window)
    {
        window.resize(200, 150);
        surface.setGeometry(25, 31, 97, 65);
    }

    void Show()
    {
        window.show();
        QCoreApplication::processEvents();
        QCoreApplication::processEvents();
    }

    // A different colour for each pixel of the image.
    static std::uint32_t Mark(int x, int y)
    {
        return 0xFF000000u | static_cast<std::uint32_t>(y * 256 + x);
    }

    void Draw(SurfaceImage image, DeviceRect rect)
    {
        for (int y = rect.top; y < rect.top + rect.height; ++y) {
            for (int x = rect.left; x < rect.left + rect.width; ++x)
                image.pixels[y * image.stride + x] = Mark(x, y);
        }
        surface.Changed(rect);
    }

    QWidget window;
    WatchedSurface surface;
};

TEST_F(PictureSurfaceTest, TheImageHasTheDevicePixelsOfTheWidget)
{
    Show();
    const SurfaceImage image = surface.Image();
    EXPECT_EQ(image.width, std::lround(97 * surface.devicePixelRatioF()));
    EXPECT_EQ(image.height, std::lround(65 * surface.devicePixelRatioF()));
    EXPECT_GE(image.stride, image.width);
    EXPECT_EQ(image.devicePixelRatio, surface.devicePixelRatioF());
}

TEST_F(PictureSurfaceTest, AnotherLookIsToldAndPaintedOnce)
{
    Show();
    EXPECT_EQ(surface.Image().look, PictureLook::Sharp);
    surface.Painted = {};
    surface.SetLook(PictureLook::Sharp);
    QCoreApplication::processEvents();
    EXPECT_TRUE(surface.Painted.isEmpty());
    surface.SetLook(PictureLook::Smooth);
    EXPECT_EQ(surface.Image().look, PictureLook::Smooth);
    QCoreApplication::processEvents();
    EXPECT_EQ(surface.Painted, QRegion(surface.rect()));
}

TEST_F(PictureSurfaceTest, TheGenerationChangesWithTheSizeAndOnlyThen)
{
    Show();
    const auto first = surface.Image().generation;
    EXPECT_EQ(surface.Image().generation, first);
    surface.resize(98, 65);
    const auto second = surface.Image().generation;
    EXPECT_NE(second, first);
    surface.move(0, 0);
    EXPECT_EQ(surface.Image().generation, second);
}

TEST_F(PictureSurfaceTest, AFreshImageHasTheBackColour)
{
    surface.SetBackColor(0xFF123456);
    const SurfaceImage image = surface.Image();
    EXPECT_EQ(image.pixels[0], 0xFF123456u);
    EXPECT_EQ(image.pixels[(image.height - 1) * image.stride + image.width - 1], 0xFF123456u);
}

TEST_F(PictureSurfaceTest, AWidgetWithoutAreaHasNoImage)
{
    surface.resize(0, 40);
    EXPECT_EQ(surface.Image().pixels, nullptr);
    Show();
}

TEST_F(PictureSurfaceTest, EachPixelOfTheImageIsOnePixelOfTheScreen)
{
    Show();
    const SurfaceImage image = surface.Image();
    Draw(image, {0, 0, image.width, image.height});
    QCoreApplication::processEvents();
    const qreal ratio = window.devicePixelRatioF();
    const QImage screen = window.grab().toImage();
    const int left = static_cast<int>(std::lround(25 * ratio));
    const int top = static_cast<int>(std::lround(31 * ratio));
    // A widget that ends on half a device pixel shows half a pixel less.
    const int right = static_cast<int>(std::lround((25 + 97) * ratio));
    const int bottom = static_cast<int>(std::lround((31 + 65) * ratio));
    ASSERT_GE(right - left, image.width - 1);
    ASSERT_GE(bottom - top, image.height - 1);
    for (int y = 0; y < bottom - top; ++y) {
        for (int x = 0; x < right - left; ++x)
            ASSERT_EQ(screen.pixel(left + x, top + y), Mark(x, y)) << x << "," << y;
    }
}

TEST_F(PictureSurfaceTest, AChangePaintsItsOwnRectangleOnly)
{
    Show();
    surface.Painted = {};
    QCoreApplication::processEvents();
    EXPECT_TRUE(surface.Painted.isEmpty());
    Draw(surface.Image(), {10, 20, 6, 3});
    QCoreApplication::processEvents();
    const qreal ratio = surface.devicePixelRatioF();
    const QRect wanted = QRectF(10 / ratio, 20 / ratio, 6 / ratio, 3 / ratio).toAlignedRect();
    EXPECT_EQ(surface.Painted.boundingRect(), wanted);
}

TEST_F(PictureSurfaceTest, APartialPaintLeavesTheSamePixelsAsAFullOne)
{
    Show();
    const SurfaceImage image = surface.Image();
    for (int left = 0; left + 7 <= image.width; left += 7) {
        Draw(image, {left, 3, 7, 11});
        QCoreApplication::processEvents();
    }
    QImage partial(window.size() * window.devicePixelRatioF(), QImage::Format_RGB32);
    partial.setDevicePixelRatio(window.devicePixelRatioF());
    window.render(&partial);
    EXPECT_EQ(partial, window.grab().toImage().convertToFormat(QImage::Format_RGB32));
}

TEST_F(PictureSurfaceTest, ThePictureIsBroughtUpToDateBeforeItIsPainted)
{
    int calls = 0;
    surface.PaintPicture = [&] {
        ++calls;
        const SurfaceImage image = surface.Image();
        image.pixels[0] = 0xFF0000FF;
    };
    const QImage shown = surface.grab().toImage();
    EXPECT_GE(calls, 1);
    EXPECT_EQ(shown.pixel(0, 0), 0xFF0000FFu);
}

} // namespace
} // namespace lantern
