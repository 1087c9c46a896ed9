// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QAccessibleWidget>

namespace lantern {

class ctlFrame;

// A frame as assistive tools know it: a group named by its caption unless the host names it.
class FrameAccessible : public QAccessibleWidget {
public:
    explicit FrameAccessible(ctlFrame& frame);

    QString text(QAccessible::Text kind) const override;

private:
    ctlFrame& m_frame;
};

} // namespace lantern
