// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ctlBtn.h"
#include "ctlPicBtn.h"

#include <QApplication>
#include <QCursor>
#include <QTest>
#include <QWindow>

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

namespace lantern {

constexpr QRgb kRed = 0xFFFF0000;
constexpr QRgb kGreen = 0xFF00FF00;
constexpr QRgb kBlue = 0xFF0000FF;
constexpr QRgb kYellow = 0xFFFFFF00;
constexpr QRgb kBlackPixel = 0xFF000000;
constexpr QRgb kWhitePixel = 0xFFFFFFFF;
constexpr QRgb kFace = 0xFFD4D0C8;
constexpr QRgb kShadow = 0xFF808080;

inline PictureReference PlainPicture(QRgb colour, QSize size = {8, 6},
                                     PictureType type = PictureType::Bitmap)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(colour);
    return Picture::FromImage(image, type);
}

inline Ambient TestAmbient()
{
    Ambient ambient;
    ambient.font = QFont(QStringLiteral("Liberation Sans"));
    ambient.font.setPixelSize(11);
    return ambient;
}

// A button that counts how often it draws and ticks.
template <typename Button>
class Probe : public Button {
public:
    explicit Probe(QWidget* parent = nullptr, Ambient ambient = TestAmbient())
        : Button(parent, std::move(ambient))
    {
    }

    int drawn = 0;
    int ticks = 0;
    ButtonLook look = ButtonLook::Normal; // as last drawn

protected:
    void DrawLook(ButtonLook newLook) override
    {
        ++drawn;
        look = newLook;
        Button::DrawLook(newLook);
    }
    void timerEvent(QTimerEvent* event) override
    {
        ++ticks;
        Button::timerEvent(event);
    }
};

using Log = std::vector<std::string>;

// A window with one button in it, and a hand that moves the pointer and presses, all through the
// window system.
template <typename Button>
class ButtonTest : public ::testing::Test {
protected:
    // Multiples of four lie on whole pixels of the device at ratios of quarters, too.
    static constexpr QPoint kAway{252, 152};
    static constexpr QPoint kInside{72, 40};
    static constexpr QPoint kInsideToo{60, 44};

    ButtonTest()
    {
        // With a frame, or at any other place, the offscreen platform sets the pointer beside the
        // place that it is told where the screen has a ratio.
        window.setWindowFlag(Qt::FramelessWindowHint);
        window.setGeometry(0, 0, 300, 200);
        button = new Probe<Button>(&window);
        button->setGeometry(40, 30, 60, 24);
        LogEvents(*button);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
        QApplication::setActiveWindow(&window);
        // The test before may have pressed where its pointer was not.
        MoveTo(kAway + QPoint(1, 1));
        MoveTo(kAway);
        button->drawn = 0;
    }
    ~ButtonTest() override
    {
        for (const Qt::MouseButton held : {Qt::LeftButton, Qt::RightButton, Qt::MiddleButton}) {
            if (QGuiApplication::mouseButtons().testFlag(held))
                Release(kAway, held);
        }
    }

    void LogEvents(ButtonControl& to)
    {
        const auto mouse = [this](const char* name) {
            return [this, name](const MouseReport& report) {
                std::ostringstream line;
                line << name << ' ' << report.button << ' ' << report.shift << ' ' << report.x
                     << ',' << report.y;
                log.push_back(line.str());
            };
        };
        const auto key = [this](const char* name) {
            return [this, name](KeyCode& code, ShiftBits shift) {
                std::ostringstream line;
                line << name << ' ' << static_cast<int>(code) << ' ' << shift;
                log.push_back(line.str());
            };
        };
        const auto plain = [this](const char* name) {
            return [this, name] { log.emplace_back(name); };
        };
        to.MouseDown = mouse("MouseDown");
        to.MouseUp = mouse("MouseUp");
        to.MouseMove = [this](const MouseReport&) { ++moves; };
        to.KeyDown = key("KeyDown");
        to.KeyUp = key("KeyUp");
        to.KeyPress = [this](std::int16_t code) {
            log.push_back("KeyPress " + std::to_string(code));
        };
        to.Click = plain("Click");
        to.MouseOver = plain("MouseOver");
        to.MouseOut = plain("MouseOut");
        to.PropertyChanged = [this](const QString& name) {
            log.push_back("Changed " + name.toStdString());
        };
    }

    // What was logged since the last time.
    Log Logged() { return std::exchange(log, {}); }
    int CountOf(const std::string& name) const
    {
        return static_cast<int>(std::count(log.begin(), log.end(), name));
    }

    void MoveTo(QPoint inWindow)
    {
        QCursor::setPos(window.mapToGlobal(inWindow));
        QCoreApplication::processEvents();
    }
    void Press(QPoint inWindow, Qt::MouseButton which = Qt::LeftButton,
               Qt::KeyboardModifiers held = {})
    {
        QTest::mousePress(window.windowHandle(), which, held, inWindow);
    }
    void Release(QPoint inWindow, Qt::MouseButton which = Qt::LeftButton)
    {
        QTest::mouseRelease(window.windowHandle(), which, {}, inWindow);
    }
    void Type(Qt::Key key) { QTest::keyClick(button, key); }
    // Long enough for the window system to be asked, too.
    static void WaitForTicks() { QTest::qWait(200); }

    QWidget window;
    Probe<Button>* button = nullptr;
    Log log;
    int moves = 0;
};

using BothButtons = ::testing::Types<ctlPicBtn, ctlBtn>;

} // namespace lantern
