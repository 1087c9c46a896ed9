// SPDX-License-Identifier: GPL-3.0-or-later
#include "Gallery.h"

#include "GoldenImage.h"

#include <QSet>

#include <gtest/gtest.h>

namespace lantern {
namespace {

class GalleryTest : public ::testing::Test {
protected:
    GalleryTest() { gallery.show(); }

    Gallery gallery;
};

TEST_F(GalleryTest, LooksAsItWasDrawn)
{
    const int percent = qRound(gallery.devicePixelRatioF() * 100);
    EXPECT_TRUE(MatchesGolden(gallery.TakePicture(), QStringLiteral("gallery-%1").arg(percent)));
}

TEST_F(GalleryTest, EachControlHasANameAndAPlaceOfItsOwn)
{
    QSet<QString> names;
    for (const QString& line : gallery.Places())
        names.insert(line.section(QLatin1Char(' '), 0, 0));
    EXPECT_EQ(names.size(), gallery.Places().size());
    EXPECT_TRUE(names.contains(QStringLiteral("slide.plain")));
    EXPECT_TRUE(names.contains(QStringLiteral("raised.normal")));
}

// A picture is no event that anybody made.
TEST_F(GalleryTest, TellsNothingOfThePosesForAPicture)
{
    QStringList told;
    gallery.Told = [&told](const QString& line) { told += line; };
    gallery.TakePicture();
    EXPECT_TRUE(told.isEmpty()) << told.join(QLatin1Char('\n')).toStdString();
}

} // namespace
} // namespace lantern
