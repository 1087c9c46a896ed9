// SPDX-License-Identifier: GPL-3.0-or-later
#include "ctlSkinner.h"

#include "ControlHand.h"
#include "ToldToTools.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

namespace lantern {
namespace {

constexpr QRect kWindow(100, 90, 320, 240);
constexpr QPoint kCentre(160, 120);
constexpr QPoint kOnCaption(160, 8);

// A point of each element.
constexpr std::array<QPoint, kSkinElements> kPoints = {
    QPoint(2, 2),     QPoint(160, 2), QPoint(317, 2),   QPoint(2, 120),  kCentre,
    QPoint(317, 120), QPoint(2, 237), QPoint(160, 237), QPoint(317, 237)};

class ctlSkinnerTest : public ::testing::Test {
protected:
    class Host : public QWidget {
    public:
        ctlSkinner* skinner = nullptr;

    protected:
        void resizeEvent(QResizeEvent*) override
        {
            if (skinner)
                skinner->resize(size());
        }
    };

    ctlSkinnerTest()
    {
        host.setWindowFlag(Qt::FramelessWindowHint);
        host.setMinimumSize(50, 40);
        skinner = new ctlSkinner(&host);
        host.skinner = skinner;
        host.setGeometry(kWindow);
        host.show();
        QCoreApplication::processEvents();
        skinner->MouseDown = [this](const MouseReport& report) { Note("down", report); };
        skinner->MouseUp = [this](const MouseReport& report) { Note("up", report); };
        skinner->DblClick = [this] { events.emplace_back("double"); };
    }

    void Note(const std::string& what, const MouseReport& report)
    {
        events.push_back(what + " " + std::to_string(report.button) + " " +
                         std::to_string(std::lround(report.x)) + " " +
                         std::to_string(std::lround(report.y)));
    }

    void Mouse(QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons buttons)
    {
        QMouseEvent event(type, at, QPointF(kWindow.topLeft() + at), button, buttons,
                          Qt::NoModifier);
        QApplication::sendEvent(skinner, &event);
    }
    void Press(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        Mouse(QEvent::MouseButtonPress, at, button, button);
    }
    void Move(QPoint to, Qt::MouseButtons buttons = Qt::LeftButton)
    {
        Mouse(QEvent::MouseMove, to, Qt::NoButton, buttons);
    }
    void Release(QPoint at, Qt::MouseButton button = Qt::LeftButton)
    {
        Mouse(QEvent::MouseButtonRelease, at, button, Qt::NoButton);
    }
    void DoubleClick(QPoint at)
    {
        Mouse(QEvent::MouseButtonDblClick, at, Qt::LeftButton, Qt::LeftButton);
        Release(at);
    }
    // As a hand drags: the first movement only starts it.
    QRect Drag(QPoint from, QPoint distance)
    {
        host.setGeometry(kWindow);
        QCoreApplication::processEvents();
        Press(from);
        Move(from);
        Move(from + distance);
        Release(from + distance);
        return host.geometry();
    }

    Qt::CursorShape PointerAt(QPoint at)
    {
        Move(at, Qt::NoButton);
        return skinner->cursor().shape();
    }

    Host host;
    ctlSkinner* skinner = nullptr;
    std::vector<std::string> events;
};

TEST_F(ctlSkinnerTest, TheFrameIsThatOfTheBitmaps)
{
    skinner->SetBackColor(DirectColour(255, 0, 0));
    const QImage image = skinner->grab().toImage();
    for (int y = 0; y < kWindow.height(); ++y) {
        for (int x = 0; x < kWindow.width(); ++x) {
            const SkinPlace place = *PlaceAt(skinner->Layout(), false, x, y);
            QRgb expected = 0xFFFF0000;
            if (place.element != kSkinCentre) {
                // A stretched bitmap is the same all along its edge.
                const auto row =
                    static_cast<std::size_t>(place.box.Height() == 5 ? y - place.box.top : 2);
                const auto column =
                    static_cast<std::size_t>(place.box.Width() == 5 ? x - place.box.left : 2);
                expected = SkinColour(kSkin[place.element].bitmap[row][column]);
            }
            ASSERT_EQ(ShownAt(image, x, y), expected) << x << ", " << y;
        }
    }
}

TEST_F(ctlSkinnerTest, FromOutsideToInsideTwoOrangeOneDarkTwoBlack)
{
    const QImage image = skinner->grab().toImage();
    constexpr std::array<QRgb, 5> kInwards = {0xFFFFAB08, 0xFFFFAB08, 0xFF7F5504, 0xFF000000,
                                              0xFF000000};
    for (int i = 0; i < 5; ++i) {
        const QRgb expected = kInwards[static_cast<std::size_t>(i)];
        EXPECT_EQ(ShownAt(image, 100, i), expected);
        EXPECT_EQ(ShownAt(image, 100, kWindow.height() - 1 - i), expected);
        EXPECT_EQ(ShownAt(image, i, 100), expected);
        EXPECT_EQ(ShownAt(image, kWindow.width() - 1 - i, 100), expected);
    }
    EXPECT_EQ(ShownAt(image, 2, 2), 0xFFBF8006); // the inner corner
}

TEST_F(ctlSkinnerTest, ANarrowControlIsPaintedWithoutHarm)
{
    for (const QSize size : {QSize(8, 100), QSize(100, 7), QSize(1, 1), QSize(6, 6)}) {
        skinner->resize(size);
        const QImage image = skinner->grab().toImage();
        EXPECT_EQ(ShownAt(image, 0, 0), SkinColour('O'));
    }
    skinner->resize(8, 100);
    EXPECT_EQ(skinner->Layout().elements[1].Width(), -2);
}

TEST_F(ctlSkinnerTest, WhereElementsOverlapTheOneInFrontIsSeen)
{
    constexpr QSize kNarrow(7, 40);
    skinner->resize(kNarrow);
    const QImage image = skinner->grab().toImage();
    for (int y = 0; y < kNarrow.height(); ++y) {
        for (int x = 0; x < kNarrow.width(); ++x) {
            const SkinPlace place = *PlaceAt(skinner->Layout(), false, x, y);
            const bool isCorner = place.box.Height() == kSkinBitmapSize;
            const auto row = static_cast<std::size_t>(isCorner ? y - place.box.top : 0);
            const auto column = static_cast<std::size_t>(x - place.box.left);
            EXPECT_EQ(ShownAt(image, x, y), SkinColour(kSkin[place.element].bitmap[row][column]))
                << x << ", " << y;
        }
    }
}

TEST_F(ctlSkinnerTest, AnyTextShowsTheCaptionAndNoneHidesIt)
{
    EXPECT_FALSE(skinner->CaptionIsVisible());
    skinner->SetCaption(QStringLiteral(" "));
    EXPECT_TRUE(skinner->CaptionIsVisible());
    skinner->SetCaption(QString());
    EXPECT_FALSE(skinner->CaptionIsVisible());
    skinner->SetCaption(QStringLiteral(" Options"));
    EXPECT_TRUE(skinner->CaptionIsVisible());
}

TEST_F(ctlSkinnerTest, TheCaptionIsWrittenInOrange)
{
    skinner->SetBackColor(0);
    const QImage without = skinner->grab().toImage();
    skinner->SetCaption(QStringLiteral("MMMM"));
    const QImage with = skinner->grab().toImage();
    const Box box = skinner->Layout().caption;
    int orange = 0;
    for (int y = 0; y < kWindow.height(); ++y) {
        for (int x = 0; x < kWindow.width(); ++x) {
            const QRgb pixel = ShownAt(with, x, y);
            if (pixel == ShownAt(without, x, y))
                continue;
            EXPECT_TRUE(x >= box.left && x < box.right && y >= box.top && y < box.bottom);
            orange += pixel == 0xFFFFAB08 ? 1 : 0;
        }
    }
    EXPECT_GT(orange, 20);
}

TEST_F(ctlSkinnerTest, ItTellsWhatWasSet)
{
    std::vector<QString> keys;
    skinner->PropertyChanged = [&](const QString& key) { keys.push_back(key); };
    skinner->SetBackColor(7);
    skinner->SetCaption(QStringLiteral("x"));
    EXPECT_EQ(keys, (std::vector{QStringLiteral("BackColor"), QStringLiteral("CAPTION")}));
    EXPECT_EQ(skinner->BackColor(), 7u);
    EXPECT_EQ(skinner->Caption(), QStringLiteral("x"));
}

TEST_F(ctlSkinnerTest, BothKeysAreAlwaysSaved)
{
    PropertyBag bag;
    skinner->Save(bag);
    EXPECT_EQ(bag.KeysInOrder(),
              (QStringList{QStringLiteral("BACKCOLOR"), QStringLiteral("CAPTION")}));
    EXPECT_EQ(bag.Read<ColourValue>(QStringLiteral("BACKCOLOR"), 1), 0x8000000Fu); // the ambient
    EXPECT_EQ(bag.Read(QStringLiteral("CAPTION"), QStringLiteral("?")), QString());
}

TEST_F(ctlSkinnerTest, AMissingBackColourLeavesTheOneInForce)
{
    skinner->SetBackColor(255);
    skinner->SetCaption(QStringLiteral("old"));
    skinner->Load({});
    EXPECT_EQ(skinner->BackColor(), 255u);
    EXPECT_EQ(skinner->Caption(), QString());
}

TEST_F(ctlSkinnerTest, LoadingReportsNothingAndDoesNotLayOut)
{
    int reports = 0;
    skinner->PropertyChanged = [&](const QString&) { ++reports; };
    PropertyBag bag;
    bag.Write(QStringLiteral("BACKCOLOR"), ColourValue{0});
    bag.Write(QStringLiteral("CAPTION"), QStringLiteral(" Options"));
    skinner->Load(bag);
    EXPECT_EQ(reports, 0);
    EXPECT_FALSE(skinner->CaptionIsVisible()); // until the next layout
    host.resize(330, 250);
    QCoreApplication::processEvents();
    EXPECT_TRUE(skinner->CaptionIsVisible());
}

TEST_F(ctlSkinnerTest, TheMouseIsReportedInTheCoordinatesOfTheElement)
{
    Press({317, 238});
    Release({319, 230}); // as far as it may have gone, the element keeps the mouse
    Press({160, 1}, Qt::RightButton);
    Release({160, 1}, Qt::RightButton);
    EXPECT_EQ(events,
              (std::vector<std::string>{"down 1 2 3", "up 1 4 -5", "down 2 155 1", "up 2 155 1"}));
    events.clear();
    skinner->SetCaption(QStringLiteral("x"));
    Press({10, 8});
    Release({10, 8});
    EXPECT_EQ(events, (std::vector<std::string>{"down 1 7 5", "up 1 7 5"}));
}

TEST_F(ctlSkinnerTest, ADoubleClickIsToldForEveryElementButNotForTheCaption)
{
    for (const QPoint& point : kPoints) {
        events.clear();
        DoubleClick(point);
        ASSERT_EQ(events.size(), 2u);
        EXPECT_EQ(events[0], "double");
        EXPECT_EQ(events[1].substr(0, 4), "up 1");
    }
    skinner->SetCaption(QStringLiteral("x"));
    events.clear();
    DoubleClick(kOnCaption);
    EXPECT_EQ(events, (std::vector<std::string>{"up 1 157 5"}));
}

TEST_F(ctlSkinnerTest, ThePointersTellWhatMayBeDragged)
{
    constexpr std::array kSizing = {Qt::SizeFDiagCursor, Qt::SizeVerCursor, Qt::SizeBDiagCursor,
                                    Qt::SizeHorCursor,   Qt::ArrowCursor,   Qt::SizeHorCursor,
                                    Qt::SizeBDiagCursor, Qt::SizeVerCursor, Qt::SizeFDiagCursor};
    for (std::size_t i = 0; i < kSkinElements; ++i)
        EXPECT_EQ(PointerAt(kPoints[i]), Qt::ArrowCursor) << i; // before Initialize
    skinner->Initialize(&host, true, true);
    for (std::size_t i = 0; i < kSkinElements; ++i)
        EXPECT_EQ(PointerAt(kPoints[i]), kSizing[i]) << i;
    skinner->Initialize(&host, false, true);
    for (std::size_t i = 0; i < kSkinElements; ++i)
        EXPECT_EQ(PointerAt(kPoints[i]), Qt::ArrowCursor) << i;
}

TEST_F(ctlSkinnerTest, EachElementMovesOrSizesItsSide)
{
    skinner->Initialize(&host, true, true);
    for (std::size_t i = 0; i < kSkinElements; ++i) {
        const QPoint distance(13, -7);
        EXPECT_EQ(Drag(kPoints[i], distance),
                  DraggedGeometry(kWindow, distance, kSkin[i].hitCode, host.minimumSize(),
                                  host.maximumSize()))
            << i;
        EXPECT_EQ(skinner->size(), host.size());
        EXPECT_EQ(skinner->Layout().elements[4], (Box{0, 0, host.width(), host.height()}));
    }
}

TEST_F(ctlSkinnerTest, AWindowThatIsNotSizableOnlyMoves)
{
    skinner->Initialize(&host, false, true);
    for (std::size_t i = 0; i < kSkinElements; ++i) {
        const QRect expected = i == kSkinCentre ? kWindow.translated(20, 10) : kWindow;
        EXPECT_EQ(Drag(kPoints[i], {20, 10}), expected) << i;
    }
}

TEST_F(ctlSkinnerTest, AWindowThatIsNotMovableSizesAndMovesByItsTitle)
{
    skinner->Initialize(&host, true, false);
    skinner->SetCaption(QStringLiteral(" Options"));
    EXPECT_EQ(Drag(kCentre, {20, 10}), kWindow);
    EXPECT_EQ(Drag(kPoints[5], {20, 10}), kWindow.adjusted(0, 0, 20, 0));
    EXPECT_EQ(Drag(kOnCaption, {20, 10}), kWindow.translated(20, 10));
}

TEST_F(ctlSkinnerTest, BeforeInitializeNothingIsDragged)
{
    skinner->SetCaption(QStringLiteral(" Options"));
    for (const QPoint& point : kPoints)
        EXPECT_EQ(Drag(point, {20, 10}), kWindow);
    EXPECT_EQ(Drag(kOnCaption, {20, 10}), kWindow);
}

TEST_F(ctlSkinnerTest, OnlyTheLeftButtonAloneDrags)
{
    skinner->Initialize(&host, true, true);
    for (const Qt::MouseButtons buttons :
         {Qt::MouseButtons(Qt::RightButton), Qt::LeftButton | Qt::RightButton,
          Qt::MouseButtons(Qt::MiddleButton), Qt::LeftButton | Qt::MiddleButton}) {
        Press(kCentre);
        Move(kCentre + QPoint(5, 5), buttons);
        Move(kCentre + QPoint(30, 30), buttons);
        Release(kCentre);
        EXPECT_EQ(host.geometry(), kWindow);
    }
}

TEST_F(ctlSkinnerTest, APressAndReleaseWithoutAMoveOnlyRaisesItsEvents)
{
    skinner->Initialize(&host, true, true);
    Press(kCentre);
    Release(kCentre);
    EXPECT_EQ(events, (std::vector<std::string>{"down 1 160 120", "up 1 160 120"}));
    EXPECT_EQ(host.geometry(), kWindow);
}

TEST_F(ctlSkinnerTest, TheReleaseThatEndsADragIsNotTold)
{
    skinner->Initialize(&host, true, true);
    Drag(kCentre, {5, 5});
    EXPECT_EQ(events, (std::vector<std::string>{"down 1 160 120"}));
    events.clear();
    Press(kCentre);
    Release(kCentre);
    EXPECT_EQ(events.size(), 2u);
}

TEST_F(ctlSkinnerTest, ADragThatWasGivenUpDoesNotStartAgainBeforeTheNextPress)
{
    skinner->Initialize(&host, true, true);
    Press(kCentre);
    Move(kCentre);
    Move(kCentre + QPoint(9, 9));
    QKeyEvent escape(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QApplication::sendEvent(skinner, &escape);
    EXPECT_EQ(host.geometry(), kWindow);
    Move(kCentre + QPoint(20, 20));
    Move(kCentre + QPoint(30, 30));
    EXPECT_EQ(host.geometry(), kWindow);
    Release(kCentre);
    EXPECT_EQ(Drag(kCentre, {4, 4}), kWindow.translated(4, 4));
}

TEST_F(ctlSkinnerTest, AWindowThatIsGoneIsNotDragged)
{
    auto other = std::make_unique<QWidget>();
    skinner->Initialize(other.get(), true, true);
    other.reset();
    EXPECT_EQ(Drag(kCentre, {20, 10}), kWindow);
}

TEST_F(ctlSkinnerTest, KeysAreTold)
{
    std::vector<std::pair<KeyCode, ShiftBits>> keys;
    skinner->KeyDown = [&](KeyCode& code, ShiftBits shift) { keys.emplace_back(code, shift); };
    skinner->KeyUp = [&](KeyCode& code, ShiftBits shift) { keys.emplace_back(code, shift); };
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Up, Qt::ShiftModifier);
    QApplication::sendEvent(skinner, &down);
    QKeyEvent up(QEvent::KeyRelease, Qt::Key_Up, Qt::NoModifier);
    QApplication::sendEvent(skinner, &up);
    QKeyEvent repeated(QEvent::KeyRelease, Qt::Key_Up, Qt::NoModifier, QString(), true);
    QApplication::sendEvent(skinner, &repeated); // the key is still held
    EXPECT_EQ(keys, (std::vector<std::pair<KeyCode, ShiftBits>>{{KeyCode::Up, kShiftBit},
                                                                {KeyCode::Up, 0}}));
}

TEST_F(ctlSkinnerTest, KeysThatNobodyHandlesGoOnToTheWindow)
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
        QKeyEvent event(type, Qt::Key_Up, Qt::NoModifier);
        static_cast<QObject*>(skinner)->event(&event);
        EXPECT_FALSE(event.isAccepted());
    }
}

TEST_F(ctlSkinnerTest, AHandlerMayDestroyIt)
{
    skinner->MouseDown = [this](const MouseReport&) {
        delete std::exchange(host.skinner, nullptr);
    };
    Press(kCentre);
    EXPECT_EQ(host.skinner, nullptr);
}

TEST_F(ctlSkinnerTest, WhatTheHostPutsIntoItStandsInFront)
{
    QWidget inside(skinner);
    inside.setGeometry(0, 0, 20, 20);
    inside.show();
    EXPECT_EQ(skinner->childAt(2, 2), &inside);
}

TEST_F(ctlSkinnerTest, AssistiveToolsKnowItAsAPaneWithItsCaption)
{
    skinner->SetCaption(QStringLiteral(" Options"));
    QAccessibleInterface* known = QAccessible::queryAccessibleInterface(skinner);
    EXPECT_EQ(known->role(), QAccessible::Pane);
    EXPECT_EQ(known->text(QAccessible::Name), QStringLiteral("Options"));
    skinner->setAccessibleName(QStringLiteral("Frame"));
    EXPECT_EQ(known->text(QAccessible::Name), QStringLiteral("Frame"));
}

TEST_F(ctlSkinnerTest, AssistiveToolsAreToldOfANewCaption)
{
    skinner->SetCaption(QStringLiteral("Options"));
    const ToldToTools told;
    skinner->SetCaption(QStringLiteral("About"));
    skinner->SetCaption(QStringLiteral("About"));
    ASSERT_EQ(told.Types(), std::vector{QAccessible::NameChanged});
    EXPECT_EQ(told.Events()[0].object, skinner);
}

} // namespace
} // namespace lantern
