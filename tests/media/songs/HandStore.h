// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SongStore.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>

namespace lantern {

// A file that a test opens, holds and breaks. It outlives the store, as a file would.
struct HandFile {
    std::mutex mutex;
    std::condition_variable changed;
    SongRecords records;
    std::size_t writings = 0;
    StoreOutcome outcome = StoreOutcome::Done; // of what is tried next
    bool hangs = false;                        // nothing returns meanwhile
    int tries = 0;

    void Set(StoreOutcome next)
    {
        const std::scoped_lock lock(mutex);
        outcome = next;
    }
    void Hang(bool on)
    {
        {
            const std::scoped_lock lock(mutex);
            hangs = on;
        }
        changed.notify_all();
    }
    SongRecords Records()
    {
        const std::scoped_lock lock(mutex);
        SongRecords copy = records;
        copy.detach(); // nothing of it is shared between threads
        return copy;
    }
    std::size_t Writings()
    {
        const std::scoped_lock lock(mutex);
        return writings;
    }
    int Tries()
    {
        const std::scoped_lock lock(mutex);
        return tries;
    }
};

class HandStore final : public SongStore {
public:
    explicit HandStore(std::shared_ptr<HandFile> file) : m_file(std::move(file)) {}

    StoreOutcome Read(SongRecords& records) override
    {
        std::unique_lock lock(m_file->mutex);
        Begin(lock);
        if (m_file->outcome == StoreOutcome::Done || m_file->outcome == StoreOutcome::Damaged)
            for (auto each = m_file->records.begin(); each != m_file->records.end(); ++each)
                records.insert(each.key(), *each);
        return m_file->outcome;
    }
    StoreOutcome Write(const SongChanges& changes) override
    {
        std::unique_lock lock(m_file->mutex);
        Begin(lock);
        if (m_file->outcome != StoreOutcome::Done)
            return m_file->outcome;
        ++m_file->writings;
        if (changes.forgetAll)
            m_file->records.clear();
        for (auto each = changes.records.begin(); each != changes.records.end(); ++each) {
            m_file->records.remove(each.key());
            if (!each->IsEmpty())
                m_file->records.insert(each.key(), *each);
        }
        return StoreOutcome::Done;
    }

private:
    void Begin(std::unique_lock<std::mutex>& lock)
    {
        ++m_file->tries;
        m_file->changed.wait(lock, [this] { return !m_file->hangs; });
    }

    std::shared_ptr<HandFile> m_file;
};

} // namespace lantern
