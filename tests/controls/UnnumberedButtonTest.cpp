// SPDX-License-Identifier: GPL-3.0-or-later
// The mouse may have more buttons than the events have numbers for: back and forward, and others.
// What the push buttons make of them is with their other mouse tests.
#include "ControlHand.h"
#include "MenuFixture.h"
#include "ctlFrame.h"
#include "ctlSkinner.h"
#include "ctlSlide.h"
#include "ctlTicker.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace lantern {
namespace {

using Texts = std::vector<std::string>;

class UnnumberedButton : public ::testing::TestWithParam<Qt::MouseButton> {
protected:
    MouseHandler Noting(const char* what)
    {
        return [this, what](const MouseReport& report) {
            told.push_back(what + std::string(" ") + std::to_string(report.button));
        };
    }
    Texts Told() { return std::exchange(told, {}); }

    Texts told;
};

TEST_P(UnnumberedButton, DoesNothingToASlider)
{
    ctlSlide slide(nullptr);
    slide.resize(104, 13);
    slide.Scroll = [&] { told.push_back(std::to_string(slide.Value())); };
    ControlHand hand(slide);
    hand.Press(52, 5, GetParam());
    hand.Move(72, 5);
    hand.Release(72, 5, GetParam());
    hand.DoublePress(52, 5, GetParam());
    hand.Release(52, 5, GetParam());
    EXPECT_EQ(Told(), Texts{});
    hand.Press(52, 5);
    hand.Press(52, 5, GetParam());
    hand.Move(62, 5);
    hand.Release(62, 5, GetParam());
    hand.Move(72, 5);
    EXPECT_EQ(Told(), (Texts{"50", "60", "70"}));
}

TEST_P(UnnumberedButton, DoesNothingToAFrame)
{
    ctlFrame frame(nullptr);
    frame.MouseDown = Noting("down");
    frame.MouseUp = Noting("up");
    frame.Click = [this] { told.emplace_back("click"); };
    ControlHand hand(frame);
    hand.Press(5, 5, GetParam());
    hand.Release(5, 5, GetParam());
    hand.DoublePress(5, 5, GetParam());
    hand.Release(5, 5, GetParam());
    EXPECT_EQ(Told(), Texts{});
    hand.Press(5, 5);
    hand.Press(5, 5, GetParam());
    hand.Release(5, 5, GetParam());
    EXPECT_EQ(Told(), Texts{"down 1"});
    hand.Release(5, 5);
    EXPECT_EQ(Told(), (Texts{"up 1", "click"}));
}

TEST_P(UnnumberedButton, HeldItTakesNoClickAwayFromAFrame)
{
    ctlFrame frame(nullptr);
    frame.Click = [this] { told.emplace_back("click"); };
    ControlHand hand(frame);
    hand.Press(5, 5, GetParam());
    hand.Press(5, 5);
    hand.Release(5, 5);
    EXPECT_EQ(Told(), Texts{"click"});
    hand.Release(5, 5, GetParam());
    EXPECT_EQ(Told(), Texts{});
}

TEST_P(UnnumberedButton, DoesNothingToATicker)
{
    ctlTicker ticker(nullptr);
    ticker.MouseDown = Noting("down");
    ticker.MouseUp = Noting("up");
    ControlHand hand(ticker);
    hand.Press(5, 5, GetParam());
    hand.Release(5, 5, GetParam());
    hand.DoublePress(5, 5, GetParam());
    hand.Release(5, 5, GetParam());
    EXPECT_EQ(Told(), Texts{});
}

class UnnumberedButtonOnSkin : public UnnumberedButton {
protected:
    UnnumberedButtonOnSkin()
    {
        window.setGeometry(kWindow);
        skinner.resize(kWindow.size());
        skinner.Initialize(&window, true, true);
        skinner.MouseDown = Noting("down");
        skinner.MouseUp = Noting("up");
        skinner.DblClick = [this] { told.emplace_back("double"); };
        window.show();
        QCoreApplication::processEvents();
    }

    static constexpr QRect kWindow{100, 90, 320, 240};
    QWidget window{nullptr, Qt::FramelessWindowHint};
    ctlSkinner skinner{&window};
    ControlHand hand{skinner};
};

TEST_P(UnnumberedButtonOnSkin, DoesNothing)
{
    hand.Press(50, 50, GetParam());
    hand.Release(50, 50, GetParam());
    hand.DoublePress(50, 50, GetParam());
    hand.Release(50, 50, GetParam());
    EXPECT_EQ(Told(), Texts{});
    hand.Press(2, 50);
    hand.Release(50, 50, GetParam()); // the edge keeps the mouse
    EXPECT_EQ(Told(), Texts{"down 1"});
}

TEST_P(UnnumberedButtonOnSkin, HeldItLetsTheLeftOneMoveTheWindow)
{
    hand.Press(50, 50, GetParam());
    hand.Press(50, 50);
    hand.Move(50, 50);
    hand.Move(70, 60);
    hand.Release(70, 60);
    EXPECT_EQ(window.pos(), kWindow.topLeft() + QPoint(20, 10));
}

TEST_P(UnnumberedButtonOnSkin, HeldItDoesNotKeepTheMouseAtAnEdge)
{
    hand.Press(2, 50, GetParam());
    hand.Press(2, 50);
    hand.Release(2, 50);
    hand.Move(160, 120);
    EXPECT_EQ(skinner.cursor().shape(), Qt::ArrowCursor);
}

class UnnumberedButtonOnMenu : public MenuTest,
                               public ::testing::WithParamInterface<Qt::MouseButton> {};

TEST_P(UnnumberedButtonOnMenu, NeitherChoosesNorCloses)
{
    AddThree();
    Look([this](frmMenus& menu) {
        Click(menu, 2, GetParam());
        ControlHand hand(menu);
        hand.DoublePress(15, 10, GetParam());
        hand.Release(15, 10, GetParam());
        EXPECT_FALSE(menu.State().closed);
    });
    EXPECT_TRUE(clicks.empty());
}

std::string NameOf(const ::testing::TestParamInfo<Qt::MouseButton>& button)
{
    switch (button.param) {
    case Qt::BackButton:
        return "Back";
    case Qt::ForwardButton:
        return "Forward";
    default:
        return "Last";
    }
}

constexpr auto Buttons = [] {
    return ::testing::Values(Qt::BackButton, Qt::ForwardButton, Qt::MaxMouseButton);
};
INSTANTIATE_TEST_SUITE_P(Mouse, UnnumberedButton, Buttons(), NameOf);
INSTANTIATE_TEST_SUITE_P(Mouse, UnnumberedButtonOnSkin, Buttons(), NameOf);
INSTANTIATE_TEST_SUITE_P(Mouse, UnnumberedButtonOnMenu, Buttons(), NameOf);

} // namespace
} // namespace lantern
