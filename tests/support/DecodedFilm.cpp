// SPDX-License-Identifier: GPL-3.0-or-later
#include "DecodedFilm.h"

#include "Process.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <sstream>

namespace lantern::test {
namespace {

constexpr auto kDecodesWithin = std::chrono::seconds(60);

std::vector<std::string> Fields(const std::string& line)
{
    std::vector<std::string> fields;
    std::istringstream parts(line);
    for (std::string part; std::getline(parts, part, ',');)
        fields.push_back(part);
    return fields;
}

// All that is told of the film by times.
void ReadPlaces(const std::filesystem::path& path, DecodedFilm& film)
{
    const std::string told =
        OutputOf({.arguments = {"ffprobe", "-v", "error", "-of", "csv", "-show_entries",
                                "frame=media_type,key_frame,pts_time:"
                                "stream=codec_type,width,height,sample_rate:format=duration",
                                path.native()}},
                 kDecodesWithin);
    std::istringstream lines(told);
    bool isSoundBegun = false;
    for (std::string line; std::getline(lines, line);) {
        const std::vector<std::string> fields = Fields(line);
        const std::string kind = fields.size() > 1 ? fields[0] + ' ' + fields[1] : "";
        if (kind == "frame video" && fields.size() > 3) {
            film.pictures.push_back({std::stod(fields[3]), fields[2] == "1", {}});
            EXPECT_GE(film.pictures.front().seconds, 0);
            EXPECT_LE(film.pictures.front().seconds, 0.0006) << "where the pictures begin";
        } else if (kind == "frame audio" && fields.size() > 3 && !isSoundBegun) {
            isSoundBegun = true;
            EXPECT_NEAR(std::stod(fields[3]), 0, 0.0006) << "where the sound begins";
        } else if (kind == "stream video" && fields.size() > 3) {
            film.width = std::stoi(fields[2]);
            film.height = std::stoi(fields[3]);
        } else if (kind == "stream audio" && fields.size() > 2) {
            film.soundRate = std::stoi(fields[2]);
        } else if (kind.starts_with("format ")) {
            film.seconds = std::stod(fields[1]);
        }
    }
}

void ReadContents(const std::filesystem::path& path, DecodedFilm& film)
{
    const ScratchFolder scratch;
    const std::string pictures = scratch.Path() / "pictures";
    const std::string sound = scratch.Path() / "sound";
    OutputOf({.arguments = {"ffmpeg",
                            "-v",
                            "error",
                            "-i",
                            path.native(),
                            "-map",
                            "0:v",
                            "-vsync",
                            "passthrough",
                            "-sws_flags",
                            "bilinear+accurate_rnd+full_chroma_int",
                            "-f",
                            "rawvideo",
                            "-pix_fmt",
                            "rgb24",
                            pictures,
                            "-map",
                            "0:a",
                            "-f",
                            "f32le",
                            sound}},
             kDecodesWithin);
    const std::string bytes = ReadFile(pictures);
    const std::size_t size = std::size_t{3} * static_cast<std::size_t>(film.width) *
                             static_cast<std::size_t>(film.height);
    ASSERT_EQ(bytes.size(), film.pictures.size() * size);
    for (std::size_t i = 0; i < film.pictures.size(); ++i)
        film.pictures[i].rgb = bytes.substr(i * size, size);
    const std::string samples = ReadFile(sound);
    film.stereo.resize(samples.size() / sizeof(float));
    std::memcpy(film.stereo.data(), samples.data(), film.stereo.size() * sizeof(float));
}

} // namespace

const FilmStill* DecodedFilm::At(double then) const
{
    const auto after = std::ranges::upper_bound(pictures, then, {}, &FilmStill::seconds);
    return after == pictures.begin() ? nullptr : &*(after - 1);
}

std::string ProbeFilm(const std::filesystem::path& path, const std::string& entries)
{
    return OutputOf({.arguments = {"ffprobe", "-v", "error", "-of", "csv=p=0", "-show_entries",
                                   entries, path.native()}},
                    kDecodesWithin);
}

DecodedFilm DecodeFilm(const std::filesystem::path& path)
{
    DecodedFilm film;
    ReadPlaces(path, film);
    ReadContents(path, film);
    return film;
}

double PeakSignalToNoise(std::string_view rgb, std::string_view wanted)
{
    constexpr double kEqual = 99;
    EXPECT_EQ(rgb.size(), wanted.size());
    double squares = 0;
    for (std::size_t i = 0; i < std::min(rgb.size(), wanted.size()); ++i) {
        const int difference =
            static_cast<std::uint8_t>(rgb[i]) - static_cast<std::uint8_t>(wanted[i]);
        squares += difference * difference;
    }
    if (squares == 0)
        return kEqual;
    return 10 * std::log10(255.0 * 255.0 * static_cast<double>(rgb.size()) / squares);
}

} // namespace lantern::test
