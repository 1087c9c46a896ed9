// SPDX-License-Identifier: GPL-3.0-or-later
#include "PointerWatch.h"

#include "ScreenMetrics.h"

#include <QApplication>
#include <QCursor>
#include <QWidget>

#include <algorithm>

namespace lantern {
namespace {

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

void PointerWatch::SeenAt(QPointF point)
{
    m_pointer = m_control.mapTo(m_control.window(), point.toPoint());
}

void PointerWatch::AskWindowSystem()
{
    if (!KnowsWindowPlaces())
        return;
    const QPoint pointer = QCursor::pos();
    if (QApplication::widgetAt(pointer) == &m_control)
        m_pointer = m_control.window()->mapFromGlobal(pointer);
    else
        m_pointer.reset();
}

bool PointerWatch::IsOver() const
{
    if (!m_pointer || !m_control.isVisible() || IsOverChildOf(m_control))
        return false;
    const QWidget* window = m_control.window();
    const QWidget* inFront = window->childAt(*m_pointer);
    if (!inFront && window->rect().contains(*m_pointer))
        inFront = window;
    return inFront == &m_control;
}

} // namespace lantern
