// SPDX-License-Identifier: GPL-3.0-or-later
#include "ActivationToken.h"

#include "OwnedDescriptor.h"
#include "ReplaceFile.h"

#include <algorithm>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

QByteArray FilePath(const QByteArray& linkPath)
{
    return linkPath + ".token";
}

// Compositors and launchers make them of printable characters.
bool IsToken(const QByteArray& bytes)
{
    const auto isPrintable = [](char byte) { return byte >= ' ' && byte <= '~'; };
    return !bytes.isEmpty() && bytes.size() <= kLongestToken &&
           std::all_of(bytes.begin(), bytes.end(), isPrintable);
}

// No more than tells that it is too long.
QByteArray StartOf(int descriptor)
{
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return {};
    QByteArray bytes(kLongestToken + 1, '\0');
    const ssize_t count = read(descriptor, bytes.data(), static_cast<std::size_t>(bytes.size()));
    return bytes.first(std::max<ssize_t>(count, 0));
}

} // namespace

void LeaveActivationToken(const QByteArray& linkPath, const QByteArray& token)
{
    if (linkPath.isEmpty())
        return;
    const QByteArray path = FilePath(linkPath);
    unlink(path.constData());
    if (!IsToken(token))
        return;
    const OwnedDescriptor file(open(
        path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
    if (file && !WriteAll(file.Number(), token))
        unlink(path.constData());
}

QByteArray TakeActivationToken(const QByteArray& linkPath)
{
    if (linkPath.isEmpty())
        return {};
    const QByteArray path = FilePath(linkPath);
    const OwnedDescriptor file(
        open(path.constData(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    QByteArray token = file ? StartOf(file.Number()) : QByteArray();
    unlink(path.constData());
    return IsToken(token) ? token : QByteArray();
}

} // namespace lantern
