// SPDX-License-Identifier: GPL-3.0-or-later
#include "ButtonArt.h"

#include <QDirIterator>
#include <QFile>
#include <QRegularExpression>
#include <QStringList>

#include <gmock/gmock.h>

#include <algorithm>
#include <set>

namespace lantern {
namespace {

constexpr QRgb kBlackPixel = qRgb(0, 0, 0);
constexpr QRgb kOrange = qRgb(255, 171, 8);
constexpr QRgb kShade = qRgb(163, 109, 5);
constexpr std::array kRatios{1, 2, 3};

QImage Drawn(ButtonFace face, FaceState state, int ratio = 1)
{
    const PictureReference picture = ButtonPicture(face, state);
    return picture ? picture->ImageAt(ratio) : QImage();
}

template <typename Each>
void ForEachPixel(const QImage& image, Each each)
{
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            each(x, y, image.pixel(x, y));
}

template <typename Fits>
int CountInColumns(const QImage& image, int first, int end, Fits fits)
{
    int count = 0;
    ForEachPixel(image, [&](int x, int, QRgb pixel) {
        count += x >= first && x < end && fits(pixel) ? 1 : 0;
    });
    return count;
}

int PixelsThatDifferInBrightness(const QImage& one, const QImage& other)
{
    constexpr int kSeen = 32;
    int count = 0;
    ForEachPixel(one, [&](int x, int y, QRgb pixel) {
        count += std::abs(qGray(pixel) - qGray(other.pixel(x, y))) >= kSeen ? 1 : 0;
    });
    return count;
}

bool IsGreyOrOrange(QRgb pixel)
{
    const int spread = qRed(pixel) - qBlue(pixel);
    if (std::abs(spread) <= 12 && std::abs(qRed(pixel) - qGreen(pixel)) <= 12)
        return true;
    // Orange is red first, then green, then blue, with green at two thirds of the way.
    const int place = 100 * (qGreen(pixel) - qBlue(pixel)) / std::max(spread, 1);
    return spread > 0 && place >= 45 && place <= 80;
}

std::string Named(const ButtonDrawing& drawing, FaceState state)
{
    return std::string(drawing.name) + ", state " + std::to_string(static_cast<int>(state));
}

QStringList DrawingFiles()
{
    QStringList files;
    QDirIterator all(QStringLiteral(":/art/buttons"));
    while (all.hasNext())
        files << all.next();
    return files;
}

QString ContentsOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

TEST(ButtonArt, TheSizesAreThoseOfTheButtons)
{
    const auto size = [](ButtonFace face) { return Drawn(face, FaceState::Normal).size(); };
    for (int face = static_cast<int>(ButtonFace::Open);
         face <= static_cast<int>(ButtonFace::ReturnToOptions); ++face)
        EXPECT_EQ(size(static_cast<ButtonFace>(face)), QSize(24, 24)) << face;
    for (int face = static_cast<int>(ButtonFace::Back10Seconds);
         face <= static_cast<int>(ButtonFace::Forward60Seconds); ++face)
        EXPECT_EQ(size(static_cast<ButtonFace>(face)), QSize(18, 10)) << face;
    constexpr std::array kSizeWidths{12, 13, 14, 17, 16};
    for (int step = 0; step < 5; ++step)
        EXPECT_EQ(size(static_cast<ButtonFace>(static_cast<int>(ButtonFace::Size1) + step)),
                  QSize(kSizeWidths[static_cast<std::size_t>(step)], 20));
    for (const ButtonFace face : {ButtonFace::Larger, ButtonFace::Smaller})
        EXPECT_EQ(size(face), QSize(12, 12));
    for (int face = static_cast<int>(ButtonFace::WheelBalance);
         face <= static_cast<int>(ButtonFace::WheelTrack); ++face)
        EXPECT_EQ(size(static_cast<ButtonFace>(face)), QSize(24, 10)) << face;
    EXPECT_EQ(size(ButtonFace::Mute), QSize(18, 13));
    for (const ButtonFace face : {ButtonFace::RememberDevice, ButtonFace::CustomBalance,
                                  ButtonFace::CustomKey, ButtonFace::CustomSpeed})
        EXPECT_EQ(size(face), QSize(18, 14));
}

TEST(ButtonArt, EveryStateIsDrawnInTheSizeOfItsFaceAndOpaque)
{
    for (const ButtonDrawing& drawing : kButtonDrawings) {
        for (const FaceState state : kFaceStates) {
            for (const int ratio : kRatios) {
                SCOPED_TRACE(Named(drawing, state));
                const QImage image = Drawn(drawing.face, state, ratio);
                ASSERT_EQ(image.size(), QSize(drawing.width, drawing.height) * ratio);
                ForEachPixel(image, [](int, int, QRgb pixel) { ASSERT_EQ(qAlpha(pixel), 255); });
            }
        }
    }
}

TEST(ButtonArt, StatesAreToldApartWithoutColour)
{
    for (const ButtonDrawing& drawing : kButtonDrawings) {
        for (const FaceState one : kFaceStates) {
            for (const FaceState other : kFaceStates) {
                if (one >= other)
                    continue;
                SCOPED_TRACE(Named(drawing, one) + " and " + Named(drawing, other));
                const int pixels = drawing.width * drawing.height;
                EXPECT_GE(PixelsThatDifferInBrightness(Drawn(drawing.face, one),
                                                       Drawn(drawing.face, other)),
                          pixels / 12);
            }
        }
    }
}

TEST(ButtonArt, NoTwoFacesLookTheSame)
{
    for (const ButtonDrawing& one : kButtonDrawings)
        for (const ButtonDrawing& other : kButtonDrawings)
            EXPECT_TRUE(one.face == other.face ||
                        Drawn(one.face, FaceState::Normal) != Drawn(other.face, FaceState::Normal))
                << one.name << " and " << other.name;
}

TEST(ButtonArt, NothingButOrangeGreysAndBlack)
{
    for (const ButtonDrawing& drawing : kButtonDrawings)
        for (const FaceState state : kFaceStates)
            ForEachPixel(Drawn(drawing.face, state), [&](int x, int y, QRgb pixel) {
                EXPECT_TRUE(IsGreyOrOrange(pixel)) << Named(drawing, state) << " at " << x << ", "
                                                   << y << ": " << std::hex << pixel;
            });
}

// A colour that no state knows would stay as it is in all of them.
TEST(ButtonArt, DrawingsKeepToTheTwoColoursThatTheStatesReplace)
{
    const QStringList files = DrawingFiles();
    EXPECT_GE(files.size(), static_cast<qsizetype>(kButtonDrawings.size()));
    const QRegularExpression colour(QStringLiteral("(?:fill|stroke)=\"(?!none)([^\"]*)\""));
    for (const QString& path : files) {
        auto found = colour.globalMatch(ContentsOf(path));
        EXPECT_TRUE(found.hasNext()) << qPrintable(path);
        while (found.hasNext())
            EXPECT_THAT(found.next().captured(1).toStdString(),
                        testing::AnyOf("#ffab08", "#a36d05"))
                << qPrintable(path);
    }
}

TEST(ButtonArt, NoDrawingNeedsAFont)
{
    for (const QString& path : DrawingFiles())
        EXPECT_FALSE(ContentsOf(path).contains(QStringLiteral("<text"))) << qPrintable(path);
}

TEST(ButtonArt, FacesOfStraightLinesHaveNoHalfCoveredPixel)
{
    for (const ButtonFace face :
         {ButtonFace::Pause, ButtonFace::Stop, ButtonFace::CopyPicture, ButtonFace::Options,
          ButtonFace::FullScreen, ButtonFace::RestoreScreen, ButtonFace::Larger,
          ButtonFace::Smaller, ButtonFace::Size4})
        for (const int ratio : kRatios)
            ForEachPixel(Drawn(face, FaceState::Normal, ratio), [&](int x, int y, QRgb pixel) {
                EXPECT_TRUE(pixel == kBlackPixel || pixel == kOrange || pixel == kShade)
                    << static_cast<int>(face) << " at " << x << ", " << y << ": " << std::hex
                    << pixel;
            });
}

TEST(ButtonArt, ThePressedPlateHasSharpSides)
{
    for (const ButtonDrawing& drawing : kButtonDrawings) {
        for (const int ratio : kRatios) {
            SCOPED_TRACE(drawing.name);
            const QImage image = Drawn(drawing.face, FaceState::Down, ratio);
            const ButtonPlate& plate = drawing.plate;
            const int left = plate.left * ratio;
            const int right = (plate.left + plate.width) * ratio - 1;
            const int middle = (2 * plate.top + plate.height) * ratio / 2;
            const auto pixel = [&](int x) {
                return image.valid(x, middle) ? image.pixel(x, middle) : kBlackPixel;
            };
            EXPECT_EQ(pixel(left - 1), kBlackPixel);
            EXPECT_EQ(pixel(left), kOrange);
            EXPECT_EQ(pixel(right), kOrange);
            EXPECT_EQ(pixel(right + 1), kBlackPixel);
        }
    }
}

// The forward buttons stand five pixels to the right of the back buttons and hide the rest of
// them, or the other way about: each must show its arrow in the strip that stays free.
TEST(ButtonArt, SkipButtonsKeepTheirArrowInTheFiveOuterColumns)
{
    const auto lit = [](QRgb pixel) { return pixel != kBlackPixel; };
    for (const ButtonFace face : {ButtonFace::Back10Seconds, ButtonFace::Back60Seconds}) {
        const QImage image = Drawn(face, FaceState::Normal);
        EXPECT_GE(CountInColumns(image, 0, 5, lit), 12);
        EXPECT_EQ(CountInColumns(image, 5, 6, lit), 0);
    }
    for (const ButtonFace face : {ButtonFace::Forward10Seconds, ButtonFace::Forward60Seconds}) {
        const QImage image = Drawn(face, FaceState::Normal);
        EXPECT_GE(CountInColumns(image, 13, 18, lit), 12);
        EXPECT_EQ(CountInColumns(image, 12, 13, lit), 0);
    }
}

// They stand nine pixels apart, so that the first row of one lies on the last of the other.
TEST(ButtonArt, WheelButtonsLeaveTheirFirstAndLastRowBlack)
{
    for (int face = static_cast<int>(ButtonFace::WheelBalance);
         face <= static_cast<int>(ButtonFace::WheelTrack); ++face)
        for (const FaceState state : kFaceStates)
            ForEachPixel(Drawn(static_cast<ButtonFace>(face), state), [&](int, int y, QRgb pixel) {
                EXPECT_TRUE((y > 0 && y < 9) || pixel == kBlackPixel) << face;
            });
}

} // namespace
} // namespace lantern
