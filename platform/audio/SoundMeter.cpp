// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundMeter.h"

#include "ByteSource.h"
#include "LoudnessScan.h"
#include "WorkLimit.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <sys/resource.h>
#include <unistd.h>
#include <utility>

namespace lantern {
namespace {

using namespace std::chrono_literals;

// Hours of sound, at any speed that a machine may have.
constexpr auto kTimeForAll = 120000ms;
constexpr auto kEndTakesAtMost = 1s;
constexpr int kNiceness = 10;

} // namespace

// What a measurement needs. It is shared with the thread, which may be left behind.
struct SoundMeter::Work {
    std::vector<Sound> sounds; // the thread's own
    Times times;
    WorkLimit limit{kTimeForAll};

    std::mutex mutex; // guards what follows; held for moments
    std::condition_variable ended;
    std::function<void(const SoundLoudness&)> tell; // empty once nobody listens
    bool hasEnded = false;

    void Tell(const SoundLoudness& loudness)
    {
        const std::scoped_lock lock(mutex);
        if (tell)
            tell(loudness);
    }
    void Drop()
    {
        limit.Stop();
        const std::scoped_lock lock(mutex);
        tell = nullptr;
    }
};

void SoundMeter::Run(Work& work)
{
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), kNiceness); // of this thread alone
    std::vector<std::unique_ptr<ByteSource>> sources;
    for (const Sound& sound : work.sounds) {
        auto source =
            sound.path.isEmpty() ? OpenMemoryBytes(sound.image) : OpenFileBytes(sound.path);
        if (source)
            sources.push_back(std::move(source));
    }
    const auto start = WorkLimit::Clock::now();
    bool isInQuestion = true;
    const auto estimateIfLate = [&](double progress) {
        const auto elapsed = WorkLimit::Clock::now() - start;
        if (!isInQuestion || elapsed < work.times.before)
            return;
        isInQuestion = false;
        if (progress * work.times.wanted >= elapsed)
            return;
        if (const auto estimate = EstimateLoudness(sources, work.limit))
            work.Tell(*estimate);
    };
    const auto whole = MeasureLoudness(sources, work.limit, estimateIfLate);
    work.Tell(whole.value_or(SoundLoudness{.isWhole = true}));
    const std::scoped_lock lock(work.mutex);
    work.hasEnded = true;
    work.ended.notify_all();
}

void SoundMeter::Measure(std::vector<Sound> sounds, Measured measured)
{
    Cancel();
    const auto work = std::make_shared<Work>();
    m_work = work;
    work->sounds = std::move(sounds);
    work->times = m_times;
    work->tell = [this, serial = ++m_serial, measured](const SoundLoudness& loudness) {
        QMetaObject::invokeMethod(
            &m_context,
            [this, serial, measured, loudness] {
                if (m_work && m_serial == serial)
                    measured(loudness);
            },
            Qt::QueuedConnection);
    };
    m_thread = std::thread([work] { Run(*work); });
}

void SoundMeter::Cancel()
{
    if (m_work)
        m_work->Drop();
    m_work.reset();
    if (m_thread.joinable())
        m_thread.detach();
}

SoundMeter::~SoundMeter()
{
    if (!m_work)
        return;
    m_work->Drop();
    std::unique_lock lock(m_work->mutex);
    const bool hasEnded =
        m_work->ended.wait_for(lock, kEndTakesAtMost, [this] { return m_work->hasEnded; });
    lock.unlock();
    if (hasEnded)
        m_thread.join();
    else
        m_thread.detach();
}

} // namespace lantern
