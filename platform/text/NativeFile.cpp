// SPDX-License-Identifier: GPL-3.0-or-later
#include "NativeFile.h"

#include "PathText.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace lantern {

std::optional<NativeFile> NativeFile::OpenForReading(const QString& path)
{
    const QString name = ResolveName(path);
    if (name.isEmpty())
        return std::nullopt;
    // Without O_NONBLOCK, opening a FIFO waits for its writer.
    OwnedDescriptor descriptor(
        open(NativeFromText(name).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
    struct stat status = {};
    if (!descriptor || fstat(descriptor.Number(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return NativeFile(std::move(descriptor), status.st_size);
}

NativeFile::NativeFile(OwnedDescriptor descriptor, std::int64_t size)
    : m_descriptor(std::move(descriptor)), m_size(size)
{
}

// Not const: it moves the position. NOLINTNEXTLINE(readability-make-member-function-const)
std::size_t NativeFile::Read(std::span<std::uint8_t> bytes)
{
    ssize_t came = 0;
    do {
        came = read(m_descriptor.Number(), bytes.data(), bytes.size());
    } while (came < 0 && errno == EINTR);
    return came > 0 ? static_cast<std::size_t>(came) : 0;
}

std::size_t NativeFile::ReadAt(std::int64_t offset, std::span<std::uint8_t> bytes) const
{
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const auto rest = bytes.subspan(filled);
        const ssize_t came =
            TEMP_FAILURE_RETRY(pread(m_descriptor.Number(), rest.data(), rest.size(),
                                     offset + static_cast<std::int64_t>(filled)));
        if (came <= 0)
            break;
        filled += static_cast<std::size_t>(came);
    }
    return filled;
}

} // namespace lantern
