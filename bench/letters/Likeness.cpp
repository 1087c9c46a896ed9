// SPDX-License-Identifier: GPL-3.0-or-later
#include "Likeness.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <vector>

namespace lantern {
namespace {

constexpr int kReach = 5; // of the window, to each side

// One value for each pixel of a box.
class Plane {
public:
    Plane(int width, int height)
        : m_width(width), m_height(height),
          m_values(static_cast<std::size_t>(width) * static_cast<std::size_t>(height))
    {
    }
    int Width() const { return m_width; }
    int Height() const { return m_height; }
    float& At(int x, int y)
    {
        return m_values[static_cast<std::size_t>(y) * static_cast<std::size_t>(m_width) +
                        static_cast<std::size_t>(x)];
    }
    std::vector<float>& Values() { return m_values; }
    const std::vector<float>& Values() const { return m_values; }

private:
    int m_width;
    int m_height;
    std::vector<float> m_values;
};

std::array<float, 2 * kReach + 1> Window()
{
    constexpr double sigma = 1.5;
    std::array<float, 2 * kReach + 1> window{};
    double sum = 0;
    for (int at = -kReach; at <= kReach; ++at)
        sum += std::exp(-at * at / (2 * sigma * sigma));
    for (int at = -kReach; at <= kReach; ++at) {
        window[static_cast<std::size_t>(at + kReach)] =
            static_cast<float>(std::exp(-at * at / (2 * sigma * sigma)) / sum);
    }
    return window;
}

// The weighted mean around each pixel; beyond the box its border is repeated.
Plane Blurred(Plane plane)
{
    static const auto window = Window();
    Plane half(plane.Width(), plane.Height());
    for (int y = 0; y < plane.Height(); ++y) {
        for (int at = -kReach; at <= kReach; ++at) {
            const float weight = window[static_cast<std::size_t>(at + kReach)];
            for (int x = 0; x < plane.Width(); ++x)
                half.At(x, y) += weight * plane.At(std::clamp(x + at, 0, plane.Width() - 1), y);
        }
    }
    Plane whole(plane.Width(), plane.Height());
    for (int y = 0; y < plane.Height(); ++y) {
        for (int at = -kReach; at <= kReach; ++at) {
            const float weight = window[static_cast<std::size_t>(at + kReach)];
            const int row = std::clamp(y + at, 0, plane.Height() - 1);
            for (int x = 0; x < plane.Width(); ++x)
                whole.At(x, y) += weight * half.At(x, row);
        }
    }
    return whole;
}

Plane Brightness(const QImage& image, const QRect& box)
{
    Plane plane(box.width(), box.height());
    for (int y = 0; y < box.height(); ++y) {
        const auto* pixels = reinterpret_cast<const QRgb*>(image.constScanLine(box.top() + y));
        for (int x = 0; x < box.width(); ++x) {
            const QRgb pixel = pixels[box.left() + x];
            plane.At(x, y) = static_cast<float>(0.299 * qRed(pixel) + 0.587 * qGreen(pixel) +
                                                0.114 * qBlue(pixel));
        }
    }
    return plane;
}

Plane Product(const Plane& first, const Plane& second)
{
    Plane product = first;
    for (std::size_t at = 0; at < product.Values().size(); ++at)
        product.Values()[at] *= second.Values()[at];
    return product;
}

double SummedStructure(const QImage& picture, const QImage& truth, const QRect& box)
{
    constexpr double c1 = 0.01 * 255 * 0.01 * 255;
    constexpr double c2 = 0.03 * 255 * 0.03 * 255;
    const Plane x = Brightness(picture, box);
    const Plane y = Brightness(truth, box);
    Plane meanX = Blurred(x);
    Plane meanY = Blurred(y);
    Plane meanXx = Blurred(Product(x, x));
    Plane meanYy = Blurred(Product(y, y));
    Plane meanXy = Blurred(Product(x, y));
    double sum = 0;
    for (std::size_t at = 0; at < x.Values().size(); ++at) {
        const double mx = double(meanX.Values()[at]);
        const double my = double(meanY.Values()[at]);
        const double varianceX = double(meanXx.Values()[at]) - mx * mx;
        const double varianceY = double(meanYy.Values()[at]) - my * my;
        const double together = double(meanXy.Values()[at]) - mx * my;
        sum += (2 * mx * my + c1) * (2 * together + c2) /
               ((mx * mx + my * my + c1) * (varianceX + varianceY + c2));
    }
    return sum;
}

double Linear(int channel)
{
    const double part = channel / 255.0;
    return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
}

double SummedError(const QImage& picture, const QImage& truth, const QRect& box)
{
    static const auto linear = [] {
        std::array<double, 256> table{};
        for (int channel = 0; channel < 256; ++channel)
            table[static_cast<std::size_t>(channel)] = Linear(channel);
        return table;
    }();
    const auto light = [](int channel) { return linear[static_cast<std::size_t>(channel)]; };
    double sum = 0;
    for (int y = box.top(); y <= box.bottom(); ++y) {
        for (int x = box.left(); x <= box.right(); ++x) {
            const QRgb ours = reinterpret_cast<const QRgb*>(picture.constScanLine(y))[x];
            const QRgb theirs = reinterpret_cast<const QRgb*>(truth.constScanLine(y))[x];
            sum += std::abs(light(qRed(ours)) - light(qRed(theirs))) +
                   std::abs(light(qGreen(ours)) - light(qGreen(theirs))) +
                   std::abs(light(qBlue(ours)) - light(qBlue(theirs)));
        }
    }
    return sum / 3;
}

} // namespace

Likeness& Likeness::operator+=(const Likeness& other)
{
    structure += other.structure;
    error += other.error;
    return *this;
}

Likeness SummedLikeness(const QImage& picture, const QImage& truth, const QList<QRect>& boxes,
                        double& pixels)
{
    Likeness sum;
    for (const QRect& box : boxes) {
        sum += {SummedStructure(picture, truth, box), SummedError(picture, truth, box)};
        pixels += static_cast<double>(box.width()) * box.height();
    }
    return sum;
}

} // namespace lantern
