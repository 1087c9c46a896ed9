// SPDX-License-Identifier: GPL-3.0-or-later
// A real hand on the controls, through a real display and window manager.
#include "Eyes.h"
#include "Hand.h"
#include "Lent.h"

#include <gtest/gtest.h>

#include <map>
#include <sstream>

namespace lantern::test {
namespace {

using Lines = std::vector<std::string>;

constexpr QRgb kFace = 0xFFD4D0C8;
constexpr QRgb kHighlight = 0xFFFFFFFF;
constexpr QRgb kShadow = 0xFF808080;
constexpr QRgb kTitleBar = 0xFF0A246A;
constexpr Clock::duration kPatience = 10s; // the machine may be busy
constexpr Clock::duration kQuiet = 300ms;  // what has not come by then does not come

// The gallery of the controls, with each at a known place of the screen.
class ControlsByHand : public ::testing::Test {
protected:
    ControlsByHand()
    {
        hand.MoveTo({1, 1});
        // The window manager may move the window once more.
        EXPECT_TRUE(Eventually([this] { return CountOf("placed") > 0; }, kPatience, 50ms));
        std::size_t count = 0;
        const auto standsStill = [this, &count] {
            const std::size_t before = std::exchange(count, CountOf("placed"));
            return before == count;
        };
        EXPECT_TRUE(Eventually(standsStill, kPatience, 500ms));
        ReadPlaces();
        read = ReadFile(log).size();
    }

    std::size_t CountOf(const std::string& wanted) const
    {
        std::istringstream text(ReadFile(log));
        std::size_t count = 0;
        for (std::string line; std::getline(text, line);)
            count += static_cast<std::size_t>(line == wanted);
        return count;
    }
    void ReadPlaces()
    {
        std::istringstream text(ReadFile(log));
        std::string word;
        while (text >> word) {
            if (word != "place")
                continue;
            std::string name;
            int x = 0;
            int y = 0;
            int width = 0;
            int height = 0;
            text >> name >> x >> y >> width >> height;
            places[name] = QRect(x, y, width, height);
        }
    }

    Point At(const std::string& name, int dx, int dy) const
    {
        const QRect place = places.at(name);
        return {place.x() + dx, place.y() + dy};
    }
    Point MiddleOf(const std::string& name) const
    {
        const QRect place = places.at(name);
        return At(name, place.width() / 2, place.height() / 2);
    }
    Point Beside(const std::string& name) const { return At(name, -4, 5); }
    // What a control told since the last time, without its name.
    Lines ToldBy(const std::string& name) const
    {
        std::istringstream text(ReadFile(log).substr(read));
        Lines lines;
        for (std::string line; std::getline(text, line);) {
            if (!text.eof() && line.starts_with(name + ' '))
                lines.push_back(line.substr(name.size() + 1));
        }
        return lines;
    }
    // The same without the pointer's coming and going, of which there is any number in a drag.
    Lines PressesToldBy(const std::string& name) const
    {
        Lines lines = ToldBy(name);
        std::erase_if(lines, [](const std::string& line) { return line.starts_with("MouseO"); });
        return lines;
    }
    // Waits until a control has told these and has gone quiet, then looks no more at them.
    ::testing::AssertionResult Tells(const std::string& name, const Lines& wanted)
    {
        const auto told = [&] { return PressesToldBy(name); };
        Eventually([&] { return told().size() >= wanted.size(); }, kPatience);
        std::this_thread::sleep_for(kQuiet);
        const Lines all = told();
        read = ReadFile(log).size();
        if (all == wanted)
            return ::testing::AssertionSuccess();
        return ::testing::AssertionFailure() << name << " told " << ::testing::PrintToString(all);
    }
    bool Shows(Point point, QRgb colour)
    {
        return Eventually([&] { return eyes.At(point) == colour; }, kPatience);
    }

    ScratchFolder folder;
    const std::filesystem::path log = folder / "events";
    const std::shared_ptr<XServer> lentScreen = Lend<XServer>(1200, 780);
    const XServer& screen = *lentScreen;
    Process gallery{{.arguments = {LANTERN_GALLERY, "--events"},
                     .environment = WithHome(screen.Environment()),
                     .log = log}};
    Hand hand{screen};
    Eyes eyes{screen};
    std::map<std::string, QRect> places;
    std::size_t read = 0;

private:
    EnvironmentChanges WithHome(EnvironmentChanges changes) const
    {
        changes.emplace_back("XDG_RUNTIME_DIR", folder.PrivateFolder("runtime").string());
        changes.emplace_back("QT_QPA_PLATFORM", "xcb");
        changes.emplace_back("QT_SCALE_FACTOR", std::nullopt);
        return changes;
    }
};

TEST_F(ControlsByHand, AButtonLightsUpUnderThePointerAndGoesOut)
{
    const Point edge = At("flat.normal", 30, 0);
    EXPECT_TRUE(Shows(edge, kFace));
    hand.MoveTo(MiddleOf("flat.normal"));
    EXPECT_TRUE(Shows(edge, kHighlight));
    hand.MoveTo(Beside("flat.normal"));
    EXPECT_TRUE(Shows(edge, kFace));
    EXPECT_TRUE(Eventually(
        [this] {
            return ToldBy("flat.normal") == Lines{"MouseOver", "MouseOut"};
        },
        kPatience));
}

TEST_F(ControlsByHand, APressAndReleaseClicks)
{
    hand.Click(MiddleOf("flat.normal"));
    EXPECT_TRUE(Tells("flat.normal", {"MouseDown 1 0", "MouseUp 1 0", "Click"}));
}

TEST_F(ControlsByHand, AButtonGoesUpOutsideAndDownAgainInside)
{
    const Point edge = At("raised.normal", 30, 0);
    hand.MoveTo(MiddleOf("raised.normal"));
    hand.Press();
    EXPECT_TRUE(Shows(edge, kShadow));
    hand.MoveTo(Beside("raised.normal"));
    EXPECT_TRUE(Shows(edge, kHighlight));
    hand.MoveTo(MiddleOf("raised.normal"));
    EXPECT_TRUE(Shows(edge, kShadow));
    hand.Release();
    EXPECT_TRUE(Shows(edge, kHighlight));
    EXPECT_TRUE(Tells("raised.normal", {"MouseDown 1 0", "MouseUp 1 0", "Click"}));
}

TEST_F(ControlsByHand, ReleasedOutsideNothingIsClicked)
{
    hand.Drag(MiddleOf("raised.normal"), MiddleOf("raised.hot"));
    EXPECT_TRUE(Tells("raised.normal", {"MouseDown 1 0", "MouseUp 1 0"}));
    EXPECT_TRUE(Tells("raised.hot", {}));
    EXPECT_TRUE(Shows(At("raised.normal", 30, 0), kHighlight));
}

TEST_F(ControlsByHand, ADoubleClickIsTwoClicks)
{
    hand.DoubleClick(MiddleOf("play.normal"));
    EXPECT_TRUE(Tells("play.normal", {"MouseDown 1 0", "MouseUp 1 0", "Click", "MouseDown 1 0",
                                      "MouseUp 1 0", "Click"}));
}

TEST_F(ControlsByHand, TheRightButtonClicksNothing)
{
    hand.Click(MiddleOf("play.normal"), 3);
    EXPECT_TRUE(Tells("play.normal", {"MouseDown 2 0", "MouseUp 2 0"}));
    hand.Click(MiddleOf("ticker.time"), 3);
    EXPECT_TRUE(Tells("ticker.time", {"MouseDown 2 0", "MouseUp 2 0"}));
}

TEST_F(ControlsByHand, ACheckButtonTurnsWithEachClick)
{
    for (const char* clicked : {"Click 0", "Click 1"}) {
        hand.Click(MiddleOf("both.checked"));
        EXPECT_TRUE(Tells("both.checked", {"MouseDown 1 0", "MouseUp 1 0", clicked}));
        std::this_thread::sleep_for(500ms); // no double click
    }
}

TEST_F(ControlsByHand, ADisabledControlTellsNothing)
{
    for (const std::string name : {"play.disabled", "raised.disabled", "slide.disabled"}) {
        hand.Click(MiddleOf(name));
        hand.Key("space");
        EXPECT_TRUE(Tells(name, {}));
    }
}

TEST_F(ControlsByHand, TheSpaceBarPressesTheButtonWithTheFocus)
{
    hand.Click(MiddleOf("raised.normal"));
    EXPECT_TRUE(Tells("raised.normal", {"MouseDown 1 0", "MouseUp 1 0", "Click"}));
    hand.MoveTo({1, 1});
    hand.Key("space");
    EXPECT_TRUE(Tells("raised.normal", {"KeyDown 32 0", "KeyPress 32", "KeyUp 32 0", "Click"}));
}

TEST_F(ControlsByHand, TheArrowKeysWalkFromButtonToButton)
{
    hand.Click(MiddleOf("raised.normal"));
    EXPECT_TRUE(Tells("raised.normal", {"MouseDown 1 0", "MouseUp 1 0", "Click"}));
    hand.Key("Right");
    hand.Key("space");
    EXPECT_TRUE(
        Tells("raised.hot", {"KeyUp 39 0", "KeyDown 32 0", "KeyPress 32", "KeyUp 32 0", "Click"}));
    hand.Key("Left");
    hand.Key("space");
    EXPECT_TRUE(Tells("raised.normal",
                      {"KeyUp 37 0", "KeyDown 32 0", "KeyPress 32", "KeyUp 32 0", "Click"}));
}

TEST_F(ControlsByHand, ASliderFollowsTheHandAndStopsAtItsEnds)
{
    const Point middle = MiddleOf("slide.plain");
    hand.MoveTo(middle);
    hand.Press();
    EXPECT_TRUE(Tells("slide.plain", {"Change 50", "Scroll 50"}));
    hand.MoveTo(At("slide.plain", 290, 6));
    EXPECT_TRUE(Tells("slide.plain", {"Change 100", "Scroll 100"}));
    hand.MoveTo(At("slide.plain", 300, 40));
    EXPECT_TRUE(Tells("slide.plain", {"Scroll 100"}));
    EXPECT_TRUE(Shows(At("slide.plain", 268, 6), kHighlight));
    hand.MoveTo(At("slide.plain", -30, 6));
    EXPECT_TRUE(Tells("slide.plain", {"Change 0", "Scroll 0"}));
    EXPECT_TRUE(Shows(At("slide.plain", 1, 6), kHighlight));
    hand.Release();
    hand.MoveTo(middle);
    EXPECT_TRUE(Tells("slide.plain", {}));
}

TEST_F(ControlsByHand, ADragThatWasGivenUpFollowsNoMore)
{
    hand.MoveTo(MiddleOf("slide.plain"));
    hand.Press();
    EXPECT_TRUE(Tells("slide.plain", {"Change 50", "Scroll 50"}));
    hand.Key("Escape");
    EXPECT_TRUE(Tells("slide.plain", {"KeyDown 27 0", "KeyUp 27 0"}));
    hand.MoveTo(At("slide.plain", 200, 6));
    hand.Release();
    EXPECT_TRUE(Tells("slide.plain", {}));
    hand.MoveTo(At("slide.plain", 1, 6));
    hand.Press();
    hand.Release();
    EXPECT_TRUE(Tells("slide.plain", {"Change 0", "Scroll 0"}));
}

TEST_F(ControlsByHand, AFrameIsMovedByItsTitleBar)
{
    const Point title = At("frame.7.3", 80, 8);
    const Point target{title.x - 150, title.y - 40};
    EXPECT_TRUE(Shows(title, kTitleBar));
    hand.Drag(title, target);
    EXPECT_TRUE(Shows(target, kTitleBar));
    EXPECT_FALSE(eyes.At(title) == kTitleBar);
}

} // namespace
} // namespace lantern::test
