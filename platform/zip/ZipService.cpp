// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipService.h"

#include "PathText.h"
#include "ZipMember.h"

#include <algorithm>
#include <dlfcn.h>

namespace lantern {
namespace {

using namespace std::string_view_literals;

constexpr const char* kMember = "test.cdg";
constexpr std::string_view kContents = "karaoke";
// The member's header and contents, the directory, and the end record.
constexpr std::string_view kArchive =
    "PK\3\4\24\0\0\0\0\0\0\0\0\0\361\223\247/\7\0\0\0\7\0\0\0\10\0\0\0test.cdg"
    "karaoke"
    "PK\1\2\24\0\24\0\0\0\0\0\0\0\0\0\361\223\247/\7\0\0\0\7\0\0\0\10\0\0\0"
    "\0\0\0\0\0\0\0\0\0\0\0\0\0\0test.cdg"
    "PK\5\6\0\0\0\0\1\0\1\0\66\0\0\0\55\0\0\0\0\0"sv;

} // namespace

bool ZipServiceWorks()
{
    return ZipServiceReads(kArchive);
}

bool ZipServiceReads(std::string_view bytes)
{
    const MemoryBytes archive(bytes);
    const ZipDirectory directory = ReadZipDirectory(archive);
    return std::ranges::any_of(directory.entries, [&](const ZipEntry& entry) {
        return entry.name == kMember &&
               std::ranges::equal(ReadZipMember(archive, entry, kContents.size()).bytes, kContents);
    });
}

QString ZipLibraryName()
{
    return QStringLiteral("libarchive.so.13");
}

void LoadZipLibrary(const QString& path)
{
    // Never closed: it serves until the process ends.
    dlopen(NativeFromText(path).constData(), RTLD_NOW | RTLD_GLOBAL);
}

} // namespace lantern
