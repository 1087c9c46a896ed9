// SPDX-License-Identifier: GPL-3.0-or-later
#include "DeskJourney.h"

#include <cmath>
#include <cstdlib>
#include <numbers>

namespace lantern::test {
namespace {

constexpr const char* kOptionsTitle = "Lyric Lantern CDG Player Options";
constexpr const char* kOpenTitle = "Select a Karaoke File";
constexpr double kHeardPartOfPeak = 1.0 / std::numbers::sqrt2;

} // namespace

void DeskJourney::OpenDesk()
{
    const std::filesystem::path bin = folder / "bin";
    std::filesystem::create_directory(bin);
    WriteFile(bin / "xdg-open",
              "#!/bin/sh\necho \"$1\" >>\"" + (folder / "sites").string() + "\"\n");
    std::filesystem::permissions(bin / "xdg-open", std::filesystem::perms::owner_all);
    const std::filesystem::path track = WriteToneTrack("tone", kTrackSeconds, kTone);
    ASSERT_NO_FATAL_FAILURE(
        StartPlayer({track.string()}, {{"PATH", bin.string() + ":" + std::getenv("PATH")}}));
    ASSERT_TRUE(AwaitPicture(kPicture));
    ASSERT_TRUE(AwaitSound());
}

double DeskJourney::SecondsOfSlider()
{
    return SliderPart(eyes.Area(Desk().PositionSlider())) * kTrackSeconds;
}

::testing::AssertionResult DeskJourney::Moves(double seconds, const Act& act)
{
    const double before = SecondsOfSlider();
    act();
    if (Eventually([&] { return std::abs(SecondsOfSlider() - before - seconds) < 3.0; }, 5s, 20ms))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "from " << before << " s to " << SecondsOfSlider();
}

bool DeskJourney::AwaitPictureSize(const QSize& size)
{
    return Eventually([&] { return PictureArea().size() == size; }, kPatience, 50ms);
}

bool DeskJourney::AwaitFullScreen(bool isFull)
{
    const QRect whole(0, 0, screen.Width(), screen.Height());
    return Eventually(
        [&] {
            return player->IsFullScreen() == isFull && (player->WindowArea() == whole) == isFull;
        },
        kPatience);
}

Process::Command DeskJourney::ClipboardCommand(const std::vector<std::string>& arguments) const
{
    Process::Command command{.arguments = {"xclip", "-selection", "clipboard"},
                             .environment = screen.Environment()};
    command.arguments.insert(command.arguments.end(), arguments.begin(), arguments.end());
    return command;
}

std::string DeskJourney::Pasted(const std::vector<std::string>& arguments) const
{
    Process::Command command = ClipboardCommand(arguments);
    command.log = folder / "pasted";
    std::filesystem::remove(command.log);
    Process(command).WaitForExit(kPatience);
    return ReadFile(command.log);
}

QImage DeskJourney::PastedImage() const
{
    const std::string bytes = Pasted({"-o", "-t", "image/png"});
    return QImage::fromData(QByteArray::fromStdString(bytes)).convertToFormat(QImage::Format_RGB32);
}

void DeskJourney::ChooseRow(int row, int rows)
{
    const Point opened = {Desk().Picture().left() + 60, Desk().Picture().top() + 20};
    hand.Click(opened, 3);
    const Point corner = MenuCorner(opened);
    ASSERT_TRUE(AwaitColour(corner, kMenuFrame)) << "no menu";
    int height = 0;
    const QImage seen = eyes.Screen();
    while (corner.y + height < seen.height() &&
           seen.pixel(corner.x, corner.y + height) == kMenuFrame)
        ++height;
    hand.Click(MenuRow(opened, height, rows, row));
}

void DeskJourney::ExpectPlaying(int command, const Act& act)
{
    const bool plays = command == 1;
    if (plays) {
        hand.Key("p");
        ASSERT_TRUE(AwaitSilence());
    }
    act();
    EXPECT_TRUE(plays ? AwaitSound() : AwaitSilence());
    if (command == 3) {
        EXPECT_TRUE(Eventually([&] { return SecondsOfSlider() < 0.5; }, kPatience));
        EXPECT_TRUE(Eventually([&] { return PictureArea().isEmpty(); }, kPatience, 50ms));
    }
    if (!plays)
        hand.Key("p");
    EXPECT_TRUE(AwaitSound());
    EXPECT_TRUE(AwaitPicture(kPicture));
}

void DeskJourney::ExpectSkip(double seconds, const Act& act)
{
    Keys("Page_Up", 4);
    ASSERT_TRUE(Eventually([&] { return SecondsOfSlider() < 10.0; }, kPatience, 20ms));
    ASSERT_TRUE(Moves(60.0, [this] { hand.Key("Page_Down"); }));
    ASSERT_TRUE(Moves(10.0, [this] { hand.Key("Right"); }));
    EXPECT_TRUE(Moves(seconds, act));
    EXPECT_TRUE(AwaitSound());
}

void DeskJourney::ExpectSize(const QSize& size, const Act& act)
{
    if (size == QSize(576, 384)) {
        hand.Key("3");
        ASSERT_TRUE(AwaitPictureSize({864, 576}));
    }
    act();
    EXPECT_TRUE(AwaitPictureSize(size));
    hand.Key("2");
    EXPECT_TRUE(AwaitPictureSize({576, 384}));
}

void DeskJourney::ExpectOptions(const Act& act)
{
    act();
    EXPECT_TRUE(player->AwaitWindowTitled(kOptionsTitle));
    EXPECT_TRUE(Eventually([this] { return player->Windows().size() == 2; }, kPatience));
    hand.Key("Escape");
    EXPECT_TRUE(Eventually([this] { return player->Windows().size() == 1; }, kPatience));
    EXPECT_TRUE(player->AwaitWindow()) << "the keyboard did not come back";
}

void DeskJourney::ExpectOpenDialog(const Act& act)
{
    act();
    EXPECT_TRUE(player->AwaitWindowTitled(kOpenTitle));
    hand.Key("Escape");
    EXPECT_TRUE(Eventually([this] { return player->Windows().size() == 1; }, kPatience));
    EXPECT_TRUE(player->AwaitWindow()) << "the keyboard did not come back";
}

void DeskJourney::ExpectWheelMode(int mode, const Act& act)
{
    const double full = kLoudness * kHeardPartOfPeak;
    act();
    switch (mode) {
    case 1:
        Keys("Up", 5);
        EXPECT_TRUE(AwaitLevel(Side::Left, full * 0.8, full * 0.01));
        Keys("Down", 5);
        EXPECT_TRUE(AwaitLevel(Side::Left, full, full * 0.01));
        break;
    case 2:
        hand.Key("Up");
        EXPECT_TRUE(AwaitTone(kTone * std::pow(2.0, 1.0 / 12.0)));
        hand.Key("Down");
        EXPECT_TRUE(AwaitTone(kTone));
        break;
    case 3:
        EXPECT_TRUE(Moves(10.0, [this] { Keys("Up", 10); }));
        break;
    case 4:
        Keys("Down", 5);
        EXPECT_TRUE(AwaitLevel(Side::Left, full * 0.9, full * 0.01));
        Keys("Up", 5);
        EXPECT_TRUE(AwaitLevel(Side::Left, full, full * 0.01));
        break;
    case 5: {
        Keys("Up", 45);
        const double before = SecondsOfSlider();
        const Moment start = Clock::now();
        EXPECT_TRUE(Eventually([&] { return SecondsOfSlider() > before + 9.0; }, kPatience, 20ms));
        EXPECT_LT(Clock::now() - start, 8s) << "at 1.9 times the speed it takes less than 5";
        Keys("Down", 45);
        break;
    }
    default:
        FAIL() << "no mode " << mode;
    }
    hand.Key("v");
}

void DeskJourney::ExpectCopy(const Act& act)
{
    // Another program's text has to go. It is there a moment after its program said so.
    const std::string text = "words";
    WriteFile(folder / "words", text);
    OutputOf(ClipboardCommand({"-i", (folder / "words").string()}));
    ASSERT_TRUE(Eventually([&] { return Pasted({"-o"}) == text; }, kPatience, 50ms));
    act();
    QImage wanted(288, 192, QImage::Format_RGB32);
    wanted.fill(kPicture);
    EXPECT_TRUE(Eventually([&] { return PastedImage() == wanted; }, kPatience, 100ms));
}

void DeskJourney::ExpectWebSite(const Act& act)
{
    std::filesystem::remove(folder / "sites");
    act();
    const auto isAsked = [this] {
        const std::string site = ReadFile(folder / "sites");
        return site.starts_with("file:///") && site.ends_with("/help/index.html\n");
    };
    EXPECT_TRUE(Eventually(isAsked, kPatience, 50ms)) << ReadFile(folder / "sites");
}

void DeskJourney::ExpectCommand(int command, const Act& act)
{
    SCOPED_TRACE("command " + std::to_string(command));
    switch (command) {
    case 0:
        return ExpectOpenDialog(act);
    case 1:
    case 2:
    case 3:
        return ExpectPlaying(command, act);
    case 4:
    case 24:
        return ExpectSkip(command == 4 ? 10.0 : -10.0, act);
    case 5:
    case 25:
        return ExpectSkip(command == 5 ? 60.0 : -60.0, act);
    case 7:
    case 8:
    case 9:
        return ExpectSize(QSize(288, 192) * (command - 6), act);
    case 21:
    case 22:
        return ExpectSize(QSize(288, 192) * (command - 17), act);
    case 10:
        act();
        EXPECT_TRUE(AwaitFullScreen(true));
        hand.Key("f");
        EXPECT_TRUE(AwaitFullScreen(false));
        EXPECT_TRUE(AwaitPictureSize({576, 384}));
        return;
    case 12:
        return ExpectCopy(act);
    case 14:
    case 15:
        return ExpectOptions(act);
    case 26:
        act();
        EXPECT_TRUE(AwaitSilence());
        act();
        EXPECT_TRUE(AwaitSound());
        return;
    case 31:
    case 32:
    case 33:
    case 34:
    case 35:
        return ExpectWheelMode(command - 30, act);
    case 41:
        return ExpectSize({864, 576}, act);
    case 42:
        return ExpectSize({288, 192}, act);
    case 44:
        return ExpectWebSite(act);
    default:
        FAIL() << "no command";
    }
}

} // namespace lantern::test
