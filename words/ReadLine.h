// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "LineReader.h"
#include "SungLine.h"

#include <QString>

#include <vector>

namespace lantern {

// A letter or a word where it stands in its line's mask, in columns.
struct PlacedLetter {
    QString text;
    int left = 0;
    int right = 0;
};
struct PlacedWord {
    std::vector<PlacedLetter> letters;
    double confidence = 0;

    int Left() const { return letters.front().left; }
    int Right() const { return letters.back().right; }
    QString Text() const;
};
using ReadLine = std::vector<PlacedWord>;

// What is read in each of the lines, and cleaned by what all of them tell.
std::vector<ReadLine> ReadLines(const std::vector<SungLine>& lines, LineReader& reader);

} // namespace lantern
