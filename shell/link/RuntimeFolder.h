// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace lantern {

// The folder for the lock and the link between instances: the user's runtime folder, made if it is
// missing, if it is one that no other user can write to; otherwise a folder of our own below the
// temporary root.
// Native bytes without a slash at the end; empty if there is no safe folder.
QByteArray RuntimeFolder(const QByteArray& userRuntimeFolder, const QByteArray& temporaryRoot);

// For this process: from XDG_RUNTIME_DIR and /tmp.
QByteArray RuntimeFolder();

} // namespace lantern
