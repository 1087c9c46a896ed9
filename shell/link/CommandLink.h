// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QLocalServer>
#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

class QLocalSocket;

namespace lantern {

class InstanceLock;

// What a command from a later instance asks of the main window.
class CommandHost {
public:
    virtual ~CommandHost() = default;
    // The window comes forward and takes the keyboard, by the token of a compositor if there is
    // one.
    virtual void TakeFocus(const QByteArray& activationToken) = 0;
    virtual void OpenMedia(const QString& commandText) = 0;
};

// Each group of up to four digits as one 16-bit unit.
QString DecodeCommand(QByteArrayView digits);

// The text of a command as it came, checked: nothing if it is too long to be one, or holds
// anything but hexadecimal digits.
std::optional<QString> ReceivedCommand(QByteArrayView bytes);

// The receiving end of the link between instances. The main window owns it for as long as it
// lives; it must have been made while the lock was held, otherwise it stays deaf. It closes
// itself before the lock is released, so that it can't take away the link of the next holder.
// Where it can't listen it releases the lock: each start is then a first one, and keeps its track.
//
// Everything runs on the thread that made it, from its event loop. Commands reach the host one at
// a time, in the order in which they were complete, and never from inside another command.
// Whatever connects is untrusted: it is never waited for, and it has one second to say all.
class CommandLink : public QObject {
    Q_OBJECT

public:
    // Both are borrowed and outlive the link.
    CommandLink(InstanceLock& lock, CommandHost& host);
    ~CommandLink() override;

    bool IsListening() const { return m_server.isListening(); }
    void Close();

    static constexpr int kConversationMs = 1000;
    static constexpr std::size_t kMostConversations = 64; // more than the system queues
    static constexpr qsizetype kMostPending = 16;         // commands behind the one that runs

private:
    struct Conversation {
        QLocalSocket* socket = nullptr; // owned by the server
        QByteArray received;
    };

    void Listen(const QByteArray& linkPath);
    void Accept();
    bool IsConversing(const QLocalSocket* socket) const;
    void Read(QLocalSocket* socket);
    void Finish(QLocalSocket* socket);
    void Expire(QLocalSocket* socket);
    void Drop(QLocalSocket* socket);
    QByteArray TakeOut(QLocalSocket* socket);
    void LinkExecute(QByteArrayView bytes);
    void RunPending();

    InstanceLock& m_lock;
    CommandHost& m_host;
    QLocalServer m_server;
    std::vector<Conversation> m_conversations; // in order of arrival
    QStringList m_pending;
    bool m_isRunning = false;
};

} // namespace lantern
