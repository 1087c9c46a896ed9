// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandLink.h"

#include "ActivationToken.h"
#include "HexDigit.h"
#include "InstanceLock.h"
#include "fDDE.h"

#include <QLocalSocket>
#include <QPointer>
#include <QTimer>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <unistd.h>

namespace lantern {
namespace {

// A holder that was killed leaves its socket behind. Under the lock it is nobody's, as is whatever
// else stands in its place, but for what a folder there may hold.
void ClearPlace(const QByteArray& path)
{
    if (unlink(path.constData()) == 0 || errno == ENOENT || rmdir(path.constData()) == 0)
        return;
    QByteArray aside = path + ".XXXXXX";
    if (mkdtemp(aside.data()))
        rename(path.constData(), aside.constData());
}

} // namespace

QString DecodeCommand(QByteArrayView digits)
{
    QString text;
    for (qsizetype position = 0; position < digits.size(); position += 4) {
        int unit = 0;
        for (const char digit :
             digits.sliced(position).first(std::min<qsizetype>(4, digits.size() - position)))
            unit = unit * 16 + std::max(HexDigitValue(digit), 0);
        text += QChar(static_cast<char16_t>(unit));
    }
    return text;
}

std::optional<QString> ReceivedCommand(QByteArrayView bytes)
{
    const auto isDigit = [](char byte) { return HexDigitValue(byte) >= 0; };
    if (bytes.size() > kLongestCommand || !std::all_of(bytes.begin(), bytes.end(), isDigit))
        return std::nullopt;
    return DecodeCommand(bytes);
}

CommandLink::CommandLink(InstanceLock& lock, CommandHost& host) : m_lock(lock), m_host(host)
{
    if (!m_lock.IsHeld())
        return;
    m_lock.BeforeRelease = [this] { Close(); };
    connect(&m_server, &QLocalServer::newConnection, this, &CommandLink::Accept);
    Listen(m_lock.LinkPath());
}

CommandLink::~CommandLink()
{
    if (m_lock.IsHeld())
        m_lock.BeforeRelease = nullptr;
    Close();
}

void CommandLink::Listen(const QByteArray& linkPath)
{
    ClearPlace(linkPath);
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    // A holder that nobody can reach would swallow the tracks of all later starts.
    if (!m_server.listen(QString::fromUtf8(linkPath)))
        m_lock.Release();
}

void CommandLink::Close()
{
    m_server.close();
    while (!m_conversations.empty())
        Drop(m_conversations.front().socket);
    m_pending.clear();
}

void CommandLink::Accept()
{
    while (QLocalSocket* socket = m_server.nextPendingConnection()) {
        if (m_conversations.size() == kMostConversations)
            Expire(m_conversations.front().socket);
        m_conversations.push_back({socket, {}});
        socket->setReadBufferSize(kLongestCommand);
        connect(socket, &QLocalSocket::readyRead, this, [this, socket] { Read(socket); });
        connect(socket, &QLocalSocket::disconnected, this, [this, socket] { Finish(socket); });
        QTimer::singleShot(kConversationMs, socket, [this, socket] { Expire(socket); });
    }
}

bool CommandLink::IsConversing(const QLocalSocket* socket) const
{
    return std::ranges::find(m_conversations, socket, &Conversation::socket) !=
           m_conversations.end();
}

void CommandLink::Read(QLocalSocket* socket)
{
    const auto found = std::ranges::find(m_conversations, socket, &Conversation::socket);
    if (found == m_conversations.end())
        return;
    found->received += socket->readAll();
    if (found->received.size() > kLongestCommand)
        Drop(socket);
}

void CommandLink::Finish(QLocalSocket* socket)
{
    Read(socket);
    if (IsConversing(socket))
        LinkExecute(TakeOut(socket));
}

// The time may have run while a track was being opened, and nobody listened. What has been said by
// now still counts, and is a command if the sender has ended it.
void CommandLink::Expire(QLocalSocket* socket)
{
    if (IsConversing(socket))
        socket->waitForDisconnected(0);
    if (IsConversing(socket))
        Drop(socket);
}

void CommandLink::Drop(QLocalSocket* socket)
{
    TakeOut(socket);
    socket->abort();
}

QByteArray CommandLink::TakeOut(QLocalSocket* socket)
{
    const auto found = std::ranges::find(m_conversations, socket, &Conversation::socket);
    if (found == m_conversations.end())
        return {};
    QByteArray received = std::move(found->received);
    m_conversations.erase(found);
    socket->disconnect(this);
    socket->deleteLater();
    return received;
}

void CommandLink::LinkExecute(QByteArrayView bytes)
{
    const std::optional<QString> command = ReceivedCommand(bytes);
    if (!command)
        return;
    if (m_pending.size() == kMostPending)
        m_pending.removeFirst();
    m_pending.append(*command);
    // From the event loop, not from inside the socket's signal: opening a track may take long and
    // may run an event loop of its own.
    QMetaObject::invokeMethod(this, &CommandLink::RunPending, Qt::QueuedConnection);
}

void CommandLink::RunPending()
{
    if (m_isRunning)
        return;
    m_isRunning = true;
    const QPointer<CommandLink> guard(this);
    while (guard && !m_pending.isEmpty()) {
        const QString command = m_pending.takeFirst();
        m_host.TakeFocus(TakeActivationToken(m_lock.LinkPath()));
        if (guard && !command.isEmpty())
            m_host.OpenMedia(command);
    }
    if (guard)
        m_isRunning = false;
}

} // namespace lantern
