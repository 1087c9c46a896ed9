// SPDX-License-Identifier: GPL-3.0-or-later
#include "SoundModule.h"

#include "PathText.h"

#include <dlfcn.h>
#include <filesystem>
#include <system_error>

namespace lantern::tool {

namespace {

// Null if there is none. It stays loaded: what it made is in use to the end.
void* SoundModule()
{
    std::error_code ignored;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ignored);
    const std::filesystem::path module = program.parent_path() / LANTERN_SOUND_FROM_PROGRAM;
    return dlopen(module.lexically_normal().c_str(), RTLD_LAZY | RTLD_LOCAL);
}

} // namespace

std::unique_ptr<AudioEngine> LoadMeasuringEngine(QString& error)
{
    void* const handle = SoundModule();
    const auto make = handle ? reinterpret_cast<MakeEngine>(dlsym(handle, kMakeEngine)) : nullptr;
    if (make)
        return std::unique_ptr<AudioEngine>(make());
    error = QStringLiteral("Cannot load what measures sounds: ") + TextFromNative(dlerror());
    return nullptr;
}

SoundHealth ExamineSound(const QString& path, std::span<const std::uint8_t> bytes)
{
    SoundHealth health;
    void* const handle = SoundModule();
    const auto examine = handle ? reinterpret_cast<Examine>(dlsym(handle, kExamine)) : nullptr;
    if (examine)
        examine(path, bytes, health);
    return health;
}

} // namespace lantern::tool
