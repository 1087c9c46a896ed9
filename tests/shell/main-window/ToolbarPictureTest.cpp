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
        toolbar.tBtn(1).setVisible(!isPlaying);
        toolbar.tBtn(2).setVisible(isPlaying);
        toolbar.tBtn(6).SetEnabled(isPlaying);
        toolbar.tBtn(20).setVisible(false);
        toolbar.tBtn(34).SetValue(true);
    }
    void ShowStopped()
    {
        ShowTrack(0, false);
        toolbar.ctlSlider().SetValues(0, 0, 0);
        for (const ToolbarButton& row : kToolbarButtons) {
            const bool needsTrack =
                (row.index >= 1 && row.index <= 6) || row.index == 24 || row.index == 25;
            toolbar.tBtn(row.index).SetEnabled(!needsTrack);
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
    for (std::int16_t mode = 31; mode <= 35; ++mode) {
        for (std::int16_t other = 31; other <= 35; ++other)
            toolbar.tBtn(other).SetValue(other == mode);
        EXPECT_TRUE(LooksLike(QStringLiteral("wheel-%1").arg(mode - 30)));
    }
}

TEST_F(ToolbarPictureTest, MutedInFullScreenWithTheOptionsOpen)
{
    ShowTrack(83, true);
    toolbar.tBtn(10).setVisible(false);
    toolbar.tBtn(20).setVisible(true);
    toolbar.tBtn(14).SetValue(true);
    toolbar.tBtn(6).SetValue(true);
    toolbar.tBtn(26).SetValue(true);
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
    void PointAt(std::int16_t index)
    {
        ctlPicBtn& button = toolbar.tBtn(index);
        const QPoint inWindow = FreePlaceOf(index);
        MoveTo(inWindow);
        QMouseEvent move(QEvent::MouseMove, button.mapFrom(&window, inWindow), inWindow,
                         window.mapToGlobal(inWindow), Qt::NoButton, Qt::NoButton, {});
        QApplication::sendEvent(&button, &move);
    }
    void Keep(std::int16_t index)
    {
        const ctlPicBtn& button = toolbar.tBtn(index);
        const QImage bar = toolbar.TBar().grab().toImage();
        if (m_sheet.isNull())
            m_sheet = bar;
        const qreal ratio = window.devicePixelRatioF();
        const QPoint at = button.mapTo(&toolbar.TBar(), QPoint());
        const QRect part(QPoint(qRound(at.x() * ratio), qRound(at.y() * ratio)),
                         QSize(qRound(button.width() * ratio), qRound(button.height() * ratio)));
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
    toolbar.tBtn(34).SetValue(false);
    Show();
    for (const ToolbarButton& row : kToolbarButtons) {
        if (!toolbar.tBtn(row.index).isVisible())
            continue;
        PointAt(row.index);
        Keep(row.index);
    }
    EXPECT_TRUE(SheetLooksLike(QStringLiteral("hot")));
    m_sheet = QImage();
    for (const ToolbarButton& row : kToolbarButtons) {
        if (!toolbar.tBtn(row.index).isVisible())
            continue;
        const QPoint at = FreePlaceOf(row.index);
        MoveTo(at);
        Press(at);
        Keep(row.index);
        Release(at);
        toolbar.tBtn(row.index).SetValue(false);
    }
    EXPECT_TRUE(SheetLooksLike(QStringLiteral("pressed")));
    for (const ToolbarButton& row : kToolbarButtons)
        toolbar.tBtn(row.index).SetEnabled(false);
    EXPECT_TRUE(LooksLike(QStringLiteral("disabled")));
}

} // namespace
} // namespace lantern
