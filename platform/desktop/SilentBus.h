// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <chrono>

namespace lantern {

// Whether somebody listens at the first address of a D-Bus, takes the connection, and then does not
// answer as a bus does within the time. Where nobody listens, a toolkit sees so at once: that is no
// silence. Of addresses other than sockets of this machine nothing is known: false.
bool IsBusSilent(const QByteArray& address, std::chrono::milliseconds atMost);

// Takes a silent bus of the session out of the environment: a toolkit would wait for it for most of
// a minute before it shows anything. To be called before the toolkit and other threads start.
void LeaveSilentBusOut();

} // namespace lantern
