// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace lantern {

// The most hexadecimal digits that travel in one command: 16384 characters, four times the
// longest path of this system.
inline constexpr qsizetype kLongestCommand = qsizetype{64} * 1024;

// Four upper-case hexadecimal digits for each 16-bit unit of the text.
QByteArray EncodeCommand(const QString& text);

// The sending end of the link between instances. It lives in a later instance, which has neither
// event loop nor window, and only for the time of one call.
class fDDE {
public:
    explicit fDDE(QByteArray linkPath);

    // Hands the command to the running instance. Any failure is silent: the command is then lost.
    // It returns within kLinkTimeoutMs even if the running instance has stopped.
    void ExecuteDDE(const QString& commandText);

    // Whether the last command went out whole. That says nothing of what becomes of it.
    bool IsSent() const { return m_isSent; }

    static constexpr int kLinkTimeoutMs = 500;

private:
    QByteArray m_linkPath;
    bool m_isSent = false;
};

} // namespace lantern
