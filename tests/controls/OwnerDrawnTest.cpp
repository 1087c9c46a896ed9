// SPDX-License-Identifier: GPL-3.0-or-later
#include "OwnerDrawn.h"

#include <gtest/gtest.h>

#include <memory>

namespace lantern {
namespace {

// A control that tells what became of it while it raised an event.
class Sample : public OwnerDrawn {
public:
    using OwnerDrawn::OwnerDrawn;
    using OwnerDrawn::Raise;
    using OwnerDrawn::Report;

    std::function<void()> Click;
    KeyHandler KeyDown;

    int drawn = 0;

protected:
    void SurfaceResized() override
    {
        ++drawn;
        Surface().Clear(0xFF00FF00);
    }
};

TEST(OwnerDrawn, AnEventWithoutHandlerIsNothing)
{
    Sample control(nullptr);
    EXPECT_TRUE(control.Raise(control.Click));
    EXPECT_TRUE(control.Report(QStringLiteral("Value")));
}

TEST(OwnerDrawn, AHandlerMayPutAnotherKeyInPlace)
{
    Sample control(nullptr);
    control.KeyDown = [](KeyCode& keyCode, ShiftBits) { keyCode = KeyCode::Down; };
    KeyCode code = KeyCode::Up;
    EXPECT_TRUE(control.Raise(control.KeyDown, code, ShiftBits{0}));
    EXPECT_EQ(code, KeyCode::Down);
}

TEST(OwnerDrawn, AHandlerMayDestroyTheControlAndItselfWithIt)
{
    auto control = std::make_unique<Sample>(nullptr);
    const auto token = std::make_shared<int>(7);
    int seenAfterwards = 0;
    control->Click = [&control, &seenAfterwards, token] {
        control.reset();
        seenAfterwards = *token;
    };
    Sample* raised = control.get();
    EXPECT_FALSE(raised->Raise(raised->Click));
    EXPECT_EQ(seenAfterwards, 7);
}

TEST(OwnerDrawn, AHandlerOfAChangeMayDestroyTheControl)
{
    auto control = std::make_unique<Sample>(nullptr);
    control->PropertyChanged = [&control](const QString&) { control.reset(); };
    EXPECT_FALSE(control->Report(QStringLiteral("Value")));
    EXPECT_EQ(control, nullptr);
}

TEST(OwnerDrawn, TheSurfaceIsMadeInDevicePixelsAndDrawnOnce)
{
    Sample control(nullptr);
    control.resize(20, 10);
    const QImage shown = control.grab().toImage();
    EXPECT_EQ(control.drawn, 1);
    EXPECT_EQ(control.SurfaceImage().size(), QSize(20, 10) * control.devicePixelRatioF());
    EXPECT_EQ(shown.pixel(19, 9), 0xFF00FF00);
    control.grab();
    EXPECT_EQ(control.drawn, 1);
}

} // namespace
} // namespace lantern
