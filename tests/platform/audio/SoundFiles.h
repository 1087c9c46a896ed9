// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <chrono>
#include <cstdint>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#include <thread>
#include <vector>

// The unlinked files that this process keeps its sounds in, by what their descriptors tell.
namespace lantern {

struct SoundFile {
    int descriptor = -1;
    std::string name; // which it had, and " (deleted)"
    std::int64_t blocks = 0;
};

inline std::vector<SoundFile> SoundFiles()
{
    std::vector<SoundFile> files;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code error;
        const std::string name = std::filesystem::read_symlink(entry.path(), error).string();
        struct stat status = {};
        if (name.find("/lantern-sound-") != std::string::npos &&
            stat(entry.path().c_str(), &status) == 0) {
            files.push_back({std::stoi(entry.path().filename()), name, status.st_blocks});
        }
    }
    return files;
}

inline int CountSoundFiles()
{
    return static_cast<int>(SoundFiles().size());
}

// They are closed in the background.
inline bool SoundFilesGo()
{
    for (int i = 0; i < 5000 && CountSoundFiles() > 0; ++i)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    return CountSoundFiles() == 0;
}

// The room on the disk that they take.
inline std::int64_t BlocksOfSoundFiles()
{
    std::int64_t blocks = 0;
    for (const SoundFile& file : SoundFiles())
        blocks += file.blocks;
    return blocks;
}

} // namespace lantern
