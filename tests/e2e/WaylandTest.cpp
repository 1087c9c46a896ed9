// SPDX-License-Identifier: GPL-3.0-or-later
#include "FileDrag.h"
#include "WaylandJourney.h"

#include <QColor>

#include <cmath>
#include <numbers>

namespace lantern::test {
namespace {

constexpr QRgb kOther = 0xFFCC3366;

class Wayland : public WaylandJourney {
protected:
    EnvironmentChanges SourceEnvironment() const
    {
        EnvironmentChanges environment = compositor->Environment();
        environment.emplace_back("XDG_RUNTIME_DIR", (home.Folder() / "runtime").string());
        return environment;
    }
    bool AwaitWindow(const QRect& area)
    {
        return Eventually([&] { return WindowArea() == area; }, 5s, 50ms);
    }
};

TEST_F(Wayland, ATrackIsSeenAndHeard)
{
    OpenTone();
    EXPECT_TRUE(AwaitTone(440.0));
    KeepPicture(eyes.Screen(), "wayland");
    // By this the desktop finds the entry with the name and the icon of a window.
    EXPECT_TRUE(AwaitRequest("set_app_id(\"io.github.lyric_lantern.player\")"));
    EXPECT_TRUE(AwaitRequest(std::string("set_title(\"") + kMainTitle + "\")"));
    hand.Click(PicturePoint());
    hand.Key("ctrl+q");
    EXPECT_EQ(program->WaitForExit(kPatience), 0);
}

TEST_F(Wayland, TheMenuOpensAtThePointerWhereverTheWindowIs)
{
    OpenTone();
    // To where the program would not have put it.
    const QRect start = PictureArea();
    hand.Drag({start.x() + 50, start.y() + 50}, {80, 80});
    ASSERT_TRUE(Eventually([&] { return PictureArea().topLeft() == QPoint(30, 30); }, kPatience))
        << PictureArea().x() << ", " << PictureArea().y();
    for (const Point point : {Point{100, 60}, Point{500, 300}, Point{300, 420}}) {
        hand.Click(point, 3);
        EXPECT_TRUE(AwaitMenu(point)) << point.x << ", " << point.y;
        hand.Key("Escape");
        EXPECT_TRUE(AwaitNoMenu(point));
    }
}

TEST_F(Wayland, TheDigitKeysGiveTheExactSizes)
{
    OpenTone();
    // It grows from where it is; the largest would not have the room elsewhere.
    const QRect start = PictureArea();
    hand.Drag({start.x() + 50, start.y() + 50}, {80, 80});
    for (const int size : {1, 3, 4, 5, 2}) {
        hand.Key(std::to_string(size));
        EXPECT_TRUE(AwaitPictureSize({288 * size, 192 * size}))
            << size << ": " << PictureArea().width() << " x " << PictureArea().height();
    }
}

TEST_F(Wayland, FullScreenFillsTheScreenShowsItsBarAndComesBack)
{
    OpenTone();
    const QRect before = WindowArea();
    hand.MoveTo(PicturePoint());
    hand.Key("f");
    const QRect whole(0, 0, screen.Width(), screen.Height());
    ASSERT_TRUE(AwaitColour({2, 2}, kBorder));
    EXPECT_TRUE(AwaitColour({whole.right() - 2, whole.bottom() - 2}, kBorder));
    const Point centre = {whole.center().x(), whole.center().y()};
    const Point inBar = {whole.center().x() - 100, whole.bottom() - 40};
    hand.MoveTo(centre);
    EXPECT_TRUE(AwaitColour(inBar, kBorder));
    EXPECT_TRUE(AwaitColour(centre, kPicture)) << "no pointer over the picture";
    hand.MoveTo({centre.x, whole.bottom() - 2});
    EXPECT_TRUE(AwaitColour(inBar, 0xFF000000));
    KeepPicture(eyes.Screen(), "wayland-full-screen");
    hand.MoveTo(centre);
    EXPECT_TRUE(AwaitColour(inBar, kBorder));
    hand.DoubleClick(centre);
    EXPECT_TRUE(AwaitPictureSize({576, 384}));
    // The compositor may first show it in the middle of the screen that it still fills.
    EXPECT_TRUE(AwaitWindow(before));
}

TEST_F(Wayland, ItMovesByItsBodyAndIsSizedByItsFrameButNotBelowItsMinimum)
{
    OpenTone();
    const QRect start = WindowArea();
    const Point body = {start.x() + 300, start.y() + 200};
    hand.Drag(body, {body.x + 90, body.y + 60});
    EXPECT_TRUE(AwaitWindow(start.translated(90, 60)));
    const QRect moved = WindowArea();
    hand.Drag({moved.right() - 1, moved.bottom() - 1}, {moved.right() + 287, moved.bottom() + 191});
    EXPECT_TRUE(AwaitPictureSize({864, 576}));
    const QRect large = WindowArea();
    hand.Drag({large.x() + 1, large.y() + 1}, {large.right() - 50, large.bottom() - 50});
    EXPECT_TRUE(AwaitPictureSize({288, 192}));
    EXPECT_TRUE(AwaitWindow(QRect(large.right() + 1 - 338, large.bottom() + 1 - 295, 338, 295)));
}

TEST_F(Wayland, TheDialogOpensATrackAndTheKeyboardIsThePlayersAgain)
{
    OpenTone();
    WriteToneTrack("other", 60.0, 660.0, kOther);
    hand.Key("o");
    ASSERT_TRUE(AwaitRequest("set_title(\"Select a Karaoke File\")"));
    std::this_thread::sleep_for(500ms);
    KeepPicture(eyes.Screen(), "wayland-dialog");
    for (const char* key : {"o", "t", "h", "e", "r", "Return"})
        hand.Key(key);
    EXPECT_TRUE(Eventually([&] { return PictureArea(kOther).size() == QSize(576, 384); }));
    EXPECT_TRUE(AwaitTone(660.0));
    hand.Key("p");
    EXPECT_TRUE(AwaitSilence());
}

TEST_F(Wayland, ThePictureIsOfferedOnTheClipboard)
{
    OpenTone();
    hand.Key("c");
    EXPECT_TRUE(AwaitRequest(".offer(\"image/png\")"));
    EXPECT_TRUE(AwaitRequest("set_selection("));
}

TEST_F(Wayland, AnotherProgramPastesThePictureToThePixel)
{
    Start({WriteTiledTrack().string()});
    ASSERT_TRUE(AwaitPictureSize({576, 384}));
    const QRect area = PictureArea();
    std::this_thread::sleep_for(kTilesDrawn);
    const QImage shown = eyes.Area(area);
    hand.Key("c");
    ASSERT_TRUE(AwaitRequest("set_selection("));
    const QString file = QString::fromStdString((folder / "pasted.png").native());
    Process target({.arguments = {LANTERN_PASTE_TARGET, file.toStdString()},
                    .environment = SourceEnvironment(),
                    .log = folder / "target.log"});
    const QRgb targetColour = QColor(Qt::darkCyan).rgb();
    ASSERT_TRUE(
        Eventually([&] { return PictureArea(targetColour).size() == QSize(80, 60); }, kPatience))
        << ReadFile(folder / "target.log");
    hand.Key("v"); // a window that comes has the keyboard
    ASSERT_EQ(target.WaitForExit(kPatience), 0) << ReadFile(folder / "target.log");
    const QImage pasted = QImage(file).convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(pasted.size(), QSize(288, 192));
    EXPECT_TRUE(pasted.scaled(area.size()) == shown);
    EXPECT_GT(pasted.convertToFormat(QImage::Format_Indexed8).colorCount(), 10);
}

TEST_F(Wayland, AStartWithoutSoundShowsItsMessageAndEnds)
{
    Start({}, {{"PULSE_SERVER", "unix:/nowhere"}});
    ASSERT_TRUE(AwaitRequest("set_title(\"Lyric Lantern CDG Player\")"));
    std::this_thread::sleep_for(500ms);
    KeepPicture(eyes.Screen(), "wayland-message");
    hand.Key("Return");
    EXPECT_EQ(program->WaitForExit(kPatience), 1);
}

TEST_F(Wayland, ADroppedTrackIsOpened)
{
    OpenTone();
    const std::filesystem::path other = WriteToneTrack("other song", 60.0, 660.0, kOther);
    FileDrag drag(screen, hand, FileUri(other) + "\r\n", {"copy"}, SourceEnvironment());
    QRect source;
    ASSERT_TRUE(Eventually([&] { return !(source = PictureArea(FileDrag::kShown)).isEmpty(); }));
    drag.LiesAt({source.center().x(), source.center().y()});
    drag.CarryTo(PicturePoint());
    EXPECT_TRUE(drag.AwaitAnswer("copy"));
    EXPECT_EQ(drag.Drop(), "copy");
    EXPECT_TRUE(Eventually([&] { return PictureArea(kOther).size() == QSize(576, 384); }));
    EXPECT_TRUE(AwaitTone(660.0));
}

// This compositor lets nobody come to the front by it.
TEST_F(Wayland, ALaterStartReplacesTheTrackAndLeavesNoTokenBehind)
{
    OpenTone();
    const std::filesystem::path other = WriteToneTrack("other", 60.0, 660.0, kOther);
    const auto later = StartLater({other.string()}, {{"XDG_ACTIVATION_TOKEN", "launcher-1_TIME2"}});
    EXPECT_EQ(later->WaitForExit(kPatience), 0);
    EXPECT_TRUE(Eventually([&] { return PictureArea(kOther).size() == QSize(576, 384); }));
    EXPECT_TRUE(AwaitTone(660.0));
    for (const auto& entry : std::filesystem::directory_iterator(home.Folder() / "runtime"))
        EXPECT_FALSE(entry.path().native().ends_with(".token")) << entry.path();
}

// However the options are closed, the keys are the player's again, without a click.
class WaylandOptions : public WaylandJourney {
protected:
    void ShowOptions()
    {
        OpenTone();
        ShowThem();
    }
    void ShowThem()
    {
        hand.Key("Escape");
        m_area = AwaitFrame(kOptions);
        ASSERT_FALSE(m_area.isEmpty());
    }
    Point At(int x, int y) const { return {m_area.x() + x * scale, m_area.y() + y * scale}; }
    void ExpectKeyboardAtPlayer()
    {
        ASSERT_TRUE(AwaitNoFrame(kOptions));
        hand.Key("p");
        EXPECT_TRUE(AwaitSilence());
    }

private:
    QRect m_area;
};

TEST_F(WaylandOptions, GiveTheKeyboardBackByAKey)
{
    ShowOptions();
    for (int i = 0; i < 3; ++i) {
        hand.Key("Escape");
        ASSERT_TRUE(AwaitNoFrame(kOptions));
        hand.Key("Escape");
        ASSERT_FALSE(AwaitFrame(kOptions).isEmpty());
    }
    hand.Key("Escape");
    ExpectKeyboardAtPlayer();
}

TEST_F(WaylandOptions, GiveTheKeyboardBackByTheirButton)
{
    ShowOptions();
    hand.Click(At(218, 109)); // the volume
    EXPECT_TRUE(AwaitLevel(Side::Left, kLoudness / 2 / std::numbers::sqrt2, 0.01));
    hand.Click(At(392, 200));
    ExpectKeyboardAtPlayer();
}

TEST_F(WaylandOptions, TheMenuOpensAtThePointerInFrontOfThem)
{
    ShowOptions();
    hand.Click(At(60, 190), 3);
    EXPECT_TRUE(AwaitMenu(At(60, 190)));
    hand.Key("Escape");
    EXPECT_TRUE(AwaitNoMenu(At(60, 190)));
    hand.Click(At(150, 135));
    EXPECT_TRUE(AwaitMenu(At(150, 135))) << "of the sound devices";
    hand.Key("Escape");
    EXPECT_TRUE(AwaitNoMenu(At(150, 135)));
    hand.Click(At(392, 200));
    ExpectKeyboardAtPlayer();
}

TEST_F(WaylandOptions, StandBeforeAFullScreenAndGiveTheKeyboardBack)
{
    OpenTone();
    hand.Key("f");
    ASSERT_TRUE(AwaitColour({2, 2}, kBorder));
    ShowThem();
    hand.Click(At(392, 200));
    ASSERT_TRUE(AwaitNoFrame(kOptions));
    hand.Key("f");
    EXPECT_TRUE(AwaitPictureSize({576, 384}));
    ExpectKeyboardAtPlayer();
}

// Two pixels of the screen to the unit.
class WaylandAtTwo : public WaylandJourney {
protected:
    WaylandAtTwo() : WaylandJourney({2}) {}
};

TEST_F(WaylandAtTwo, EachWindowAndMenuIsInItsPlaceAtTwiceTheSize)
{
    OpenTone();
    const QRect start = PictureArea();
    hand.Drag({start.x() + 50, start.y() + 50}, {110, 110});
    ASSERT_TRUE(Eventually([&] { return PictureArea().topLeft() == QPoint(60, 60); }, kPatience))
        << PictureArea().x() << ", " << PictureArea().y();
    const Point at = {300, 200};
    hand.Click(at, 3);
    EXPECT_TRUE(AwaitMenu(at));
    std::this_thread::sleep_for(200ms);
    KeepPicture(eyes.Screen(), "wayland-menu-2");
    hand.Key("Escape");
    EXPECT_TRUE(AwaitNoMenu(at));
    hand.Key("Escape");
    const QRect options = AwaitFrame(kOptions);
    ASSERT_FALSE(options.isEmpty());
    std::this_thread::sleep_for(200ms);
    const QImage before = eyes.Screen();
    KeepPicture(before, "wayland-options-2");
    hand.Click({options.x() + 2 * 20, options.y() + 2 * 200});
    EXPECT_TRUE(Eventually([&] { return eyes.Screen().copy(options) != before.copy(options); }));
    std::this_thread::sleep_for(200ms);
    KeepPicture(eyes.Screen(), "wayland-about-2");
    hand.Click({options.x() + 2 * 392, options.y() + 2 * 200});
    EXPECT_TRUE(AwaitNoFrame(kOptions));
    hand.Key("f");
    EXPECT_TRUE(AwaitColour({2, 2}, kBorder));
    const int most = 2 * (screen.Width() - 2 * 2 * 20) / 3;
    EXPECT_TRUE(Eventually([&] { return std::abs(PictureArea().height() - most) <= 2; }))
        << PictureArea().height();
}

// A screen of the usual kind on the left, and one of twice the density on the right.
class WaylandAtOneAndTwo : public WaylandJourney {
protected:
    WaylandAtOneAndTwo() : WaylandJourney({1, 2}) {}

    // The compositor loses the pointer where that leaves an output with a button held. So the
    // window is pulled across the edge by the end that comes last, and then the other part of it.
    void DragToTheRight()
    {
        const QRect area = WindowArea();
        const int y = area.y() + 12; // its body, above the picture
        hand.Drag({area.x() + 8, y}, {kHalf - 8, y});
        hand.Drag({kHalf + 100, 2 * y}, {kHalf + 160, 2 * y});
        scale = 2;
        ASSERT_TRUE(AwaitPictureSize(kSmall));
        EXPECT_TRUE(right.contains(WindowArea())) << WindowArea().x();
    }
    void DragToTheLeft()
    {
        const QRect area = WindowArea();
        const int y = area.y() / 2 + 12;
        hand.Drag({area.right() - 40, 2 * y}, {kHalf + 8, 2 * y});
        hand.Drag({kHalf - 50, y}, {kHalf - 350, y});
        scale = 1;
        ASSERT_TRUE(AwaitPictureSize(kSmall));
        EXPECT_TRUE(left.contains(WindowArea())) << WindowArea().x();
    }
    // Whether it is drawn in the pixels of the output, and not in larger ones.
    bool IsSharp()
    {
        const QImage now = eyes.Area(WindowArea());
        for (int y = 0; y + 1 < now.height(); y += 2) {
            for (int x = 0; x + 1 < now.width(); x += 2) {
                const QRgb first = now.pixel(x, y);
                if (first != now.pixel(x + 1, y) || first != now.pixel(x, y + 1))
                    return true;
            }
        }
        return false;
    }
    void ExpectFullScreen(const QRect& output)
    {
        const QRect before = WindowArea();
        hand.MoveTo(PicturePoint());
        hand.Key("f");
        EXPECT_TRUE(AwaitColour({output.left() + 2, 2}, kBorder));
        EXPECT_TRUE(AwaitColour({output.right() - 2, output.bottom() - 2}, kBorder));
        const int most = 2 * (output.width() - 2 * scale * 20) / 3;
        EXPECT_TRUE(Eventually([&] { return std::abs(PictureArea().height() - most) <= 2; }))
            << PictureArea().height();
        EXPECT_TRUE(output.contains(PictureArea()));
        const int beside = (output.center().x() + kHalf) % (2 * kHalf);
        EXPECT_EQ(eyes.At({beside, 2}), QRgb{WaylandServer::kBackground});
        hand.Key("f");
        // The compositor may first show it in the middle of the screen that it still fills.
        ASSERT_TRUE(Eventually([&] { return WindowArea() == before; }, kPatience, 50ms));
    }

    static constexpr QSize kSmall = {288, 192};
    static constexpr int kHalf = 800;
    const QRect left{0, 0, kHalf, screen.Height()};
    const QRect right{kHalf, 0, kHalf, screen.Height()};
};

TEST_F(WaylandAtOneAndTwo, ItIsInItsSizeOnEachAndFillsTheOneThatItIsOn)
{
    OpenTone();
    hand.Key("1");
    ASSERT_TRUE(AwaitPictureSize(kSmall));
    ASSERT_TRUE(left.contains(WindowArea()));
    ASSERT_NO_FATAL_FAILURE(ExpectFullScreen(left));
    ASSERT_NO_FATAL_FAILURE(DragToTheRight());
    EXPECT_TRUE(Eventually([this] { return IsSharp(); }));
    KeepPicture(eyes.Screen(), "wayland-right");
    const Point at = {PictureArea().x() + 100, PictureArea().y() + 100}; // a whole unit
    hand.Click(at, 3);
    EXPECT_TRUE(AwaitMenu(at));
    KeepPicture(eyes.Screen(), "wayland-right-menu");
    hand.Key("Escape");
    EXPECT_TRUE(AwaitNoMenu(at));
    ASSERT_NO_FATAL_FAILURE(ExpectFullScreen(right));
    ASSERT_NO_FATAL_FAILURE(DragToTheLeft());
    KeepPicture(eyes.Screen(), "wayland-left");
    ExpectFullScreen(left);
}

} // namespace
} // namespace lantern::test
