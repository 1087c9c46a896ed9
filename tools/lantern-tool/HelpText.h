// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lantern::tool {

extern const char* const kHelpText;

} // namespace lantern::tool
