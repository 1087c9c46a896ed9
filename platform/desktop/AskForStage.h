// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace lantern {

// Asks the player of that name on the bus of the session to show its stage window. One that has
// just started, and has not joined the bus yet, is waited for, some seconds at most. False if
// nobody did it. For a process that has no toolkit and ends soon after.
bool AskForStage(const QString& busName, const QByteArray& activationToken);

} // namespace lantern
