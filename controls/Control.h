// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "KeyCodes.h"
#include "PropertyBag.h"
#include "Spoken.h"
#include "SystemColours.h"

#include <QFont>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <cstdint>
#include <functional>
#include <utility>

class QAccessibleInterface;
class QKeyEvent;
class QMouseEvent;

namespace lantern {

// What a host tells a control about itself: the control's first colours and font.
struct Ambient {
    QFont font;
    ColourValue backColor = SystemReference(SystemColour::ButtonFace);
    ColourValue foreColor = SystemReference(SystemColour::ButtonText);
    QString displayName; // of the control
};

// The mouse as the controls' events report it.
enum MouseButtonBit : std::int16_t { LeftButton = 1, RightButton = 2, MiddleButton = 4 };
struct MouseReport {
    std::int16_t button = 0; // one button for a press or release; all that are held for a move
    std::int16_t shift = 0;  // 1 Shift, 2 Ctrl, 4 Alt
    float x = 0;             // pixels, from the left of what received the mouse
    float y = 0;
};
MouseReport PressReport(const QMouseEvent& event);
MouseReport MoveReport(const QMouseEvent& event);
MouseReport InTwips(MouseReport report);        // for the controls whose places are in twips
bool IsAnyButtonHeld(const QMouseEvent& event); // of those that have a number

using MouseHandler = std::function<void(const MouseReport&)>;
// The handler may put another key in the place of the one that it is told.
using KeyHandler = std::function<void(KeyCode& keyCode, ShiftBits shift)>;

// Pointer shapes by number: 0 default, 1 arrow, 6 to 9 the sizing arrows, 99 the host's own icon.
QCursor PointerShape(int number);

// What all controls have in common: what the host told them, reports of changes, events, and what
// they tell assistive tools. Everything runs on the user-interface thread.
//
// A mouse may have more buttons than the events have numbers for, such as back and forward: what
// those do, no control hears of, nor what lies behind it.
class Control : public QWidget {
public:
    explicit Control(QWidget* parent, Ambient ambient = {});

    // Told the key of each property that was set.
    std::function<void(const QString& key)> PropertyChanged;

    const Ambient& HostAmbient() const { return m_ambient; }
    void SetAmbient(Ambient ambient); // runs AmbientChanged

    // What assistive tools are told of the control, and what they can do with it: both of the
    // latter only what Speak offers, and either may destroy the control.
    virtual Spoken Speak() const { return {}; }
    virtual void Act() {}
    virtual void TakeValue(std::int32_t) {}
    // By what they reach it, owned by the toolkit that asks for it.
    virtual QAccessibleInterface* MakeAccessible();

protected:
    virtual void AmbientChanged() {}
    bool event(QEvent* event) override;

    // Calls the host's handler, if it has one. False if the host destroyed the control in it: then
    // nothing of the control may be touched any more.
    template <typename... Told, typename... Arguments>
    [[nodiscard]] bool Raise(const std::function<void(Told...)>& event, Arguments&&... arguments)
    {
        if (!event)
            return true;
        const QPointer<QWidget> control(this);
        const std::function<void(Told...)> handler = event; // it outlives the control
        handler(std::forward<Arguments>(arguments)...);
        return !control.isNull();
    }
    // Tells the host a key. One that it has no handler for goes on to the window around the
    // control; one that repeats while it is held has not been released.
    void ForwardKey(const KeyHandler& handler, QKeyEvent& event);
    // The same as Raise, for PropertyChanged.
    bool Report(const QString& key) { return Raise(PropertyChanged, key); }

private:
    Ambient m_ambient;
};

} // namespace lantern
