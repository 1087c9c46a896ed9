// SPDX-License-Identifier: GPL-3.0-or-later
#include "TemporaryFile.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <linux/magic.h>
#include <string>
#include <sys/statfs.h>
#include <sys/statvfs.h>
#include <thread>
#include <unistd.h>

namespace lantern {
namespace {

constexpr int kNone = -1;

int OpenIn(const std::string& folder)
{
    std::string name = folder + "/lantern-sound-XXXXXX";
    const int descriptor = mkostemp(name.data(), O_CLOEXEC);
    if (descriptor != kNone)
        unlink(name.c_str());
    return descriptor;
}

bool LiesInMemory(const std::string& folder)
{
    struct statfs status = {};
    return statfs(folder.c_str(), &status) == 0 && status.f_type == TMPFS_MAGIC;
}

} // namespace

int OpenTemporaryFile()
{
    const char* const chosen = std::getenv("TMPDIR");
    const std::array<std::string, 3> folders = {chosen ? chosen : "/tmp", "/var/tmp", "/tmp"};
    for (const bool inMemory : {false, true}) {
        for (const std::string& folder : folders) {
            if (LiesInMemory(folder) != inMemory)
                continue;
            if (const int descriptor = OpenIn(folder); descriptor != kNone)
                return descriptor;
        }
    }
    return kNone;
}

void CloseTemporaryFile(int descriptor)
{
    // Freed at about 5 GB a second, hours of sound would hold up whoever opens the next track. The
    // thread touches nothing but the descriptor; if the program ends before it, the system closes.
    std::thread([descriptor] { close(descriptor); }).detach();
}

std::size_t WriteTemporaryFile(int descriptor, std::size_t offset, std::span<const std::byte> bytes)
{
    const auto end = static_cast<off_t>(offset + bytes.size());
    const bool silent = std::ranges::all_of(bytes, [](std::byte b) { return b == std::byte{}; });
    if (silent && ftruncate(descriptor, end) == 0)
        return bytes.size();
    std::size_t done = 0;
    while (done != bytes.size()) {
        const auto rest = bytes.subspan(done);
        const ssize_t step = TEMP_FAILURE_RETRY(
            pwrite(descriptor, rest.data(), rest.size(), static_cast<off_t>(offset + done)));
        if (step <= 0)
            break;
        done += static_cast<std::size_t>(step);
    }
    return done;
}

std::size_t ReadTemporaryFile(int descriptor, std::size_t offset, std::span<std::byte> out)
{
    std::size_t done = 0;
    while (done != out.size()) {
        const auto rest = out.subspan(done);
        const ssize_t step = TEMP_FAILURE_RETRY(
            pread(descriptor, rest.data(), rest.size(), static_cast<off_t>(offset + done)));
        if (step <= 0)
            break;
        done += static_cast<std::size_t>(step);
    }
    return done;
}

bool HasRoom(int descriptor, std::uint64_t bytes)
{
    struct statvfs status = {};
    return fstatvfs(descriptor, &status) == 0 &&
           std::uint64_t{status.f_bavail} * status.f_frsize > bytes;
}

} // namespace lantern
