// SPDX-License-Identifier: GPL-3.0-or-later
#include "Eyes.h"

#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/Xfixes.h>
#include <algorithm>
#include <memory>
#include <span>
#include <stdexcept>

namespace lantern::test {
namespace {

constexpr Clock::duration kWatchPeriod = 1ms;

struct ImageDeleter {
    void operator()(XImage* image) const { XDestroyImage(image); }
};
using ImageHandle = std::unique_ptr<XImage, ImageDeleter>;

ImageHandle Grab(const XConnection& connection, const QRect& area)
{
    XImage* image = XGetImage(connection.Display(), connection.Root(), area.x(), area.y(),
                              static_cast<unsigned>(area.width()),
                              static_cast<unsigned>(area.height()), AllPlanes, ZPixmap);
    if (image == nullptr || image->bits_per_pixel != 32)
        throw std::runtime_error("the screen cannot be read");
    return ImageHandle(image);
}

QRgb PixelAt(const XConnection& connection, Point point)
{
    const ImageHandle image = Grab(connection, QRect(point.x, point.y, 1, 1));
    return 0xFF000000U | static_cast<QRgb>(XGetPixel(image.get(), 0, 0) & 0xFFFFFFU);
}

} // namespace

Eyes::Eyes(const XServer& server) : m_server(server), m_connection(server.DisplayName())
{
}

Eyes::~Eyes()
{
    if (m_isWatching)
        StopWatching();
}

QImage Eyes::Screen()
{
    return Area(QRect(0, 0, m_server.Width(), m_server.Height()));
}

QImage Eyes::Area(const QRect& area)
{
    const ImageHandle grabbed = Grab(m_connection, area);
    const void* bytes = grabbed->data;
    const QImage borrowed(static_cast<const uchar*>(bytes), area.width(), area.height(),
                          grabbed->bytes_per_line, QImage::Format_RGB32);
    return borrowed.copy();
}

QRgb Eyes::At(Point point)
{
    return PixelAt(m_connection, point);
}

bool Eyes::IsPointerBlank() const
{
    const std::unique_ptr<XFixesCursorImage, int (*)(void*)> pointer(
        XFixesGetCursorImage(m_connection.Display()), XFree);
    if (!pointer)
        throw std::runtime_error("the pointer cannot be seen");
    // One pixel each, with its opacity in the highest of 32 bits; the items are longs.
    const std::span pixels(pointer->pixels, std::size_t{pointer->width} * pointer->height);
    return std::ranges::none_of(pixels, [](unsigned long pixel) { return (pixel >> 24) != 0; });
}

void Eyes::Watch(const std::vector<Point>& points)
{
    m_changes.clear();
    m_isWatching = true;
    m_watcher = std::thread([this, points] { WatchUntilTold(points); });
}

std::vector<Eyes::Change> Eyes::StopWatching()
{
    m_isWatching = false;
    m_watcher.join();
    return m_changes;
}

void Eyes::WatchUntilTold(const std::vector<Point>& points)
{
    const XConnection connection(m_server.DisplayName());
    std::vector<QRgb> colours(points.size(), 0); // no pixel is ever transparent
    std::vector<Moment> lastSeen(points.size(), Clock::now());
    Moment next = Clock::now();
    while (m_isWatching) {
        for (std::size_t i = 0; i < points.size(); ++i) {
            const Moment before = Clock::now();
            const QRgb colour = PixelAt(connection, points[i]);
            if (colour != colours[i])
                m_changes.push_back({i, colour, lastSeen[i], Clock::now()});
            colours[i] = colour;
            lastSeen[i] = before;
        }
        next = std::max(next + kWatchPeriod, Clock::now());
        std::this_thread::sleep_until(next);
    }
}

QRect BoundsOfColour(const QImage& image, QRgb colour)
{
    QRect bounds;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) == colour)
                bounds |= QRect(x, y, 1, 1);
        }
    }
    return bounds;
}

void KeepPicture(const QImage& image, const std::string& name)
{
    std::filesystem::create_directories(LANTERN_SHOTS_FOLDER);
    image.save(QStringLiteral(LANTERN_SHOTS_FOLDER "/%1.png").arg(QString::fromStdString(name)));
}

} // namespace lantern::test
