// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lantern {

// The start of the player around an empty main window, which tells what it finds and when a message
// stands before it and, told to "quit", closes itself. Tests run it in processes of its own: the
// test program itself, started with this name in the environment.
inline constexpr const char* kStartPartner = "LANTERN_START_PARTNER";
int RunStartPartner(int argc, char** argv);

} // namespace lantern
