// SPDX-License-Identifier: GPL-3.0-or-later
#include "EvenLoudness.h"

#include "AudioEngine.h"
#include "Track.h"

#include <algorithm>
#include <cmath>

namespace lantern {
namespace {

constexpr double kWantedLufs = -16;
constexpr double kHighestPeakDb = -1;
constexpr double kMostDb = 12;
constexpr double kLeastDb = -30;

// Since the song began. With the fade it is soon over.
constexpr int kDeadlineMs = 850;

SoundLoudness LoudnessOf(const KeptLoudness& kept)
{
    return {.lufs = kept.lufs, .truePeak = kept.truePeak, .isWhole = true};
}

} // namespace

float EvenGainFor(const SoundLoudness& loudness)
{
    const double peak = loudness.isWhole ? loudness.truePeak : std::max(loudness.truePeak, 1.0);
    if (!std::isfinite(loudness.lufs) || !std::isfinite(peak) || peak <= 0)
        return 1.0F;
    const double wanted = kWantedLufs - loudness.lufs;
    const double allowed = kHighestPeakDb - 20 * std::log10(peak);
    const double gainDb = std::clamp(std::min(wanted, allowed), kLeastDb, kMostDb);
    return static_cast<float>(std::pow(10.0, gainDb / 20));
}

EvenLoudness::EvenLoudness(const Track& track, AudioEngine& engine)
    : m_track(track), m_engine(engine)
{
    m_deadline.setSingleShot(true);
    m_deadline.setInterval(kDeadlineMs);
    m_deadline.callOnTimeout(&m_deadline, [this] { Fix(m_estimate.value_or(SoundLoudness())); });
}

EvenLoudness::~EvenLoudness()
{
    SwitchOff();
}

void EvenLoudness::SwitchOff()
{
    if (!m_isOn)
        return;
    m_isOn = false;
    StopMeasuring();
    m_engine.SetSoundGain(1.0F);
}

void EvenLoudness::StopMeasuring()
{
    m_deadline.stop();
    if (LoudnessMeter* const meter = m_engine.Loudness())
        meter->Cancel();
}

void EvenLoudness::TakeSong(const std::optional<KeptLoudness>& known)
{
    m_isOn = true;
    m_isFixed = false;
    m_estimate.reset();
    m_sound.clear();
    StopMeasuring(); // of the song before
    for (const AudioClip& clip : m_track.ClipList) {
        if (m_sound.isEmpty() && !clip.IsFiller)
            m_sound = FingerprintOf(clip);
    }
    TakeRecord(known);
    if (m_isFixed)
        return;
    m_engine.SetSoundGain(1.0F);
    if (!m_sound.isEmpty())
        Measure();
}

void EvenLoudness::TakeRecord(const std::optional<KeptLoudness>& known)
{
    if (m_isFixed || !known || known->sound != m_sound)
        return;
    StopMeasuring();
    Fix(LoudnessOf(*known));
}

void EvenLoudness::Measure()
{
    LoudnessMeter* const meter = m_engine.Loudness();
    if (!meter)
        return;
    std::vector<LoudnessMeter::Sound> sounds;
    for (const AudioClip& clip : m_track.ClipList) {
        if (clip.IsFiller)
            continue;
        if (clip.Kind == ClipKind::File) {
            sounds.push_back({.path = clip.Path, .image = {}, .imageOwner = {}});
        } else {
            const auto image = std::make_shared<const SoundImage>(clip.Data);
            sounds.push_back({.path = {}, .image = image->Bytes(), .imageOwner = image});
        }
    }
    meter->Measure(std::move(sounds),
                   [this](const SoundLoudness& loudness) { TakeMeasured(loudness); });
    m_deadline.start();
}

void EvenLoudness::TakeMeasured(const SoundLoudness& loudness)
{
    m_estimate = loudness;
    if (!loudness.isWhole)
        return;
    if (!m_isFixed)
        Fix(loudness);
    if (Measured && std::isfinite(loudness.lufs))
        Measured({.sound = m_sound, .lufs = loudness.lufs, .truePeak = loudness.truePeak});
}

void EvenLoudness::Fix(const SoundLoudness& loudness)
{
    m_isFixed = true;
    m_deadline.stop();
    m_engine.SetSoundGain(EvenGainFor(loudness));
}

} // namespace lantern
