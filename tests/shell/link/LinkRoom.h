// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CommandLink.h"
#include "InstanceLock.h"
#include "fDDE.h"

#include <QTemporaryDir>

#include <functional>
#include <gtest/gtest.h>

namespace lantern::test {

class Recorder : public CommandHost {
public:
    void TakeFocus(const QByteArray& activationToken) override;
    void OpenMedia(const QString& commandText) override;

    int focused = 0;
    QByteArrayList tokens;
    QStringList opened;
    QStringList closed;
    std::function<void()> whileOpening; // once
};

// A runtime folder with the lock on it, in which a test makes the link and speaks to it.
class LinkRoom : public ::testing::Test {
protected:
    LinkRoom();

    static bool WaitUntil(const std::function<bool()>& done, int limitMs = 5000);

    // A descriptor to speak through, or -1.
    int Connected() const;
    void SendRaw(const QByteArray& bytes) const;
    static void SendAndClose(int descriptor, const QByteArray& bytes);
    void Send(const QString& text) const { fDDE(m_lock.LinkPath()).ExecuteDDE(text); }

    // What stands in the runtime folder besides the lock and what has this path.
    QStringList EntriesBeside(const QByteArray& path) const;

    QTemporaryDir m_folder;
    InstanceLock m_lock;
    Recorder m_host;
};

} // namespace lantern::test
