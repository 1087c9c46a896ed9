// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipService.h"

#include "PathText.h"

#include <array>
#include <cstring>
#include <dlfcn.h>
#include <memory>
#include <string_view>
#include <zip.h>

namespace lantern {
namespace {

constexpr const char* kMember = "test.cdg";
constexpr std::string_view kContents = "karaoke";

struct SourceCloser {
    void operator()(zip_source_t* source) const { zip_source_free(source); }
};
using Source = std::unique_ptr<zip_source_t, SourceCloser>;

struct ArchiveDiscarder {
    void operator()(zip_t* archive) const { zip_discard(archive); }
};
using Archive = std::unique_ptr<zip_t, ArchiveDiscarder>;

struct FileCloser {
    void operator()(zip_file_t* file) const { zip_fclose(file); }
};
using File = std::unique_ptr<zip_file_t, FileCloser>;

// An archive takes over a reference to its source; this one stays ours.
Archive Opened(zip_source_t* source, int flags)
{
    zip_source_keep(source);
    Archive archive(zip_open_from_source(source, flags, nullptr));
    if (!archive)
        zip_source_free(source);
    return archive;
}

bool WriteMember(zip_source_t* source)
{
    Archive archive = Opened(source, ZIP_TRUNCATE);
    if (!archive)
        return false;
    zip_source_t* contents =
        zip_source_buffer(archive.get(), kContents.data(), kContents.size(), 0);
    if (zip_file_add(archive.get(), kMember, contents, ZIP_FL_ENC_UTF_8) < 0) {
        zip_source_free(contents);
        return false;
    }
    if (zip_close(archive.get()) != 0)
        return false;
    std::ignore = archive.release();
    return true;
}

bool ReadMember(zip_source_t* source)
{
    const Archive archive = Opened(source, ZIP_RDONLY);
    if (!archive)
        return false;
    const File file(zip_fopen(archive.get(), kMember, 0));
    std::array<char, kContents.size() + 1> bytes = {};
    const bool isRead =
        file && zip_fread(file.get(), bytes.data(), bytes.size()) == kContents.size();
    return isRead && std::string_view(bytes.data(), kContents.size()) == kContents;
}

} // namespace

bool ZipServiceWorks()
{
    const Source source(zip_source_buffer_create(nullptr, 0, 0, nullptr));
    return source && WriteMember(source.get()) && ReadMember(source.get());
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
