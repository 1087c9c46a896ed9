// SPDX-License-Identifier: GPL-3.0-or-later
#include "InstalledFiles.h"

#include "PathText.h"

#include <filesystem>
#include <system_error>

namespace lantern {

QString ProgramFile()
{
    std::error_code error;
    return TextFromNative(std::filesystem::read_symlink("/proc/self/exe", error).native());
}

QString InstalledFile(const QString& name)
{
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::filesystem::path data = program.parent_path() / LANTERN_DATA_FROM_PROGRAM;
    return TextFromNative((data / NativeFromText(name).toStdString()).lexically_normal().native());
}

} // namespace lantern
