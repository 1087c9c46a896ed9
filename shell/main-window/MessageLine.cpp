// SPDX-License-Identifier: GPL-3.0-or-later
#include "MessageLine.h"

#include "FrameAccessible.h"

namespace lantern {
namespace {

class MessageAccessible : public FrameAccessible {
public:
    using FrameAccessible::FrameAccessible;

    QAccessible::Role role() const override { return QAccessible::Notification; }
};

} // namespace

void MessageLine::ShowMessage(bool visible)
{
    const bool takesAnothersPlace = visible && isVisible() && Caption() != m_announced;
    setVisible(visible);
    m_announced = Caption();
    if (takesAnothersPlace)
        TellShown();
}

void MessageLine::TellShown()
{
    QAccessibleEvent shown(this, QAccessible::ObjectShow);
    QAccessible::updateAccessibility(&shown);
}

QAccessibleInterface* MessageLine::MakeAccessible()
{
    return new MessageAccessible(*this);
}

} // namespace lantern
