// SPDX-License-Identifier: GPL-3.0-or-later
// What mouse, keys, focus and the pointer's coming and going do to a button.
#include "ButtonControl.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QShortcutEvent>

#include <tuple>

namespace lantern {
namespace {

constexpr int kOverIntervalMs = 3;
// About ten times a second.
constexpr unsigned kTicksPerQuestion = 32;

// The key goes to whatever has the focus, as if it had been typed.
void PostTab(Qt::Key key, Qt::KeyboardModifiers modifiers)
{
    if (QWidget* focus = QApplication::focusWidget())
        QCoreApplication::postEvent(focus, new QKeyEvent(QEvent::KeyPress, key, modifiers));
}

} // namespace

bool ButtonControl::event(QEvent* event)
{
    const bool isAccessKey = event->type() == QEvent::Shortcut && m_accessKey != 0 &&
                             static_cast<QShortcutEvent*>(event)->shortcutId() == m_accessKey;
    if (!isAccessKey)
        return OwnerDrawn::event(event);
    // Without a change of Value, and even while not Enabled.
    std::ignore = Raise(Click);
    return true;
}

void ButtonControl::enterEvent(QEnterEvent* event)
{
    m_pointer.SeenAt(event->position());
}

void ButtonControl::leaveEvent(QEvent*)
{
    m_pointer.Left();
}

void ButtonControl::mouseMoveEvent(QMouseEvent* event)
{
    m_pointer.SeenAt(event->position());
    const MouseReport report = MoveReport(*event);
    if (!m_enabled || !Raise(MouseMove, report))
        return;
    if (report.button >= RightButton)
        return;
    if (!m_pointer.IsOver()) {
        DrawButton(ButtonState::Normal, false);
    } else if (report.button == LeftButton) {
        DrawButton(ButtonState::Down, false);
        m_mouseOver = false; // during a press; the next move without button makes it hot again
    } else if (!m_mouseOver) {
        BecomeHot();
    }
}

void ButtonControl::BecomeHot()
{
    m_overTimer.start(kOverIntervalMs, Qt::PreciseTimer, this);
    m_mouseOver = true;
    DrawButton(ButtonState::Normal, true);
    std::ignore = Raise(MouseOver);
}

void ButtonControl::timerEvent(QTimerEvent*)
{
    if (++m_overTicks % kTicksPerQuestion == 0)
        m_pointer.AskWindowSystem();
    if (m_pointer.IsOver())
        return;
    m_overTimer.stop();
    m_mouseOver = false;
    DrawButton(ButtonState::Normal, true);
    std::ignore = Raise(MouseOut);
}

void ButtonControl::mousePressEvent(QMouseEvent* event)
{
    m_pointer.SeenAt(event->position());
    HandleMouseDown(PressReport(*event));
}

void ButtonControl::HandleMouseDown(const MouseReport& report)
{
    if (!m_enabled || !Raise(MouseDown, report))
        return;
    m_lastButton = report.button;
    if (report.button != RightButton)
        DrawButton(ButtonState::Down, false);
}

// The second press of a double click acts like a press; the toolkit gives the mouse to the button
// until the release, as with any press. It calls it one, too, where the first press was on another
// button, in whose place this one has come: then it is the first press here.
void ButtonControl::mouseDoubleClickEvent(QMouseEvent* event)
{
    m_pointer.SeenAt(event->position());
    const MouseReport report = PressReport(*event);
    if (m_lastButton == LeftButton)
        HandleMouseDown({LeftButton, report.shift, 0, 0});
    else if (report.button == LeftButton)
        HandleMouseDown(report);
}

void ButtonControl::mouseReleaseEvent(QMouseEvent* event)
{
    const MouseReport report = PressReport(*event);
    if (m_enabled) {
        if (!Raise(MouseUp, report))
            return;
        if (report.button != RightButton)
            DrawButton(ButtonState::Normal, false);
    }
    if (IsOnSurface(event->position().toPoint()) && !IsAnyButtonHeld(*event))
        HandleClick();
}

bool ButtonControl::IsOnSurface(QPoint point) const
{
    return rect().contains(point) && (mask().isEmpty() || mask().contains(point));
}

void ButtonControl::HandleClick()
{
    if (m_lastButton == LeftButton && m_enabled)
        ClickWithValue(true);
}

void ButtonControl::ClickWithValue(bool force)
{
    if (m_isCheckBox)
        StoreValue(!m_value);
    DrawButton(ButtonState::Normal, force);
    repaint(); // the host may be busy with the click for a while
    std::ignore = Raise(Click);
}

void ButtonControl::Press()
{
    if (m_enabled)
        ClickWithValue(true);
}

void ButtonControl::keyPressEvent(QKeyEvent* event)
{
    event->ignore();
    if (!m_enabled)
        return;
    const KeyCode typed = KeyCodeOf(*event);
    KeyCode keyCode = typed;
    if (!Raise(KeyDown, keyCode, ShiftBitsOf(*event)))
        return;
    m_lastKey = static_cast<std::uint8_t>(keyCode);
    event->setAccepted(ActsOnKey(keyCode) || keyCode != typed);
    std::ignore = RaiseKeyPress(*event);
}

bool ButtonControl::ActsOnKey(KeyCode keyCode)
{
    switch (keyCode) {
    case KeyCode::Blank:
        DrawButton(ButtonState::Down, false);
        return true;
    case KeyCode::Left:
    case KeyCode::Up:
        PostTab(Qt::Key_Backtab, Qt::ShiftModifier);
        return true;
    case KeyCode::Right:
    case KeyCode::Down:
        PostTab(Qt::Key_Tab, Qt::NoModifier);
        return true;
    default:
        return false;
    }
}

// False if a handler destroyed the button.
bool ButtonControl::RaiseKeyPress(const QKeyEvent& event)
{
    // Neither writes a character, though the toolkit has a text for them.
    if (event.key() == Qt::Key_Delete || event.modifiers().testFlag(Qt::AltModifier))
        return true;
    const QString text = event.text();
    for (const QChar character : text) {
        if (m_enabled && !Raise(KeyPress, static_cast<std::int16_t>(character.unicode())))
            return false;
    }
    return true;
}

void ButtonControl::keyReleaseEvent(QKeyEvent* event)
{
    event->ignore();
    // A key that repeats while it is held has not been released.
    if (!m_enabled || event->isAutoRepeat())
        return;
    const KeyCode typed = KeyCodeOf(*event);
    KeyCode keyCode = typed;
    if (!Raise(KeyUp, keyCode, ShiftBitsOf(*event)))
        return;
    const bool isClick =
        keyCode == KeyCode::Blank && m_lastKey == static_cast<std::uint8_t>(KeyCode::Blank);
    event->setAccepted(isClick || keyCode != typed);
    if (isClick)
        ClickWithValue(false);
}

void ButtonControl::focusInEvent(QFocusEvent*)
{
    DrawLastState();
}

void ButtonControl::focusOutEvent(QFocusEvent*)
{
    DrawLastState();
}

} // namespace lantern
