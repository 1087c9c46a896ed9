// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QEvent>
#include <QObject>

namespace lantern {

// Counts what is repainted, of all that it watches.
class PaintCount : public QObject {
public:
    int painted = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        painted += event->type() == QEvent::UpdateRequest || event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }
};

} // namespace lantern
