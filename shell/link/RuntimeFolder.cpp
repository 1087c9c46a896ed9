// SPDX-License-Identifier: GPL-3.0-or-later
#include "RuntimeFolder.h"

#include <QString>

#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

// The address of a local socket holds 108 bytes: this leaves room for the names that follow.
constexpr qsizetype kLongestFolder = 64;

// lstat, because in a folder that everybody can write to, a link may lead anywhere.
bool IsOurs(const QByteArray& folder)
{
    struct stat status = {};
    return lstat(folder.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

bool CanHoldTheLink(const QByteArray& folder)
{
    // The socket's path passes through text that keeps well-formed UTF-8 only.
    return folder.startsWith('/') && folder.size() <= kLongestFolder &&
           QString::fromUtf8(folder).toUtf8() == folder;
}

} // namespace

QByteArray RuntimeFolder(const QByteArray& userRuntimeFolder, const QByteArray& temporaryRoot)
{
    if (CanHoldTheLink(userRuntimeFolder)) {
        // The toolkit makes a missing one as soon as it runs, and the next start would find it.
        mkdir(userRuntimeFolder.constData(), S_IRWXU);
        if (IsOurs(userRuntimeFolder))
            return userRuntimeFolder;
    }
    const QByteArray own = temporaryRoot + "/lyric-lantern-" + QByteArray::number(geteuid());
    // That it may exist already is no fault; whose it is then decides.
    mkdir(own.constData(), S_IRWXU);
    return CanHoldTheLink(own) && IsOurs(own) ? own : QByteArray();
}

QByteArray RuntimeFolder()
{
    return RuntimeFolder(qgetenv("XDG_RUNTIME_DIR"), QByteArrayLiteral("/tmp"));
}

} // namespace lantern
