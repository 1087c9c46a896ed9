// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipService.h"

#include "PathText.h"

#include <array>
#include <dlfcn.h>
#include <memory>
#include <zip.h>

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

struct ArchiveDiscarder {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
using Archive = std::unique_ptr<zip_t, ArchiveDiscarder>;

struct FileCloser {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using File = std::unique_ptr<zip_file_t, FileCloser>;

Archive Opened(std::string_view bytes)
{
    zip_source_t* source = zip_source_buffer_create(bytes.data(), bytes.size(), 0, nullptr);
    Archive archive(source ? zip_open_from_source(source, ZIP_RDONLY, nullptr) : nullptr);
    if (!archive)
        zip_source_free(source);
    return archive;
}

} // namespace

bool ZipServiceWorks()
{
    return ZipServiceReads(kArchive);
}

bool ZipServiceReads(std::string_view bytes)
{
    const Archive archive = Opened(bytes);
    if (!archive)
        return false;
    const File file(zip_fopen(archive.get(), kMember, 0));
    std::array<char, kContents.size()> contents = {};
    return file && zip_fread(file.get(), contents.data(), contents.size()) == kContents.size() &&
           std::string_view(contents.data(), contents.size()) == kContents;
}

QString ZipLibraryName()
{
    return QStringLiteral("libzip.so.4");
}

void LoadZipLibrary(const QString& path)
{
    // Never closed: it serves until the process ends.
    dlopen(NativeFromText(path).constData(), RTLD_NOW | RTLD_GLOBAL);
}

} // namespace lantern
