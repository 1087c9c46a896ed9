// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioOutput.h"
#include "Moment.h"

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace lantern::test {

// An output without a device: frames are taken when the test says, and heard as late as it says.
// So what the renderer does between two frames can be told exactly.
class HandOutput final : public AudioOutput {
public:
    // Of the test's thread. Waits for the frames, and takes fewer only if they don't come.
    std::vector<float> Take(int frames)
    {
        std::vector<float> taken;
        Eventually(
            [&] {
                const auto missing = frames - static_cast<int>(taken.size() / 2);
                const std::vector<float> more = TakeWhatIsThere(missing);
                taken.insert(taken.end(), more.begin(), more.end());
                return static_cast<int>(taken.size() / 2) == frames;
            },
            3s, 1ms);
        return taken;
    }
    std::vector<float> TakeWhatIsThere(int mostFrames)
    {
        const std::scoped_lock lock(m_mutex);
        return TakeLocked(mostFrames);
    }
    // The same, after a frame of silence if anything was asked of it since the last time: then it
    // was held, or emptied.
    std::vector<float> TakeAfterCalls(int mostFrames)
    {
        const std::scoped_lock lock(m_mutex);
        const bool wasAsked = !std::exchange(m_calls, {}).empty();
        std::vector<float> taken = TakeLocked(mostFrames);
        if (wasAsked)
            taken.insert(taken.begin(), 2, 0.0F);
        return taken;
    }
    // Takes what comes until it is paused.
    bool TakeUntilPaused()
    {
        return Eventually([this] {
            TakeWhatIsThere(500);
            return IsPaused();
        });
    }
    // So many frames of what was taken have not been heard yet.
    void SetUnheard(int frames) { m_unheard = frames; }
    // It runs dry, or its device goes; without a device it waits for one.
    void Interrupt()
    {
        const std::scoped_lock lock(m_mutex);
        m_state = State::Interrupted;
    }
    void SetHasDevice(bool has) { m_hasDevice = has; }
    void SetDevices(std::vector<Device> devices)
    {
        const std::scoped_lock lock(m_mutex);
        m_devices = std::move(devices);
    }
    // What was asked of it since the last time.
    std::vector<std::string> Calls()
    {
        const std::scoped_lock lock(m_mutex);
        return std::exchange(m_calls, {});
    }
    bool IsPaused()
    {
        const std::scoped_lock lock(m_mutex);
        return m_paused;
    }
    bool IsRunning() { return GetState() == State::Running; }

    std::vector<Device> WaitForDevices(std::chrono::milliseconds) override
    {
        const std::scoped_lock lock(m_mutex);
        return m_devices;
    }
    void Select(const std::string& id) override { Note("Select " + id); }
    Device DeviceInUse() override
    {
        const std::scoped_lock lock(m_mutex);
        return m_devices.empty() ? Device() : m_devices.front();
    }
    void SetName(const QString& name) override { Note("SetName " + name.toStdString()); }
    void Restart(int sampleRate, Source& source) override
    {
        const std::scoped_lock lock(m_mutex);
        m_calls.push_back("Restart " + std::to_string(sampleRate));
        m_source = &source;
        m_state = State::Waiting;
        m_paused = false;
        m_given = 0;
        m_unheard = 0;
    }
    void Begin() override
    {
        const std::scoped_lock lock(m_mutex);
        m_calls.emplace_back("Begin");
        m_state = m_hasDevice ? State::Running : State::Waiting;
    }
    void Pause() override { Note("Pause", true); }
    void Close() override
    {
        const std::scoped_lock lock(m_mutex);
        m_source = nullptr;
        m_state = State::Waiting;
    }
    State GetState() override
    {
        const std::scoped_lock lock(m_mutex);
        return m_state;
    }
    bool IsAnswerDue() override { return false; }
    double HeardFrames() override
    {
        const std::scoped_lock lock(m_mutex);
        return static_cast<double>(std::max<std::int64_t>(m_given - m_unheard, 0));
    }

private:
    std::vector<float> TakeLocked(int mostFrames)
    {
        std::vector<float> taken(static_cast<std::size_t>(mostFrames) * 2);
        const bool takes = m_source != nullptr && m_state == State::Running && !m_paused;
        const int got = takes ? m_source->Fill(taken) : 0;
        m_given += got;
        taken.resize(static_cast<std::size_t>(got) * 2);
        return taken;
    }
    void Note(std::string call, std::optional<bool> paused = {})
    {
        const std::scoped_lock lock(m_mutex);
        m_calls.push_back(std::move(call));
        m_paused = paused.value_or(m_paused);
    }

    std::mutex m_mutex;
    std::vector<Device> m_devices = {{"studio", QStringLiteral("Studio Speakers")}};
    std::vector<std::string> m_calls;
    Source* m_source = nullptr;
    State m_state = State::Waiting;
    bool m_paused = false;
    std::int64_t m_given = 0; // since the restart
    std::atomic<int> m_unheard = 0;
    std::atomic<bool> m_hasDevice = true;
};

} // namespace lantern::test
