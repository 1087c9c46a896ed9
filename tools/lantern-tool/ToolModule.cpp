// SPDX-License-Identifier: GPL-3.0-or-later
#include "ToolModule.h"

#include "PathText.h"

#include <dlfcn.h>
#include <filesystem>
#include <system_error>

namespace lantern::tool {

void* ModuleFunction(const char* fromProgram, const char* name, QString& error)
{
    std::error_code ignored;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", ignored);
    const std::filesystem::path module = program.parent_path() / fromProgram;
    // It stays loaded: what it made is in use to the end.
    void* const handle = dlopen(module.lexically_normal().c_str(), RTLD_LAZY | RTLD_LOCAL);
    void* const function = handle ? dlsym(handle, name) : nullptr;
    if (!function)
        error = TextFromNative(dlerror());
    return function;
}

} // namespace lantern::tool
