// SPDX-License-Identifier: GPL-3.0-or-later
// What the player looks like on a screen, at one and at two pixels to the unit, and between.
#include "GoldenImage.h"
#include "Journey.h"
#include "PlayerDesk.h"

#include <QPainter>

#include <array>
#include <functional>

namespace lantern::test {
namespace {

constexpr double kSeconds = 200.0;
constexpr int kBarHeight = 48;
constexpr int kBarMargin = 10;

// All sixteen colours along the edges of the picture, and a bend across its middle.
void WriteColourfulPackets(const std::filesystem::path& path, QRgb picture, QRgb border)
{
    constexpr std::array<std::uint8_t, 12> kRing = {0x1E, 0x3F, 0x33, 0x21, 0x21, 0x21,
                                                    0x21, 0x21, 0x21, 0x33, 0x3F, 0x1E};
    constexpr std::array<std::uint8_t, 12> kCross = {0x21, 0x21, 0x12, 0x12, 0x0C, 0x0C,
                                                     0x0C, 0x0C, 0x12, 0x12, 0x21, 0x21};
    PacketSheet packets(kSeconds);
    int number = 0;
    packets.Put(++number, Packet::LoadColoursLow({0xFF000000, picture, border, 0xFFFFFFFF,
                                                  0xFFFFAA00, 0xFFFF0000, 0xFF00FF00, 0xFF0000FF}));
    packets.Put(++number,
                Packet::LoadColoursHigh({0xFFFFFF00, 0xFF00FFFF, 0xFFFF00FF, 0xFF888888, 0xFF444444,
                                         0xFF880000, 0xFF008800, 0xFF000088}));
    packets.Put(++number, Packet::MemoryPreset(1));
    packets.Put(++number, Packet::BorderPreset(2));
    for (int colour = 0; colour < 16; ++colour) {
        packets.Put(++number, Packet::Tile(1 + 3 * colour, 1, 1, colour, kRing));
        packets.Put(++number, Packet::Tile(3 + 3 * colour, 16, 1, colour, kCross));
        packets.Put(++number, Packet::Tile(17 + colour, 8 + colour % 4, colour, 3, kRing));
    }
    packets.Write(path);
}

class PlayerLooks : public Journey, public ::testing::WithParamInterface<double> {
protected:
    using Sight = std::function<QImage()>; // null as long as there is nothing to see

    PlayerLooks() : Journey(kScreenSize * GetParam()) {}

    // A silent track, at a place where nothing moves: paused one minute after its start.
    void OpenAndPause()
    {
        const std::filesystem::path track = folder / "song.cdg";
        WriteColourfulPackets(track, kPicture, kBorder);
        SoundSheet(kSeconds).WriteWav(folder / "song.wav");
        ParkPointer();
        ASSERT_NO_FATAL_FAILURE(StartPlayer(
            {track.string()}, {{"QT_SCALE_FACTOR", QString::number(GetParam()).toStdString()}}));
        ASSERT_TRUE(AwaitPicture(kPicture));
        hand.Key("p");
        hand.Key("Page_Up");
        hand.Key("Page_Down");
    }

    void ParkPointer() { hand.MoveTo({2, 2}); }

    static int Pixels(int units) { return qRound(units * GetParam()); }
    // What is given in units of the window, on the screen.
    QRect OnScreen(const QRect& units) const
    {
        return {player->WindowArea().topLeft() + units.topLeft() * GetParam(),
                units.size() * GetParam()};
    }
    QRect WindowInUnits() const { return {QPoint(0, 0), player->WindowArea().size() / GetParam()}; }
    QRect BarInUnits() const
    {
        const QRect window = WindowInUnits();
        return {kBarMargin, window.height() - kBarMargin - kBarHeight,
                window.width() - 2 * kBarMargin, kBarHeight};
    }

    QImage SightOf(const QRect& area)
    {
        const QRect whole(0, 0, screen.Width(), screen.Height());
        return area.isEmpty() || !whole.contains(area) ? QImage() : eyes.Area(area);
    }
    Sight Window()
    {
        return [this] { return SightOf(player->WindowArea()); };
    }
    // Without what moves while a track plays: its time and its position.
    Sight WindowWithoutTime()
    {
        return [this] {
            const QRect bar = BarInUnits();
            const QRect time(bar.right() + 1 - 97, bar.top() + 4, 69, 24);
            QImage window = SightOf(player->WindowArea());
            QPainter painter(&window);
            for (const QRect& rect : {time, PlayerDesk(WindowInUnits()).PositionSlider()}) {
                painter.fillRect(QRect(rect.topLeft() * GetParam(), rect.size() * GetParam()),
                                 Qt::magenta);
            }
            return window;
        };
    }

    // The result of a change comes when it comes. Golden images are renewed from what then stands
    // still, for longer than any message if need be.
    ::testing::AssertionResult Show(const std::string& name, const Sight& sight,
                                    Clock::duration stillFor = 4s)
    {
        const QString golden =
            QStringLiteral("player-%1-%2")
                .arg(QString::fromStdString(name), QString::number(100 * GetParam()));
        QImage seen;
        if (AreGoldenImagesRenewed()) {
            Moment since = Clock::now();
            Eventually(
                [&] {
                    const QImage now = sight();
                    if (now != seen)
                        since = Clock::now();
                    seen = now;
                    return !seen.isNull() && Clock::now() - since > stillFor;
                },
                kPatience, 50ms);
        } else {
            const QImage wanted = GoldenImage(golden);
            Eventually([&] { return (seen = sight()) == wanted; }, kPatience, 50ms);
        }
        return MatchesGolden(seen, golden);
    }
};

TEST_P(PlayerLooks, AtEachSize)
{
    ASSERT_NO_FATAL_FAILURE(OpenAndPause());
    for (const int size : {1, 3, 4, 5, 2}) {
        hand.Key(std::to_string(size));
        EXPECT_TRUE(Show("size" + std::to_string(size), Window()));
    }
}

TEST_P(PlayerLooks, PulledToItsSmallest)
{
    ASSERT_NO_FATAL_FAILURE(OpenAndPause());
    EXPECT_TRUE(Show("size2", Window()));
    const QPoint corner = player->WindowArea().bottomRight() - QPoint(1, 1);
    hand.MoveTo({corner.x(), corner.y()});
    hand.Press();
    hand.MoveTo({corner.x() - 1, corner.y() - 1});
    for (int step = 1; step <= 10; ++step)
        hand.MoveTo({corner.x() - Pixels(60 * step), corner.y() - Pixels(45 * step)});
    hand.Release();
    ParkPointer();
    EXPECT_TRUE(Show("size1", Window()));
}

TEST_P(PlayerLooks, InFullScreen)
{
    ASSERT_NO_FATAL_FAILURE(OpenAndPause());
    hand.MoveTo({screen.Width() / 2, screen.Height() / 2});
    hand.Key("f");
    EXPECT_TRUE(Show("full", Window()));
    hand.MoveTo({screen.Width() / 2, screen.Height() - 2});
    EXPECT_TRUE(Show("full-bar", Window()));
}

TEST_P(PlayerLooks, PlayingAndStopped)
{
    ASSERT_NO_FATAL_FAILURE(OpenAndPause());
    EXPECT_TRUE(Show("size2", Window()));
    hand.Key("p");
    EXPECT_TRUE(Show("playing", WindowWithoutTime()));
    hand.Key("period");
    EXPECT_TRUE(Show("stopped", Window()));
}

TEST_P(PlayerLooks, WithAMessage)
{
    ASSERT_NO_FATAL_FAILURE(OpenAndPause());
    EXPECT_TRUE(Show("size2", Window()));
    const QRect bar = BarInUnits();
    hand.Key("c");
    EXPECT_TRUE(Show(
        "message",
        [&] {
            return SightOf(OnScreen({0, bar.top() - 24, bar.width(), 24}));
        },
        500ms));
}

TEST_P(PlayerLooks, InEachModeOfTheWheel)
{
    ASSERT_NO_FATAL_FAILURE(OpenAndPause());
    const QRect bar = BarInUnits();
    const Sight buttons = [&] { return SightOf(OnScreen({bar.topLeft(), QSize(32, kBarHeight)})); };
    constexpr std::array kKeys = {"b", "k", "t", "v", "s"};
    for (std::size_t i = 0; i < kKeys.size(); ++i) {
        hand.Key(kKeys[i]);
        EXPECT_TRUE(Show("wheel-" + std::to_string(i + 1), buttons, 500ms));
    }
}

TEST_P(PlayerLooks, WithItsMenu)
{
    ASSERT_NO_FATAL_FAILURE(OpenAndPause());
    const QRect at = OnScreen({100, 60, 1, 1});
    const QPoint corner = at.topLeft() - QPoint(5, 5) * GetParam();
    hand.Click({at.x(), at.y()}, 3);
    ASSERT_TRUE(AwaitColour({corner.x(), corner.y()}, kMenuFrame));
    hand.MoveTo({at.x() + Pixels(30), at.y() + Pixels(20)}); // the second row
    EXPECT_TRUE(Show(
        "menu",
        [&] {
            const QImage seen = eyes.Screen();
            QPoint end = corner;
            while (end.x() < seen.width() && seen.pixel(end.x(), corner.y()) == kMenuFrame)
                end.rx()++;
            while (end.y() < seen.height() && seen.pixel(corner.x(), end.y()) == kMenuFrame)
                end.ry()++;
            return seen.copy(QRect(corner, end - QPoint(1, 1)));
        },
        500ms));
    hand.Key("Escape");
}

INSTANTIATE_TEST_SUITE_P(AtEachRatio, PlayerLooks, ::testing::Values(1, 2));

// Where an edge of a unit may lie within a pixel.
class PlayerLooksBetween : public PlayerLooks {};

TEST_P(PlayerLooksBetween, AtASizeAndInFullScreen)
{
    ASSERT_NO_FATAL_FAILURE(OpenAndPause());
    for (const int size : {1, 3, 2}) {
        hand.Key(std::to_string(size));
        EXPECT_TRUE(Show("size" + std::to_string(size), Window()));
    }
    hand.Key("f");
    hand.MoveTo({screen.Width() / 2, screen.Height() - 2});
    EXPECT_TRUE(Show("full-bar", Window()));
}

INSTANTIATE_TEST_SUITE_P(AtEachRatio, PlayerLooksBetween, ::testing::Values(1.25, 1.5));

} // namespace
} // namespace lantern::test
