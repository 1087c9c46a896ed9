// SPDX-License-Identifier: GPL-3.0-or-later
#include "InstanceLock.h"

#include "Application.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>
#include <utility>

namespace lantern {
namespace {

// Where something else stands in the file's place, the folder itself is locked: every start finds
// the same one.
int OpenToLock(const QByteArray& folder)
{
    const QByteArray path = folder + '/' + kApplicationTitle.toUtf8();
    const int file = open(path.constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK,
                          S_IRUSR | S_IWUSR);
    return file >= 0 ? file : open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
}

} // namespace

InstanceLock::InstanceLock(QByteArray folder) : m_folder(std::move(folder))
{
}

InstanceLock::~InstanceLock()
{
    Release();
}

LockResult InstanceLock::Take()
{
    if (IsHeld())
        return LockResult::Taken;
    if (m_folder.isEmpty())
        return LockResult::Unavailable;
    const int descriptor = OpenToLock(m_folder);
    if (descriptor < 0)
        return LockResult::Unavailable;
    if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
        m_descriptor = descriptor;
        return LockResult::Taken;
    }
    const bool isHeldByAnother = errno == EWOULDBLOCK;
    close(descriptor);
    return isHeldByAnother ? LockResult::HeldByAnother : LockResult::Unavailable;
}

// The file stays: a name that comes and goes could be locked twice.
void InstanceLock::Release()
{
    if (!IsHeld())
        return;
    if (const auto beforeRelease = std::exchange(BeforeRelease, nullptr))
        beforeRelease();
    close(std::exchange(m_descriptor, -1));
}

QByteArray InstanceLock::LinkPath() const
{
    if (m_folder.isEmpty())
        return {};
    return m_folder + '/' + kApplicationTitle.toUtf8() + "|SendCommand";
}

} // namespace lantern
