// SPDX-License-Identifier: GPL-3.0-or-later
#include "LastErrorText.h"

#include <QStringList>

#include <cerrno>
#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(LastErrorText, DeniedAccessComesWithItsPossibleCauses)
{
    errno = EACCES;
    const QStringList lines = LastErrorText().split(u'\n');
    ASSERT_EQ(lines.size(), 6);
    EXPECT_EQ(lines[0], QStringLiteral("Permission denied"));
    EXPECT_EQ(lines[1], QString());
    EXPECT_EQ(lines[2], QStringLiteral("Possible Causes:"));
    EXPECT_EQ(lines[3], QStringLiteral("- The file or folder may be read-only"));
    EXPECT_EQ(lines[4],
              QStringLiteral("- You may not have the correct permissions to write to it"));
    EXPECT_EQ(lines[5], QStringLiteral("- It may have been opened or locked by another program"));
}

TEST(LastErrorText, AReadOnlyFileSystemDeniesAccessToo)
{
    EXPECT_TRUE(ErrorText(EROFS).contains(QStringLiteral("Possible Causes:")));
    EXPECT_TRUE(ErrorText(EPERM).contains(QStringLiteral("Possible Causes:")));
}

TEST(LastErrorText, AnyOtherTextStandsAlone)
{
    for (const int code : {ENOENT, ENOSPC, EISDIR, EINVAL, EIO})
        EXPECT_FALSE(ErrorText(code).contains(u'\n')) << code;
    errno = ENOENT;
    EXPECT_EQ(LastErrorText(), QStringLiteral("No such file or directory"));
}

} // namespace
} // namespace lantern
