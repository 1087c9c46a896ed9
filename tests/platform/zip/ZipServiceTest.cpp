// SPDX-License-Identifier: GPL-3.0-or-later
#include "ZipService.h"

#include "HandMadeZip.h"
#include "PathText.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <dlfcn.h>
#include <gtest/gtest.h>

namespace lantern {
namespace {

using test::HandMadeMember;
using test::HandMadeZip;

TEST(ZipService, ArchivesCanBeReadHere)
{
    EXPECT_TRUE(ZipServiceWorks());
}

TEST(ZipService, WhatCannotBeReadIsNotTakenToWork)
{
    EXPECT_TRUE(ZipServiceReads(HandMadeZip({{.name = "test.cdg", .contents = "karaoke"}})));
    EXPECT_FALSE(ZipServiceReads(""));
    EXPECT_FALSE(ZipServiceReads("karaoke"));
    EXPECT_FALSE(ZipServiceReads(HandMadeZip({})));
    for (const HandMadeMember& member :
         std::vector<HandMadeMember>{{.name = "other.cdg", .contents = "karaoke"},
                                     {.name = "test.cdg", .contents = "karaok"},
                                     {.name = "test.cdg", .contents = "Karaoke"},
                                     {.name = "test.cdg", .contents = "karaoke", .method = 8}})
        EXPECT_FALSE(ZipServiceReads(HandMadeZip({member}))) << member.contents;
}

TEST(ZipService, TheLibraryHasTheNameThatTheSystemKnows)
{
    void* library = dlopen(NativeFromText(ZipLibraryName()).constData(), RTLD_NOW | RTLD_NOLOAD);
    EXPECT_NE(library, nullptr);
    if (library)
        dlclose(library);
}

TEST(ZipService, ALibraryIsLoadedFromItsPath)
{
    const auto handle = [](const QString& path) {
        return dlopen(NativeFromText(path).constData(), RTLD_NOW | RTLD_NOLOAD);
    };
    Dl_info library = {};
    ASSERT_NE(dladdr(dlsym(handle(ZipLibraryName()), "archive_read_new"), &library), 0);
    const QTemporaryDir folder;
    const QString path = folder.filePath(ZipLibraryName());
    ASSERT_TRUE(QFile::copy(QFile::decodeName(library.dli_fname), path));
    ASSERT_EQ(handle(path), nullptr);
    LoadZipLibrary(path);
    EXPECT_NE(handle(path), nullptr);
    EXPECT_TRUE(ZipServiceWorks());
}

TEST(ZipService, WhatIsNoLibraryDoesNoHarm)
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(ZipLibraryName());
    FILE* file = std::fopen(path.toUtf8().constData(), "w");
    ASSERT_NE(file, nullptr);
    std::fputs("not a library", file);
    std::fclose(file);
    LoadZipLibrary(path);
    LoadZipLibrary(QStringLiteral("/no/such/library.so"));
    EXPECT_TRUE(ZipServiceWorks());
}

} // namespace
} // namespace lantern
