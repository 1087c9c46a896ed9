// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Eyes.h"
#include "Listening.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace lantern::test {

// A track made to measure how well picture and sound keep together: at uneven times the picture
// flashes and the sound has a short tone. Both tell which of the eight kinds of flash they belong
// to, the picture by its colour and the sound by its pitch, so that no neighbour is mistaken for
// the right one.
//
// Even kinds change the picture by Load Colour Table, odd ones the border by Border Preset: these
// two are painted at once, whatever the number of the packet.
class FlashTrack {
public:
    static constexpr int kKinds = 8;
    static constexpr double kShortestGapSeconds = 0.7;

    explicit FlashTrack(double seconds);

    // Writes flashes.cdg and flashes.mp3; returns the path of the first.
    std::filesystem::path Write(const std::filesystem::path& folder) const;

    double Seconds() const { return m_seconds; }
    // Of flash 1, 2, ... in seconds.
    const std::vector<double>& Times() const { return m_times; }

    // The colours of the picture and of the border from the first packets on.
    static QRgb FirstPictureColour();
    static QRgb FirstBorderColour();

    // Where the track is at that colour of the picture, to the next flash that changes it; nothing
    // for a colour that is not of this track's picture.
    std::optional<double> SecondsAtPictureColour(QRgb colour) const;

    // What the picture or the border, by the kind, is from a flash on; and the tone with it.
    static QRgb ColourOfFlash(int flash);
    static double ToneOfFlash(int flash);

    static std::optional<int> KindOfPictureColour(QRgb colour);
    static std::optional<int> KindOfBorderColour(QRgb colour);
    // The kind of a tone that was shifted by a number of half-tones.
    static std::optional<int> KindOfTone(double frequency, int halfTones);

private:
    void WriteNew(const std::filesystem::path& folder) const;

    double m_seconds;
    std::vector<double> m_times;
};

} // namespace lantern::test
