// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lantern {

// The value of a hexadecimal digit of either case; -1 for any other character.
constexpr int HexDigitValue(char digit)
{
    if (digit >= '0' && digit <= '9')
        return digit - '0';
    if (digit >= 'A' && digit <= 'F')
        return digit - 'A' + 10;
    if (digit >= 'a' && digit <= 'f')
        return digit - 'a' + 10;
    return -1;
}

} // namespace lantern
