// SPDX-License-Identifier: GPL-3.0-or-later
// The window's size: whoever changes it, everything that goes with it follows.
#include "WindowHand.h"

namespace lantern {
namespace {

class WindowSizeTest : public WindowHand {
protected:
    static QSize WindowOf(int step) { return {288 * step + 50, 192 * step + 55 + 48}; }
    int KeptZoom()
    {
        window.close();
        state.Settings->LoadSettings(kPlayerSection.toString());
        return ReadPlayerSettings(*state.Settings).Zoom;
    }
};

TEST_F(WindowSizeTest, OfADraggedSizeTheNearestStepIsKept)
{
    Load();
    window.resize(WindowOf(3) + QSize(40, 30));
    Settle();
    EXPECT_EQ(KeptZoom(), 3);
}

TEST_F(WindowSizeTest, OfASizeInBetweenTheNearestStepIsKept)
{
    Load();
    Press('1', kControlBit); // 1.5
    Press('5', kControlBit); // 5.5
    Settle();
    EXPECT_EQ(KeptZoom(), 5);
}

// Notes at each resize of a widget whether it may paint then.
class ResizeWatch : public QObject {
public:
    std::vector<bool> MayPaint;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Resize)
            MayPaint.push_back(static_cast<QWidget*>(watched)->updatesEnabled());
        return false;
    }
};

TEST_F(WindowSizeTest, NothingIsPaintedWhileTheSizeChanges)
{
    Load();
    ResizeWatch watch;
    window.installEventFilter(&watch);
    Press('3');
    ASSERT_FALSE(watch.MayPaint.empty());
    EXPECT_EQ(std::ranges::count(watch.MayPaint, true), 0);
    EXPECT_TRUE(window.updatesEnabled()) << "and afterwards all is";
    Press('F');
    EXPECT_TRUE(window.updatesEnabled());
    Press('F');
    EXPECT_TRUE(window.updatesEnabled());
}

} // namespace
} // namespace lantern
