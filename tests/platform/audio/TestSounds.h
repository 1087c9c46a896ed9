// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <cstdint>
#include <span>
#include <vector>

// Sounds of known contents, for the tests of sound.
namespace lantern {

using Bytes = std::vector<std::uint8_t>;

inline constexpr int kRate = 44100; // frames per second, where any will do

struct Pcm {
    int sampleRate = kRate;
    int channels = 2;
    std::vector<std::int16_t> samples; // interleaved

    std::int64_t FrameCount() const { return static_cast<std::int64_t>(samples.size()) / channels; }
};

// Seeded noise at a low level that uses every bit, with a burst of 1 kHz and 20 ms at each whole
// second, the first at frame 0. The channels differ.
Pcm MakeTicks(int sampleRate, int channels, std::int64_t frames);
// How many frames later than the whole second the burst of the left channel is heard: what lines
// up best. The samples are stereo.
int BurstDelayFrames(std::span<const float> stereo, int sampleRate, int second);
// Seeded noise of two sides at half of full level.
std::vector<float> StereoNoise(std::size_t frames);
// As stereo floats, the way the program plays it.
std::vector<float> StereoFloats(const Pcm& pcm);

// A RIFF image with the plain 16-byte format chunk.
Bytes WavImage(const Pcm& pcm);
Bytes FloatWavImage(std::span<const float> stereo, int sampleRate);
// Modules of one empty pattern of 64 rows in default tempo: 7.68 s.
Bytes ModImage();
Bytes XmImage();
Bytes ItImage();
inline constexpr int kModuleLengthMs = 7680;
// Monkey's Audio: whole and last frames of coded silence at 44.1 kHz.
Bytes ApeImage(std::uint32_t wholeFrames, std::uint32_t lastFrameLength);
inline constexpr std::uint32_t kApeFrameLength = 73728;

// A folder of files for one test, gone with it.
class SoundFolder {
public:
    QString Path(const QString& name) const { return m_folder.filePath(name); }
    // Writes the file and returns its path.
    QString Write(const QString& name, std::span<const std::uint8_t> bytes) const;
    // Runs an encoder in the folder and returns the path of what it made. The test fails if the
    // program does.
    QString Encode(const Pcm& pcm, const QStringList& command, const QString& name) const;

private:
    QTemporaryDir m_folder;
};

Bytes ReadFile(const QString& path);
// What an encoder makes of it. The command has no quotes.
Bytes Encoded(const Pcm& pcm, const char* command, const char* name);

} // namespace lantern
