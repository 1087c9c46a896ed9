// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <functional>

namespace lantern {

// Shows a file with the program that the user has chosen for its kind, which runs on by itself.
// Returns at once. If no program shows it, the function is called, once, now or from the event
// loop later. For the user-interface thread.
void ShowDocument(const QString& path, std::function<void()> onFailure);

} // namespace lantern
