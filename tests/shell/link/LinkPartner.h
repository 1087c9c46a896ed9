// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lantern {

// One instance, as the player starts, with nothing around the lock and the link: the first one
// prints "first", then a line for each command; a later one hands its arguments over and ends.
// Tests run it in processes of its own: the test program itself, started with this name in the
// environment.
inline constexpr const char* kLinkPartner = "LANTERN_LINK_PARTNER";
int RunLinkPartner(int argc, char** argv);

} // namespace lantern
