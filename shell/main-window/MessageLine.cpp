// SPDX-License-Identifier: GPL-3.0-or-later
#include "MessageLine.h"

#include "ControlAccessibility.h"

#include <QAccessible>

namespace lantern {

void MessageLine::ShowMessage(bool visible)
{
    const bool takesAnothersPlace = visible && isVisible() && Caption() != m_announced;
    setVisible(visible);
    m_announced = Caption();
    if (takesAnothersPlace)
        TellTools(QAccessibleEvent(this, QAccessible::ObjectShow));
}

Spoken MessageLine::Speak() const
{
    Spoken spoken = ctlFrame::Speak();
    spoken.role = QAccessible::Notification;
    return spoken;
}

} // namespace lantern
