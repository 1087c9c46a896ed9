// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lantern {

// The system's description of an error code. Where access was denied, possible causes follow.
QString ErrorText(int code);

// For the last error of the system; call it before anything else can fail.
QString LastErrorText();

} // namespace lantern
