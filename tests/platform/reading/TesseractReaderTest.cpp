// SPDX-License-Identifier: GPL-3.0-or-later
#include "TesseractReader.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(TesseractReaderTest, TakesOnlyNamesOfLanguages)
{
    for (const char* const name :
         {"", "../eng", "eng/x", "eng\n", "~eng", "+", "eng+", "eng++deu", "engl\xC3\xAF"}) {
        const ReaderOffer offer = LoadTesseractReader(QString::fromUtf8(name));
        EXPECT_FALSE(offer.reader) << name;
        EXPECT_TRUE(offer.error.startsWith(QStringLiteral("Not the name"))) << name;
    }
    EXPECT_FALSE(LoadTesseractReader(QString(101, u'a')).reader);
}

TEST(TesseractReaderTest, TellsThatALanguageIsMissing)
{
    const ReaderOffer offer = LoadTesseractReader(QStringLiteral("xqz"));
    EXPECT_FALSE(offer.reader);
    EXPECT_TRUE(offer.error.contains(QStringLiteral("'xqz'")));
}

// Tesseract is content if it has one of them, and reads the other's words wrong.
TEST(TesseractReaderTest, TellsWhichOfSeveralLanguagesIsMissing)
{
    for (const char* const languages : {"eng+xqz", "xqz+eng", "eng+xqz+deu"}) {
        const ReaderOffer offer = LoadTesseractReader(QString::fromUtf8(languages));
        EXPECT_FALSE(offer.reader) << languages;
        EXPECT_TRUE(offer.error.contains(QStringLiteral("for 'xqz'"))) << languages;
    }
}

TEST(TesseractReaderTest, TakesSeveralLanguagesAndLooksAtAnyPicture)
{
    const ReaderOffer offer = LoadTesseractReader(QStringLiteral("eng+deu"));
    ASSERT_TRUE(offer.reader) << offer.error.toStdString();
    GreyPicture blank{200, 40, {}};
    blank.pixels.assign(200 * 40, 255);
    // It may see something in them, but what it tells is whole.
    for (const GreyPicture& picture :
         {blank, GreyPicture{1, 1, {0}}, GreyPicture{3, 1, {0, 255, 0}}}) {
        for (const ReadWord& word : offer.reader->Read(picture)) {
            EXPECT_FALSE(word.letters.empty());
            EXPECT_GE(word.confidence, 0);
            EXPECT_LE(word.confidence, 1);
        }
    }
}

} // namespace
} // namespace lantern
