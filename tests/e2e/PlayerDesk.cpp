// SPDX-License-Identifier: GPL-3.0-or-later
#include "PlayerDesk.h"

#include <algorithm>
#include <array>
#include <stdexcept>
#include <string>

namespace lantern::test {
namespace {

constexpr int kBarHeight = 48;
constexpr int kRightGroupWidth = 207;
constexpr int kRightGroupTop = 4;
constexpr QRgb kFilled = 0xFFFFAB08; // the accent colour
constexpr int kKnobWidth = 4;

enum class Group { Left, Right };

struct Place {
    int number;
    Group group;
    Point point; // from the corner of the group
};

// Two pairs of numbers have one place between them, of which one is visible at a time. The buttons
// back stand out to the left of the buttons forward.
constexpr std::array kPlaces = {
    Place{0, Group::Left, {44, 16}},    Place{1, Group::Left, {68, 16}},
    Place{2, Group::Left, {68, 16}},    Place{3, Group::Left, {92, 16}},
    Place{6, Group::Left, {116, 16}},   Place{24, Group::Left, {133, 11}},
    Place{25, Group::Left, {133, 21}},  Place{4, Group::Left, {146, 11}},
    Place{5, Group::Left, {146, 21}},   Place{12, Group::Left, {169, 16}},
    Place{14, Group::Left, {193, 16}},  Place{31, Group::Left, {13, 5}},
    Place{32, Group::Left, {13, 15}},   Place{35, Group::Left, {13, 24}},
    Place{34, Group::Left, {13, 33}},   Place{33, Group::Left, {13, 43}},
    Place{16, Group::Right, {191, 12}}, Place{26, Group::Right, {88, 32}},
    Place{41, Group::Right, {102, 6}},  Place{42, Group::Right, {102, 18}},
    Place{7, Group::Right, {6, 13}},    Place{8, Group::Right, {18, 13}},
    Place{9, Group::Right, {32, 13}},   Place{21, Group::Right, {47, 13}},
    Place{22, Group::Right, {64, 13}},  Place{10, Group::Right, {84, 12}},
    Place{20, Group::Right, {84, 12}},
};

} // namespace

PlayerDesk::PlayerDesk(const QRect& window, bool isFullScreen)
    : m_window(window), m_margin(isFullScreen ? 20 : 25)
{
    const int aroundBar = isFullScreen ? 5 : 10;
    m_bar = QRect(window.left() + aroundBar, window.bottom() + 1 - aroundBar - kBarHeight,
                  window.width() - 2 * aroundBar, kBarHeight);
}

Point PlayerDesk::Button(int number) const
{
    const auto* const place = std::ranges::find(kPlaces, number, &Place::number);
    if (place == kPlaces.end())
        throw std::invalid_argument("no button " + std::to_string(number));
    if (place->group == Group::Left)
        return {m_bar.left() + place->point.x, m_bar.top() + place->point.y};
    return {m_bar.right() + 1 - kRightGroupWidth + place->point.x,
            m_bar.top() + kRightGroupTop + place->point.y};
}

QRect PlayerDesk::PositionSlider() const
{
    return {m_bar.left() + 33, m_bar.top() + 31, m_bar.width() - 167, 12};
}

QRect PlayerDesk::VolumeSlider() const
{
    return {m_bar.right() + 1 - kRightGroupWidth + 100, m_bar.top() + kRightGroupTop + 27, 100, 12};
}

Point PlayerDesk::Body() const
{
    return {m_bar.left() + 300, m_bar.top() + 12};
}

QRect PlayerDesk::Picture() const
{
    return {m_window.left() + m_margin, m_window.top() + m_margin, m_window.width() - 2 * m_margin,
            m_window.height() - 2 * m_margin - kBarHeight - 5};
}

Point SliderPoint(const QRect& slider, double part)
{
    const double way = slider.width() - kKnobWidth;
    return {slider.left() + kKnobWidth / 2 + static_cast<int>(part * way), slider.center().y()};
}

double SliderPart(const QImage& slider)
{
    const int middle = slider.height() / 2;
    int filled = 0;
    while (filled < slider.width() && slider.pixel(filled, middle) == kFilled)
        ++filled;
    return filled / static_cast<double>(slider.width() - kKnobWidth);
}

Point MenuCorner(Point opened)
{
    return {opened.x - 5, opened.y - 5};
}

Point MenuRow(Point opened, int menuHeight, int rows, int row)
{
    constexpr int kTop = 4;
    constexpr int kMargins = 9;
    const int rowHeight = (menuHeight - kMargins) / rows;
    const Point corner = MenuCorner(opened);
    return {corner.x + 50, corner.y + kTop + rowHeight * (row - 1) + rowHeight / 2};
}

} // namespace lantern::test
