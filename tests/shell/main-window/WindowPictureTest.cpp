// SPDX-License-Identifier: GPL-3.0-or-later
// What the window looks like, on screens of every ratio.
#include "GoldenImage.h"
#include "WindowFixture.h"
#include "frmStage.h"

#include <QApplication>
#include <QFile>
#include <QGuiApplication>
#include <QScreen>

namespace lantern {
namespace {

class WindowPictureTest : public WindowFixture {
protected:
    static constexpr int kShownMs = 5050;

    // A ring, a cross and single pixels, in every colour and in each part of the picture.
    static std::vector<CdgPacket> Pattern()
    {
        constexpr std::array<std::uint8_t, 12> kRing = {0x1E, 0x3F, 0x33, 0x21, 0x21, 0x21,
                                                        0x21, 0x21, 0x21, 0x33, 0x3F, 0x1E};
        constexpr std::array<std::uint8_t, 12> kCross = {0x21, 0x21, 0x12, 0x12, 0x0C, 0x0C,
                                                         0x0C, 0x0C, 0x12, 0x12, 0x21, 0x21};
        constexpr std::array<std::uint8_t, 12> kDots = {0x2A, 0x15, 0x2A, 0x15, 0x2A, 0x15,
                                                        0x2A, 0x15, 0x2A, 0x15, 0x2A, 0x15};
        std::vector<CdgPacket> result = {
            packets::Colours(false, {0x013, 0xFFF, 0xFA0, 0xF00, 0x0F0, 0x00F, 0xFF0, 0x0FF}),
            packets::Colours(true, {0xF0F, 0x888, 0x444, 0x800, 0x080, 0x008, 0x630, 0x036}),
            packets::MemoryPreset(0), packets::BorderPreset(15)};
        for (std::uint8_t row = 1; row < 17; ++row) {
            for (std::uint8_t column = 1; column < 49; ++column) {
                const int kind = (row * 5 + column * 3) % 7;
                packets::TileFields tile = {.colour1 =
                                                static_cast<std::uint8_t>(1 + (row + column) % 15),
                                            .row = row,
                                            .column = column};
                tile.rows = kind == 0 ? kRing : kind == 1 ? kCross : kDots;
                if (kind < 3)
                    result.push_back(packets::Tile(tile));
            }
        }
        return result;
    }

    static ctlPicBtn& StageSwitch(bool StageSettings::*field)
    {
        const auto row = std::ranges::find(kStageSwitches, field, &lantern::StageSwitch::field);
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* const stage = dynamic_cast<frmStage*>(widget))
                return stage->Switch(static_cast<std::size_t>(row - kStageSwitches.begin()));
        }
        throw std::logic_error("no stage window");
    }

    void ShowPattern()
    {
        Load(MakeTrack(Pattern()));
        // A long way isn't shown; the first short one after it is.
        Tick(5000);
        Tick(kShownMs);
    }

    // Time stands still between these.
    void Tick(std::int32_t positionMs)
    {
        engine.PositionMs = positionMs;
        window.UpdatePlayer();
        Settle();
    }

    ::testing::AssertionResult LooksLike(const char* name)
    {
        const int percent = static_cast<int>(window.devicePixelRatioF() * 100);
        return MatchesGolden(window.grab().toImage(),
                             QStringLiteral("window-%1-%2").arg(QLatin1String(name)).arg(percent));
    }
};

TEST_F(WindowPictureTest, AnEmptyWindowIsBlack)
{
    Load();
    EXPECT_TRUE(LooksLike("empty"));
}

TEST_F(WindowPictureTest, TheSmallestSizeShowsEachPixel)
{
    ShowPattern();
    Press('1');
    Settle();
    EXPECT_TRUE(LooksLike("size1"));
}

TEST_F(WindowPictureTest, TheBorderSurroundsThePicture)
{
    ShowPattern();
    EXPECT_TRUE(LooksLike("size2"));
}

TEST_F(WindowPictureTest, ASizeInBetweenIsSharp)
{
    ShowPattern();
    window.resize(501, 400);
    Settle();
    EXPECT_TRUE(LooksLike("between"));
}

TEST_F(WindowPictureTest, AMessageStandsInTheBorder)
{
    ShowPattern();
    Press('C');
    Settle();
    EXPECT_TRUE(LooksLike("message"));
}

TEST_F(WindowPictureTest, FullScreenLeavesASmallBorder)
{
    ShowPattern();
    Press('F');
    Settle();
    EXPECT_TRUE(LooksLike("full"));
}

TEST_F(WindowPictureTest, ChangesInSmallStepsLeadToTheSamePictureAsAFullPaint)
{
    Load(MakeTrack(Pattern()));
    for (int positionMs = 0; positionMs <= kShownMs; positionMs += 50)
        Tick(positionMs);
    EXPECT_TRUE(LooksLike("size2"));
}

TEST_F(WindowPictureTest, SmoothLettersAreThereAtOnceAndGoneAtOnce)
{
    ShowPattern();
    window.ShowStage();
    ctlPicBtn& smooth = StageSwitch(&StageSettings::smoothLetters);
    smooth.Press();
    Settle();
    EXPECT_TRUE(LooksLike("smooth"));
    smooth.Press();
    Settle();
    EXPECT_TRUE(LooksLike("size2"));
}

TEST_F(WindowPictureTest, SmoothLettersHoldFromTheStartOnAndInSmallSteps)
{
    QFile file(folder.filePath(QStringLiteral("data_stage.ini")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("smoothletters\tY\r\n");
    file.close();
    Load(MakeTrack(Pattern()));
    for (int positionMs = 0; positionMs <= kShownMs; positionMs += 50)
        Tick(positionMs);
    EXPECT_TRUE(LooksLike("smooth"));
}

// A notebook, and a projector with twice the pixels to its right.
class WindowOnTwoScreensTest : public WindowPictureTest {
protected:
    void SetUp() override
    {
        if (QGuiApplication::screens().size() < 2)
            GTEST_SKIP() << "there is one screen only";
    }

    void MoveTo(const QScreen& screen)
    {
        window.move(screen.geometry().topLeft() + QPoint(40, 40));
        Settle();
    }
};

TEST_F(WindowOnTwoScreensTest, ThePictureIsDrawnAnewForThePixelsOfEachScreen)
{
    ShowPattern();
    EXPECT_TRUE(LooksLike("size2"));
    MoveTo(*QGuiApplication::screens()[1]);
    ASSERT_EQ(window.devicePixelRatioF(), 2);
    EXPECT_TRUE(LooksLike("size2"));
    MoveTo(*QGuiApplication::screens()[0]);
    ASSERT_EQ(window.devicePixelRatioF(), 1);
    EXPECT_TRUE(LooksLike("size2"));
}

TEST_F(WindowOnTwoScreensTest, FullScreenFillsTheScreenThatTheWindowIsOn)
{
    ShowPattern();
    MoveTo(*QGuiApplication::screens()[1]);
    const QRect normal = window.geometry();
    Press('F');
    Settle();
    EXPECT_EQ(window.geometry(), QGuiApplication::screens()[1]->geometry());
    Press('F');
    Tick(kShownMs);
    EXPECT_EQ(window.geometry(), normal);
    EXPECT_TRUE(LooksLike("size2"));
}

} // namespace
} // namespace lantern
