// SPDX-License-Identifier: GPL-3.0-or-later
#include "StudioEngine.h"

#include "MakeAudioEngine.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lantern {

namespace {

using namespace std::chrono_literals;

// Only at the start is a server waited for, and only if there is one. One that is just being
// started, or that shares a busy machine, may take a second or two.
constexpr auto kServerAnswersWithin = 5s;
constexpr std::int32_t kLoaded = 0;
constexpr std::int32_t kNoUsableSound = 1;

} // namespace

std::unique_ptr<AudioEngine> MakeAudioEngine()
{
    return std::make_unique<StudioEngine>(MakeAudioOutput());
}

StudioEngine::StudioEngine(std::unique_ptr<AudioOutput> output) : m_output(std::move(output))
{
}

StudioEngine::~StudioEngine()
{
    CloseSound();
}

int StudioEngine::GetDeviceCount()
{
    m_devices = m_output->WaitForDevices(kServerAnswersWithin);
    return static_cast<int>(std::min<std::size_t>(m_devices.size(), 0x7FFF));
}

bool StudioEngine::EngineInit()
{
    if (!m_renderer && GetDeviceCount() > 0) {
        const auto report = [this](SoundRenderer::Event event, std::uint64_t serial) {
            QMetaObject::invokeMethod(
                &m_context, [this, event, serial] { OnReport(event, serial); },
                Qt::QueuedConnection);
        };
        m_renderer = std::make_unique<SoundRenderer>(*m_output, report);
        TellLevel();
        m_renderer->SetDelay(m_delayMs);
        m_renderer->SetVoiceGuide(m_voiceGuide);
        m_renderer->SetSoundGain(m_soundGain);
        m_renderer->Listen(m_listening);
    }
    return m_renderer != nullptr;
}

QString StudioEngine::GetDeviceName(int device)
{
    const bool known = device >= 0 && static_cast<std::size_t>(device) < m_devices.size();
    return known ? m_devices[static_cast<std::size_t>(device)].name : QString();
}

// The first device stands for the system's default, also when that becomes another one.
void StudioEngine::SelectDevice(int device)
{
    if (device == 0)
        m_output->Select({});
    else if (device > 0 && static_cast<std::size_t>(device) < m_devices.size())
        m_output->Select(m_devices[static_cast<std::size_t>(device)].id);
}

std::int32_t StudioEngine::GetFileDuration(const QString& path)
{
    return SoundDecoder::FileDurationMs(path);
}

std::int32_t StudioEngine::LoadFile(const QString& path)
{
    CloseSound();
    return m_renderer ? Take(SoundDecoder::OpenFile(path)) : kNoUsableSound;
}

std::int32_t StudioEngine::LoadMemory(std::span<const std::uint8_t> image)
{
    CloseSound();
    return m_renderer ? Take(SoundDecoder::OpenMemory(image)) : kNoUsableSound;
}

std::int32_t StudioEngine::Take(std::unique_ptr<SoundDecoder> sound)
{
    if (!sound)
        return kNoUsableSound;
    m_sound = std::move(sound);
    m_status = SoundStatus::Stopped;
    TellWish();
    return kLoaded;
}

void StudioEngine::CloseSound()
{
    m_status = SoundStatus::Empty;
    MoveTo(0);
    if (m_sound) {
        m_sound->Release();
        m_sound.reset(); // before the wish, so that the renderer is the last to let go of it
        TellWish();
    }
}

std::int32_t StudioEngine::GetLoadedDuration()
{
    return m_sound ? MsOf(static_cast<double>(m_sound->FrameCount())) : 0;
}

std::int32_t StudioEngine::MsOf(double frame) const
{
    const double ms = std::round(frame * 1000.0 / m_sound->SampleRate());
    return static_cast<std::int32_t>(
        std::clamp(ms, 0.0, double{std::numeric_limits<std::int32_t>::max()}));
}

void StudioEngine::MoveTo(std::int64_t frame)
{
    ++m_serial;
    m_startFrame = frame;
    m_frame = static_cast<double>(frame);
    m_heardToEnd = false;
}

void StudioEngine::SeekSound(std::int32_t positionMs)
{
    if (m_sound) {
        const std::int64_t frame = std::int64_t{positionMs} * m_sound->SampleRate() / 1000;
        MoveTo(std::clamp<std::int64_t>(frame, 0, m_sound->FrameCount()));
        TellWish();
    }
}

void StudioEngine::StartSound()
{
    if (!m_sound || m_status == SoundStatus::Playing)
        return;
    if (m_heardToEnd)
        MoveTo(0);
    m_status = SoundStatus::Playing;
    TellWish();
    if (const auto tell = Started)
        tell();
}

void StudioEngine::PauseSound()
{
    if (m_status == SoundStatus::Playing) {
        FollowSound();
        const double told = std::ceil(m_frame); // the next that is to be heard
        MoveTo(static_cast<std::int64_t>(m_delayMs < 0 ? std::min(told, NextToPlay()) : told));
        m_frame = told;
        m_status = SoundStatus::Paused;
        TellWish();
    }
}

// Where the told position is ahead of the sound, nothing of that is left out by a pause.
double StudioEngine::NextToPlay() const
{
    const std::optional<double> played = m_renderer->PlayedMediaFrame(m_serial);
    return std::ceil(played.value_or(static_cast<double>(m_startFrame)));
}

void StudioEngine::StopSound()
{
    if (m_sound) {
        MoveTo(0);
        m_status = SoundStatus::Stopped;
        TellWish();
    }
}

std::int32_t StudioEngine::GetSoundPosition()
{
    FollowSound();
    return m_sound ? MsOf(m_frame) : 0;
}

void StudioEngine::FollowSound()
{
    if (m_status != SoundStatus::Playing)
        return;
    const double heard = m_renderer->HeardMediaFrame(m_serial).value_or(m_frame);
    m_frame = std::max(m_frame, std::min(heard, static_cast<double>(m_sound->FrameCount())));
}

void StudioEngine::SetEngineVolume(float percent)
{
    m_volume = percent;
    TellLevel();
}

void StudioEngine::SetEngineBalance(float balance)
{
    m_balance = balance;
    TellLevel();
}

void StudioEngine::SetEnginePitch(int semitones)
{
    m_semitones = semitones;
    TellWish();
}

void StudioEngine::SetEngineTempo(float percent)
{
    m_tempo = percent;
    TellWish();
}

SoundDevice StudioEngine::DeviceInUse()
{
    const AudioOutput::Device device = m_output->DeviceInUse();
    return {QString::fromStdString(device.id), device.name};
}

void StudioEngine::SetSoundDelay(std::int32_t ms)
{
    m_delayMs = std::clamp(ms, -kLongestSoundDelayMs, kLongestSoundDelayMs);
    if (m_renderer)
        m_renderer->SetDelay(m_delayMs);
}

void StudioEngine::SetVoiceGuide(VoiceGuide guide)
{
    m_voiceGuide = guide;
    if (m_renderer)
        m_renderer->SetVoiceGuide(guide);
}

void StudioEngine::SetSoundGain(float factor)
{
    m_soundGain = factor;
    if (m_renderer)
        m_renderer->SetSoundGain(factor);
}

void StudioEngine::Listen(bool on)
{
    m_listening = on;
    if (m_renderer)
        m_renderer->Listen(on);
}

void StudioEngine::Measure(std::span<float> strengths)
{
    std::ranges::fill(strengths, 0.0F);
    if (!IsSounding() || !m_listening)
        return;
    const int rate = m_sound->SampleRate();
    if (!m_spectrum || m_spectrum->SampleRate() != rate)
        m_spectrum.emplace(rate);
    if (m_renderer->HearAround(m_serial, m_spectrum->Stretch()))
        m_spectrum->Measure(strengths);
}

void StudioEngine::TellWish()
{
    if (m_renderer) {
        m_renderer->SetWish({m_sound, m_serial, m_startFrame, ShapeFor(m_semitones, m_tempo),
                             m_status == SoundStatus::Playing});
    }
}

void StudioEngine::TellLevel()
{
    if (m_renderer)
        m_renderer->SetLevel(LevelFor(m_volume, m_balance));
}

void StudioEngine::OnReport(SoundRenderer::Event event, std::uint64_t serial)
{
    if (serial != m_serial || m_status != SoundStatus::Playing)
        return; // about a place that has been left meanwhile
    if (event == SoundRenderer::Event::NoDevice) {
        PauseSound();
        return;
    }
    m_frame = static_cast<double>(m_sound->FrameCount());
    m_heardToEnd = true;
    m_status = SoundStatus::Stopped;
    TellWish();
    if (const auto tell = SoundDone)
        tell(); // a copy: the one called may be replaced by what it does
}

} // namespace lantern
