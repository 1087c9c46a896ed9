// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

// Under Wayland no window comes to the front by itself: whoever starts a program gives it a token,
// by which the compositor knows that the user wants it there. A later instance shows no window, so
// the running one needs its token. It lies in a file beside the link, of which the command that
// follows tells: what goes over the link is the command's text alone.
namespace lantern {

// Those of compositors are far shorter.
inline constexpr qsizetype kLongestToken = 1000;

// Before a command goes out. Without a token, or with one that is none, an older one goes. All
// failures are silent: the window then comes forward as far as the compositor lets it.
void LeaveActivationToken(const QByteArray& linkPath, const QByteArray& token);

// As a command comes in: the token, once, or an empty one. Whatever lies there is untrusted, is
// never waited for, and goes unless it is a folder.
QByteArray TakeActivationToken(const QByteArray& linkPath);

} // namespace lantern
