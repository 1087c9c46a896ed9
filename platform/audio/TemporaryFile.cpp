// SPDX-License-Identifier: GPL-3.0-or-later
#include "TemporaryFile.h"

#include <array>
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

constexpr std::uint64_t kBytesToLeaveFree = std::uint64_t{512} * 1024 * 1024;

int OpenIn(const std::string& folder)
{
    std::string name = folder + "/lantern-sound-XXXXXX";
    const int descriptor = mkostemp(name.data(), O_CLOEXEC);
    if (descriptor >= 0)
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
    const std::array<std::string, 3> folders = {chosen != nullptr ? chosen : "/tmp", "/var/tmp",
                                                "/tmp"};
    for (const bool inMemory : {false, true}) {
        for (const std::string& folder : folders) {
            if (LiesInMemory(folder) != inMemory)
                continue;
            if (const int descriptor = OpenIn(folder); descriptor >= 0)
                return descriptor;
        }
    }
    return -1;
}

void CloseTemporaryFile(int descriptor, std::int64_t size)
{
    // Freed at about 5 GB a second, hours of sound would hold up whoever opens the next track. The
    // thread touches nothing but the descriptor; if the program ends before it, the system closes.
    constexpr std::int64_t kSlowSize = std::int64_t{64} * 1024 * 1024;
    if (size > kSlowSize)
        std::thread([descriptor] { close(descriptor); }).detach();
    else
        close(descriptor);
}

bool HasRoom(int descriptor)
{
    struct statvfs status = {};
    return fstatvfs(descriptor, &status) == 0 &&
           std::uint64_t{status.f_bavail} * status.f_frsize > kBytesToLeaveFree;
}

} // namespace lantern
