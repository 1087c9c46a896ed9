// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "SongStore.h"

#include <QObject>

#include <functional>
#include <memory>
#include <thread>

namespace lantern {

// What is remembered of all songs, in memory: read once by a thread of its own, which also writes
// each change. No question and no change waits for the file, however slow or broken that is; at
// worst nothing of it is known, or kept beyond the evening.
//
// Everything is called on the user-interface thread. The end waits for the last changes to be
// written, for a second or two at most.
class SongMemory {
public:
    // Begins to read at once.
    explicit SongMemory(std::unique_ptr<SongStore> store);
    ~SongMemory();
    SongMemory(const SongMemory&) = delete;
    SongMemory& operator=(const SongMemory&) = delete;

    // Whether the file has been read; until then nothing is known but what has been kept since.
    bool IsRead() const;
    SongRecord Find(const SongId& song) const; // an empty one if nothing is known
    void Keep(const SongId& song, const SongRecord& record);
    void ForgetAll();
    int Count() const; // of the songs of which something is known

    // Called from the event loop once the file has been read, and as soon as the records can't be
    // read or kept, with why not.
    std::function<void()> Read;
    std::function<void(StoreOutcome)> Trouble;

private:
    struct Shared;
    static void Run(const std::shared_ptr<Shared>& shared);

    QObject m_context; // calls that are still on their way die with it
    // Shared with the thread, which is left behind if its disk hangs.
    std::shared_ptr<Shared> m_shared;
    std::thread m_thread;
};

} // namespace lantern
