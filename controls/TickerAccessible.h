// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleWidget>

namespace lantern {

class ctlTicker;

// The time strip as assistive tools know it: a clock whose value is what it says.
class TickerAccessible : public QAccessibleWidget {
public:
    explicit TickerAccessible(ctlTicker& ticker);

    QString text(QAccessible::Text kind) const override;

private:
    ctlTicker& m_ticker;
};

} // namespace lantern
