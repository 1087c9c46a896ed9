// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlFrame.h"

#include "ControlHand.h"
#include "GoldenImage.h"
#include "PaintedRegion.h"
#include "ProgramFont.h"
#include "ToldToTools.h"

#include <QAccessible>
#include <QFontMetrics>
#include <QPainter>

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace lantern {
namespace {

constexpr QRgb kFace = 0xFFD4D0C8;
constexpr QRgb kLight = 0xFFD4D0C8;
constexpr QRgb kHighlight = 0xFFFFFFFF;
constexpr QRgb kShadow = 0xFF808080;
constexpr QRgb kDarkShadow = 0xFF404040;
constexpr QRgb kFrameColour = 0xFF000000;
constexpr QRgb kTitleBar = 0xFF0A246A;
constexpr QRgb kFrameGround = 0xFF010203; // no colour that a frame has by itself
constexpr int kFrameWidth = 120;
constexpr int kFrameHeight = 50;

using Texts = std::vector<std::string>;

class ctlFrameTest : public ::testing::Test {
protected:
    ctlFrameTest() : frame(std::make_unique<ctlFrame>(&window)), hand(*frame)
    {
        window.resize(300, 200);
        frame->setGeometry(20, 30, kFrameWidth, kFrameHeight);
        frame->SetBackColor(DirectColour(1, 2, 3));
        window.grab();
        frame->Paint = [this] { Note("Paint"); };
        frame->Click = [this] { Note("Click"); };
        frame->MouseDown = [this](const MouseReport& report) { Note("Down", report); };
        frame->MouseUp = [this](const MouseReport& report) { Note("Up", report); };
        frame->PropertyChanged = [this](const QString& key) { Note(key.toStdString()); };
    }

    void Note(const std::string& what) { told.push_back(what); }
    void Note(const std::string& what, const MouseReport& report)
    {
        told.push_back(what + " " + std::to_string(report.button) + " " +
                       std::to_string(qRound(report.x)) + "," + std::to_string(qRound(report.y)));
    }
    Texts Told() { return std::exchange(told, {}); }
    QRgb At(int x, int y) const { return ShownAt(*frame, x, y); }
    int LineHeight() const { return QFontMetrics(frame->FrameFont()).height(); }
    void SetLook(std::int32_t border, const char* caption)
    {
        frame->SetFrameBorder(border);
        frame->SetCaption(QString::fromLatin1(caption));
    }
    // Pixels in the box that are not of the colour.
    int CountOthers(const Box& box, QRgb colour) const
    {
        int count = 0;
        for (int y = box.top; y < box.bottom; ++y) {
            for (int x = box.left; x < box.right; ++x)
                count += At(x, y) != colour;
        }
        return count;
    }
    // The two lines of an edge with its top at a height, as left and top, then right and bottom.
    void ExpectEdge(int top, std::pair<QRgb, QRgb> outer, std::pair<QRgb, QRgb> inner)
    {
        const int middle = kFrameWidth / 2;
        EXPECT_EQ(At(middle, top), outer.first);
        EXPECT_EQ(At(0, kFrameHeight / 2), outer.first);
        EXPECT_EQ(At(kFrameWidth - 1, kFrameHeight / 2), outer.second);
        EXPECT_EQ(At(middle, kFrameHeight - 1), outer.second);
        EXPECT_EQ(At(middle, top + 1), inner.first);
        EXPECT_EQ(At(1, kFrameHeight / 2), inner.first);
        EXPECT_EQ(At(kFrameWidth - 2, kFrameHeight / 2), inner.second);
        EXPECT_EQ(At(middle, kFrameHeight - 2), inner.second);
        EXPECT_EQ(At(middle, top + 2), kFrameGround);
        EXPECT_EQ(At(2, kFrameHeight / 2), kFrameGround);
    }

    QWidget window;
    std::unique_ptr<ctlFrame> frame;
    ControlHand hand;
    Texts told;
};

TEST_F(ctlFrameTest, StartsWithTheDesignedValues)
{
    Ambient ambient;
    ambient.displayName = QStringLiteral("TBar");
    const ctlFrame fresh(nullptr, ambient);
    EXPECT_EQ(fresh.FrameBorder(), 1);
    EXPECT_EQ(fresh.frameAlign(), 0);
    EXPECT_FALSE(fresh.FrameDivider());
    EXPECT_EQ(fresh.Caption(), QStringLiteral("TBar"));
    EXPECT_EQ(fresh.BackColor(), 0x8000000FU);
    EXPECT_EQ(fresh.ForeColor(), 0x80000012U);
    EXPECT_EQ(fresh.FrameFont(), ProgramFont(QStringLiteral("Arial"), 11, true));
    EXPECT_EQ(fresh.size(), QSize(187, 109));
    EXPECT_EQ(ctlFrame::ScaleMode(), 1);
}

TEST_F(ctlFrameTest, EachPropertyIsReportedThenDrawn)
{
    frame->SetFrameBorder(2);
    frame->SetFrameDivider(true);
    frame->SetFrameAlign(1);
    frame->SetCaption(QStringLiteral("Words"));
    frame->SetBackColor(1);
    frame->SetForeColor(2);
    frame->SetFrameFont(ProgramFont(QStringLiteral("Tahoma"), 11));
    EXPECT_EQ(Told(), (Texts{"FRAMEBORDER", "Paint", "FRAMEDIVIDER", "Paint", "FRAMEALIGN", "Paint",
                             "CAPTION", "Paint", "BACKCOLOR", "Paint", "FORECOLOR", "Paint",
                             "FRAMEFONT", "Paint"}));
}

TEST_F(ctlFrameTest, TheSameValueAgainIsReportedAndDrawnToo)
{
    frame->Paint = [this] { frame->hdc().Fill({60, 20, 61, 21}, kDarkShadow); };
    frame->SetCaption(frame->Caption());
    EXPECT_EQ(Told(), Texts{"CAPTION"});
    EXPECT_EQ(At(60, 20), kDarkShadow);
}

TEST_F(ctlFrameTest, TheEdgesAreThoseOfTheTable)
{
    constexpr std::pair kNone(kFrameGround, kFrameGround);
    constexpr std::pair kRaisedInner(kHighlight, kShadow);
    constexpr std::pair kSunkenOuter(kShadow, kHighlight);
    constexpr std::pair kRaisedOuter(kLight, kDarkShadow);
    constexpr std::pair kSunkenInner(kDarkShadow, kLight);
    SetLook(0, "");
    EXPECT_EQ(CountOthers({0, 0, kFrameWidth, kFrameHeight}, kFrameGround), 0);
    SetLook(1, "");
    ExpectEdge(0, kRaisedInner, kNone);
    SetLook(2, "");
    ExpectEdge(0, kSunkenOuter, kNone);
    SetLook(3, "");
    ExpectEdge(0, kRaisedOuter, kRaisedInner);
    SetLook(4, "");
    ExpectEdge(0, kSunkenOuter, kSunkenInner);
    SetLook(5, "");
    ExpectEdge(0, kSunkenOuter, kRaisedInner);
    SetLook(6, "");
    ExpectEdge(0, kRaisedOuter, kSunkenInner);
    SetLook(8, "");
    ExpectEdge(0, {kFrameColour, kFrameColour}, kNone);
}

TEST_F(ctlFrameTest, TheCaptionInterruptsTheEdgeBehindIt)
{
    SetLook(1, "");
    EXPECT_EQ(CountOthers({0, 0, kFrameWidth, 1}, kHighlight), 1); // its end is the right side's
    SetLook(1, ".");
    const int top = LineHeight() / 2;
    const int textWidth = QFontMetrics(frame->FrameFont()).horizontalAdvance(QStringLiteral(" . "));
    EXPECT_EQ(At(4, top), kHighlight);
    for (int x = 5; x < 5 + textWidth; ++x)
        EXPECT_EQ(At(x, top), kFrameGround) << x; // the dot stands below
    EXPECT_EQ(At(5 + textWidth, top), kHighlight);
    EXPECT_GT(CountOthers({5, top + 1, 5 + textWidth, LineHeight()}, kFrameGround), 0);
    EXPECT_EQ(CountOthers({0, 0, kFrameWidth, top}, kFrameGround), 0);
    EXPECT_EQ(At(0, top), kHighlight);
}

TEST_F(ctlFrameTest, WithoutCaptionTheEdgeIsAtTheVeryTopAndNothingIsPrinted)
{
    SetLook(2, "");
    EXPECT_EQ(CountOthers({0, 0, kFrameWidth - 1, 1}, kShadow), 0);
    EXPECT_EQ(CountOthers({1, 1, kFrameWidth - 1, kFrameHeight - 1}, kFrameGround), 0);
}

TEST_F(ctlFrameTest, ACaptionOfOneBlankPrintsNothingBelowWhereItWouldStand)
{
    SetLook(2, " ");
    const int top = LineHeight() / 2;
    EXPECT_EQ(CountOthers({0, 0, kFrameWidth, top}, kFrameGround), 0);
    EXPECT_EQ(CountOthers({0, top, kFrameWidth - 1, top + 1}, kShadow), 0); // nothing interrupts it
    EXPECT_EQ(CountOthers({1, top + 1, kFrameWidth - 1, kFrameHeight - 1}, kFrameGround), 0);
}

TEST_F(ctlFrameTest, ADividerIsALineAcrossTheTopWithTheCaptionOnIt)
{
    SetLook(3, ".");
    frame->SetFrameDivider(true);
    const int top = LineHeight() / 2;
    EXPECT_EQ(At(0, top), kLight);
    EXPECT_EQ(At(kFrameWidth - 1, top), kLight);
    EXPECT_EQ(At(0, top + 1), kHighlight);
    EXPECT_EQ(At(kFrameWidth - 1, top + 1), kHighlight);
    EXPECT_EQ(At(8, top), kFrameGround);
    EXPECT_EQ(CountOthers({0, LineHeight(), kFrameWidth, kFrameHeight}, kFrameGround), 0);
}

TEST_F(ctlFrameTest, WithoutEdgeTheCaptionBeginsAtTheLeft)
{
    frame->SetForeColor(DirectColour(255, 255, 255));
    SetLook(0, "H");
    const QFontMetrics metrics(frame->FrameFont());
    const int blank = metrics.horizontalAdvance(QLatin1Char(' '));
    EXPECT_EQ(CountOthers({0, 0, blank, kFrameHeight}, kFrameGround), 0);
    EXPECT_GT(CountOthers(
                  {blank, 0, blank + metrics.horizontalAdvance(QLatin1Char('H')) + 1, LineHeight()},
                  kFrameGround),
              5);
    EXPECT_EQ(CountOthers({40, 0, kFrameWidth, kFrameHeight}, kFrameGround), 0);
}

TEST_F(ctlFrameTest, AnAmpersandIsPrintedAsItIs)
{
    SetLook(0, "a&b");
    const QImage marked = frame->SurfaceImage().copy();
    SetLook(0, "ab");
    EXPECT_NE(frame->SurfaceImage(), marked);
}

TEST_F(ctlFrameTest, ATitleBarIsFilledAcrossWithItsTextOnIt)
{
    SetLook(7, "Tools");
    const int bottom = LineHeight() + 4;
    EXPECT_EQ(At(1, 1), kTitleBar);
    EXPECT_EQ(At(kFrameWidth - 2, bottom - 1), kTitleBar);
    EXPECT_EQ(At(kFrameWidth / 2, bottom), kFrameGround);
    EXPECT_EQ(CountOthers({0, 0, kFrameWidth - 1, 1}, kHighlight), 0);
    EXPECT_EQ(CountOthers({0, kFrameHeight - 1, kFrameWidth, kFrameHeight}, kShadow), 0);
    EXPECT_EQ(CountOthers({kFrameWidth - 1, 0, kFrameWidth, kFrameHeight}, kShadow), 0);
    EXPECT_GT(CountOthers({4, 2, 40, bottom - 2}, kTitleBar), 20);
    EXPECT_EQ(CountOthers({1, 1, 4, bottom}, kTitleBar), 0);
    EXPECT_EQ(CountOthers({60, 1, kFrameWidth - 1, bottom}, kTitleBar), 0);
}

TEST_F(ctlFrameTest, ColoursMayReferToTheSystems)
{
    frame->SetBackColor(SystemReference(SystemColour::ButtonFace));
    SetLook(0, "");
    EXPECT_EQ(At(5, 5), kFace);
    frame->SetForeColor(SystemReference(SystemColour::ButtonHighlight));
    SetLook(0, "HHH");
    int white = 0;
    for (int x = 0; x < 40; ++x)
        white += At(x, LineHeight() / 2) == kHighlight;
    EXPECT_GT(white, 2);
}

TEST_F(ctlFrameTest, IsDrawnAtEachRepaintAndResize)
{
    window.show();
    QApplication::processEvents();
    Told();
    frame->repaint();
    EXPECT_EQ(Told(), Texts{"Paint"});
    frame->resize(kFrameWidth + 10, kFrameHeight);
    EXPECT_EQ(Told(), Texts{"Paint"});
    QApplication::processEvents();
    EXPECT_EQ(Told(), Texts{}); // what is drawn already is only shown
    EXPECT_EQ(frame->SurfaceImage().width(),
              qRound((kFrameWidth + 10) * frame->devicePixelRatioF()));
}

TEST_F(ctlFrameTest, WhatTheHostAddsInPaintIsShown)
{
    SetLook(0, "");
    frame->Paint = [this] { frame->hdc().Fill({10, 10, 20, 20}, kDarkShadow); };
    frame->SetForeColor(9);
    const QImage shown = frame->grab().toImage();
    const double ratio = shown.devicePixelRatio();
    EXPECT_EQ(shown.pixel(static_cast<int>(15 * ratio), static_cast<int>(15 * ratio)), kDarkShadow);
    EXPECT_EQ(At(20, 20), kFrameGround);
}

TEST_F(ctlFrameTest, AHostThatSetsAPropertyInPaintHasItDrawnOnce)
{
    int painted = 0;
    frame->Paint = [&] {
        ++painted;
        frame->SetCaption(QString());
    };
    SetLook(2, "Words");
    EXPECT_EQ(painted, 2); // one for each property of the look
    EXPECT_EQ(At(kFrameWidth / 2, 0), kShadow);
}

TEST_F(ctlFrameTest, AHostThatSetsAPropertyInPaintIsNotAskedForEver)
{
    window.show();
    QApplication::processEvents();
    int painted = 0;
    frame->Paint = [&] { frame->SetCaption(QString::number(++painted)); };
    frame->update();
    for (int i = 0; i < 20; ++i)
        QApplication::processEvents();
    EXPECT_EQ(painted, 1);
    frame->update();
    for (int i = 0; i < 20; ++i)
        QApplication::processEvents();
    EXPECT_EQ(painted, 2);
}

TEST_F(ctlFrameTest, WhatAHostSetsInPaintIsShownOnTheWholeFrame)
{
    window.show();
    QApplication::processEvents();
    const PaintedRegion painted(*frame);
    frame->Paint = [this] { frame->SetBackColor(7); };
    frame->update(0, 0, 3, 3);
    for (int i = 0; i < 20; ++i)
        QApplication::processEvents();
    EXPECT_EQ(painted.Region(), QRegion(frame->rect()));
}

TEST_F(ctlFrameTest, OnlyANewAmbientBackColourDrawsItAnew)
{
    Ambient ambient = frame->HostAmbient();
    ambient.foreColor = 5;
    ambient.font = ProgramFont(QStringLiteral("Arial"), 20);
    frame->SetAmbient(ambient);
    EXPECT_EQ(Told(), Texts{});
    ambient.backColor = 7;
    frame->SetAmbient(ambient);
    EXPECT_EQ(Told(), Texts{"Paint"});
    frame->SetAmbient(ambient);
    EXPECT_EQ(Told(), Texts{});
}

TEST_F(ctlFrameTest, TellsOfTheMouseInTwipsAndOfAClick)
{
    hand.Press(10, 4);
    EXPECT_EQ(Told(), Texts{"Down 1 150,60"});
    hand.Release(11, 5);
    EXPECT_EQ(Told(), (Texts{"Up 1 165,75", "Click"}));
    hand.Press(10, 4);
    hand.Release(-1, 4);
    EXPECT_EQ(Told(), (Texts{"Down 1 150,60", "Up 1 -15,60"}));
    hand.Press(10, 4, Qt::RightButton);
    hand.Release(10, 4, Qt::RightButton);
    EXPECT_EQ(Told(), (Texts{"Down 2 150,60", "Up 2 150,60", "Click"}));
    hand.Press(10, 4);
    hand.Press(10, 4, Qt::RightButton);
    hand.Release(10, 4, Qt::RightButton);
    hand.Release(10, 4);
    EXPECT_EQ(Told(),
              (Texts{"Down 1 150,60", "Down 2 150,60", "Up 2 150,60", "Up 1 150,60", "Click"}));
}

TEST_F(ctlFrameTest, ALeftPressOnATitleBarMovesTheFrameAndTellsNothing)
{
    SetLook(7, "Tools");
    Told();
    hand.Press(10, 5);
    hand.Move(40, 25);
    EXPECT_EQ(frame->pos(), QPoint(50, 50));
    hand.Move(10, 6); // from where the frame is now
    EXPECT_EQ(frame->pos(), QPoint(50, 51));
    hand.Release(10, 5);
    hand.Move(60, 60);
    EXPECT_EQ(frame->pos(), QPoint(50, 51));
    EXPECT_EQ(Told(), Texts{});
}

TEST_F(ctlFrameTest, ATitleBarStaysUnderAPointerThatStaysWithinTheParent)
{
    SetLook(7, "Tools");
    hand.Press(10, 5);
    hand.Move(5000, 5000);
    EXPECT_EQ(frame->pos() + QPoint(10, 5), QPoint(299, 199));
    hand.Move(-5000, -5000);
    EXPECT_EQ(frame->pos() + QPoint(10, 5), QPoint(0, 0));
}

TEST_F(ctlFrameTest, TheOtherButtonsAreToldOnATitleBarToo)
{
    SetLook(7, "Tools");
    Told();
    hand.Press(10, 5, Qt::RightButton);
    hand.Move(40, 25);
    hand.Release(10, 5, Qt::RightButton);
    EXPECT_EQ(Told(), (Texts{"Down 2 150,75", "Up 2 150,75", "Click"}));
    EXPECT_EQ(frame->pos(), QPoint(20, 30));
}

TEST_F(ctlFrameTest, AGroupBoxDoesNotMove)
{
    hand.Press(10, 5);
    hand.Move(40, 25);
    EXPECT_EQ(frame->pos(), QPoint(20, 30));
}

TEST_F(ctlFrameTest, TheHostMayDestroyItInAnyEventButPaint)
{
    frame->MouseUp = [this](const MouseReport&) { frame.reset(); };
    hand.Press(10, 5);
    hand.Release(10, 5);
    EXPECT_EQ(frame, nullptr);
    frame = std::make_unique<ctlFrame>(nullptr);
    frame->PropertyChanged = [this](const QString&) { frame.reset(); };
    frame->SetCaption(QStringLiteral("Words"));
    EXPECT_EQ(frame, nullptr);
}

TEST_F(ctlFrameTest, LoadsAndDrawsWithDefaultsForMissingKeys)
{
    PropertyBag bag;
    bag.Write(QStringLiteral("FRAMEBORDER"), std::int32_t{0});
    bag.Write(QStringLiteral("FRAMEALIGN"), std::int32_t{2});
    bag.Write(QStringLiteral("BACKCOLOR"), ColourValue{0x0040C0});
    frame->setObjectName(QStringLiteral("SystemText"));
    frame->Load(bag);
    EXPECT_EQ(Told(), Texts{"Paint"});
    EXPECT_EQ(frame->FrameBorder(), 0);
    EXPECT_EQ(frame->frameAlign(), 2);
    EXPECT_EQ(frame->Caption(), QStringLiteral("SystemText"));
    EXPECT_EQ(frame->BackColor(), 0x0040C0U);
    EXPECT_EQ(frame->ForeColor(), 0x80000012U);
    EXPECT_EQ(frame->FrameFont(), ProgramFont(QStringLiteral("Arial"), 11, true));
    EXPECT_EQ(At(0, 40), 0xFFC04000);
}

TEST_F(ctlFrameTest, SavesInOrderAndLoadsItBack)
{
    frame->SetFrameFont(ProgramFont(QStringLiteral("Tahoma"), 13));
    frame->SetForeColor(1);
    frame->SetCaption(QStringLiteral("Words & more"));
    frame->SetFrameAlign(2);
    frame->SetFrameDivider(true);
    frame->SetFrameBorder(6);
    PropertyBag bag;
    frame->Save(bag);
    EXPECT_EQ(bag.KeysInOrder().join(QLatin1Char(' ')),
              QStringLiteral("FRAMEBORDER FRAMEDIVIDER FRAMEALIGN CAPTION BACKCOLOR FORECOLOR "
                             "FRAMEFONT"));
    ctlFrame other(nullptr);
    other.Load(bag);
    EXPECT_EQ(other.FrameBorder(), 6);
    EXPECT_TRUE(other.FrameDivider());
    EXPECT_EQ(other.frameAlign(), 2);
    EXPECT_EQ(other.Caption(), QStringLiteral("Words & more"));
    EXPECT_EQ(other.BackColor(), frame->BackColor());
    EXPECT_EQ(other.ForeColor(), 1U);
    EXPECT_EQ(other.FrameFont(), frame->FrameFont());
}

TEST_F(ctlFrameTest, AFrameOfNoSizeHarmsNothing)
{
    frame->resize(0, 0);
    SetLook(7, "Tools");
    SetLook(1, "Group");
    frame->resize(1, 1);
    window.grab();
    SetLook(4, "Group");
}

TEST_F(ctlFrameTest, AssistiveToolsKnowItAsAGroupByItsCaption)
{
    frame->SetCaption(QStringLiteral(" Ring & run "));
    const QWidget inside(frame.get());
    QAccessibleInterface* known = QAccessible::queryAccessibleInterface(frame.get());
    EXPECT_EQ(known->role(), QAccessible::Grouping);
    EXPECT_EQ(known->text(QAccessible::Name), QStringLiteral("Ring & run"));
    EXPECT_EQ(known->childCount(), 1);
    frame->setAccessibleName(QStringLiteral("Tool bar"));
    EXPECT_EQ(known->text(QAccessible::Name), QStringLiteral("Tool bar"));
}

TEST_F(ctlFrameTest, AssistiveToolsAreToldOfANewCaption)
{
    const ToldToTools heard;
    frame->SetCaption(QStringLiteral("Words"));
    frame->SetCaption(QStringLiteral("Words"));
    ASSERT_EQ(heard.Types(), std::vector{QAccessible::NameChanged});
    EXPECT_EQ(heard.Events()[0].object, frame.get());
}

TEST_F(ctlFrameTest, LooksAsItWasDrawn)
{
    frame->SetBackColor(SystemReference(SystemColour::ButtonFace));
    const QSize size = frame->SurfaceImage().size();
    QImage sheet(size.width() * 3, size.height() * 4, QImage::Format_RGB32);
    QPainter painter(&sheet);
    for (int border = 0; border < 12; ++border) {
        frame->SetFrameDivider(border >= 9);
        frame->SetFrameAlign(border % 3);
        SetLook(border < 9 ? border : border - 6, "Balance");
        QImage shown = frame->SurfaceImage().copy();
        shown.setDevicePixelRatio(1);
        painter.drawImage(border % 3 * size.width(), border / 3 * size.height(), shown);
    }
    painter.end();
    const int ratio = qRound(frame->devicePixelRatioF() * 100);
    EXPECT_TRUE(MatchesGolden(sheet, QStringLiteral("frame-%1").arg(ratio)));
}

} // namespace
} // namespace lantern
