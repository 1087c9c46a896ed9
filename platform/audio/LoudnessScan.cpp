// SPDX-License-Identifier: GPL-3.0-or-later
#include "LoudnessScan.h"

#include "DecodedStream.h"
#include "SoundLength.h"
#include "TruePeak.h"
#include "WorkLimit.h"

#include <algorithm>
#include <chrono>
#include <cstring>
#include <ebur128.h>
#include <vector>

namespace lantern {
namespace {

constexpr std::chrono::milliseconds kTimeToMeasure(100);
constexpr int kStretches = 12;
constexpr int kStretchSeconds = 3;
// Of a shorter sound the whole is had as soon.
constexpr int kLeastSeconds = 60;

struct MeterEnd {
    void operator()(ebur128_state* state) const { ebur128_destroy(&state); }
};

// Takes the frames of one sound.
class Scan {
public:
    explicit Scan(const DecodedStream& stream)
        : m_kind(stream.Kind()),
          m_state(ebur128_init(2, static_cast<unsigned long>(stream.SampleRate()), EBUR128_MODE_I))
    {
    }

    ebur128_state* State() const { return m_state.get(); }
    float Peak() const { return m_peak.Value(); }

    // Gives the number of frames.
    std::int64_t Add(std::span<const std::byte> block)
    {
        const std::size_t frames = block.size() / StereoFrameSize(m_kind);
        m_floats.resize(frames * 2);
        if (m_kind == SampleKind::Float) {
            std::memcpy(m_floats.data(), block.data(), block.size());
        } else {
            m_shorts.resize(frames * 2);
            std::memcpy(m_shorts.data(), block.data(), block.size());
            std::ranges::transform(m_shorts, m_floats.begin(), [](std::int16_t sample) {
                return static_cast<float>(sample) / 32768.0F;
            });
        }
        if (m_state)
            ebur128_add_frames_float(m_state.get(), m_floats.data(), frames);
        m_peak.Add(m_floats);
        return static_cast<std::int64_t>(frames);
    }

private:
    SampleKind m_kind;
    std::unique_ptr<ebur128_state, MeterEnd> m_state;
    TruePeak m_peak;
    std::vector<std::int16_t> m_shorts;
    std::vector<float> m_floats;
};

std::optional<SoundLoudness> Together(const std::vector<Scan>& scans)
{
    if (scans.empty())
        return std::nullopt;
    SoundLoudness loudness;
    std::vector<ebur128_state*> states;
    for (const Scan& scan : scans) {
        if (!scan.State())
            return std::nullopt; // no memory
        states.push_back(scan.State());
        loudness.truePeak = std::max(loudness.truePeak, static_cast<double>(scan.Peak()));
    }
    if (ebur128_loudness_global_multiple(states.data(), states.size(), &loudness.lufs) !=
        EBUR128_SUCCESS)
        return std::nullopt;
    return loudness;
}

// False where the middle of the sound can't be told, or it is short.
bool AddStretches(const ByteSource& source, const WorkLimit& limit, std::vector<Scan>& scans)
{
    const auto start = DecodedStream::Open(source, limit);
    if (!start)
        return true; // no sound
    const int rate = start->SampleRate();
    const std::int64_t frames = MeasureSound(source, rate, WorkLimit(kTimeToMeasure)).frames;
    if (frames < std::int64_t{kLeastSeconds} * rate)
        return false;
    Scan scan(*start);
    for (int i = 0; i < kStretches; ++i) {
        const auto stream =
            DecodedStream::OpenAt(source, limit, frames * (2 * i + 1) / (2 * kStretches));
        if (!stream || stream->SampleRate() != rate || stream->Kind() != start->Kind())
            return false;
        for (std::int64_t left = std::int64_t{kStretchSeconds} * rate; left > 0;) {
            const auto block = stream->NextBlock();
            if (block.empty())
                break;
            left -= scan.Add(block);
        }
    }
    scans.push_back(std::move(scan));
    return true;
}

} // namespace

std::optional<SoundLoudness> MeasureLoudness(SoundSources sources, const WorkLimit& limit,
                                             const std::function<void(double)>& progress)
{
    std::vector<Scan> scans;
    for (const auto& source : sources) {
        const auto stream = DecodedStream::Open(*source, limit);
        if (!stream)
            continue;
        Scan& scan = scans.emplace_back(*stream);
        for (auto block = stream->NextBlock(); !block.empty(); block = stream->NextBlock()) {
            scan.Add(block);
            progress(stream->Container().Progress());
        }
    }
    std::optional<SoundLoudness> loudness = Together(scans);
    if (loudness)
        loudness->isWhole = !limit.Reached();
    return loudness;
}

std::optional<SoundLoudness> EstimateLoudness(SoundSources sources, const WorkLimit& limit)
{
    std::vector<Scan> scans;
    for (const auto& source : sources)
        if (!AddStretches(*source, limit, scans))
            return std::nullopt;
    return limit.Reached() ? std::nullopt : Together(scans);
}

} // namespace lantern
