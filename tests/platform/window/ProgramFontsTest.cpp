// SPDX-License-Identifier: GPL-3.0-or-later
#include "ProgramFonts.h"

#include "ProgramFont.h"

#include <QFontInfo>

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(ProgramFonts, TheNamedFamiliesComeOutAsLiberationSans)
{
    for (const char* family : {"Arial", "Tahoma", "MS Sans Serif", "Liberation Sans"}) {
        const QFontInfo info(ProgramFont(QLatin1String(family), 11));
        EXPECT_EQ(info.family(), QStringLiteral("Liberation Sans")) << family;
        EXPECT_EQ(info.pixelSize(), 11);
    }
}

TEST(ProgramFonts, BoldIsAFaceOfItsOwn)
{
    EXPECT_TRUE(QFontInfo(ProgramFont(QStringLiteral("Arial"), 11, true)).bold());
    EXPECT_FALSE(QFontInfo(ProgramFont(QStringLiteral("Arial"), 11)).bold());
}

} // namespace
} // namespace lantern
