// SPDX-License-Identifier: GPL-3.0-or-later
#include "OutputFile.h"

#include "ErrorLine.h"
#include "Interruption.h"
#include "PathText.h"
#include "ReplaceFile.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>

namespace lantern::tool {
namespace {

constexpr mode_t kPermissions = 07777;

QString CannotWrite(const QString& path, const QString& why)
{
    return QStringLiteral("Cannot write %1: %2").arg(path, why);
}

QString Exists(const QString& path)
{
    return CannotWrite(path, QStringLiteral("it exists (--force replaces it)"));
}

// What the name leads to, which need not exist.
QByteArray EndOfLinksFrom(QByteArray path)
{
    constexpr int kMostLinks = 40;
    std::array<char, PATH_MAX> target = {};
    for (int links = 0; links < kMostLinks; ++links) {
        const ssize_t size = readlink(path.constData(), target.data(), target.size());
        if (size < 0)
            break;
        const QByteArray name(target.data(), size);
        path = name.startsWith('/') ? name : path.left(path.lastIndexOf('/') + 1) + name;
    }
    return path;
}

// Short, as the output's own name may be as long as names can be. Another process of this number,
// on another machine, may have taken some of them.
OwnedDescriptor MakeHiddenFile(const QByteArray& folder, QByteArray& name)
{
    constexpr int kMostTries = 1000;
    static std::atomic<unsigned> count = 0;
    for (int i = 0; i < kMostTries; ++i) {
        name =
            folder + ".lantern-" + QByteArray::number(getpid()) + '-' + QByteArray::number(++count);
        OwnedDescriptor file(
            open(name.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0666));
        if (file || errno != EEXIST)
            return file;
    }
    return {};
}

// False with the reason in errno. A name that is taken stays as it is.
bool RenameToNew(const QByteArray& from, const QByteArray& to)
{
    if (renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return true;
    if (errno != EINVAL && errno != ENOSYS)
        return false;
    // Some file systems can't do that, and of these most have links.
    if (link(from.constData(), to.constData()) == 0) {
        unlink(from.constData());
        return true;
    }
    if (errno != EPERM && errno != EOPNOTSUPP)
        return false;
    struct stat status = {};
    if (lstat(to.constData(), &status) == 0) {
        errno = EEXIST;
        return false;
    }
    return std::rename(from.constData(), to.constData()) == 0;
}

bool MeansInPlaceOnly(int error)
{
    return error == EACCES || error == EPERM || error == EROFS || error == EBUSY;
}

} // namespace

OutputFile::~OutputFile()
{
    Remove();
}

QString OutputFile::ErrorNow() const
{
    return CannotWrite(m_path, QString::fromLocal8Bit(std::strerror(errno)));
}

QString OutputFile::Open(const QString& path, IfExists ifExists)
{
    m_path = path;
    m_ifExists = ifExists;
    if (path.contains(QChar(u'\0'))) {
        errno = EINVAL;
        return ErrorNow();
    }
    // Standard error may have another number by now.
    const QByteArray name = path == QStringLiteral("/dev/stderr")
                                ? "/proc/self/fd/" + QByteArray::number(fileno(ErrorStream()))
                                : NativeFromText(path);
    struct stat status = {};
    const bool isThere = stat(name.constData(), &status) == 0;
    if (isThere && !S_ISREG(status.st_mode)) {
        m_file = OwnedDescriptor(open(name.constData(), O_WRONLY | O_CLOEXEC | O_NOCTTY));
        return m_file ? QString() : ErrorNow();
    }
    m_target = EndOfLinksFrom(name);
    if (isThere && ifExists == IfExists::Keep)
        return Exists(path);
    if (isThere && access(m_target.constData(), W_OK) != 0)
        return ErrorNow();
    if (MakeBeside()) {
        if (isThere)
            std::ignore = fchmod(m_file.Number(), status.st_mode & kPermissions);
        return {};
    }
    if (!isThere || !MeansInPlaceOnly(errno))
        return ErrorNow();
    m_file = OwnedDescriptor(open(m_target.constData(), O_RDWR | O_CLOEXEC | O_TRUNC));
    return m_file ? QString() : ErrorNow();
}

bool OutputFile::MakeBeside()
{
    const QByteArray folder = m_target.left(m_target.lastIndexOf('/') + 1);
    const bool isMade = Interruption::Begin(m_beside, [&] {
        m_file = MakeHiddenFile(folder, m_beside);
        return bool(m_file);
    });
    if (!isMade)
        m_beside.clear();
    return isMade;
}

QString OutputFile::Write(QByteArrayView bytes)
{
    return WriteAll(m_file.Number(), bytes) ? QString() : ErrorNow();
}

QString OutputFile::Put()
{
    // What the system could not store may be told only here.
    if (close(m_file.Release()) != 0)
        return ErrorNow();
    if (m_beside.isEmpty())
        return {};
    const bool isPut = Interruption::Finish(m_beside, [this] {
        return m_ifExists == IfExists::Replace
                   ? std::rename(m_beside.constData(), m_target.constData()) == 0
                   : RenameToNew(m_beside, m_target);
    });
    if (!isPut)
        return errno == EEXIST ? Exists(m_path) : ErrorNow();
    m_beside.clear();
    return {};
}

void OutputFile::Remove()
{
    if (m_beside.isEmpty())
        return;
    Interruption::Finish(m_beside, [this] {
        unlink(m_beside.constData());
        return true;
    });
}

QString WriteOutput(const QString& path, QByteArrayView bytes, IfExists ifExists)
{
    OutputFile file;
    QString error = file.Open(path, ifExists);
    if (error.isEmpty())
        error = file.Write(bytes);
    if (error.isEmpty())
        error = file.Put();
    return error;
}

} // namespace lantern::tool
