// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <fstream>
#include <string>

namespace lantern::test {

// What this process holds of memory that is no file's.
inline std::int64_t OwnKibibytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        std::int64_t size = 0;
        if (word == "RssAnon:" && status >> size)
            return size;
    }
    return 0;
}

} // namespace lantern::test
