// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace lantern::test {

struct FilmStill {
    double seconds = 0;
    bool isKey = false;
    std::string rgb; // three bytes to a pixel, row by row
};

// A film as another program reads it.
struct DecodedFilm {
    int width = 0;
    int height = 0;
    std::vector<FilmStill> pictures;
    double seconds = 0; // as its container tells
    int soundRate = 0;
    std::vector<float> stereo; // from 0 on

    // What is shown then; null before the first.
    const FilmStill* At(double seconds) const;
};

// A failure fails the running test.
DecodedFilm DecodeFilm(const std::filesystem::path& path);

// What ffprobe tells of the entries, one line for each section.
std::string ProbeFilm(const std::filesystem::path& path, const std::string& entries);

// Decibels, of 255; 99 where they are the same. Both have the same size.
double PeakSignalToNoise(std::string_view rgb, std::string_view wanted);

} // namespace lantern::test
