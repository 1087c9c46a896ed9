// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <vector>

namespace lantern::test {

// A sound drawn by the test: stereo at 44100 frames a second, silent where nothing was added.
class SoundSheet {
public:
    static constexpr int kRate = 44100;

    explicit SoundSheet(double seconds);

    struct Tone {
        double start = 0.0;  // seconds
        double length = 0.0; // seconds
        double frequency = 1000.0;
        double left = 0.5; // level of each side, 0 to 1
        double right = 0.5;
    };
    void Add(const Tone& tone);

    void WriteWav(const std::filesystem::path& path) const; // 16 bits
    void WriteMp3(const std::filesystem::path& path) const; // by a real encoder

private:
    std::vector<float> m_stereo;
};

} // namespace lantern::test
