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
    const int descriptor =
        open(NativeFromText(name).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return std::nullopt;
    struct stat status = {};
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) {
        close(descriptor);
        return std::nullopt;
    }
    return NativeFile(descriptor, status.st_size);
}

NativeFile::NativeFile(int descriptor, std::int64_t size) : m_descriptor(descriptor), m_size(size)
{
}

NativeFile::NativeFile(NativeFile&& other) noexcept
    : m_descriptor(std::exchange(other.m_descriptor, -1)), m_size(other.m_size)
{
}

NativeFile& NativeFile::operator=(NativeFile&& other) noexcept
{
    std::swap(m_descriptor, other.m_descriptor);
    std::swap(m_size, other.m_size);
    return *this;
}

NativeFile::~NativeFile()
{
    if (m_descriptor >= 0)
        close(m_descriptor);
}

// Not const: it moves the position. NOLINTNEXTLINE(readability-make-member-function-const)
std::size_t NativeFile::Read(std::span<std::uint8_t> bytes)
{
    ssize_t came = 0;
    do {
        came = read(m_descriptor, bytes.data(), bytes.size());
    } while (came < 0 && errno == EINTR);
    return came > 0 ? static_cast<std::size_t>(came) : 0;
}

} // namespace lantern
