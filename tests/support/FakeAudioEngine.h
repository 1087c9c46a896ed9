// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioEngine.h"
#include "LoudnessMeter.h"
#include "SpectrumAnalyser.h"

#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstdint>
#include <deque>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace lantern {

// A spectrum of strengths that the test says, which is there while the sound plays.
class FakeSpectrumAnalyser : public SpectrumAnalyser {
public:
    explicit FakeSpectrumAnalyser(const SoundStatus& status) : m_status(status) {}

    std::vector<float> Strengths; // of the lowest bands; the others are 0
    bool Listening = false;
    int Measured = 0; // times

    void Listen(bool on) override { Listening = on; }
    bool IsSounding() override { return m_status == SoundStatus::Playing; }
    void Measure(std::span<float> strengths) override
    {
        ++Measured;
        const bool isThere = Listening && IsSounding();
        const std::size_t count = isThere ? std::min(Strengths.size(), strengths.size()) : 0;
        std::ranges::fill(strengths, 0.0F);
        std::ranges::copy(std::span(Strengths).first(count), strengths.begin());
    }

private:
    const SoundStatus& m_status;
};

// A meter that measures nothing until a test says what it found.
class FakeLoudnessMeter : public LoudnessMeter {
public:
    std::vector<Sound> Sounds; // of the last measurement
    int Measurements = 0;
    bool IsMeasuring() const { return static_cast<bool>(m_measured); }

    void Measure(std::vector<Sound> sounds, Measured measured) override
    {
        ++Measurements;
        Sounds = std::move(sounds);
        m_measured = std::move(measured);
    }
    void Cancel() override { m_measured = nullptr; }

    // As the event loop would deliver it.
    void Tell(const SoundLoudness& loudness)
    {
        const Measured tell = m_measured;
        if (loudness.isWhole)
            m_measured = nullptr;
        if (tell)
            tell(loudness);
    }

private:
    Measured m_measured;
};

// An engine without sound, whose time stands still until a test moves it. It keeps the promises
// of AudioEngine's state (a load stops at 0, StartSound plays what is loaded, ...), and a test may
// set every field at any time. Each call is logged as the operation's name and its arguments.
class FakeAudioEngine : public AudioEngine {
public:
    SoundStatus Status = SoundStatus::Empty;
    std::int32_t PositionMs = 0;
    std::int32_t DurationMs = 0; // of every sound that loads
    int SoundTrouble = 0;
    float Volume = 100;
    float Balance = 0;
    int Pitch = 0;
    float Tempo = 0;
    VoiceGuide Guide = VoiceGuide::Both;
    SoundDevice Device = {QStringLiteral("built-in"), QStringLiteral("Default")}; // in use
    std::int32_t DelayMs = 0;

    QStringList Devices = {QStringLiteral("Default")};
    int SelectedDevice = 0;
    bool InitSucceeds = true;
    std::map<QString, std::int32_t> FileDurations; // what GetFileDuration knows; others are 0
    std::deque<std::int32_t> LoadResults;          // of the next loads; 0 after the last
    bool Loaded = false;
    QString LoadedPath;
    std::vector<std::uint8_t> LoadedImage;
    QString SoundName;
    float SoundGain = 1;
    FakeLoudnessMeter Meter;

    FakeSpectrumAnalyser Analyser{Status};

    std::vector<std::string> Log;

    // The calls that aren't mere questions.
    std::vector<std::string> Actions() const
    {
        std::vector<std::string> actions;
        std::ranges::copy_if(Log, std::back_inserter(actions),
                             [](const std::string& call) { return !call.starts_with("Get"); });
        return actions;
    }

    // The sound is heard to its end, as the event loop would deliver it.
    void PlayToEnd()
    {
        Status = SoundStatus::Stopped;
        PositionMs = DurationMs;
        if (SoundDone)
            SoundDone();
    }

    int GetSoundTrouble() override { return SoundTrouble; }

    int GetDeviceCount() override
    {
        Log.emplace_back("GetDeviceCount");
        return static_cast<int>(Devices.size());
    }
    bool EngineInit() override
    {
        Log.emplace_back("EngineInit");
        return InitSucceeds;
    }
    QString GetDeviceName(int device) override
    {
        Log.push_back("GetDeviceName " + std::to_string(device));
        return Devices.value(device);
    }
    void SelectDevice(int device) override
    {
        Log.push_back("SelectDevice " + std::to_string(device));
        SelectedDevice = device;
    }

    std::int32_t GetFileDuration(const QString& path) override
    {
        Log.push_back("GetFileDuration " + path.toStdString());
        const auto found = FileDurations.find(path);
        return found == FileDurations.end() ? 0 : found->second;
    }
    std::int32_t LoadFile(const QString& path) override
    {
        Log.push_back("LoadFile " + path.toStdString());
        LoadedPath = path;
        LoadedImage.clear();
        return Load();
    }
    std::int32_t LoadMemory(std::span<const std::uint8_t> image) override
    {
        Log.push_back("LoadMemory " + std::to_string(image.size()));
        LoadedPath.clear();
        LoadedImage.assign(image.begin(), image.end());
        return Load();
    }
    std::int32_t GetLoadedDuration() override
    {
        Log.emplace_back("GetLoadedDuration");
        return Loaded ? DurationMs : 0;
    }
    void CloseSound() override
    {
        Log.emplace_back("CloseSound");
        Unload();
    }

    void SeekSound(std::int32_t positionMs) override
    {
        Log.push_back("SeekSound " + std::to_string(positionMs));
        if (Loaded)
            PositionMs = positionMs;
    }
    void StartSound() override
    {
        Log.emplace_back("StartSound");
        if (Loaded)
            Status = SoundStatus::Playing;
        if (Loaded && Analyser.Started)
            Analyser.Started();
    }
    void PauseSound() override
    {
        Log.emplace_back("PauseSound");
        if (Status == SoundStatus::Playing)
            Status = SoundStatus::Paused;
    }
    void StopSound() override
    {
        Log.emplace_back("StopSound");
        if (!Loaded)
            return;
        Status = SoundStatus::Stopped;
        PositionMs = 0;
    }
    SoundStatus GetSoundStatus() override
    {
        Log.emplace_back("GetSoundStatus");
        return Status;
    }
    std::int32_t GetSoundPosition() override
    {
        Log.emplace_back("GetSoundPosition");
        return PositionMs;
    }

    float GetEngineVolume() override { return Asked("GetEngineVolume", Volume); }
    void SetEngineVolume(float percent) override { Set("SetEngineVolume ", Volume, percent); }
    float GetEngineBalance() override { return Asked("GetEngineBalance", Balance); }
    void SetEngineBalance(float balance) override { Set("SetEngineBalance ", Balance, balance); }
    int GetEnginePitch() override { return Asked("GetEnginePitch", Pitch); }
    void SetEnginePitch(int semitones) override { Set("SetEnginePitch ", Pitch, semitones); }
    float GetEngineTempo() override { return Asked("GetEngineTempo", Tempo); }
    void SetEngineTempo(float percent) override { Set("SetEngineTempo ", Tempo, percent); }

    SoundDevice DeviceInUse() override
    {
        Log.emplace_back("GetDeviceInUse");
        return Device;
    }
    void SetSoundDelay(std::int32_t ms) override
    {
        Log.push_back("SetSoundDelay " + std::to_string(ms));
        DelayMs = ms;
    }
    void SetVoiceGuide(VoiceGuide guide) override
    {
        Log.push_back("SetVoiceGuide " + std::to_string(static_cast<int>(guide)));
        Guide = guide;
    }

    void SetSoundGain(float factor) override { Set("SetSoundGain ", SoundGain, factor); }
    LoudnessMeter* Loudness() override { return &Meter; }

    void NameSound(const QString& name) override { SoundName = name; }

    SpectrumAnalyser* Spectrum() override { return &Analyser; }

private:
    std::int32_t Load()
    {
        std::int32_t result = 0;
        if (!LoadResults.empty()) {
            result = LoadResults.front();
            LoadResults.pop_front();
        }
        Unload();
        if (result == 0) {
            Loaded = true;
            Status = SoundStatus::Stopped;
        }
        return result;
    }

    void Unload()
    {
        Loaded = false;
        Status = SoundStatus::Empty;
        PositionMs = 0;
    }

    template <typename Value>
    Value Asked(const char* operation, Value value)
    {
        Log.emplace_back(operation);
        return value;
    }

    template <typename Value>
    void Set(const char* operation, Value& field, Value value)
    {
        Log.push_back(operation + QString::number(static_cast<double>(value)).toStdString());
        field = value;
    }
};

} // namespace lantern
