// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

#include <functional>

namespace lantern {

enum class LockResult { Taken, HeldByAnother, Unavailable };

// The named test that tells a first instance from a later one: an advisory lock on a file named
// after the program. The system drops it with the process, however that ends, and no child
// process inherits it. It is tested once and never waited for.
class InstanceLock {
public:
    // The folder is native bytes, as RuntimeFolder gives it; without one the lock is unavailable.
    explicit InstanceLock(QByteArray folder);
    ~InstanceLock();
    InstanceLock(const InstanceLock&) = delete;
    InstanceLock& operator=(const InstanceLock&) = delete;

    LockResult Take();
    void Release();
    bool IsHeld() const { return m_descriptor >= 0; }

    // The address of the link that belongs to the lock. Only the holder may create it, so that no
    // two processes ever fight over it.
    QByteArray LinkPath() const;

    // Called once, before the lock goes: what stands under its protection has to go first.
    std::function<void()> BeforeRelease;

private:
    QByteArray m_folder;
    int m_descriptor = -1;
};

} // namespace lantern
