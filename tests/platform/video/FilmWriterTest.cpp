// SPDX-License-Identifier: GPL-3.0-or-later
#include "FilmWriter.h"
#include "DecodedFilm.h"
#include "OwnedDescriptor.h"
#include "Process.h"

#include <array>
#include <cmath>
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace lantern {
namespace {

using ::testing::HasSubstr;

constexpr int kWidth = 64;
constexpr int kHeight = 48;
constexpr int kRate = 48000;
constexpr int kPicturesPerSecond = 10;

FilmFormat Format(FilmKind kind)
{
    return {.kind = kind,
            .width = kWidth,
            .height = kHeight,
            .placesPerSecond = kPicturesPerSecond,
            .picturesPerSecond = kPicturesPerSecond,
            .soundRate = kRate,
            .title = {},
            .artist = {}};
}

QString NameOf(FilmKind kind)
{
    return kind == FilmKind::Mp4    ? QStringLiteral("film.mp4")
           : kind == FilmKind::WebM ? QStringLiteral("film.webm")
                                    : QStringLiteral("film.mkv");
}

class FilmWriterTest : public ::testing::Test {
protected:
    QString In(const QString& name) const
    {
        return QString::fromStdString(m_folder.Path().native()) + u'/' + name;
    }
    std::unique_ptr<FilmWriter> Open(const FilmFormat& format, const QString& name)
    {
        QString error;
        auto writer = FilmWriter::Open(In(name), format, error);
        EXPECT_TRUE(writer) << error.toStdString();
        return writer;
    }
    // A film of so many places, with the colours that begin at some of them, and silence.
    test::DecodedFilm Made(const FilmFormat& format, int places,
                           const std::map<int, std::uint32_t>& colours)
    {
        const QString name = NameOf(format.kind);
        const auto writer = Open(format, name);
        const std::vector<float> silence(std::size_t{2} * kRate / kPicturesPerSecond);
        const int pixels = format.width * format.height;
        for (int place = 0; place < places; ++place) {
            if (const auto colour = colours.find(place); colour != colours.end()) {
                const std::vector<std::uint32_t> all(static_cast<std::size_t>(pixels),
                                                     colour->second);
                writer->Paint({all.data(), format.width}, {0, 0, format.width, format.height});
            }
            EXPECT_EQ(writer->NextPicture(), QString());
            EXPECT_EQ(writer->AddSound(silence), QString());
        }
        EXPECT_EQ(writer->Finish(), QString());
        return test::DecodeFilm(In(name).toStdString());
    }

    test::ScratchFolder m_folder;
};

std::string Flat(std::uint32_t colour)
{
    std::string rgb;
    for (int i = 0; i < kWidth * kHeight; ++i)
        for (const int shift : {16, 8, 0})
            rgb += static_cast<char>(colour >> shift & 0xFF);
    return rgb;
}

std::vector<int> PlacesOf(const test::DecodedFilm& film)
{
    std::vector<int> places;
    for (const test::FilmStill& still : film.pictures)
        places.push_back(static_cast<int>(std::lround(still.seconds * kPicturesPerSecond)));
    return places;
}

class EachFilm : public FilmWriterTest, public ::testing::WithParamInterface<FilmKind> {};
INSTANTIATE_TEST_SUITE_P(Kinds, EachFilm,
                         ::testing::Values(FilmKind::Mp4, FilmKind::WebM, FilmKind::Matroska));

TEST_P(EachFilm, HasAPictureWhereItChangesEachSecondAndAtItsEnd)
{
    const test::DecodedFilm film =
        Made(Format(GetParam()), 35, {{3, 0xFFFF0000}, {17, 0xFF2060C0}});
    EXPECT_EQ(PlacesOf(film), (std::vector<int>{0, 3, 13, 17, 27, 34}));
    for (const auto& still : film.pictures) {
        const std::uint32_t wanted = still.seconds < 0.25   ? 0xFF000000
                                     : still.seconds < 1.65 ? 0xFFFF0000
                                                            : 0xFF2060C0;
        EXPECT_GE(test::PeakSignalToNoise(still.rgb, Flat(wanted)),
                  GetParam() == FilmKind::Matroska ? 99 : 38)
            << still.seconds;
    }
    EXPECT_NEAR(film.seconds, 3.5, 0.05);
    EXPECT_NEAR(static_cast<double>(film.stereo.size()) / 2 / film.soundRate, 3.5, 0.03);
}

TEST_F(FilmWriterTest, PicturesThatChangeComeNoSoonerThanTold)
{
    FilmFormat format = Format(FilmKind::Matroska);
    format.placesPerSecond = 100;
    format.picturesPerSecond = 30;
    const auto writer = Open(format, QStringLiteral("film.mkv"));
    std::vector<int> takes;
    for (int place = 0; place < 200; ++place) {
        // A picture that stands still meanwhile is no reason to wait.
        const bool isStill = place > 20 && place < 150;
        if (writer->TakesPicture() && !isStill) {
            takes.push_back(place);
            const std::uint32_t pixel = 0xFF000000 | static_cast<std::uint32_t>(place);
            writer->Paint({&pixel, 0}, {0, 0, 1, 1});
        }
        ASSERT_EQ(writer->NextPicture(), QString());
    }
    takes.resize(9);
    EXPECT_EQ(takes, (std::vector<int>{0, 4, 8, 12, 16, 20, 150, 154, 158}));
    ASSERT_EQ(writer->Finish(), QString());
}

TEST_P(EachFilm, HasAKeyPictureEveryFewSeconds)
{
    std::map<int, std::uint32_t> colours;
    for (int place = 0; place < 150; place += 3)
        colours[place] = 0xFF000000 | static_cast<std::uint32_t>(place) * 0x010001;
    const test::DecodedFilm film = Made(Format(GetParam()), 150, colours);
    double lastKey = 0;
    ASSERT_FALSE(film.pictures.empty());
    EXPECT_TRUE(film.pictures.front().isKey);
    int keys = 0;
    for (const auto& still : film.pictures) {
        keys += still.isKey ? 1 : 0;
        if (still.isKey)
            lastKey = still.seconds;
        EXPECT_LT(still.seconds - lastKey, 5.0);
    }
    if (GetParam() != FilmKind::Matroska) {
        EXPECT_LE(keys, 5);
    }
}

TEST_P(EachFilm, SoundIsAtItsPlace)
{
    const auto writer = Open(Format(GetParam()), NameOf(GetParam()));
    constexpr int kClickAt = 3 * kRate / 2;
    std::vector<float> stereo(std::size_t{2} * 2 * kRate);
    for (std::size_t i = 0; i < 64; ++i)
        stereo[2 * kClickAt + i] = i % 2 == 0 ? 0.5F : -0.25F;
    for (int place = 0; place < 2 * kPicturesPerSecond; ++place)
        ASSERT_EQ(writer->NextPicture(), QString());
    // In pieces that are no encoder's.
    for (std::size_t at = 0; at < stereo.size(); at += 1998)
        ASSERT_EQ(writer->AddSound(std::span(stereo).subspan(
                      at, std::min<std::size_t>(1998, stereo.size() - at))),
                  QString());
    ASSERT_EQ(writer->Finish(), QString());
    const test::DecodedFilm film = test::DecodeFilm(In(NameOf(GetParam())).toStdString());
    ASSERT_EQ(film.soundRate, kRate);
    std::size_t loudest = 0;
    for (std::size_t i = 0; i < film.stereo.size(); ++i)
        if (std::abs(film.stereo[i]) > std::abs(film.stereo[loudest]))
            loudest = i;
    EXPECT_NEAR(static_cast<double>(loudest) / 2, kClickAt + 16, 48);
}

TEST_F(FilmWriterTest, AnExactFilmGivesBackWhatWentIn)
{
    std::mt19937 random(3);
    FilmFormat format = Format(FilmKind::Matroska);
    format.width = 33; // odd ones, too
    format.height = 21;
    format.soundRate = 44100;
    const auto writer = Open(format, QStringLiteral("film.mkv"));
    std::vector<std::string> wanted;
    std::vector<float> sound;
    for (int place = 0; place < 7; ++place) {
        std::vector<std::uint32_t> pixels(33 * 21);
        std::string& rgb = wanted.emplace_back();
        for (std::uint32_t& pixel : pixels) {
            pixel = 0xFF000000 | (static_cast<std::uint32_t>(random()) & 0xFFFFFF);
            for (const int shift : {16, 8, 0})
                rgb += static_cast<char>(pixel >> shift & 0xFF);
        }
        writer->Paint({pixels.data(), 33}, {0, 0, 33, 21});
        ASSERT_EQ(writer->NextPicture(), QString());
        std::vector<float> piece(2 * 4410);
        for (float& sample : piece)
            sample = static_cast<float>(static_cast<int>(random() % (1U << 24)) - (1 << 23)) /
                     static_cast<float>(1 << 23);
        ASSERT_EQ(writer->AddSound(piece), QString());
        sound.insert(sound.end(), piece.begin(), piece.end());
    }
    ASSERT_EQ(writer->Finish(), QString());
    const test::DecodedFilm film = test::DecodeFilm(In(QStringLiteral("film.mkv")).toStdString());
    ASSERT_EQ(film.pictures.size(), wanted.size());
    for (std::size_t i = 0; i < wanted.size(); ++i)
        EXPECT_TRUE(film.pictures[i].rgb == wanted[i]) << i;
    EXPECT_EQ(film.soundRate, 44100);
    EXPECT_TRUE(film.stereo == sound);
}

TEST_P(EachFilm, SoundBeyondFullScaleStaysAtFullScale)
{
    const auto writer = Open(Format(GetParam()), NameOf(GetParam()));
    ASSERT_EQ(writer->NextPicture(), QString());
    std::vector<float> loud(2 * 4800, 3.0F);
    ASSERT_EQ(writer->AddSound(loud), QString());
    ASSERT_EQ(writer->Finish(), QString());
    const test::DecodedFilm film = test::DecodeFilm(In(NameOf(GetParam())).toStdString());
    ASSERT_GT(film.stereo.size(), 9000U);
    EXPECT_GT(film.stereo[4800], 0.9F); // and not turned over
}

TEST_P(EachFilm, TellsItsTitleAndArtist)
{
    FilmFormat format = Format(GetParam());
    format.title = QStringLiteral("Ĝis = \"la\"; revido");
    format.artist = QStringLiteral("Ŝi");
    Made(format, 1, {});
    EXPECT_EQ(test::ProbeFilm(In(NameOf(GetParam())).toStdString(), "format_tags=title"),
              "\"Ĝis = \"\"la\"\"; revido\"\n");
    EXPECT_EQ(test::ProbeFilm(In(NameOf(GetParam())).toStdString(), "format_tags=artist"), "Ŝi\n");
}

TEST_F(FilmWriterTest, ColoursAreToldAsTheyWereMade)
{
    for (const FilmKind kind : {FilmKind::Mp4, FilmKind::WebM}) {
        Made(Format(kind), 1, {});
        EXPECT_THAT(test::ProbeFilm(In(NameOf(kind)).toStdString(),
                                    "stream=pix_fmt,color_range,color_space,color_transfer,"
                                    "color_primaries"),
                    HasSubstr("yuv420p,tv,bt709,bt709,bt709"));
    }
}

TEST_F(FilmWriterTest, WhatAPlayerNeedsFirstStandsFirst)
{
    Made(Format(FilmKind::Mp4), 30, {});
    const std::string bytes = test::ReadFile(In(QStringLiteral("film.mp4")).toStdString());
    EXPECT_LT(bytes.find("moov"), bytes.find("mdat"));
}

TEST_F(FilmWriterTest, ANameThatLooksLikeAnAddressIsAName)
{
    const auto writer = Open(Format(FilmKind::Matroska), QStringLiteral("http:é%d.mkv"));
    ASSERT_EQ(writer->NextPicture(), QString());
    ASSERT_EQ(writer->Finish(), QString());
    EXPECT_GT(test::ReadFile(In(QStringLiteral("http:é%d.mkv")).toStdString()).size(), 100U);
}

TEST_F(FilmWriterTest, WhatCannotBeWrittenIsTold)
{
    QString error;
    EXPECT_FALSE(FilmWriter::Open(In(QStringLiteral("no/film.mp4")), Format(FilmKind::Mp4), error));
    EXPECT_EQ(error, QStringLiteral("No such file or directory"));
    EXPECT_FALSE(FilmWriter::Open(In(QString()), Format(FilmKind::WebM), error));
    EXPECT_EQ(error, QStringLiteral("Is a directory"));
}

TEST_P(EachFilm, GoesThroughAPipeIfItsContainerCan)
{
    const std::string pipe = In(NameOf(GetParam())).toStdString();
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    const OwnedDescriptor reader(open(pipe.c_str(), O_RDWR | O_CLOEXEC));
    QString error;
    const auto writer = FilmWriter::Open(In(NameOf(GetParam())), Format(GetParam()), error);
    if (GetParam() == FilmKind::Mp4) {
        EXPECT_EQ(error, QStringLiteral("it is a pipe, through which no .mp4 goes"));
        return;
    }
    ASSERT_EQ(error, QString());
    ASSERT_EQ(writer->NextPicture(), QString());
    ASSERT_EQ(writer->Finish(), QString());
    std::array<char, 4096> bytes = {};
    EXPECT_GT(read(reader.Number(), bytes.data(), bytes.size()), 100);
    EXPECT_EQ(std::string(bytes.data(), 4), "\x1A\x45\xDF\xA3"); // as such a file begins
}

TEST_P(EachFilm, AFullDiskIsTold)
{
    QString error;
    const auto writer = FilmWriter::Open(QStringLiteral("/dev/full"), Format(GetParam()), error);
    // At once, or where a buffer is full, or at the end.
    if (writer)
        error = writer->NextPicture();
    if (writer && error.isEmpty())
        error = writer->Finish();
    EXPECT_EQ(error, QStringLiteral("No space left on device"));
}

TEST(FilmFormat, IsToldByTheExtension)
{
    EXPECT_EQ(FilmKindOf(QStringLiteral("/a.b/c.MP4")), FilmKind::Mp4);
    EXPECT_EQ(FilmKindOf(QStringLiteral("c.d.webm")), FilmKind::WebM);
    EXPECT_EQ(FilmKindOf(QStringLiteral(".mkv")), FilmKind::Matroska);
    for (const char16_t* name : {u"mp4", u"a.avi", u"a.", u"", u"a.mp4x"})
        EXPECT_EQ(FilmKindOf(QString::fromUtf16(name)), std::nullopt);
}

TEST(FilmFormat, SoundKeepsItsRateWhereItCan)
{
    for (const int rate : {8000, 44100, 48000, 96000}) {
        EXPECT_EQ(FilmSoundRate(FilmKind::Mp4, rate), rate);
        EXPECT_EQ(FilmSoundRate(FilmKind::Matroska, rate), rate);
        EXPECT_EQ(FilmSoundRate(FilmKind::WebM, rate), 48000);
    }
    EXPECT_EQ(FilmSoundRate(FilmKind::Mp4, 176400), 44100);
    EXPECT_EQ(FilmSoundRate(FilmKind::Mp4, 192000), 48000);
    EXPECT_EQ(FilmSoundRate(FilmKind::Mp4, 37800), 48000);
    EXPECT_EQ(FilmSoundRate(FilmKind::Matroska, 192000), 192000);
    EXPECT_EQ(FilmSoundRate(FilmKind::Matroska, 37800), 37800);
}

TEST(FilmFormat, SizesThatNoPlayerTakesAreRefused)
{
    const auto why = [](FilmKind kind, int width, int height) {
        return WhyNoFilm(kind, width, height).toStdString();
    };
    const std::string range = "a film has 16 to 4096 pixels to a side";
    EXPECT_EQ(why(FilmKind::Mp4, 16, 4096), "");
    EXPECT_EQ(why(FilmKind::Matroska, 17, 4095), "");
    EXPECT_EQ(why(FilmKind::Matroska, 15, 40), range);
    EXPECT_EQ(why(FilmKind::Matroska, 40, 4097), range);
    EXPECT_EQ(why(FilmKind::Mp4, 65, 48), "the sides of a .mp4 film have an even number of pixels");
    EXPECT_EQ(why(FilmKind::WebM, 64, 47),
              "the sides of a .webm film have an even number of pixels");
}

} // namespace
} // namespace lantern
