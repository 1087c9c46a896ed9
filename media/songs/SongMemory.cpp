// SPDX-License-Identifier: GPL-3.0-or-later
#include "SongMemory.h"

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <utility>

namespace lantern {
namespace {

using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

// What follows a change within this time is written with the next.
constexpr auto kBetweenWrites = 50ms;
constexpr auto kBetweenTries = 250ms;
constexpr auto kEndTakesAtMost = 1500ms;
constexpr auto kLastTries = 500ms; // while another program holds the file
constexpr auto kBetweenLastTries = 20ms;
// Another program holds a file for a moment, and nobody need know.
constexpr auto kTroubleBearable = 2s;

void AddBelow(SongChanges& newer, SongChanges older)
{
    if (newer.forgetAll)
        return;
    newer.forgetAll = older.forgetAll;
    for (auto each = older.records.begin(); each != older.records.end(); ++each)
        if (!newer.records.contains(each.key()))
            newer.records.insert(each.key(), *each);
}

} // namespace

struct SongMemory::Shared {
    std::unique_ptr<SongStore> store; // the thread's own

    std::mutex mutex; // guards what follows; held for moments
    std::condition_variable wake;
    SongRecords records;
    SongChanges pending;
    bool isRead = false;
    bool isLost = false; // nothing is read or written any more
    bool isEnding = false;
    bool hasEnded = false;
    bool isTold = false;            // once an evening is enough
    std::function<void()> tellRead; // both empty once nobody listens
    std::function<void(StoreOutcome)> tellTrouble;
    std::optional<Clock::time_point> troubleSince; // it has not been told then

    void TakeOutcome(StoreOutcome outcome)
    {
        if (outcome == StoreOutcome::Done) {
            troubleSince.reset();
            return;
        }
        isLost = outcome == StoreOutcome::ReadOnly || outcome == StoreOutcome::NewerVersion ||
                 outcome == StoreOutcome::Unusable;
        const Clock::time_point now = Clock::now();
        troubleSince = troubleSince.value_or(now);
        const bool isDue = isLost || now - *troubleSince > kTroubleBearable;
        if (isDue && !std::exchange(isTold, true) && tellTrouble)
            tellTrouble(outcome);
    }

    // Until then, or until the end is asked for.
    void Wait(std::unique_lock<std::mutex>& lock, Clock::duration time)
    {
        wake.wait_for(lock, time, [this] { return isEnding; });
    }

    SongRecord Find(const SongId& song) const
    {
        const auto found = records.constFind(song);
        return found == records.constEnd() ? SongRecord() : *found;
    }

    void ReadAll();
    void WriteChanges(std::unique_lock<std::mutex>& lock);
};

void SongMemory::Shared::ReadAll()
{
    for (bool again = true; again;) {
        SongRecords found;
        const StoreOutcome outcome = store->Read(found);
        std::unique_lock lock(mutex);
        TakeOutcome(outcome);
        again = outcome == StoreOutcome::Later && !isEnding;
        if (again) {
            Wait(lock, kBetweenTries);
            continue;
        }
        if (!pending.forgetAll)
            for (auto each = found.begin(); each != found.end(); ++each)
                if (!pending.records.contains(each.key()))
                    records.insert(each.key(), *each);
        if (outcome == StoreOutcome::Damaged)
            AddBelow(pending, {.records = records});
        isRead = true;
        if (tellRead)
            tellRead();
    }
}

void SongMemory::Shared::WriteChanges(std::unique_lock<std::mutex>& lock)
{
    SongChanges changes = std::exchange(pending, {});
    lock.unlock();
    const StoreOutcome outcome = store->Write(changes);
    lock.lock();
    if (outcome == StoreOutcome::Damaged)
        AddBelow(pending, {.records = records});
    if (outcome == StoreOutcome::Later)
        AddBelow(pending, std::move(changes));
    TakeOutcome(outcome);
    if (isEnding && outcome != StoreOutcome::Done)
        wake.wait_for(lock, kBetweenLastTries);
    else
        Wait(lock, outcome == StoreOutcome::Done ? kBetweenWrites : kBetweenTries);
}

void SongMemory::Run(const std::shared_ptr<Shared>& shared)
{
    shared->ReadAll();
    std::unique_lock lock(shared->mutex);
    Clock::time_point end = Clock::time_point::max();
    while (!shared->isLost && Clock::now() < end) {
        shared->wake.wait(lock, [&] { return shared->isEnding || !shared->pending.IsEmpty(); });
        if (shared->isEnding) {
            if (shared->pending.IsEmpty())
                break;
            end = std::min(end, Clock::now() + kLastTries);
        }
        shared->WriteChanges(lock);
    }
    shared->hasEnded = true;
    shared->wake.notify_all();
}

SongMemory::SongMemory(std::unique_ptr<SongStore> store) : m_shared(std::make_shared<Shared>())
{
    m_shared->store = std::move(store);
    m_shared->tellRead = [this] {
        QMetaObject::invokeMethod(
            &m_context,
            [this] {
                if (const auto tell = Read)
                    tell();
            },
            Qt::QueuedConnection);
    };
    m_shared->tellTrouble = [this](StoreOutcome outcome) {
        QMetaObject::invokeMethod(
            &m_context,
            [this, outcome] {
                if (const auto tell = Trouble)
                    tell(outcome);
            },
            Qt::QueuedConnection);
    };
    m_thread = std::thread([shared = m_shared] { Run(shared); });
}

SongMemory::~SongMemory()
{
    std::unique_lock lock(m_shared->mutex);
    m_shared->tellRead = nullptr;
    m_shared->tellTrouble = nullptr;
    m_shared->isEnding = true;
    m_shared->wake.notify_all();
    const bool hasEnded =
        m_shared->wake.wait_for(lock, kEndTakesAtMost, [this] { return m_shared->hasEnded; });
    lock.unlock();
    if (hasEnded)
        m_thread.join();
    else
        m_thread.detach();
}

bool SongMemory::IsRead() const
{
    const std::scoped_lock lock(m_shared->mutex);
    return m_shared->isRead;
}

SongRecord SongMemory::Find(const SongId& song) const
{
    const std::scoped_lock lock(m_shared->mutex);
    return m_shared->Find(song);
}

void SongMemory::Keep(const SongId& song, const SongRecord& record)
{
    {
        const std::scoped_lock lock(m_shared->mutex);
        if (m_shared->isRead && m_shared->Find(song) == record)
            return;
        if (record.IsEmpty())
            m_shared->records.remove(song);
        else
            m_shared->records.insert(song, record);
        m_shared->pending.records.insert(song, record);
    }
    m_shared->wake.notify_all();
}

void SongMemory::ForgetAll()
{
    {
        const std::scoped_lock lock(m_shared->mutex);
        m_shared->records.clear();
        m_shared->pending = {.forgetAll = true, .records = {}};
    }
    m_shared->wake.notify_all();
}

int SongMemory::Count() const
{
    const std::scoped_lock lock(m_shared->mutex);
    return static_cast<int>(m_shared->records.size());
}

} // namespace lantern
