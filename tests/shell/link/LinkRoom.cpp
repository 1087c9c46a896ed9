// SPDX-License-Identifier: GPL-3.0-or-later
#include "LinkRoom.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFileInfo>
#include <QThread>

#include <cstring>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace lantern::test {

void Recorder::TakeFocus(const QByteArray& activationToken)
{
    ++focused;
    tokens.append(activationToken);
}

void Recorder::OpenMedia(const QString& commandText)
{
    EXPECT_EQ(QThread::currentThread(), QCoreApplication::instance()->thread());
    opened.append(commandText);
    if (const auto act = std::exchange(whileOpening, nullptr))
        act();
    closed.append(commandText);
}

LinkRoom::LinkRoom() : m_lock(m_folder.path().toUtf8())
{
    EXPECT_EQ(m_lock.Take(), LockResult::Taken);
}

bool LinkRoom::WaitUntil(const std::function<bool()>& done, int limitMs)
{
    const QDeadlineTimer deadline(limitMs);
    while (!deadline.hasExpired()) {
        if (done())
            return true;
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
    return false;
}

int LinkRoom::Connected() const
{
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0);
    sockaddr_un address = {};
    address.sun_family = AF_UNIX;
    const QByteArray path = m_lock.LinkPath();
    std::memcpy(address.sun_path, path.constData(), static_cast<std::size_t>(path.size()));
    if (connect(descriptor, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0)
        return descriptor;
    close(descriptor);
    return -1;
}

void LinkRoom::SendRaw(const QByteArray& bytes) const
{
    const int descriptor = Connected();
    ASSERT_GE(descriptor, 0);
    SendAndClose(descriptor, bytes);
}

void LinkRoom::SendAndClose(int descriptor, const QByteArray& bytes)
{
    std::ignore =
        send(descriptor, bytes.constData(), static_cast<std::size_t>(bytes.size()), MSG_NOSIGNAL);
    close(descriptor);
}

QStringList LinkRoom::EntriesBeside(const QByteArray& path) const
{
    QStringList names = QDir(m_folder.path()).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    names.removeAll(QFileInfo(QString::fromUtf8(path)).fileName());
    return names;
}

} // namespace lantern::test
