// SPDX-License-Identifier: GPL-3.0-or-later
#include "ByteSource.h"

#include "PathText.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <mutex>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

class FileBytes final : public ByteSource {
public:
    FileBytes(int descriptor, std::int64_t size) : m_descriptor(descriptor), m_size(size) {}
    ~FileBytes() override { close(m_descriptor); }
    FileBytes(const FileBytes&) = delete;
    FileBytes& operator=(const FileBytes&) = delete;

    std::int64_t Size() const override { return m_size; }

    std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> out) const override
    {
        // Plain reads and no mapping: a file that is cut off while it is mapped ends the process.
        const ssize_t got = TEMP_FAILURE_RETRY(pread(m_descriptor, out.data(), out.size(), offset));
        return static_cast<std::size_t>(std::max<ssize_t>(got, 0));
    }

private:
    int m_descriptor;
    std::int64_t m_size;
};

class MemoryBytes final : public ByteSource {
public:
    explicit MemoryBytes(std::span<const std::uint8_t> image)
        : m_size(static_cast<std::int64_t>(image.size())), m_image(image)
    {
    }

    std::int64_t Size() const override { return m_size; }

    std::size_t ReadAt(std::int64_t offset, std::span<std::uint8_t> out) const override
    {
        const std::scoped_lock lock(m_mutex);
        // An offset below 0 is far beyond the end, too.
        const auto first = std::min(static_cast<std::size_t>(offset), m_image.size());
        const auto rest = m_image.subspan(first);
        const auto part = rest.first(std::min(rest.size(), out.size()));
        std::ranges::copy(part, out.begin());
        return part.size();
    }

    void Release() override
    {
        const std::scoped_lock lock(m_mutex);
        m_image = {};
    }

private:
    const std::int64_t m_size;
    mutable std::mutex m_mutex; // guards what follows, for the time of a read
    std::span<const std::uint8_t> m_image;
};

} // namespace

std::unique_ptr<ByteSource> OpenFileBytes(const QString& path)
{
    // The kind of file is asked twice: before opening, because opening alone can act on a device,
    // and after it, because the name may mean another file by then.
    const QByteArray nativePath = NativeFromText(path);
    struct stat status = {};
    if (nativePath.contains('\0') || stat(nativePath.constData(), &status) != 0 ||
        !S_ISREG(status.st_mode))
        return nullptr;

    const int descriptor =
        open(nativePath.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC | O_NOCTTY);
    if (descriptor < 0)
        return nullptr;
    if (fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size <= 0) {
        close(descriptor);
        return nullptr;
    }
    return std::make_unique<FileBytes>(descriptor, status.st_size);
}

std::unique_ptr<ByteSource> OpenMemoryBytes(std::span<const std::uint8_t> image)
{
    return image.empty() ? nullptr : std::make_unique<MemoryBytes>(image);
}

} // namespace lantern
