// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "AudioOutput.h"

#include <pulse/pulseaudio.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace lantern {

// The link to the PulseAudio server: its thread, the list of its sinks, and a new try whenever
// the link breaks. The calls return at once unless they say otherwise.
class PulseConnection {
public:
    // Holds the lock of the link's thread, under which libpulse is called. The thread never waits
    // for the server, so the lock is had within moments.
    class Lock {
    public:
        explicit Lock(PulseConnection& connection) : m_loop(connection.m_loop)
        {
            pa_threaded_mainloop_lock(m_loop);
        }
        ~Lock() { pa_threaded_mainloop_unlock(m_loop); }
        Lock(const Lock&) = delete;
        Lock& operator=(const Lock&) = delete;

    private:
        pa_threaded_mainloop* m_loop;
    };

    // The callback runs on the link's thread, locked, when the link or the list has changed.
    explicit PulseConnection(std::function<void()> changed);
    ~PulseConnection();
    PulseConnection(const PulseConnection&) = delete;
    PulseConnection& operator=(const PulseConnection&) = delete;

    void Start();
    // Waits until the server has told its sinks or is known not to answer.
    void WaitUntilKnown(std::chrono::milliseconds atMost);
    std::vector<AudioOutput::Device> Devices(); // the default first; any thread

    // Under the lock:
    pa_context* Context() const; // null while there is no link
    bool HasSink(const std::string& id);
    // Whether the server counts what it has played in steps, as PipeWire does.
    bool CountsInSteps() const { return m_countsInSteps; }
    void HurryRetry();   // the next try comes now
    void RefreshSinks(); // asks for the list; the callback tells when it is there

    // A timer of the link's thread, made stopped; to be freed under the lock.
    pa_time_event* MakeTimer(pa_time_event_cb_t callback, void* userData);
    void StartTimer(pa_time_event* timer, std::chrono::milliseconds in);
    void FreeTimer(pa_time_event* timer);

private:
    void Connect();
    void Drop();
    void OnContextState();
    void OnServerInfo(const pa_server_info& info);
    void OnSinkInfo(const pa_sink_info* info, int atEnd);
    void Publish(std::vector<AudioOutput::Device> devices);

    std::function<void()> m_changed;
    pa_threaded_mainloop* m_loop = nullptr;
    pa_mainloop_api* m_api = nullptr;
    pa_context* m_context = nullptr;
    pa_time_event* m_retryTimer = nullptr;
    std::chrono::milliseconds m_retryIn;
    bool m_started = false;

    std::string m_defaultSink;
    bool m_countsInSteps = false;
    std::vector<AudioOutput::Device> m_arriving;
    bool m_refreshing = false;
    bool m_refreshAgain = false;

    std::mutex m_mutex; // guards what follows
    std::condition_variable m_knownNow;
    bool m_known = false;
    std::vector<AudioOutput::Device> m_devices;
};

} // namespace lantern
