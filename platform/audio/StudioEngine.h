// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"
#include "AudioOutput.h"
#include "SoundDecoder.h"
#include "SoundMeter.h"
#include "SoundRenderer.h"
#include "SpectrumAnalyser.h"
#include "SpectrumTransform.h"

#include <QObject>

#include <memory>
#include <optional>
#include <vector>

namespace lantern {

// The engine: what is asked of it on the user-interface thread becomes wishes of the renderer.
// What it tells comes from its own state, so that an answer never waits for a thread or a server.
class StudioEngine final : public AudioEngine, private SpectrumAnalyser {
public:
    explicit StudioEngine(std::unique_ptr<AudioOutput> output);
    ~StudioEngine() override;

    int GetDeviceCount() override;
    bool EngineInit() override;
    QString GetDeviceName(int device) override;
    void SelectDevice(int device) override;

    std::int32_t GetFileDuration(const QString& path) override;
    std::int32_t LoadFile(const QString& path) override;
    std::int32_t LoadMemory(std::span<const std::uint8_t> image) override;
    std::int32_t GetLoadedDuration() override;
    int GetSoundTrouble() override { return m_sound ? m_sound->CutBy() : 0; }
    void CloseSound() override;

    void SeekSound(std::int32_t positionMs) override;
    void StartSound() override;
    void PauseSound() override;
    void StopSound() override;
    SoundStatus GetSoundStatus() override { return m_status; }
    std::int32_t GetSoundPosition() override;

    float GetEngineVolume() override { return m_volume; }
    void SetEngineVolume(float percent) override;
    float GetEngineBalance() override { return m_balance; }
    void SetEngineBalance(float balance) override;
    int GetEnginePitch() override { return m_semitones; }
    void SetEnginePitch(int semitones) override;
    float GetEngineTempo() override { return m_tempo; }
    void SetEngineTempo(float percent) override;

    SoundDevice DeviceInUse() override;
    void SetSoundDelay(std::int32_t ms) override;
    void SetVoiceGuide(VoiceGuide guide) override;
    void SetSoundGain(float factor) override;
    LoudnessMeter* Loudness() override { return &m_meter; }

    void NameSound(const QString& name) override { m_output->SetName(name); }

    SpectrumAnalyser* Spectrum() override { return this; }

private:
    void Listen(bool on) override;
    bool IsSounding() override { return m_status == SoundStatus::Playing; }
    void Measure(std::span<float> strengths) override;

    std::int32_t Take(std::unique_ptr<SoundDecoder> sound);
    std::int32_t MsOf(double frame) const;
    void MoveTo(std::int64_t frame);
    double NextToPlay() const;
    void FollowSound();
    void TellWish();
    void TellLevel();
    void OnReport(SoundRenderer::Event event, std::uint64_t serial);

    std::unique_ptr<AudioOutput> m_output;
    std::vector<AudioOutput::Device> m_devices; // as last counted

    float m_volume = 100.0F;
    float m_balance = 0.0F;
    int m_semitones = 0;
    float m_tempo = 0.0F;
    std::int32_t m_delayMs = 0;
    VoiceGuide m_voiceGuide = VoiceGuide::Both;
    float m_soundGain = 1.0F;

    std::shared_ptr<SoundDecoder> m_sound; // with the renderer, see its wish
    SoundStatus m_status = SoundStatus::Empty;
    std::uint64_t m_serial = 0;    // of the place that the sound was last moved to
    std::int64_t m_startFrame = 0; // that place
    double m_frame = 0.0;          // the last known to have been heard since
    bool m_heardToEnd = false;

    bool m_listening = false;
    std::optional<SpectrumTransform> m_spectrum; // for the rate that was measured last

    SoundMeter m_meter;

    QObject m_context; // reports that are still on their way die with it
    std::unique_ptr<SoundRenderer> m_renderer;
};

} // namespace lantern
