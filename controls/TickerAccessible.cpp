// SPDX-License-Identifier: GPL-3.0-or-later
#include "TickerAccessible.h"

#include "ControlAccessibility.h"
#include "ctlTicker.h"

namespace lantern {

TickerAccessible::TickerAccessible(ctlTicker& ticker)
    : QAccessibleWidget(&ticker, QAccessible::Clock), m_ticker(ticker)
{
}

QString TickerAccessible::text(QAccessible::Text kind) const
{
    if (kind == QAccessible::Name)
        return SpokenName(m_ticker.accessibleName(), m_ticker.toolTip());
    if (kind == QAccessible::Value)
        return m_ticker.ShownText();
    return QAccessibleWidget::text(kind);
}

} // namespace lantern
