// SPDX-License-Identifier: GPL-3.0-or-later
// The picture on the singer's screen, as the player opens it, paints it and lets it go.
#include "ScreenMenu.h"
#include "SingerWindow.h"
#include "WindowHand.h"
#include "frmStage.h"

#include <QFile>
#include <QImage>
#include <QScreen>

namespace lantern {
namespace {

constexpr int kFirstScreen = 0; // the player's
constexpr int kSecondScreen = 1;
constexpr QRgb kSongPicture = 0xFF0000AA;
constexpr QRgb kSongBorder = 0xFFFFAA00;

class WindowSingerTest : public WindowHand {
protected:
    void SetUp() override
    {
        WindowHand::SetUp();
        ASSERT_EQ(QGuiApplication::screens().size(), 2);
    }

    static QScreen& Screen(int number) { return *QGuiApplication::screens().at(number); }
    void ChosenBefore(const char* line)
    {
        QFile file(folder.filePath(QStringLiteral("data_stage.ini")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(line);
    }
    void LoadWithSinger(const QString& track)
    {
        ChosenBefore("singerscreen\tsecond|||\r\n");
        Load(track);
    }
    static SingerWindow* Singer()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* singer = dynamic_cast<SingerWindow*>(widget))
                return singer;
        }
        return nullptr;
    }
    static frmStage& StageShown(f101& player)
    {
        player.ShowStage();
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* stage = dynamic_cast<frmStage*>(widget))
                return *stage;
        }
        throw std::logic_error("no stage window");
    }
    // What stands there, without painting it anew.
    static QImage Shown(const QWidget& shown)
    {
        const QWindow& handle = *shown.windowHandle();
        return handle.screen()->grabWindow(handle.winId()).toImage();
    }
    static QRgb ShownAt(const QWidget& shown, const QPoint& at)
    {
        const QImage image = Shown(shown);
        return image.pixel(at * image.width() / shown.width());
    }
    void Tick(std::int32_t positionMs)
    {
        engine.PositionMs = positionMs;
        window.UpdatePlayer();
        Settle();
    }
    // From the menu that the stage window opens.
    void ChooseSinger(const char* name)
    {
        frmStage& stage = StageShown(window);
        EXPECT_TRUE(Choose([&] { stage.ScreenButton().Press(); }, QLatin1String(name)));
        Settle();
    }
};

TEST_F(WindowSingerTest, WhoNeverAsksHasNone)
{
    Load(MakeBlueTrack());
    Tick(50);
    EXPECT_EQ(Singer(), nullptr);
    EXPECT_EQ(StageShown(window).ScreenButton().Caption(), QStringLiteral("None"));
    EXPECT_EQ(StageShown(window).SingerStatus().text(), QStringLiteral("Shows the picture alone"));
}

TEST_F(WindowSingerTest, ItFillsTheChosenScreenWithThePictureAlone)
{
    LoadWithSinger(MakeBlueTrack());
    Tick(50);
    const QRect playerPlace = window.geometry();
    SingerWindow* const singer = Singer();
    ASSERT_NE(singer, nullptr);
    EXPECT_EQ(singer->geometry(), Screen(kSecondScreen).geometry());
    EXPECT_EQ(singer->devicePixelRatioF(), 2.0);
    EXPECT_EQ(singer->Pic().geometry(), QRect(0, 133, 800, 533));
    EXPECT_EQ(singer->cursor().shape(), Qt::BlankCursor);
    EXPECT_TRUE(singer->windowFlags().testFlag(Qt::WindowDoesNotAcceptFocus));
    EXPECT_EQ(singer->Pic().Image().width, 1600) << "as sharp as that screen";
    EXPECT_EQ(ShownAt(*singer, {400, 400}), kSongPicture);
    EXPECT_EQ(ShownAt(*singer, {1, 135}), kSongPicture) << "the picture goes to the edge";
    EXPECT_EQ(ShownAt(*singer, {798, 664}), kSongPicture);
    EXPECT_EQ(ShownAt(*singer, {400, 1}), kSongBorder);
    EXPECT_EQ(ShownAt(*singer, {400, 798}), kSongBorder);
    EXPECT_EQ(window.geometry(), playerPlace);
    EXPECT_TRUE(window.isActiveWindow());
}

TEST_F(WindowSingerTest, BothPicturesShowTheSamePacket)
{
    std::vector<CdgPacket> song = {packets::Colours(false, {0x000, 0xFFF}),
                                   packets::MemoryPreset(0)};
    song.resize(600);
    for (std::uint8_t column = 1; column < 49; ++column) {
        packets::TileFields tile = {.colour1 = 1, .row = 8, .column = column};
        tile.rows.fill(0x3F);
        song.push_back(packets::Tile(tile));
        song.resize(song.size() + 14);
    }
    LoadWithSinger(MakeTrack(song));
    const auto columns = [](const QWidget& shown, const QRect& pic) {
        const QImage image = Shown(shown);
        int lit = 0;
        for (int column = 0; column < 48; ++column) {
            const QPoint at(pic.left() + pic.width() * (2 * column + 1) / 96,
                            pic.top() + pic.height() * 15 / 32);
            lit += image.pixel(at * image.width() / shown.width()) == 0xFFFFFFFF;
        }
        return lit;
    };
    const auto own = [&] { return columns(window, PartNamed("pic").geometry()); };
    const auto singers = [&] { return columns(*Singer(), Singer()->Pic().geometry()); };
    for (int positionMs = 1900; positionMs < 4500; positionMs += 10) {
        Tick(positionMs);
        EXPECT_EQ(singers(), own()) << positionMs;
    }
    // So many paintings in so short a time are thinned out.
    EXPECT_TRUE(QTest::qWaitFor([&] { return own() == 48 && singers() == 48; }));
}

TEST_F(WindowSingerTest, TheOutermostPixelsOfThePictureLieAtItsEdges)
{
    packets::TileFields first = {.colour1 = 1, .row = 1, .column = 1};
    packets::TileFields last = {.colour1 = 1, .row = 16, .column = 48};
    first.rows.fill(0x3F);
    last.rows.fill(0x3F);
    LoadWithSinger(MakeTrack({packets::Colours(false, {0x000, 0xFFF}), packets::MemoryPreset(0),
                              packets::Tile(first), packets::Tile(last)}));
    Tick(50);
    const QRect pic = Singer()->Pic().geometry();
    EXPECT_EQ(ShownAt(*Singer(), pic.topLeft()), 0xFFFFFFFF);
    EXPECT_EQ(ShownAt(*Singer(), pic.bottomRight()), 0xFFFFFFFF);
    EXPECT_EQ(ShownAt(*Singer(), pic.topLeft() + QPoint(18, 34)), 0xFF000000)
        << "a tile is so large";
    EXPECT_EQ(ShownAt(*Singer(), pic.bottomRight() - QPoint(18, 34)), 0xFF000000);
}

TEST_F(WindowSingerTest, WhatALargerWindowHasLostIsPaintedThoughNothingPlays)
{
    LoadWithSinger(MakeBlueTrack());
    Tick(50);
    window.MainPopup(CommandId::Pause);
    Settle();
    Singer()->windowHandle()->setWindowState(Qt::WindowNoState);
    for (const int less : {300, 100, 0}) {
        Singer()->windowHandle()->setGeometry(
            Screen(kSecondScreen).geometry().adjusted(0, 0, -less, -less));
        Settle();
        EXPECT_EQ(ShownAt(*Singer(), Singer()->rect().center()), kSongPicture) << less;
    }
}

TEST_F(WindowSingerTest, OnlyWhatChangedIsPaintedThere)
{
    std::vector<CdgPacket> song = {packets::Colours(false, {0x000, 0xFFF}),
                                   packets::MemoryPreset(0)};
    song.resize(600);
    packets::TileFields tile = {.colour1 = 1, .row = 8, .column = 20};
    tile.rows.fill(0x3F);
    song.push_back(packets::Tile(tile));
    LoadWithSinger(MakeTrack(song));
    Tick(1900);
    Tick(1990);
    struct Regions : QObject {
        bool eventFilter(QObject*, QEvent* event) override
        {
            if (event->type() == QEvent::Paint)
                region += static_cast<QPaintEvent*>(event)->region();
            return false;
        }
        QRegion region;
    } painted;
    Singer()->Pic().installEventFilter(&painted);
    Tick(2100);
    const QRect cell = painted.region.boundingRect();
    EXPECT_FALSE(cell.isEmpty());
    EXPECT_LE(cell.width(), 40);
    EXPECT_LE(cell.height(), 60);
    painted.region = {};
    Tick(2200);
    EXPECT_TRUE(painted.region.isEmpty()) << "nothing new, nothing painted";
}

TEST_F(WindowSingerTest, ItIsChosenByTheMenuAndSwitchedOffThere)
{
    Load(MakeBlueTrack());
    Tick(50);
    ChooseSinger("second");
    ASSERT_NE(Singer(), nullptr);
    frmStage& stage = StageShown(window);
    EXPECT_EQ(stage.ScreenButton().Caption(), QStringLiteral("second"));
    EXPECT_EQ(stage.SingerStatus().text(), QStringLiteral("Shows the picture"));
    EXPECT_EQ(ShownAt(*Singer(), {400, 400}), kSongPicture) << "at once, not at the next packet";
    ChooseSinger("None");
    EXPECT_EQ(Singer(), nullptr);
    EXPECT_EQ(stage.ScreenButton().Caption(), QStringLiteral("None"));
    ChooseSinger("second");
    window.close();
    EXPECT_EQ(Singer(), nullptr);
    QFile file(folder.filePath(QStringLiteral("data_stage.ini")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "singerscreen\tsecond|||\r\n");
}

TEST_F(WindowSingerTest, TheArrowKeysGoFromChoiceToChoice)
{
    Load(MakeBlueTrack());
    frmStage& stage = StageShown(window);
    MenuButton& button = stage.ScreenButton();
    const std::pair<Qt::Key, const char*> keys[] = {
        {Qt::Key_Left, "None"},    {Qt::Key_Right, "first"}, {Qt::Key_Down, "second"},
        {Qt::Key_Right, "second"}, {Qt::Key_Up, "first"},    {Qt::Key_Left, "None"}};
    button.setFocus();
    for (const auto& [key, name] : keys) {
        QTest::keyClick(&button, key);
        Settle();
        EXPECT_EQ(button.Caption(), QLatin1String(name));
        EXPECT_EQ(Singer() != nullptr, button.Caption() == QStringLiteral("second"));
        EXPECT_EQ(stage.focusWidget(), &button);
    }
}

TEST_F(WindowSingerTest, TheWindowThatHadTheKeyboardHasItBack)
{
    Load(MakeBlueTrack());
    frmStage& stage = StageShown(window);
    ASSERT_TRUE(QTest::qWaitForWindowActive(&stage));
    stage.ScreenButton().setFocus();
    QTest::keyClick(&stage.ScreenButton(), Qt::Key_Right);
    QTest::keyClick(&stage.ScreenButton(), Qt::Key_Right);
    Settle();
    ASSERT_NE(Singer(), nullptr);
    EXPECT_TRUE(stage.isActiveWindow()) << "the next arrow key is for its button, too";
    stage.ShowForm(false);
    Singer()->activateWindow();
    Settle();
    EXPECT_TRUE(window.isActiveWindow());
}

TEST_F(WindowSingerTest, TheSmallWindowsComeFromUnderIt)
{
    Load(MakeBlueTrack());
    frmStage& stage = StageShown(window);
    window.DoKeyDown(KeyCode::F1, 0);
    QWidget* const windows[] = {&stage, &Options()};
    const QRect there = Screen(kSecondScreen).geometry();
    for (QWidget* const small : windows)
        small->move(there.topLeft() + QPoint(50, 50));
    ChooseSinger("second");
    for (QWidget* const small : windows)
        EXPECT_TRUE(Screen(kFirstScreen).geometry().contains(small->frameGeometry()));
    // Put there by hand they stay, but don't come up there.
    for (QWidget* const small : windows)
        small->move(there.topLeft() + QPoint(50, 50));
    Settle();
    EXPECT_TRUE(there.contains(stage.frameGeometry()));
    stage.ShowForm(false);
    StageShown(window);
    EXPECT_TRUE(Screen(kFirstScreen).geometry().contains(stage.frameGeometry()));
}

TEST_F(WindowSingerTest, ItsMenuOpensAtItsButtonWhereverThePointerIs)
{
    Load(MakeBlueTrack());
    MenuButton& button = StageShown(window).ScreenButton();
    QCursor::setPos(Screen(kSecondScreen).geometry().center());
    EXPECT_TRUE(WithMenu([&] { button.Press(); },
                         [&](const frmMenus& menu) {
                             EXPECT_EQ(menu.pos(), button.mapToGlobal(button.rect().bottomLeft()));
                         }));
}

TEST_F(WindowSingerTest, ThePlayersOwnScreenIsNotCovered)
{
    ChosenBefore("singerscreen\tfirst|||\r\n");
    Load(MakeBlueTrack());
    Tick(50);
    EXPECT_EQ(Singer(), nullptr);
    frmStage& stage = StageShown(window);
    EXPECT_EQ(stage.SingerStatus().text(), QStringLiteral("Move the player to another screen"));
    window.setGeometry(Screen(kSecondScreen).geometry().adjusted(100, 100, -100, -100));
    Settle();
    ASSERT_NE(Singer(), nullptr);
    EXPECT_EQ(Singer()->geometry(), Screen(kFirstScreen).geometry());
    EXPECT_EQ(stage.SingerStatus().text(), QStringLiteral("Shows the picture"));
    window.setGeometry(Screen(kFirstScreen).geometry().adjusted(100, 100, -100, -100));
    Settle();
    EXPECT_EQ(Singer(), nullptr);
}

TEST_F(WindowSingerTest, AScreenThatIsNotThereIsWaitedFor)
{
    ChosenBefore("singerscreen\tHDMI-9|Maker|TV|7\r\n");
    Load(MakeBlueTrack());
    EXPECT_EQ(Singer(), nullptr);
    frmStage& stage = StageShown(window);
    EXPECT_EQ(stage.ScreenButton().Caption(), QStringLiteral("Maker TV"));
    EXPECT_EQ(stage.SingerStatus().text(), QStringLiteral("Not connected"));
    ChooseSinger("first");
    EXPECT_EQ(stage.SingerStatus().text(), QStringLiteral("Move the player to another screen"));
}

TEST_F(WindowSingerTest, SmoothLettersAreOnBothScreens)
{
    LoadWithSinger(MakeTrack({packets::Colours(false, {0x000, 0xFFF}), packets::MemoryPreset(0),
                              packets::Tile({.colour1 = 1,
                                             .row = 8,
                                             .column = 20,
                                             .rows = {1, 1, 2, 2, 4, 4, 8, 8, 16, 16, 32, 32}})}));
    Tick(50);
    const QImage sharp = Shown(*Singer());
    ctlPicBtn& smooth = StageShown(window).Switch(2);
    smooth.Press();
    Settle();
    EXPECT_NE(Shown(*Singer()), sharp);
    EXPECT_EQ(Singer()->Pic().Look(), PictureLook::Smooth);
    smooth.Press();
    Settle();
    EXPECT_EQ(Shown(*Singer()), sharp);
}

TEST_F(WindowSingerTest, ItStaysWhenThePlayerIsMinimised)
{
    LoadWithSinger(MakeBlueTrack());
    Tick(50);
    window.showMinimized();
    Settle();
    ASSERT_NE(Singer(), nullptr);
    EXPECT_TRUE(Singer()->isVisible());
    EXPECT_FALSE(Singer()->isMinimized());
    window.showNormal();
}

TEST_F(WindowSingerTest, ClosedByTheDesktopItStaysAwayUntilItIsChosenAgain)
{
    LoadWithSinger(MakeBlueTrack());
    Singer()->close();
    Settle();
    EXPECT_EQ(Singer(), nullptr);
    frmStage& stage = StageShown(window);
    EXPECT_EQ(stage.SingerStatus().text(), QStringLiteral("Closed: choose it again to open it"));
    ChooseSinger("second");
    ASSERT_NE(Singer(), nullptr);
    Singer()->close();
    window.close();
    QFile file(folder.filePath(QStringLiteral("data_stage.ini")));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll(), "singerscreen\tsecond|||\r\n") << "a desktop that ends is no choice";
}

TEST_F(WindowSingerTest, AKeyThatComesThereIsThePlayers)
{
    LoadWithSinger(MakeBlueTrack());
    QTest::keyClick(Singer(), Qt::Key_P);
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
    QTest::keyClick(Singer(), Qt::Key_Tab);
    QTest::keyClick(Singer(), Qt::Key_F2);
    EXPECT_TRUE(StageShown(window).isVisible());
}

TEST_F(WindowSingerTest, AScreenThatChangesItsSizeDuringTheFlashesIsFilledAgain)
{
    LoadWithSinger(MakeBlueTrack());
    frmStage& stage = StageShown(window);
    stage.TestSwitch().Press();
    Tick(1050);
    EXPECT_GT(QColor(ShownAt(*Singer(), {400, 400})).lightness(), 200);
    // The window system has another size for it than the screen's.
    Singer()->windowHandle()->setWindowState(Qt::WindowNoState);
    Singer()->windowHandle()->setGeometry(
        Screen(kSecondScreen).geometry().adjusted(0, 0, -200, -200));
    Settle();
    EXPECT_EQ(Singer()->Pic().geometry(), QRect(0, 100, 600, 400));
    EXPECT_GT(QColor(ShownAt(*Singer(), {300, 300})).lightness(), 200);
    EXPECT_TRUE(
        QTest::qWaitFor([] { return Singer()->geometry() == Screen(kSecondScreen).geometry(); }));
    Tick(1500);
    EXPECT_LT(QColor(ShownAt(*Singer(), {400, 400})).lightness(), 50);
}

TEST(ScreenMenuTest, TheChosenScreenIsMarkedAndOfferedThoughItIsNotThere)
{
    const ScreenIdentity own = {QStringLiteral("eDP-1"), {}, {}, {}};
    const ScreenIdentity tv = {
        QStringLiteral("HDMI-1"), QStringLiteral("Acme"), QStringLiteral("TV"), {}};
    const auto items = ScreenMenuItems(tv, {own});
    ASSERT_EQ(items.size(), 4U);
    EXPECT_EQ(items[0], (MenuEntry{QStringLiteral("None"), QStringLiteral("screen -1"), false}));
    EXPECT_EQ(items[2].text, QStringLiteral("eDP-1"));
    EXPECT_EQ(items[3].text, QStringLiteral("Acme TV (not connected)"));
    EXPECT_EQ(items[3].isChosen, true);
    EXPECT_EQ(ScreenOfKey(items[3].key), 1);
    EXPECT_EQ(ScreenOfKey(items[0].key), -1);
    EXPECT_EQ(ScreenOfKey(QStringLiteral("41")), std::nullopt);
    EXPECT_TRUE(*ScreenMenuItems({}, {own})[0].isChosen);
    EXPECT_EQ(SingerStatus(SingerState::Off, {own}), QStringLiteral("There is no other screen"));
}

} // namespace
} // namespace lantern
