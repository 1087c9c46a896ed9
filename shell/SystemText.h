// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DisplayHost.h"

#include <QLabel>

namespace lantern {

// The line of text in the border under the picture.
class SystemText : public QLabel {
public:
    explicit SystemText(QWidget* parent);

    ColourValue ForeColor() const { return m_foreColor; }
    void SetForeColor(ColourValue colour);
    void SetBackColor(ColourValue colour);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void ApplyColours();

    ColourValue m_foreColor = 0xFFFFFF;
    ColourValue m_backColor = 0x0040C0;
};

} // namespace lantern
