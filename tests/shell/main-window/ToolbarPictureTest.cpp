// SPDX-License-Identifier: GPL-3.0-or-later
// What the toolbar looks like, in each state and on screens of every ratio.
#include "GoldenImage.h"
#include "ToolbarFixture.h"

#include <QApplication>
#include <QMouseEvent>

namespace lantern {
namespace {

class ToolbarPictureTest : public ToolbarFixture {
protected:
    void ShowTrack(std::int32_t seconds, bool isPlaying)
    {
        toolbar.ctlSlider().SetValues(0, 240000, seconds * 1000);
        toolbar.ctlVolume().SetValue(80);
        toolbar.PlayTicker().SetTicker(std::int32_t{seconds}, isPlaying);
        toolbar.tBtn(CommandId::Play).setVisible(!isPlaying);
        toolbar.tBtn(CommandId::Pause).setVisible(isPlaying);
        toolbar.tBtn(CommandId::QuickPlay).SetEnabled(isPlaying);
        toolbar.tBtn(CommandId::RestoreScreen).setVisible(false);
        toolbar.tBtn(CommandId::WheelVolume).SetValue(true);
    }
    void ShowStopped()
    {
        ShowTrack(0, false);
        toolbar.ctlSlider().SetValues(0, 0, 0);
        for (const ToolbarButton& row : kToolbarButtons) {
            const bool needsTrack =
                (row.command >= CommandId::Play && row.command <= CommandId::QuickPlay) ||
                row.command == CommandId::Back10Seconds || row.command == CommandId::Back60Seconds;
            toolbar.tBtn(row.command).SetEnabled(!needsTrack);
        }
    }

    ::testing::AssertionResult LooksLike(const QString& name)
    {
        const int percent = static_cast<int>(window.devicePixelRatioF() * 100);
        return MatchesGolden(toolbar.TBar().grab().toImage(),
                             QStringLiteral("toolbar-%1-%2").arg(name).arg(percent));
    }
};

TEST_F(ToolbarPictureTest, WhilePlaying)
{
    ShowTrack(83, true);
    Show();
    EXPECT_TRUE(LooksLike(QStringLiteral("playing")));
    SetWidth(kNarrow);
    EXPECT_TRUE(LooksLike(QStringLiteral("playing-narrow")));
}

TEST_F(ToolbarPictureTest, WhilePaused)
{
    ShowTrack(83, false);
    Show();
    EXPECT_TRUE(LooksLike(QStringLiteral("paused")));
}

TEST_F(ToolbarPictureTest, WithoutTrack)
{
    ShowStopped();
    Show();
    EXPECT_TRUE(LooksLike(QStringLiteral("stopped")));
    SetWidth(kNarrow);
    EXPECT_TRUE(LooksLike(QStringLiteral("stopped-narrow")));
}

TEST_F(ToolbarPictureTest, WhileATrackIsOpened)
{
    ShowStopped();
    toolbar.PlayTicker().SetTicker(-1, false);
    Show();
    EXPECT_TRUE(LooksLike(QStringLiteral("loading")));
}

TEST_F(ToolbarPictureTest, EachModeOfTheWheel)
{
    ShowTrack(83, true);
    Show();
    for (std::int16_t mode = 1; mode <= 5; ++mode) {
        for (std::int16_t other = 1; other <= 5; ++other)
            toolbar.tBtn(WheelCommand(WheelMode{other})).SetValue(other == mode);
        EXPECT_TRUE(LooksLike(QStringLiteral("wheel-%1").arg(mode)));
    }
}

TEST_F(ToolbarPictureTest, MutedInFullScreenWithTheOptionsOpen)
{
    ShowTrack(83, true);
    toolbar.tBtn(CommandId::FullScreen).setVisible(false);
    toolbar.tBtn(CommandId::RestoreScreen).setVisible(true);
    toolbar.tBtn(CommandId::Options).SetValue(true);
    toolbar.tBtn(CommandId::QuickPlay).SetValue(true);
    toolbar.tBtn(CommandId::Mute).SetValue(true);
    toolbar.ctlVolume().SetValue(0);
    Show();
    EXPECT_TRUE(LooksLike(QStringLiteral("checked")));
}

// All buttons that can be seen, under the pointer one after the other; each picture has one button
// in the state, and all of them together are one sheet.
class ToolbarStateSheetTest : public ToolbarPictureTest {
protected:
    // At high ratios the offscreen platform knows only of the left part of the bar: the button is
    // told itself.
    void PointAt(CommandId command)
    {
        ctlPicBtn& button = toolbar.tBtn(command);
        const QPoint inWindow = FreePlaceOf(command);
        MoveTo(inWindow);
        QMouseEvent move(QEvent::MouseMove, button.mapFrom(&window, inWindow), inWindow,
                         window.mapToGlobal(inWindow), Qt::NoButton, Qt::NoButton, {});
        QApplication::sendEvent(&button, &move);
    }
    void Keep(CommandId command)
    {
        const ctlPicBtn& button = toolbar.tBtn(command);
        const QImage bar = toolbar.TBar().grab().toImage();
        if (m_sheet.isNull())
            m_sheet = bar;
        const qreal ratio = window.devicePixelRatioF();
        const QRect own = button.mask().isEmpty() ? button.rect() : button.mask().boundingRect();
        const QPoint at = button.mapTo(&toolbar.TBar(), own.topLeft());
        const QRect part(QPoint(qRound(at.x() * ratio), qRound(at.y() * ratio)),
                         QSize(qRound(own.width() * ratio), qRound(own.height() * ratio)));
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x)
                m_sheet.setPixel(x, y, bar.pixel(x, y));
        }
    }
    ::testing::AssertionResult SheetLooksLike(const QString& name)
    {
        const int percent = static_cast<int>(window.devicePixelRatioF() * 100);
        return MatchesGolden(m_sheet, QStringLiteral("toolbar-%1-%2").arg(name).arg(percent));
    }

    QImage m_sheet;
};

TEST_F(ToolbarStateSheetTest, HotAndPressedAndDisabled)
{
    ShowTrack(83, true);
    toolbar.tBtn(CommandId::WheelVolume).SetValue(false);
    Show();
    for (const ToolbarButton& row : kToolbarButtons) {
        if (!toolbar.tBtn(row.command).isVisible())
            continue;
        PointAt(row.command);
        Keep(row.command);
    }
    EXPECT_TRUE(SheetLooksLike(QStringLiteral("hot")));
    m_sheet = QImage();
    for (const ToolbarButton& row : kToolbarButtons) {
        if (!toolbar.tBtn(row.command).isVisible())
            continue;
        const QPoint at = FreePlaceOf(row.command);
        MoveTo(at);
        Press(at);
        Keep(row.command);
        Release(at);
        toolbar.tBtn(row.command).SetValue(false);
    }
    EXPECT_TRUE(SheetLooksLike(QStringLiteral("pressed")));
    for (const ToolbarButton& row : kToolbarButtons)
        toolbar.tBtn(row.command).SetEnabled(false);
    EXPECT_TRUE(LooksLike(QStringLiteral("disabled")));
}

} // namespace
} // namespace lantern
