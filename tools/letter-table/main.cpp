// SPDX-License-Identifier: GPL-3.0-or-later
// Prints platform/graphics/LetterSeed.cpp.
#include "LetterTable.h"

#include <cstdio>

int main()
{
    using namespace lantern::letters;
    const std::string source = SourceOf(LearnDistances(kScenes));
    return std::fputs(source.c_str(), stdout) < 0 || std::fflush(stdout) != 0 ? 1 : 0;
}
