// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioOutput.h"
#include "HeardClock.h"
#include "PulseConnection.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <mutex>
#include <string>

namespace lantern {

// The output on a PulseAudio server (or one that speaks its protocol). It states what it wants,
// and every event of the link or the stream brings it a step nearer: so a stream begun while
// there is no server or no sink starts when there is one.
class PulseOutput final : public AudioOutput {
public:
    PulseOutput();
    ~PulseOutput() override;

    std::vector<Device> WaitForDevices(std::chrono::milliseconds atMost) override;
    void Select(const std::string& id) override;
    Device DeviceInUse() override;
    void SetName(const QString& name) override;
    void Restart(int sampleRate, Source& source) override;
    void Begin() override;
    void Pause() override;
    void Close() override;
    State GetState() override { return m_state; }
    bool IsAnswerDue() override;
    double HeardFrames() override;

private:
    // All of these under the lock of the connection's thread.
    void Converge();
    void CreateStream();
    void ListenToStream();
    void LoseStream();
    void DropStream();
    void NameStream();
    void MoveStream();
    void ReturnToDevice();
    void NoteSink();
    void OnDevices();
    void EmptyStream();
    void OnStreamState(const pa_stream* stream);
    void OnEmptied(const pa_stream* stream);
    void OnWritable(std::size_t bytes);
    void OnUnderflow();
    void OnMoved();
    void OnTiming(const pa_stream* stream, bool success);
    void Cork(bool corked);
    void ForgetTiming();
    void AskTiming();
    void ScheduleTiming();
    void Freeze();

    static constexpr std::size_t kFrameBytes = 2 * sizeof(float);

    int m_sampleRate = 0; // wanted; 0 is no stream
    Source* m_source = nullptr;
    bool m_begun = false;
    bool m_paused = false;
    std::string m_name;

    std::string m_device;       // chosen; empty is the default
    std::string m_sink;         // where the stream is, or was last
    std::string m_leftSink;     // from where it was moved, until it is known why
    bool m_movedByUser = false; // away from the chosen device, in a mixer

    pa_stream* m_stream = nullptr;
    int m_streamRate = 0;
    bool m_emptying = false;      // asked, and the answer is to come
    bool m_emptied = false;       // m_firstByte stands, and the stream can be filled
    bool m_sounding = false;      // not corked
    std::int64_t m_firstByte = 0; // the server's index of frame 0
    bool m_retryWaits = false;

    bool m_timingAsked = false;
    bool m_timingStale = false; // asked before the stream was emptied
    HeardClock::TimePoint m_timingAskedAt;
    int m_timingsTaken = 0;
    pa_time_event* m_timingTimer = nullptr;
    pa_time_event* m_retryTimer = nullptr;

    std::atomic<State> m_state = State::Waiting;
    std::atomic<std::int64_t> m_writtenFrames = 0;
    std::mutex m_heardMutex; // guards what follows; the writing of frames does without
    HeardClock m_heard;

    PulseConnection m_connection; // last: its thread ends before the rest goes
};

} // namespace lantern
