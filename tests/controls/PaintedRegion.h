// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>
#include <QPaintEvent>
#include <QRegion>
#include <QWidget>

#include <utility>

namespace lantern {

// The region of a widget that its paint events have covered.
class PaintedRegion : public QObject {
public:
    explicit PaintedRegion(QWidget& widget) { widget.installEventFilter(this); }
    QRegion Region() const { return m_region; }
    QRegion Take() { return std::exchange(m_region, {}); }

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            m_region += static_cast<QPaintEvent*>(event)->region();
        return false;
    }

private:
    QRegion m_region;
};

} // namespace lantern
