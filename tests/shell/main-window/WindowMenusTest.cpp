// SPDX-License-Identifier: GPL-3.0-or-later
// The menus and the options window, as the main window opens and closes them.
#include "WindowHand.h"

#include "ToolbarTable.h"

#include <QAccessible>

namespace lantern {
namespace {

class WindowMenusTest : public WindowHand {
protected:
    std::function<void()> PopMenu()
    {
        return [this] {
            window.UpdatePlayer(); // the items follow the buttons, and those the tick
            window.ShowPopMenu();
        };
    }
    std::function<void()> DeviceMenu()
    {
        return [this] { window.ShowDeviceMenu(); };
    }
    bool AreOptionsOnTop()
    {
        return Options().windowHandle()->flags().testFlag(Qt::WindowStaysOnTopHint);
    }
    bool HasItem(const frmMenus& menu, const char* text)
    {
        const std::vector<MenuItem>& items = menu.State().items;
        return std::ranges::count(items, QString::fromLatin1(text), &MenuItem::caption) == 1;
    }
};

TEST_F(WindowMenusTest, TheMenuWearsItsDesign)
{
    Load();
    EXPECT_TRUE(WithMenu(PopMenu(), [](frmMenus& menu) {
        const MenuState& shown = menu.State();
        EXPECT_TRUE(shown.useLeftImage);
        EXPECT_FALSE(shown.useIcons);
        EXPECT_NE(shown.sidePicture, nullptr);
        EXPECT_EQ(shown.backColor, 0u);
        EXPECT_EQ(shown.leftPicBackColor, 0u);
        EXPECT_EQ(shown.items.front().foreColor, 0xFFFFFFu);
        EXPECT_EQ(shown.items.front().hotForeColor, 0u);
        EXPECT_EQ(shown.items.front().hotBackColor, 568319u);
        EXPECT_EQ(menu.font().pixelSize(), 11);
    }));
}

TEST_F(WindowMenusTest, EachMenuHasANameForAssistiveTools)
{
    Load();
    EXPECT_TRUE(WithMenu(PopMenu(), [](frmMenus& menu) {
        EXPECT_EQ(menu.accessibleName(), QStringLiteral("Commands"));
    }));
    EXPECT_TRUE(WithMenu(DeviceMenu(), [](frmMenus& menu) {
        EXPECT_EQ(menu.accessibleName(), QStringLiteral("Sound devices"));
    }));
}

TEST_F(WindowMenusTest, TheMenuOpensAtThePointer)
{
    Load();
    QCursor::setPos(200, 150);
    EXPECT_TRUE(
        WithMenu(PopMenu(), [](frmMenus& menu) { EXPECT_EQ(menu.pos(), QPoint(195, 145)); }));
}

TEST_F(WindowMenusTest, TheItemsFollowTheButtons)
{
    Load(MakeBlueTrack());
    EXPECT_TRUE(WithMenu(PopMenu(), [this](frmMenus& menu) {
        EXPECT_FALSE(HasItem(menu, "Play"));
        EXPECT_TRUE(HasItem(menu, "Pause"));
        EXPECT_TRUE(HasItem(menu, "Stop"));
        EXPECT_TRUE(HasItem(menu, "Rewind 60 seconds "));
    }));
    window.MainPopup(CommandId::Stop);
    EXPECT_TRUE(WithMenu(PopMenu(), [this](frmMenus& menu) {
        EXPECT_TRUE(HasItem(menu, "Play"));
        EXPECT_FALSE(HasItem(menu, "Pause"));
        EXPECT_FALSE(HasItem(menu, "Stop")) << "stopped at the start";
    }));
    window.OpenMedia(folder.filePath(QStringLiteral("missing.cdg")));
    EXPECT_TRUE(WithMenu(PopMenu(), [this](frmMenus& menu) {
        EXPECT_FALSE(HasItem(menu, "Rewind 60 seconds ")) << "nothing to skip in";
    }));
}

TEST_F(WindowMenusTest, AChoiceRunsItsCommand)
{
    Load(MakeBlueTrack());
    EXPECT_TRUE(Choose(PopMenu(), QStringLiteral("Pause")));
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
    EXPECT_TRUE(Choose(PopMenu(), QStringLiteral("Full Screen")));
    EXPECT_TRUE(window.isFullScreen());
    EXPECT_TRUE(Choose(PopMenu(), QStringLiteral("Restore Screen Size")));
    EXPECT_FALSE(window.isFullScreen());
    EXPECT_TRUE(Choose(PopMenu(), QStringLiteral("Exit Lyric Lantern CDG Player")));
    EXPECT_FALSE(window.isVisible());
}

TEST_F(WindowMenusTest, AClosedMenuRunsNothing)
{
    Load(MakeBlueTrack());
    engine.Log.clear();
    EXPECT_TRUE(WithMenu(PopMenu(), [](frmMenus&) {}));
    EXPECT_TRUE(engine.Actions().empty());
    EXPECT_TRUE(window.isVisible());
}

TEST_F(WindowMenusTest, PictureAndSoundGoOnBehindTheMenu)
{
    Load(MakeBlueTrack());
    EXPECT_TRUE(WithMenu(PopMenu(), [this](frmMenus&) {
        engine.PositionMs = 7000;
        auto& slider = PartNamed<ctlSlide>("ctlSlider");
        EXPECT_TRUE(QTest::qWaitFor([&] { return slider.Value() == 7000; }));
    }));
    EXPECT_EQ(engine.Status, SoundStatus::Playing);
}

TEST_F(WindowMenusTest, OneMenuAtATime)
{
    Load();
    EXPECT_TRUE(WithMenu(PopMenu(), [this](frmMenus& menu) {
        const std::size_t count = menu.State().items.size();
        window.ShowPopMenu();
        window.ShowDeviceMenu();
        EXPECT_EQ(menu.State().items.size(), count);
        EXPECT_EQ(QApplication::activePopupWidget(), &menu);
    }));
}

// Assistive tools ask for a menu whatever else is open.
TEST_F(WindowMenusTest, AMenuThatDoesNotOpenLeavesTheOpenOneAsItIs)
{
    Load();
    window.MainPopup(CommandId::Options);
    Press('F');
    Settle();
    for (const auto& open : {PopMenu(), DeviceMenu()}) {
        EXPECT_TRUE(WithMenu(open, [&](frmMenus& menu) {
            for (const auto& openAnother : {PopMenu(), DeviceMenu()})
                openAnother();
            Options().dev(1).Press();
            EXPECT_FALSE(AreOptionsOnTop());
            EXPECT_FALSE(IsPointerBlank(window));
            EXPECT_EQ(QApplication::activePopupWidget(), &menu);
        }));
        EXPECT_TRUE(AreOptionsOnTop());
        EXPECT_TRUE(IsPointerBlank(window));
    }
}

TEST_F(WindowMenusTest, ThePointerIsSeenWhileAMenuIsOpenInFullScreen)
{
    Load();
    Press('F');
    Settle();
    for (const auto& open : {PopMenu(), DeviceMenu()}) {
        EXPECT_TRUE(WithMenu(open, [this](frmMenus&) {
            EXPECT_FALSE(IsPointerBlank(window));
            EXPECT_FALSE(IsPointerBlank(PartNamed("pic")));
        }));
        EXPECT_TRUE(IsPointerBlank(window));
        EXPECT_TRUE(IsPointerBlank(PartNamed("pic")));
    }
}

TEST_F(WindowMenusTest, AMenuOpensInFrontOfTheOptions)
{
    Load();
    window.MainPopup(CommandId::Options);
    EXPECT_TRUE(AreOptionsOnTop());
    for (const auto& open : {PopMenu(), DeviceMenu()}) {
        EXPECT_TRUE(WithMenu(open, [this](frmMenus&) { EXPECT_FALSE(AreOptionsOnTop()); }));
        EXPECT_TRUE(AreOptionsOnTop());
    }
}

TEST_F(WindowMenusTest, TheDeviceMenuSelectsADevice)
{
    engine.Devices = {QStringLiteral("Default"), QStringLiteral("Headphones")};
    Load();
    EXPECT_TRUE(WithMenu(DeviceMenu(), [](frmMenus& menu) {
        QStringList texts;
        for (const MenuItem& item : menu.State().items)
            texts += item.caption;
        EXPECT_EQ(texts.join(u'|'), QStringLiteral("Default|Headphones|-|Cancel"));
        EXPECT_FALSE(menu.State().useLeftImage);
    }));
    EXPECT_TRUE(Choose(DeviceMenu(), QStringLiteral("Headphones")));
    EXPECT_EQ(engine.SelectedDevice, 1);
    EXPECT_TRUE(WithMenu(DeviceMenu(), [](frmMenus& menu) {
        const std::vector<MenuItem>& items = menu.State().items;
        EXPECT_EQ(items[0].isChosen, false);
        EXPECT_EQ(items[1].isChosen, true);
        EXPECT_EQ(items[3].isChosen, std::nullopt);
    }));
    EXPECT_EQ(Options().dev(1).Caption(), QStringLiteral("Headphones"));
    EXPECT_TRUE(Choose(DeviceMenu(), QStringLiteral("Cancel")));
    EXPECT_EQ(engine.SelectedDevice, 1);
}

TEST_F(WindowMenusTest, TheKeyAndTheButtonShowTheOptionsAndHideThem)
{
    Load();
    EXPECT_FALSE(Options().isVisible());
    Press(KeyCode::Escape);
    EXPECT_TRUE(Options().isVisible());
    Press(KeyCode::Escape);
    EXPECT_FALSE(Options().isVisible());
    Click(MiddleOf("tBtn(14)"));
    EXPECT_TRUE(Options().isVisible());
    window.UpdatePlayer();
    EXPECT_TRUE(PartNamed<ctlPicBtn>("tBtn(14)").Value());
    Click(MiddleOf("tBtn(14)"));
    EXPECT_FALSE(Options().isVisible());
}

TEST_F(WindowMenusTest, TheMenuShowsTheOptionsAndNeverHidesThem)
{
    Load();
    for (int i = 0; i < 2; ++i) {
        EXPECT_TRUE(Choose(PopMenu(), QStringLiteral("Options")));
        EXPECT_TRUE(Options().isVisible());
    }
}

TEST_F(WindowMenusTest, ThreeKeysAndTheMenuTellAboutTheProgram)
{
    Load();
    for (const KeyCode key : {KeyCode::A, KeyCode::I, KeyCode::F1}) {
        Press(key);
        EXPECT_TRUE(Options().isVisible());
        Press(KeyCode::Escape);
        EXPECT_FALSE(Options().isVisible());
    }
    EXPECT_TRUE(Choose(PopMenu(), QStringLiteral("About Lyric Lantern CDG Player ")));
    EXPECT_TRUE(Options().isVisible());
}

TEST_F(WindowMenusTest, TheButtonBringsTheOptionsInPlaceOfTheAboutPanelAndEscapeHidesBoth)
{
    Load();
    const auto areOptionsInFront = [this] {
        const QLabel& label = Options().lab(0);
        return Options().isVisible() && Options().childAt(label.geometry().center()) == &label;
    };
    Press('A');
    ASSERT_TRUE(Options().isVisible());
    ASSERT_FALSE(areOptionsInFront());
    Click(MiddleOf("tBtn(14)"));
    EXPECT_TRUE(areOptionsInFront());
    Click(MiddleOf("tBtn(14)"));
    EXPECT_FALSE(Options().isVisible());
    Press('A');
    Press(KeyCode::Escape);
    EXPECT_FALSE(Options().isVisible());
    Press(KeyCode::Escape);
    EXPECT_TRUE(areOptionsInFront());
    Press(KeyCode::Escape);
    EXPECT_FALSE(Options().isVisible());
}

TEST_F(WindowMenusTest, AMinimisedPlayerHasNoOptionsAndTheyDontComeBack)
{
    Load();
    window.MainPopup(CommandId::Options);
    const QRect picture = PartNamed("pic").geometry();
    window.showMinimized();
    Settle();
    EXPECT_FALSE(Options().isVisible());
    EXPECT_EQ(PartNamed("pic").geometry(), picture) << "nothing is placed meanwhile";
    window.showNormal();
    Settle();
    EXPECT_FALSE(Options().isVisible());
}

TEST_F(WindowMenusTest, WithThePlayerTheOptionsGo)
{
    Load();
    window.MainPopup(CommandId::Options);
    window.close();
    EXPECT_FALSE(Options().isVisible());
}

TEST_F(WindowMenusTest, SettingsOfTheLastTimeMoveTheSlidersAndNotTheWheel)
{
    state.Settings->SetSetting(QStringLiteral("Balance"), QStringLiteral("-20"));
    state.Settings->SetSetting(QStringLiteral("Key_Pitch"), QStringLiteral("3"));
    Load();
    EXPECT_EQ(Options().ctlBalance().Value(), engine.Balance);
    EXPECT_EQ(Options().ctlKeyPitch().Value(), engine.Pitch);
    window.MouseWheel(0, -120, 0, 0);
    EXPECT_EQ(engine.Volume, 98) << "the wheel begins with the volume";
}

TEST_F(WindowMenusTest, TheSlidersOfTheToolbarMoveSoundAndWheel)
{
    Load(MakeBlueTrack());
    window.UpdatePlayer();
    auto& position = PartNamed<ctlSlide>("ctlSlider");
    auto& volume = PartNamed<ctlSlide>("ctlVolume");
    position.ScrollTo(4000);
    EXPECT_EQ(engine.PositionMs, 4000);
    window.UpdatePlayer();
    EXPECT_TRUE(PartNamed<ctlPicBtn>("tBtn(33)").Value());
    volume.ScrollTo(40);
    EXPECT_EQ(engine.Volume, 40);
    EXPECT_EQ(Status(), QStringLiteral("Volume: 40%"));
    window.UpdatePlayer();
    EXPECT_TRUE(PartNamed<ctlPicBtn>("tBtn(34)").Value());
    EXPECT_FALSE(PartNamed<ctlPicBtn>("tBtn(33)").Value());
}

TEST_F(WindowMenusTest, KeysStayWithThePlayerWhateverWasClicked)
{
    Load(MakeBlueTrack());
    QApplication::setActiveWindow(&window);
    for (const char* part : {"tBtn(12)", "tBtn(31)", "ctlVolume", "PlayTicker", "pic"}) {
        Click(MiddleOf(part));
        window.UpdatePlayer();
        ASSERT_EQ(window.focusWidget(), &PartNamed("pic")) << part;
    }
    QTest::keyClick(window.windowHandle(), Qt::Key_Tab);
    EXPECT_EQ(window.focusWidget(), &PartNamed("pic"));
    QTest::keyClick(window.windowHandle(), Qt::Key_P);
    EXPECT_EQ(engine.Status, SoundStatus::Paused);
}

TEST_F(WindowMenusTest, EachPartHasAName)
{
    Load();
    for (const QWidget* part : window.findChildren<QWidget*>()) {
        if (!part->isVisible())
            continue;
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(
            const_cast<QWidget*>(part)); // the toolkit's own wish
        ASSERT_NE(face, nullptr);
        EXPECT_FALSE(face->text(QAccessible::Name).isEmpty()) << part->objectName().toStdString();
    }
}

} // namespace
} // namespace lantern
