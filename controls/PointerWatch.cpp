// SPDX-License-Identifier: GPL-3.0-or-later
#include "PointerWatch.h"

#include <QApplication>
#include <QCursor>
#include <QWidget>

#include <algorithm>
#include <cmath>

namespace lantern {
namespace {

// Under Wayland a program knows neither where the pointer is outside its windows nor how the
// windows lie upon each other.
bool WindowSystemTellsThePointer()
{
    return !QGuiApplication::platformName().startsWith(QStringLiteral("wayland"));
}

// Onto a child the pointer moves without leaving its parent.
bool IsOverChildOf(const QWidget& control)
{
    const QObjectList& children = control.children();
    return std::any_of(children.begin(), children.end(), [](const QObject* child) {
        const auto* widget = qobject_cast<const QWidget*>(child);
        return widget && widget->underMouse();
    });
}

} // namespace

QPoint PixelAt(QPointF point)
{
    return {static_cast<int>(std::floor(point.x())), static_cast<int>(std::floor(point.y()))};
}

void PointerWatch::SeenAt(QPointF onScreen)
{
    m_pointer = PixelAt(onScreen);
}

void PointerWatch::AskWindowSystem()
{
    if (!WindowSystemTellsThePointer())
        return;
    const QPoint pointer = QCursor::pos();
    if (QApplication::widgetAt(pointer) == &m_control)
        m_pointer = pointer;
    else
        m_pointer.reset();
}

bool PointerWatch::IsOver() const
{
    if (!m_pointer || !m_control.isVisible() || IsOverChildOf(m_control))
        return false;
    const QWidget* window = m_control.window();
    const QPoint point = window->mapFromGlobal(*m_pointer);
    const QWidget* inFront = window->childAt(point);
    if (!inFront && window->rect().contains(point))
        inFront = window;
    return inFront == &m_control;
}

} // namespace lantern
