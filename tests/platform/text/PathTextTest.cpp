// SPDX-License-Identifier: GPL-3.0-or-later
#include "PathText.h"

#include "Process.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <set>
#include <vector>

namespace lantern {
namespace {

TEST(PathText, WellFormedUtf8IsDecodedAsUtf8)
{
    EXPECT_EQ(TextFromNative("caf\xC3\xA9 \xE6\xBC\xA2 \xF0\x9F\x8E\xA4"),
              QStringLiteral(u"café 漢 🎤"));
}

TEST(PathText, AByteThatIsNoUtf8RidesAsALoneSurrogate)
{
    const QString text = TextFromNative("a\xE9z");
    ASSERT_EQ(text.size(), 3);
    EXPECT_EQ(text[1].unicode(), 0xDCE9);
    EXPECT_EQ(NativeFromText(text), QByteArray("a\xE9z"));
}

TEST(PathText, EncodedSurrogatesAndOverlongFormsAreNotUtf8)
{
    for (const QByteArray bytes :
         {"\xED\xA0\x80", "\xED\xB2\x80", "\xC0\xAF", "\xE0\x80\xAF", "\xF5\x80\x80\x80"}) {
        const QString text = TextFromNative(bytes);
        EXPECT_EQ(text.size(), bytes.size());
        EXPECT_EQ(NativeFromText(text), bytes);
    }
}

TEST(PathText, AnyBytesComeBackAsTheyWere)
{
    std::mt19937 random(7);
    for (int round = 0; round < 20000; ++round) {
        QByteArray bytes(static_cast<qsizetype>(random() % 12), '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(random() % 3 == 0 ? random() % 128 : 128 + random() % 128);
        ASSERT_EQ(NativeFromText(TextFromNative(bytes)), bytes) << bytes.toHex().constData();
    }
}

TEST(PathText, EveryCharacterIsItselfWhereverItStands)
{
    QString all;
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (!QChar::isSurrogate(character))
            all += QString::fromUcs4(&character, 1);
    }
    EXPECT_TRUE(TextFromNative(all.toUtf8()) == all);
    EXPECT_TRUE(NativeFromText(all) == all.toUtf8());
    for (const char* name : {"\xEF\xBB\xBF", "\xEF\xBB\xBFsong.cdg", "\xE9\xEF\xBB\xBF.cdg"})
        EXPECT_EQ(NativeFromText(TextFromNative(name)), QByteArray(name));
}

// A character takes as many letters as the toolkit gives it, a byte of none takes one.
TEST(PathText, NoByteIsTakenForPartOfACharacterThatIsNone)
{
    const std::vector<int> ends = {0x7F, 0x80, 0xBF, 0xC0};
    for (int first = 0x80; first < 0x100; ++first) {
        for (int second = 0x7F; second < 0xC2; ++second) {
            for (const int third : ends) {
                for (const int fourth : ends) {
                    QByteArray bytes;
                    for (const int byte : {first, second, third, fourth})
                        bytes += static_cast<char>(byte);
                    for (; bytes.size() > 1; bytes.chop(1)) {
                        const QString text = TextFromNative(bytes);
                        const bool isWellFormed = bytes.isValidUtf8();
                        ASSERT_EQ(text.isValidUtf16(), isWellFormed) << bytes.toHex().constData();
                        ASSERT_EQ(NativeFromText(text), bytes) << bytes.toHex().constData();
                    }
                }
            }
        }
    }
}

TEST(PathText, LowerCaseKeepsBytesThatAreNoText)
{
    EXPECT_EQ(NativeFromText(LowerCase(TextFromNative("\xFF\xE9 \xC3\x89 AB\xE9Z"))),
              QByteArray("\xFF\xE9 \xC3\xA9 ab\xE9z"));
    // A Deseret letter, beyond the first plane.
    EXPECT_EQ(LowerCase(TextFromNative("\xF0\x90\x90\x80\xE9")),
              TextFromNative("\xF0\x90\x90\xA8\xE9"));
    EXPECT_EQ(LowerCase(QString()), QString());
}

class ResolveNameTest : public ::testing::Test {
protected:
    QString Make(const QByteArray& name)
    {
        const QByteArray path = NativeFromText(In(TextFromNative(name)));
        FILE* file = fopen(path.constData(), "w");
        EXPECT_NE(file, nullptr);
        fclose(file);
        return TextFromNative(path);
    }
    QString In(const QString& name) const
    {
        return TextFromNative(m_folder.Path().native().c_str()) + u'/' + name;
    }

    test::ScratchFolder m_folder;
};

TEST_F(ResolveNameTest, TheExactNameComesFirst)
{
    Make("SONG.mp3");
    const QString exact = Make("song.mp3");
    EXPECT_EQ(ResolveName(exact), exact);
}

TEST_F(ResolveNameTest, LetterCaseDoesNotCount)
{
    const QString made = Make("Song.Mp3");
    EXPECT_EQ(ResolveName(In(QStringLiteral("sONG.mp3"))), made);
}

TEST_F(ResolveNameTest, EveryLetterIsFoundInTheOtherCaseAndNoOtherSign)
{
    const QByteArray upper = "ABCDEFGHIJKLMNOPQRSTUVWXYZ";
    const QString made = Make(upper + "@[.MP3");
    EXPECT_EQ(ResolveName(In(TextFromNative(upper.toLower() + "@[.mp3"))), made);
    EXPECT_EQ(ResolveName(In(TextFromNative(upper.toLower() + "`{.mp3"))), QString());
    const QString accented = Make(upper + "@[\xC3\x89.MP3");
    EXPECT_EQ(ResolveName(In(TextFromNative(upper.toLower() + "@[\xC3\xA9.mp3"))), accented);
    EXPECT_EQ(ResolveName(In(TextFromNative(upper.toLower() + "`{\xC3\xA9.mp3"))), QString());
}

TEST_F(ResolveNameTest, ComposedAndDecomposedAccentsAreTheSame)
{
    const QString decomposed = Make("Cafe\xCC\x81.mp3");
    EXPECT_EQ(ResolveName(In(QStringLiteral(u"CAFÉ.mp3"))), decomposed);
}

TEST_F(ResolveNameTest, LettersThatFoldToAsciiMeetAsciiOnes)
{
    const QString kelvin = Make("\xE2\x84\xAA.mp3");
    EXPECT_EQ(ResolveName(In(QStringLiteral("k.MP3"))), kelvin);
    const QString plain = Make("Kiss.mp3");
    EXPECT_EQ(ResolveName(In(QStringLiteral(u"\u212Ai\u017Fs.mp3"))), plain);
    EXPECT_EQ(ResolveName(In(QStringLiteral("kisses.mp3"))), QString());
    EXPECT_EQ(ResolveName(In(QStringLiteral("kis.mp3"))), QString());
}

TEST_F(ResolveNameTest, TheFirstInByteOrderWinsAmongSeveral)
{
    Make("sOng.mp3");
    const QString first = Make("SONG.mp3");
    EXPECT_EQ(ResolveName(In(QStringLiteral("song.mp3"))), first);
}

TEST_F(ResolveNameTest, ANameWithBytesThatAreNoTextIsFound)
{
    const QString made = Make("Caf\xE9.MP3");
    QString asked = made;
    asked.replace(QStringLiteral(".MP3"), QStringLiteral(".mp3"));
    EXPECT_EQ(ResolveName(asked), made);
}

TEST_F(ResolveNameTest, NamesWithDifferentBytesThatAreNoTextAreDifferent)
{
    Make("Caf\xE9.MP3");
    EXPECT_EQ(ResolveName(In(TextFromNative("caf\xE8.mp3"))), QString());
}

// Names that are looked at by their plain letters alone, beside all of them folded.
TEST_F(ResolveNameTest, AmongManyNamesTheOneIsFoundThatFoldsAlike)
{
    const std::vector<QByteArray> letters = {"a",        "B",        "b",
                                             "k",        "1",        "e",
                                             "\xCC\x81", "\xC3\xA9", "\xC3\x89",
                                             "\xE9",     " ",        "\xE2\x84\xAA",
                                             "\xC5\xBF", "s",        "\xF0\x90\x90\x80"};
    std::mt19937 random(7);
    const auto name = [&] {
        QByteArray bytes;
        for (std::size_t i = random() % 4 + 1; i > 0; --i)
            bytes += letters[random() % letters.size()];
        return bytes;
    };
    std::set<QByteArray> made;
    while (made.size() < 500)
        made.insert(name());
    for (const QByteArray& one : made)
        Make(one);
    int found = 0;
    for (int round = 0; round < 2000; ++round) {
        const QByteArray asked = name();
        const auto foldsAlike = [wanted =
                                     FoldedName(TextFromNative(asked))](const QByteArray& one) {
            return FoldedName(TextFromNative(one)) == wanted;
        };
        const auto first =
            made.contains(asked) ? made.find(asked) : std::ranges::find_if(made, foldsAlike);
        const QString expected = first == made.end() ? QString() : In(TextFromNative(*first));
        ASSERT_EQ(ResolveName(In(TextFromNative(asked))), expected) << asked.toHex().constData();
        found += expected.isEmpty() ? 0 : 1;
    }
    EXPECT_GT(found, 500);
    EXPECT_LT(found, 1900);
}

TEST_F(ResolveNameTest, NothingIsFoundForAMissingFileOrAnEmptyPath)
{
    EXPECT_EQ(ResolveName(In(QStringLiteral("none.mp3"))), QString());
    EXPECT_EQ(ResolveName(QString()), QString());
    EXPECT_EQ(ResolveName(QStringLiteral("/no/such/folder/none.mp3")), QString());
    const QString made = Make("cut");
    EXPECT_EQ(ResolveName(made + QChar(u'\0') + QStringLiteral("tail")), QString());
}

} // namespace
} // namespace lantern
