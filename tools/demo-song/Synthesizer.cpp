// SPDX-License-Identifier: GPL-3.0-or-later
#include "Synthesizer.h"

#include "Score.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

namespace lantern::demo {
namespace {

constexpr double kPi = 3.14159265358979323846;

// Of one period, at a phase from 0 to 1: folded to a quarter, then the series to the 11th power.
double Sine(double phase)
{
    phase -= static_cast<double>(static_cast<long>(phase));
    double x = phase < 0.25 ? phase : phase < 0.75 ? 0.5 - phase : phase - 1.0;
    x *= 2.0 * kPi;
    const double square = x * x;
    return x * (1.0 - square / 6.0 *
                          (1.0 - square / 20.0 *
                                     (1.0 - square / 42.0 *
                                                (1.0 - square / 72.0 * (1.0 - square / 110.0)))));
}

double Frequency(int key)
{
    constexpr double kSemitone = 1.0594630943592953;
    double frequency = 440.0;
    for (; key > 69; --key)
        frequency *= kSemitone;
    for (; key < 69; ++key)
        frequency /= kSemitone;
    return frequency;
}

struct Bus {
    std::vector<double> left, right;

    explicit Bus(std::size_t frames) : left(frames), right(frames) {}
    void Add(std::size_t frame, double sample, double pan)
    {
        if (frame >= left.size())
            return;
        left[frame] += sample * (1.0 - pan);
        right[frame] += sample * pan;
    }
};

std::size_t FrameAt(double seconds)
{
    return static_cast<std::size_t>(seconds * kSampleRate + 0.5);
}

// How an instrument sounds: the level of each harmonic, and how it comes and goes.
struct Voice {
    std::array<double, 6> harmonics;
    double attackSeconds;
    double halfLifeSeconds; // of the level while the key is held; 0 stays
    double releaseSeconds;
    double level;
    double pan;     // 0 left to 1 right
    double vibrato; // depth, as a share of the frequency
};

constexpr Voice kFlute = {{1.0, 0.35, 0.12, 0.05, 0.02, 0.0}, 0.05, 0.0, 0.09, 0.20, 0.5, 0.0035};
constexpr Voice kBell = {{1.0, 0.0, 0.45, 0.0, 0.25, 0.12}, 0.003, 0.45, 0.35, 0.17, 0.62, 0.0};
constexpr Voice kStrings = {
    {1.0, 0.55, 0.38, 0.25, 0.18, 0.12}, 0.18, 0.0, 0.35, 0.030, 0.5, 0.002};
constexpr Voice kHarp = {{1.0, 0.5, 0.22, 0.1, 0.05, 0.0}, 0.004, 0.28, 0.2, 0.085, 0.35, 0.0};
constexpr Voice kBass = {{1.0, 0.45, 0.15, 0.05, 0.0, 0.0}, 0.01, 0.7, 0.08, 0.22, 0.5, 0.0};

// The factor that, applied once a frame, halves a level in the time given: 1 - ln 2 / frames.
double DecayFactor(double halfLifeSeconds)
{
    return halfLifeSeconds > 0.0 ? 1.0 - 0.6931471805599453 / (halfLifeSeconds * kSampleRate) : 1.0;
}

void Play(Bus& bus, const Voice& voice, int key, double startSeconds, double seconds,
          double panShift = 0.0)
{
    const std::size_t start = FrameAt(startSeconds);
    const std::size_t held = FrameAt(seconds);
    const std::size_t total = held + FrameAt(voice.releaseSeconds);
    const double decay = DecayFactor(voice.halfLifeSeconds);
    const double step = Frequency(key) / kSampleRate;
    double phase = 0.0;
    double level = voice.level;
    for (std::size_t i = 0; i < total; ++i) {
        double sample = 0.0;
        for (std::size_t h = 0; h < voice.harmonics.size(); ++h) {
            if (voice.harmonics[h] > 0.0)
                sample += voice.harmonics[h] * Sine(phase * static_cast<double>(h + 1));
        }
        const double age = static_cast<double>(i) / kSampleRate;
        const double attack = std::min(1.0, age / voice.attackSeconds);
        const double release =
            i < held ? 1.0
                     : 1.0 - static_cast<double>(i - held) / static_cast<double>(total - held);
        bus.Add(start + i, sample * level * attack * release * release, voice.pan + panShift);
        level *= decay;
        const double swell = voice.vibrato * std::min(1.0, age / 0.4) * Sine(5.2 * age);
        phase += step * (1.0 + swell);
        phase -= static_cast<double>(static_cast<long>(phase));
    }
}

// White noise by a linear congruential generator, through a one-pole high pass: a brush.
void Brush(Bus& bus, double startSeconds, double level, double halfLifeSeconds)
{
    std::uint32_t state = 12345u + static_cast<std::uint32_t>(startSeconds * 1000.0);
    const double decay = DecayFactor(halfLifeSeconds);
    const std::size_t start = FrameAt(startSeconds);
    double previous = 0.0;
    for (std::size_t i = 0; i < FrameAt(halfLifeSeconds * 8); ++i) {
        state = state * 1664525u + 1013904223u;
        const double noise = static_cast<double>(state >> 8) / 8388608.0 - 1.0;
        bus.Add(start + i, (noise - previous) * level, 0.58);
        previous = noise;
        level *= decay;
    }
}

void Drum(Bus& bus, double startSeconds, double level)
{
    const std::size_t start = FrameAt(startSeconds);
    const double decay = DecayFactor(0.055);
    double phase = 0.0;
    double frequency = 120.0;
    for (std::size_t i = 0; i < FrameAt(0.4); ++i) {
        bus.Add(start + i, level * Sine(phase), 0.5);
        phase += frequency / kSampleRate;
        frequency = 48.0 + (frequency - 48.0) * 0.9995;
        level *= decay;
    }
}

struct ChordKeys {
    int bass;
    std::array<int, 4> keys;
};

ChordKeys KeysOf(Chord chord)
{
    switch (chord) {
    case Chord::F:
        return {41, {53, 57, 60, 65}};
    case Chord::C:
        return {36, {52, 55, 60, 64}};
    case Chord::C7:
        return {36, {52, 55, 58, 64}};
    case Chord::Bb:
        return {46, {53, 58, 62, 65}};
    case Chord::Gm:
        return {43, {55, 58, 62, 67}};
    }
    return {};
}

void PlayMelody(Bus& bus, const Voice& voice, std::span<const Note> notes, int startTick,
                int transpose)
{
    for (const Note& note : notes) {
        Play(bus, voice, note.key + transpose, startTick * kTickSeconds,
             (note.ticks - 0.15) * kTickSeconds);
        startTick += note.ticks;
    }
}

void PlayChords(Bus& bus)
{
    constexpr int kHalfBar = kTicksPerBar / 2;
    constexpr int kLastTick = (kTotalBars - 1) * kTicksPerBar;
    for (int tick = 0; tick < kLastTick; tick += kHalfBar) {
        const ChordKeys chord = KeysOf(ChordAt(tick));
        const double start = tick * kTickSeconds;
        const double seconds = kHalfBar * kTickSeconds;
        for (std::size_t i = 0; i < chord.keys.size(); ++i) {
            const double shift = 0.2 * (static_cast<double>(i) - 1.5) / 1.5;
            Play(bus, kStrings, chord.keys[i], start, seconds, shift);
            Play(bus, kHarp, chord.keys[i] + 12, start + static_cast<double>(i) * kTickSeconds,
                 kTickSeconds, shift);
        }
        Play(bus, kBass, chord.bass, start, seconds * 0.9);
    }
    const ChordKeys last = KeysOf(Chord::F);
    Play(bus, kBass, last.bass, kLastTick * kTickSeconds, 1.6);
    for (std::size_t i = 0; i < last.keys.size(); ++i) {
        const double late = 0.05 * static_cast<double>(i);
        Play(bus, kStrings, last.keys[i], kLastTick * kTickSeconds, 1.2);
        Play(bus, kBell, last.keys[i] + 12, kLastTick * kTickSeconds + late, 1.4);
    }
}

void PlayDrums(Bus& bus)
{
    constexpr int kLastTick = (kIntroBars + kSungBars + 1) * kTicksPerBar;
    for (int tick = 2 * kTicksPerBar; tick < kLastTick; tick += 2) {
        const int beat = tick % kTicksPerBar / 2;
        const double start = tick * kTickSeconds;
        if (beat % 2 == 0)
            Drum(bus, start, beat == 0 ? 0.30 : 0.20);
        else
            Brush(bus, start, 0.055, 0.05);
        Brush(bus, start + kTickSeconds, 0.014, 0.02);
    }
}

// A hall: four combs a side of different lengths, summed and fed back.
void AddReverb(std::vector<double>& channel, std::span<const int> delays)
{
    std::vector<double> wet(channel.size());
    for (const int delay : delays) {
        std::vector<double> line(static_cast<std::size_t>(delay));
        double damped = 0.0;
        for (std::size_t i = 0; i < channel.size(); ++i) {
            double& cell = line[i % line.size()];
            damped += 0.45 * (cell - damped);
            wet[i] += cell;
            cell = channel[i] + 0.78 * damped;
        }
    }
    for (std::size_t i = 0; i < channel.size(); ++i)
        channel[i] += 0.055 * wet[i];
}

std::vector<std::int16_t> ToPcm(const Bus& bus)
{
    double peak = 0.0;
    for (std::size_t i = 0; i < bus.left.size(); ++i)
        peak = std::max({peak, bus.left[i], -bus.left[i], bus.right[i], -bus.right[i]});
    const double gain = 0.85 * 32767.0 / peak;
    const auto fadeFrames = static_cast<double>(kSampleRate) * 0.8;
    std::vector<std::int16_t> pcm;
    pcm.reserve(bus.left.size() * 2);
    for (std::size_t i = 0; i < bus.left.size(); ++i) {
        const double fade =
            std::min(1.0, static_cast<double>(bus.left.size() - i) / fadeFrames) * gain;
        for (const double sample : {bus.left[i], bus.right[i]}) {
            const double scaled = sample * fade;
            pcm.push_back(static_cast<std::int16_t>(scaled < 0 ? scaled - 0.5 : scaled + 0.5));
        }
    }
    return pcm;
}

} // namespace

std::vector<std::int16_t> RenderSong()
{
    Bus bus(FrameAt(kSongSeconds));
    // The last phrase, its upbeat included: the intro plays it on bells, and the bells join the
    // flute when it is sung.
    const std::span<const Note> lastPhrase = Melody().last(14);
    constexpr int kIntroPhraseTick = 2 * kTicksPerBar - kUpbeatTicks;
    constexpr int kSungPhraseTick = kFirstSungTick + 12 * kTicksPerBar;
    PlayMelody(bus, kBell, lastPhrase, kIntroPhraseTick, 12);
    PlayMelody(bus, kFlute, Melody(), kFirstSungTick, 0);
    PlayMelody(bus, kBell, lastPhrase, kSungPhraseTick, 12);
    PlayChords(bus);
    PlayDrums(bus);

    constexpr std::array<int, 4> kLeftDelays = {1557, 1617, 1491, 1422};
    constexpr std::array<int, 4> kRightDelays = {1580, 1640, 1514, 1445};
    AddReverb(bus.left, kLeftDelays);
    AddReverb(bus.right, kRightDelays);
    return ToPcm(bus);
}

} // namespace lantern::demo
