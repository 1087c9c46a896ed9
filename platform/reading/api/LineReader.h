// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstddef>
#include <cstdint>
#include <vector>

namespace lantern {

// Grey pixels row by row, 0 to 255; letters are dark.
struct GreyPicture {
    int width = 0;
    int height = 0;
    std::vector<std::uint8_t> pixels;
};

struct ReadLetter {
    QString text; // may be more than one unit
    int left = 0; // columns of the picture
    int right = 0;
};

struct ReadWord {
    std::vector<ReadLetter> letters; // in reading order, at least one
    double confidence = 0;           // 0 to 1
};

// Reads a picture of one line of text. It may take hundredths of a second, and is asked from one
// thread only. What it can't read has no words; there is no failure.
class LineReader {
public:
    virtual ~LineReader() = default;
    virtual std::vector<ReadWord> Read(const GreyPicture& line) = 0;
};

} // namespace lantern
