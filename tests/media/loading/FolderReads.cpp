// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderReads.h"

#include <dirent.h>
#include <dlfcn.h>

namespace {

int g_reads = 0;

} // namespace

int lantern::test::FolderReads()
{
    return g_reads;
}

// In the place of the system's, which does the work.
extern "C" DIR* opendir(const char* name)
{
    using OpenFolder = DIR* (*)(const char*);
    static const auto openFolder = reinterpret_cast<OpenFolder>(dlsym(RTLD_NEXT, "opendir"));
    ++g_reads;
    return openFolder(name);
}
