// SPDX-License-Identifier: GPL-3.0-or-later
// When what is written is heard: the server is asked now and then, and the clock counts on between.
#include "PulseOperation.h"
#include "PulseOutput.h"

#include <algorithm>
#include <utility>

namespace lantern {

namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

constexpr auto kFirstTimingsIn = 10ms;
constexpr auto kTimingsIn = 50ms;
constexpr int kFirstTimings = 8;

// A server may count in steps of some milliseconds, and is asked in each part of a step sooner or
// later: at multiples of a step all answers would be alike.
std::chrono::milliseconds OutOfStep(int question)
{
    return std::chrono::milliseconds(question % 13 * 5 % 13);
}

} // namespace

// Another device may be ahead or behind.
void PulseOutput::ForgetTiming()
{
    {
        const std::scoped_lock guard(m_heardMutex);
        m_heard.ForgetSamples();
    }
    m_timingsTaken = 0;
    AskTiming();
}

void PulseOutput::AskTiming()
{
    if (!m_stream || !m_sounding || m_timingAsked)
        return;
    m_timingAsked = true;
    m_timingAskedAt = steady_clock::now();
    const auto done = [](pa_stream* stream, int success, void* self) {
        static_cast<PulseOutput*>(self)->OnTiming(stream, success != 0);
    };
    Forget(pa_stream_update_timing_info(m_stream, done, this));
}

void PulseOutput::OnTiming(const pa_stream* stream, bool success)
{
    if (stream != m_stream)
        return;
    m_timingAsked = false;
    const bool stale = std::exchange(m_timingStale, false);
    const pa_timing_info* timing = success ? pa_stream_get_timing_info(m_stream) : nullptr;
    if (m_sounding && !stale && timing && timing->read_index_corrupt == 0) {
        // The server stamps its answer by the wall clock. A step of that clock must not shift the
        // sample out of the time between question and answer.
        timeval wallNow = {};
        pa_gettimeofday(&wallNow);
        const auto now = steady_clock::now();
        const std::chrono::microseconds age(pa_timeval_cmp(&wallNow, &timing->timestamp) > 0
                                                ? pa_timeval_diff(&wallNow, &timing->timestamp)
                                                : 0);
        const auto at = now - std::min<steady_clock::duration>(age, now - m_timingAskedAt);
        const double read = static_cast<double>(timing->read_index - m_firstByte) /
                            static_cast<double>(kFrameBytes);
        const double delay = static_cast<double>(timing->sink_usec) * 1e-6 * m_streamRate;
        const std::scoped_lock guard(m_heardMutex);
        if (!m_connection.CountsInSteps())
            m_heard.ForgetSamples(); // each is exact
        m_heard.Sample(read - delay, at, timing->playing != 0);
    }
    ScheduleTiming();
}

void PulseOutput::ScheduleTiming()
{
    if (m_sounding) {
        const int taken = m_timingsTaken++;
        const auto in = taken < kFirstTimings ? kFirstTimingsIn : kTimingsIn;
        m_connection.StartTimer(m_timingTimer, in + OutOfStep(taken));
    }
}

} // namespace lantern
