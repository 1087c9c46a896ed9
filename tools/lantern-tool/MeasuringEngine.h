// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"
#include "SoundDecoder.h"

#include <memory>

namespace lantern::tool {

// An engine that measures sounds and plays none: it needs no device. What is loaded stays stopped
// at 0, and the values of volume, balance, key and tempo are what they are set to.
class MeasuringEngine final : public AudioEngine {
public:
    int GetDeviceCount() override { return 0; }
    bool EngineInit() override { return true; }
    QString GetDeviceName(int) override { return {}; }
    void SelectDevice(int) override {}

    std::int32_t GetFileDuration(const QString& path) override;
    std::int32_t LoadFile(const QString& path) override;
    std::int32_t LoadMemory(std::span<const std::uint8_t> image) override;
    std::int32_t GetLoadedDuration() override;
    void CloseSound() override { m_sound.reset(); }

    void SeekSound(std::int32_t) override {}
    void StartSound() override {}
    void PauseSound() override {}
    void StopSound() override {}
    SoundStatus GetSoundStatus() override;
    std::int32_t GetSoundPosition() override { return 0; }

    float GetEngineVolume() override { return m_volume; }
    void SetEngineVolume(float percent) override { m_volume = percent; }
    float GetEngineBalance() override { return m_balance; }
    void SetEngineBalance(float balance) override { m_balance = balance; }
    int GetEnginePitch() override { return m_pitch; }
    void SetEnginePitch(int semitones) override { m_pitch = semitones; }
    float GetEngineTempo() override { return m_tempo; }
    void SetEngineTempo(float percent) override { m_tempo = percent; }

private:
    std::int32_t Take(std::unique_ptr<SoundDecoder> sound);

    std::unique_ptr<SoundDecoder> m_sound;
    float m_volume = 100;
    float m_balance = 0;
    int m_pitch = 0;
    float m_tempo = 0;
};

} // namespace lantern::tool
