// SPDX-License-Identifier: GPL-3.0-or-later
#include "TestSounds.h"

#include <QFile>
#include <QProcess>

#include <algorithm>
#include <bit>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>
#include <random>
#include <string_view>

namespace lantern {
namespace {

constexpr double kBurstSeconds = 0.020;

double Burst(int frame, int sampleRate)
{
    return std::cos(2 * std::numbers::pi * 1000 * frame / sampleRate);
}

void PutText(Bytes& out, std::string_view text)
{
    for (const char character : text)
        out.push_back(static_cast<std::uint8_t>(character));
}

void PutLittle(Bytes& out, std::uint32_t value, int bytes)
{
    for (int i = 0; i < bytes; ++i)
        out.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

void PutZeros(Bytes& out, std::size_t count)
{
    for (std::size_t i = 0; i < count; ++i)
        out.push_back(0);
}

} // namespace

Pcm MakeTicks(int sampleRate, int channels, std::int64_t frames)
{
    Pcm pcm{.sampleRate = sampleRate, .channels = channels, .samples = {}};
    pcm.samples.reserve(static_cast<std::size_t>(frames * channels));
    const auto burstFrames = static_cast<int>(sampleRate * kBurstSeconds);
    std::mt19937 random(1);
    for (std::int64_t frame = 0; frame < frames; ++frame) {
        const auto intoSecond = static_cast<int>(frame % sampleRate);
        const double burst = intoSecond < burstFrames ? 20000 * Burst(intoSecond, sampleRate) : 0;
        for (int channel = 0; channel < channels; ++channel) {
            const int noise = static_cast<int>(random() % 201) - 100;
            const double level = channel % 2 == 0 ? 1.0 : 0.5;
            pcm.samples.push_back(static_cast<std::int16_t>(std::lround(burst * level) + noise));
        }
    }
    return pcm;
}

int BurstDelayFrames(std::span<const float> stereo, int sampleRate, int second)
{
    const auto burstFrames = static_cast<int>(sampleRate * kBurstSeconds);
    const int farthest = sampleRate / 10;
    const auto frames = static_cast<int>(stereo.size() / 2);
    std::vector<double> burst;
    for (int i = 0; i < burstFrames; ++i)
        burst.push_back(Burst(i, sampleRate));
    int best = 0;
    double bestMatch = 0;
    for (int delay = -farthest; delay <= farthest; ++delay) {
        double match = 0;
        for (int i = 0; i < burstFrames; ++i) {
            const int frame = second * sampleRate + delay + i;
            if (frame >= 0 && frame < frames)
                match += burst[static_cast<std::size_t>(i)] *
                         static_cast<double>(stereo[2 * static_cast<std::size_t>(frame)]);
        }
        if (match > bestMatch) {
            bestMatch = match;
            best = delay;
        }
    }
    return best;
}

std::vector<float> StereoNoise(std::size_t frames)
{
    std::mt19937 random(7);
    std::uniform_real_distribution<float> level(-0.5F, 0.5F);
    std::vector<float> stereo(frames * 2);
    std::ranges::generate(stereo, [&] { return level(random); });
    return stereo;
}

std::vector<float> StereoFloats(const Pcm& pcm)
{
    std::vector<float> floats;
    for (std::size_t i = 0; i < pcm.samples.size(); ++i) {
        floats.push_back(static_cast<float>(pcm.samples[i]) / 32768.0F);
        if (pcm.channels == 1)
            floats.push_back(floats.back());
    }
    return floats;
}

namespace {

Bytes WavHead(std::uint32_t format, std::uint32_t channels, std::uint32_t rate,
              std::uint32_t sampleBytes, std::uint32_t dataSize)
{
    Bytes out;
    PutText(out, "RIFF");
    PutLittle(out, dataSize + 36, 4);
    PutText(out, "WAVEfmt ");
    PutLittle(out, 16, 4);
    PutLittle(out, format, 2);
    PutLittle(out, channels, 2);
    PutLittle(out, rate, 4);
    PutLittle(out, rate * channels * sampleBytes, 4);
    PutLittle(out, channels * sampleBytes, 2);
    PutLittle(out, sampleBytes * 8, 2);
    PutText(out, "data");
    PutLittle(out, dataSize, 4);
    return out;
}

} // namespace

Bytes WavImage(const Pcm& pcm)
{
    const auto dataSize = static_cast<std::uint32_t>(pcm.samples.size() * sizeof(std::int16_t));
    Bytes out = WavHead(1, static_cast<std::uint32_t>(pcm.channels),
                        static_cast<std::uint32_t>(pcm.sampleRate), 2, dataSize);
    for (const std::int16_t sample : pcm.samples)
        PutLittle(out, static_cast<std::uint16_t>(sample), 2);
    return out;
}

Bytes FloatWavImage(std::span<const float> stereo, int sampleRate)
{
    Bytes out = WavHead(3, 2, static_cast<std::uint32_t>(sampleRate), 4,
                        static_cast<std::uint32_t>(stereo.size_bytes()));
    for (const float sample : stereo)
        PutLittle(out, std::bit_cast<std::uint32_t>(sample), 4);
    return out;
}

Bytes ModImage()
{
    constexpr std::size_t kNameSize = 20;
    constexpr std::size_t kInstrumentsSize = 31 * 30;
    constexpr std::size_t kOrderSize = 128;
    constexpr std::size_t kPatternSize = 64 * 4 * 4;
    Bytes out;
    PutText(out, "ticks");
    PutZeros(out, kNameSize - 5 + kInstrumentsSize);
    PutLittle(out, 1, 1);   // positions in the song
    PutLittle(out, 127, 1); // as every writer puts it
    PutZeros(out, kOrderSize);
    PutText(out, "M.K.");
    PutZeros(out, kPatternSize);
    return out;
}

Bytes XmImage()
{
    Bytes out;
    PutText(out, "Extended Module: ticks               \x1A");
    PutText(out, "FastTracker v2.00   ");
    PutLittle(out, 0x0104, 2);
    PutLittle(out, 276, 4); // size of the header from here
    // Positions, restart, channels, patterns, instruments, flags, ticks a row, beats a minute.
    for (const std::uint32_t value : {1U, 0U, 4U, 1U, 0U, 1U, 6U, 125U})
        PutLittle(out, value, 2);
    PutZeros(out, 256);
    PutLittle(out, 9, 4); // one pattern: its header alone, for it is empty
    PutLittle(out, 0, 1);
    PutLittle(out, 64, 2);
    PutLittle(out, 0, 2);
    return out;
}

Bytes ItImage()
{
    Bytes out;
    PutText(out, "IMPM");
    PutZeros(out, 26);
    PutLittle(out, 0x1004, 2);
    // Orders, instruments, samples, patterns, made with, compatible with, flags, special.
    for (const std::uint32_t value : {2U, 0U, 0U, 1U, 0x0214U, 0x0200U, 9U, 0U})
        PutLittle(out, value, 2);
    // Global and mix volume, ticks a row, beats a minute, separation, pitch wheel.
    for (const std::uint32_t value : {128U, 48U, 6U, 125U, 128U, 0U})
        PutLittle(out, value, 1);
    PutZeros(out, 10); // no message
    for (int channel = 0; channel < 64; ++channel)
        PutLittle(out, 32, 1);
    for (int channel = 0; channel < 64; ++channel)
        PutLittle(out, 64, 1);
    PutLittle(out, 0, 1);
    PutLittle(out, 255, 1);
    PutLittle(out, 0, 4); // where the pattern lies: nowhere, it is empty
    return out;
}

Bytes ApeImage(std::uint32_t wholeFrames, std::uint32_t lastFrameLength)
{
    constexpr std::uint32_t kDescriptorSize = 52;
    constexpr std::uint32_t kHeaderSize = 24;
    constexpr std::uint32_t kCodedFrameSize = 16;
    const std::uint32_t frames = wholeFrames + 1;
    const std::uint32_t audioStart = kDescriptorSize + kHeaderSize + 4 * frames;
    Bytes out;
    PutText(out, "MAC ");
    PutLittle(out, 3990, 4);
    for (const std::uint32_t value :
         {kDescriptorSize, kHeaderSize, 4 * frames, 0U, frames * kCodedFrameSize, 0U, 0U})
        PutLittle(out, value, 4);
    PutZeros(out, 16); // no checksum
    PutLittle(out, 2000, 2);
    PutLittle(out, 0, 2);
    for (const std::uint32_t value : {kApeFrameLength, lastFrameLength, frames})
        PutLittle(out, value, 4);
    PutLittle(out, 16, 2);
    PutLittle(out, 2, 2);
    PutLittle(out, 44100, 4);
    for (std::uint32_t frame = 0; frame < frames; ++frame)
        PutLittle(out, audioStart + frame * kCodedFrameSize, 4);
    for (std::uint32_t frame = 0; frame < frames; ++frame) {
        PutLittle(out, 0x80000000, 4); // flags follow
        PutLittle(out, 3, 4);          // both channels are silent
        PutZeros(out, 8);
    }
    return out;
}

QString SoundFolder::Write(const QString& name, std::span<const std::uint8_t> bytes) const
{
    QFile file(Path(name));
    const auto size = static_cast<qint64>(bytes.size());
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(file.write(reinterpret_cast<const char*>(bytes.data()), size), size);
    return Path(name);
}

QString SoundFolder::Encode(const Pcm& pcm, const QStringList& command, const QString& name) const
{
    Write(QStringLiteral("in.wav"), WavImage(pcm));
    QProcess encoder;
    encoder.setWorkingDirectory(m_folder.path());
    encoder.start(command.front(), command.mid(1) << name);
    EXPECT_TRUE(encoder.waitForFinished(60000)) << command.join(u' ').toStdString();
    EXPECT_EQ(encoder.exitCode(), 0) << encoder.readAllStandardError().toStdString();
    return Path(name);
}

Bytes ReadFile(const QString& path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    return {bytes.begin(), bytes.end()};
}

Bytes Encoded(const Pcm& pcm, const char* command, const char* name)
{
    const SoundFolder folder;
    return ReadFile(
        folder.Encode(pcm, QString::fromLatin1(command).split(u' '), QString::fromLatin1(name)));
}

} // namespace lantern
