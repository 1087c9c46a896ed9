// SPDX-License-Identifier: GPL-3.0-or-later
#include "ReplaceFile.h"

#include "OwnedDescriptor.h"
#include "PathText.h"

#include <array>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <sys/file.h>
#include <sys/stat.h>
#include <tuple>

namespace lantern {
namespace {

constexpr int kMostLinks = 40; // as many as the system follows
// Without O_NONBLOCK, opening a FIFO waits for its reader.
constexpr int kWriteFlags = O_WRONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
constexpr mode_t kPermissionBits = 07777;

// What a symbolic link points to; nothing if the path is no link.
std::optional<QByteArray> LinkTarget(const QByteArray& path)
{
    std::array<char, PATH_MAX> target = {};
    const ssize_t size = readlink(path.constData(), target.data(), target.size());
    if (size < 0)
        return std::nullopt;
    const QByteArray name(target.data(), size);
    return name.startsWith('/') ? name : path.left(path.lastIndexOf('/') + 1) + name;
}

// The file that is written in the end, which need not exist yet.
QByteArray EndOfLinks(QByteArray path)
{
    for (int links = 0; links < kMostLinks; ++links) {
        std::optional<QByteArray> target = LinkTarget(path);
        if (!target)
            break;
        path = *std::move(target);
    }
    return path;
}

// Whether the descriptor's file is a regular one and still has that name.
bool IsRegularFileOfName(int descriptor, const QByteArray& name)
{
    struct stat opened = {};
    struct stat named = {};
    return fstat(descriptor, &opened) == 0 && S_ISREG(opened.st_mode) &&
           lstat(name.constData(), &named) == 0 && opened.st_dev == named.st_dev &&
           opened.st_ino == named.st_ino;
}

// An empty file beside the one to be replaced. It usually has one and the same name, so that what
// a killed program left behind is used up. The lock keeps two programs from writing one file; who
// comes second, or can't have that name, takes a new one.
OwnedDescriptor OpenBeside(const QByteArray& target, QByteArray& name)
{
    name = target + ".new";
    OwnedDescriptor usual(open(name.constData(), kWriteFlags | O_CREAT | O_NOFOLLOW, 0666));
    if (usual && flock(usual.Number(), LOCK_EX | LOCK_NB) == 0 &&
        IsRegularFileOfName(usual.Number(), name) && ftruncate(usual.Number(), 0) == 0)
        return usual;
    name = target + ".XXXXXX";
    return OwnedDescriptor(mkostemp(name.data(), O_CLOEXEC));
}

// What can't be kept is left: a file of somebody else's, or a file system without owners.
void KeepOwnerAndPermissions(int descriptor, const struct stat& old)
{
    std::ignore = fchown(descriptor, old.st_uid, old.st_gid);
    std::ignore = fchmod(descriptor, old.st_mode & kPermissionBits);
}

// Some file systems have nothing to flush, and say so.
bool Flush(int descriptor)
{
    return fsync(descriptor) == 0 || errno == EINVAL;
}

// The new bytes first, the old end cut off later: the file is at no moment empty.
int WriteInPlace(int descriptor, QByteArrayView bytes)
{
    return WriteAll(descriptor, bytes) && ftruncate(descriptor, bytes.size()) == 0 ? 0 : errno;
}

int WriteBeside(const QByteArray& target, const struct stat* old, QByteArrayView bytes)
{
    QByteArray name;
    const OwnedDescriptor file = OpenBeside(target, name);
    if (!file)
        return errno;
    if (old)
        KeepOwnerAndPermissions(file.Number(), *old);
    if (WriteAll(file.Number(), bytes) && Flush(file.Number()) &&
        std::rename(name.constData(), target.constData()) == 0)
        return 0;
    const int error = errno;
    unlink(name.constData());
    return error;
}

// The file itself may be written where it can't be replaced: in a folder that may not be written,
// or as the root of a mount.
bool MeansOnlyInPlace(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY;
}

} // namespace

int ReplaceFile(const QString& path, QByteArrayView bytes)
{
    // An embedded zero would silently cut the name that the system sees.
    if (path.contains(QChar(u'\0')))
        return EINVAL;
    const QString existing = ResolveName(path);
    const QByteArray target = EndOfLinks(NativeFromText(existing.isEmpty() ? path : existing));

    const OwnedDescriptor file(open(target.constData(), kWriteFlags));
    if (!file)
        return errno == ENOENT ? WriteBeside(target, nullptr, bytes) : errno;
    struct stat old = {};
    if (fstat(file.Number(), &old) != 0)
        return errno;
    if (!S_ISREG(old.st_mode))
        return WriteAll(file.Number(), bytes) ? 0 : errno;
    const int error = WriteBeside(target, &old, bytes);
    return MeansOnlyInPlace(error) ? WriteInPlace(file.Number(), bytes) : error;
}

bool WriteAll(int descriptor, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const ssize_t written =
            write(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

} // namespace lantern
