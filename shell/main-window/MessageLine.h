// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ctlFrame.h"

namespace lantern {

// The line of short messages under the picture. What it comes to show, assistive tools announce:
// the toolkit tells them of a line that comes up, and the line of a message in another one's place.
class MessageLine : public ctlFrame {
public:
    using ctlFrame::ctlFrame;

    void ShowMessage(bool visible);

    Spoken Speak() const override;

private:
    QString m_announced; // of the message that stands
};

} // namespace lantern
