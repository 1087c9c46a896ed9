// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlSlide.h"

#include "ControlHand.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <vector>

namespace lantern {
namespace {

constexpr QRgb kSlideGround = 0xFF010203; // no colour that a slider has by itself
constexpr QRgb kFill = 0xFFFF0000;
constexpr QRgb kTrack = 0xFF0000FF;
constexpr QRgb kKnob = 0xFFFFFFFF;
constexpr QRgb kCentreMark = 0xFF00FF00;
constexpr int kSlideWidth = 204;
constexpr int kSlideHeight = 13;

class ctlSlideTest : public ::testing::Test {
protected:
    ctlSlideTest()
        : slide(std::make_unique<ctlSlide>(nullptr, Ambient{{}, DirectColour(1, 2, 3), {}, {}})),
          hand(*slide)
    {
        slide->resize(kSlideWidth, kSlideHeight);
        slide->grab();
        slide->Change = [this] { Note("Change " + std::to_string(slide->Value())); };
        slide->Scroll = [this] { Note("Scroll " + std::to_string(slide->Value())); };
        slide->PropertyChanged = [this](const QString& key) { Note(key.toStdString()); };
    }

    void Note(const std::string& what) { told.push_back(what); }
    std::vector<std::string> Told() { return std::exchange(told, {}); }
    QRgb At(int x, int y) const { return ShownAt(*slide, x, y); }

    // What each pixel of the slider must be.
    void ExpectPicture(int knobLeft, bool hasKnob = true, bool hasCentre = false)
    {
        slide->grab();
        for (int y = 0; y < kSlideHeight; ++y) {
            for (int x = 0; x < kSlideWidth; ++x) {
                const bool onTrack = y >= 4 && y < 8; // 13 / 2 - 2 up to 13 / 2 + 2
                QRgb expected = onTrack ? kTrack : kSlideGround;
                if (hasCentre && !onTrack && (x == 101 || x == 102))
                    expected = kCentreMark;
                if (hasKnob && onTrack && x < knobLeft)
                    expected = kFill;
                if (hasKnob && x >= knobLeft && x < knobLeft + 4)
                    expected = kKnob;
                ASSERT_EQ(At(x, y), expected) << x << "," << y;
            }
        }
    }

    std::unique_ptr<ctlSlide> slide;
    ControlHand hand;
    std::vector<std::string> told;
};

using Texts = std::vector<std::string>;

TEST_F(ctlSlideTest, StartsWithTheDesignedValues)
{
    EXPECT_EQ(slide->Min(), 0);
    EXPECT_EQ(slide->Max(), 100);
    EXPECT_EQ(slide->Value(), 0);
    EXPECT_TRUE(slide->Enabled());
    EXPECT_EQ(slide->SliderColor(), 255U);
    EXPECT_EQ(slide->SliderBack(), 0xFF0000U);
    EXPECT_EQ(slide->SliderButton(), 0xFFFFFFU);
    EXPECT_EQ(slide->BackColor(), DirectColour(1, 2, 3));
    EXPECT_FALSE(slide->CenterLine());
    EXPECT_EQ(slide->CenterLineColor(), 65280U);
    EXPECT_EQ(ctlSlide(nullptr).size(), QSize(320, 61));
    EXPECT_EQ(ctlSlide(nullptr).BackColor(), 0x8000000FU);
}

TEST_F(ctlSlideTest, AtMinTheFillIsEmptyAndTheKnobStandsAtTheFirstPixels)
{
    ExpectPicture(0);
}

TEST_F(ctlSlideTest, AtMaxTheKnobStandsAtTheLastPixels)
{
    slide->SetValue(100);
    ExpectPicture(kSlideWidth - 4);
}

TEST_F(ctlSlideTest, AValueThatLeavesTheKnobWhereItIsDrawsNothing)
{
    slide->SetValues(0, 240000, 0);
    slide->grab();
    const qint64 drawn = slide->SurfaceImage().cacheKey();
    Told();
    for (std::int32_t value = 1; value <= 600; ++value)
        slide->SetValue(value);
    EXPECT_EQ(slide->SurfaceImage().cacheKey(), drawn);
    EXPECT_EQ(Told().size(), 600U * 2); // the report and Change come all the same
    slide->SetValue(601);
    EXPECT_NE(slide->SurfaceImage().cacheKey(), drawn);
    ExpectPicture(1);
}

TEST_F(ctlSlideTest, TheTrackIsFilledUpToTheKnob)
{
    slide->SetValue(33);
    ExpectPicture(66);
}

TEST_F(ctlSlideTest, TheTrackIsDrawnOverTheCentreLineAndTheKnobOverBoth)
{
    slide->SetCenterLine(true);
    ExpectPicture(0, true, true);
    slide->SetValue(50);
    ExpectPicture(100, true, true);
}

TEST_F(ctlSlideTest, DisabledItIsABareTrack)
{
    slide->SetValue(50);
    slide->SetEnabled(false);
    ExpectPicture(0, false);
}

TEST_F(ctlSlideTest, WithoutARangeItIsABareTrack)
{
    slide->SetValues(100, 100, 100);
    ExpectPicture(0, false);
    slide->SetValues(100, 0, 50);
    ExpectPicture(0, false);
    slide->SetValues(std::numeric_limits<std::int32_t>::min(),
                     std::numeric_limits<std::int32_t>::max(), 0);
    ExpectPicture(0, false);
}

TEST_F(ctlSlideTest, AColourMayReferToTheSystems)
{
    slide->SetBackColor(SystemReference(SystemColour::ButtonShadow));
    slide->SetSliderColor(SystemReference(SystemColour::Selection));
    slide->SetSliderBack(DirectColour(4, 5, 6));
    slide->SetSliderButton(DirectColour(7, 8, 9));
    slide->SetValue(50);
    EXPECT_EQ(At(0, 0), 0xFF808080);
    EXPECT_EQ(At(0, 5), 0xFF0A246A);
    EXPECT_EQ(At(200, 5), 0xFF040506);
    EXPECT_EQ(At(101, 0), 0xFF070809);
    slide->SetCenterLineColor(DirectColour(10, 11, 12));
    slide->SetCenterLine(true);
    slide->SetValue(0);
    EXPECT_EQ(At(101, 0), 0xFF0A0B0C);
}

TEST_F(ctlSlideTest, ANewSizeIsDrawnAtOnce)
{
    slide->SetValue(100);
    slide->resize(104, 20);
    slide->grab();
    EXPECT_EQ(At(99, 0), kSlideGround);
    EXPECT_EQ(At(100, 0), kKnob);
    EXPECT_EQ(At(103, 19), kKnob);
    EXPECT_EQ(At(0, 7), kSlideGround);
    EXPECT_EQ(At(0, 8), kFill);
    EXPECT_EQ(At(0, 11), kFill);
    EXPECT_EQ(At(0, 12), kSlideGround);
}

TEST_F(ctlSlideTest, ANewValueIsReportedDrawnAndRaised)
{
    QRgb shown = 0;
    slide->Change = [&] { shown = At(100, 0); };
    slide->SetValue(50);
    EXPECT_EQ(shown, kKnob);
    EXPECT_EQ(Told(), Texts{"VALUE"});
}

TEST_F(ctlSlideTest, TheCurrentValueAgainIsNothing)
{
    slide->SetValue(50);
    EXPECT_EQ(Told(), (Texts{"VALUE", "Change 50"}));
    slide->SetValue(50);
    EXPECT_EQ(Told(), Texts{});
    slide->SetValue(100);
    Told();
    slide->SetValue(1000);
    EXPECT_EQ(Told(), Texts{});
}

TEST_F(ctlSlideTest, AValueBeyondTheEndsIsClamped)
{
    slide->SetValue(101);
    EXPECT_EQ(slide->Value(), 100);
    slide->SetValue(-1);
    EXPECT_EQ(slide->Value(), 0);
    slide->SetMin(300);
    slide->SetValue(400);
    EXPECT_EQ(slide->Value(), 100);
}

TEST_F(ctlSlideTest, NewEndsLeaveTheValueAsItIs)
{
    slide->SetValue(50);
    Told();
    slide->SetMax(20);
    slide->SetMin(10);
    EXPECT_EQ(slide->Value(), 50);
    EXPECT_EQ(Told(), (Texts{"MAX", "MIN"}));
}

TEST_F(ctlSlideTest, EachPropertyReportsItsKey)
{
    slide->SetMin(1);
    slide->SetMax(2);
    slide->SetEnabled(false);
    slide->SetSliderColor(1);
    slide->SetSliderBack(1);
    slide->SetSliderButton(1);
    slide->SetBackColor(1);
    slide->SetCenterLine(true);
    slide->SetCenterLineColor(1);
    slide->SetCenterLineColor(1); // also when nothing changes
    EXPECT_EQ(Told(), (Texts{"MIN", "MAX", "ENABLED", "SLIDERCOLOR", "SLIDERBACK", "SLIDERBUTTON",
                             "BACKCOLOR", "CENTERLINE", "CENTERLINECOLOR", "CENTERLINECOLOR"}));
}

TEST_F(ctlSlideTest, SetValuesStoresWhatItIsToldInSilence)
{
    slide->SetValues(0, 100, 150);
    EXPECT_EQ(slide->Value(), 150);
    EXPECT_EQ(Told(), Texts{});
    ExpectPicture(300); // out of sight, with the whole track filled
    slide->SetValues(0, 100, -1);
    ExpectPicture(-2); // half of the knob
    slide->SetValues(10, 20, 15);
    EXPECT_EQ(slide->Min(), 10);
    EXPECT_EQ(slide->Max(), 20);
    ExpectPicture(100);
}

TEST_F(ctlSlideTest, AValueFarOutsideIsDrawnAsItFalls)
{
    slide->SetValues(0, 1, std::numeric_limits<std::int32_t>::max());
    ExpectPicture(kSlideWidth);
    slide->SetValues(0, 1, std::numeric_limits<std::int32_t>::min());
    ExpectPicture(-4);
}

TEST_F(ctlSlideTest, APressBringsTheKnobUnderThePointer)
{
    hand.Press(102, 5);
    EXPECT_EQ(Told(), (Texts{"VALUE", "Change 50", "Scroll 50"}));
    ExpectPicture(100);
}

TEST_F(ctlSlideTest, ADragOverOneSpotStillScrollsForEachMove)
{
    hand.Press(102, 5);
    Told();
    hand.Move(102, 5);
    hand.Move(102, 9);
    EXPECT_EQ(Told(), (Texts{"Scroll 50", "Scroll 50"}));
}

TEST_F(ctlSlideTest, ADragGoesNoFartherThanTheEnds)
{
    hand.Press(102, 5);
    hand.Move(5000, 5);
    EXPECT_EQ(slide->Value(), 100);
    hand.Move(-5000, -300);
    EXPECT_EQ(slide->Value(), 0);
    hand.Release(-5000, -300);
    Told();
    hand.Move(102, 5);
    EXPECT_EQ(Told(), Texts{});
}

TEST_F(ctlSlideTest, AReleaseRaisesNothing)
{
    hand.Press(102, 5);
    Told();
    hand.Release(150, 5);
    EXPECT_EQ(Told(), Texts{});
    EXPECT_EQ(slide->Value(), 50);
}

TEST_F(ctlSlideTest, TheSecondPressOfADoubleClickIsAPressToo)
{
    hand.Press(102, 5);
    hand.Release(102, 5);
    hand.DoublePress(52, 5);
    EXPECT_EQ(slide->Value(), 25);
}

TEST_F(ctlSlideTest, OnlyTheLeftButtonAloneDrags)
{
    hand.Press(102, 5, Qt::RightButton);
    hand.Move(52, 5);
    EXPECT_EQ(Told(), Texts{});
    hand.Release(52, 5, Qt::RightButton);
    hand.Press(102, 5);
    Told();
    hand.Press(102, 5, Qt::RightButton);
    hand.Move(52, 5); // both are held
    EXPECT_EQ(Told(), Texts{});
}

TEST_F(ctlSlideTest, AReleaseOfAnyButtonEndsTheDrag)
{
    hand.Press(102, 5);
    hand.Press(102, 5, Qt::RightButton);
    hand.Release(102, 5, Qt::RightButton);
    Told();
    hand.Move(52, 5);
    EXPECT_EQ(Told(), Texts{});
}

TEST_F(ctlSlideTest, APressWhileDisabledTakesEffectAtTheNextMoveOnceEnabled)
{
    slide->SetEnabled(false);
    Told();
    hand.Press(102, 5);
    hand.Move(52, 5);
    EXPECT_EQ(Told(), Texts{});
    slide->SetEnabled(true);
    EXPECT_EQ(Told(), Texts{"ENABLED"});
    hand.Move(52, 5);
    EXPECT_EQ(Told(), (Texts{"VALUE", "Change 25", "Scroll 25"}));
}

TEST_F(ctlSlideTest, AfterCancelScrollTheDragIsDeadUntilTheNextPress)
{
    hand.Press(102, 5);
    slide->CancelScroll();
    Told();
    hand.Move(52, 5);
    hand.Move(152, 5);
    hand.Release(152, 5);
    EXPECT_EQ(Told(), Texts{});
    hand.Press(52, 5);
    EXPECT_EQ(slide->Value(), 25);
}

TEST_F(ctlSlideTest, TheHostMayCancelTheDragFromInsideScroll)
{
    slide->Scroll = [this] { slide->CancelScroll(); };
    hand.Press(102, 5);
    hand.Move(52, 5);
    EXPECT_EQ(slide->Value(), 50);
}

TEST_F(ctlSlideTest, ADragWithMinAboveMaxSetsMax)
{
    slide->SetValues(100, 10, 50);
    hand.Press(2, 5);
    EXPECT_EQ(slide->Value(), 10);
}

TEST_F(ctlSlideTest, ASliderAsNarrowAsItsKnobHarmsNothing)
{
    slide->resize(4, 13);
    slide->grab();
    hand.Press(2, 5);
    EXPECT_EQ(slide->Value(), 0);
    EXPECT_EQ(Told(), Texts{"Scroll 0"});
    slide->resize(0, 0);
    slide->SetValue(50);
    hand.Press(0, 0);
}

TEST_F(ctlSlideTest, KeysAreToldAndMoveNothing)
{
    std::vector<KeyCode> keys;
    slide->KeyDown = [&](KeyCode& key, ShiftBits shift) {
        EXPECT_EQ(shift, kShiftBit);
        keys.push_back(key);
    };
    slide->KeyUp = [&](KeyCode& key, ShiftBits) { keys.push_back(key); };
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Right, Qt::ShiftModifier);
    QKeyEvent up(QEvent::KeyRelease, Qt::Key_Right, Qt::ShiftModifier);
    QApplication::sendEvent(slide.get(), &down);
    QApplication::sendEvent(slide.get(), &up);
    EXPECT_EQ(keys, (std::vector{KeyCode::Right, KeyCode::Right}));
    EXPECT_EQ(slide->Value(), 0);
    slide->SetEnabled(false);
    QApplication::sendEvent(slide.get(), &down);
    QApplication::sendEvent(slide.get(), &up);
    EXPECT_EQ(keys.size(), 2U);
}

TEST_F(ctlSlideTest, AKeyThatIsHeldIsReleasedOnce)
{
    int released = 0;
    slide->KeyUp = [&](KeyCode&, ShiftBits) { ++released; };
    QKeyEvent repeated(QEvent::KeyRelease, Qt::Key_Right, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(slide.get(), &repeated);
    EXPECT_EQ(released, 0);
}

TEST_F(ctlSlideTest, TheFocusIsKeptInMindAndNotShown)
{
    const QImage before = slide->SurfaceImage().copy();
    QFocusEvent in(QEvent::FocusIn);
    QApplication::sendEvent(slide.get(), &in);
    EXPECT_TRUE(slide->HasFocus());
    EXPECT_EQ(slide->SurfaceImage(), before);
    QFocusEvent out(QEvent::FocusOut);
    QApplication::sendEvent(slide.get(), &out);
    EXPECT_FALSE(slide->HasFocus());
    EXPECT_EQ(slide->SurfaceImage(), before);
}

TEST_F(ctlSlideTest, TheHostMayDestroyItInAnyEvent)
{
    slide->PropertyChanged = [this](const QString&) { slide.reset(); };
    hand.Press(102, 5);
    EXPECT_EQ(slide, nullptr);

    slide = std::make_unique<ctlSlide>(nullptr);
    slide->Change = [this] { slide.reset(); };
    ControlHand(*slide).Press(102, 5);
    EXPECT_EQ(slide, nullptr);

    slide = std::make_unique<ctlSlide>(nullptr);
    slide->Scroll = [this] { slide.reset(); };
    ControlHand(*slide).Press(102, 5);
    EXPECT_EQ(slide, nullptr);

    slide = std::make_unique<ctlSlide>(nullptr);
    slide->PropertyChanged = [this](const QString&) { slide.reset(); };
    slide->SetEnabled(false);
    EXPECT_EQ(slide, nullptr);
}

TEST_F(ctlSlideTest, LoadsWithoutEventsAndTakesDefaultsForMissingKeys)
{
    PropertyBag bag;
    bag.Write(QStringLiteral("MIN"), std::int32_t{-50});
    bag.Write(QStringLiteral("MAX"), std::int32_t{50});
    bag.Write(QStringLiteral("VALUE"), std::int32_t{70}); // stored as it is
    bag.Write(QStringLiteral("SLIDERCOLOR"), ColourValue{0x08ABFF});
    bag.Write(QStringLiteral("CENTERLINE"), true);
    slide->SetEnabled(false);
    slide->SetSliderBack(1);
    Told();
    slide->Load(bag);
    EXPECT_EQ(Told(), Texts{});
    EXPECT_EQ(slide->Min(), -50);
    EXPECT_EQ(slide->Max(), 50);
    EXPECT_EQ(slide->Value(), 70);
    EXPECT_TRUE(slide->Enabled());
    EXPECT_TRUE(slide->CenterLine());
    EXPECT_EQ(slide->SliderBack(), 0xFF0000U);
    EXPECT_EQ(At(0, 5), 0xFFFFAB08);
}

TEST_F(ctlSlideTest, SavesInOrderWhatIsNoDefaultAndLoadsItBack)
{
    PropertyBag empty;
    slide->Save(empty);
    EXPECT_EQ(empty.KeysInOrder(), QStringList());

    slide->SetCenterLineColor(1);
    slide->SetCenterLine(true);
    slide->SetBackColor(2);
    slide->SetSliderButton(3);
    slide->SetSliderBack(4);
    slide->SetSliderColor(5);
    slide->SetEnabled(false);
    slide->SetValues(-10, 10, 6);
    PropertyBag bag;
    slide->Save(bag);
    EXPECT_EQ(bag.KeysInOrder().join(QLatin1Char(' ')),
              QStringLiteral("MIN MAX VALUE ENABLED SLIDERCOLOR SLIDERBACK SLIDERBUTTON BACKCOLOR "
                             "CENTERLINE CENTERLINECOLOR"));
    ctlSlide other(nullptr);
    other.Load(bag);
    EXPECT_EQ(other.Min(), -10);
    EXPECT_EQ(other.Max(), 10);
    EXPECT_EQ(other.Value(), 6);
    EXPECT_FALSE(other.Enabled());
    EXPECT_EQ(other.SliderColor(), 5U);
    EXPECT_EQ(other.SliderBack(), 4U);
    EXPECT_EQ(other.SliderButton(), 3U);
    EXPECT_EQ(other.BackColor(), 2U);
    EXPECT_TRUE(other.CenterLine());
    EXPECT_EQ(other.CenterLineColor(), 1U);
}

} // namespace
} // namespace lantern
