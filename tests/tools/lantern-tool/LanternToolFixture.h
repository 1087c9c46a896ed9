// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Process.h"
#include "Track.h"
#include "WavHeader.h"

#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

// Runs the real program on real files, as a script would.
namespace lantern {

using namespace std::chrono_literals;
using Words = std::vector<std::string>;

inline constexpr std::uint8_t kGraphics = 9;

inline CdgPacket Packet(std::uint8_t instruction, const std::vector<std::uint8_t>& data)
{
    CdgPacket packet;
    packet.Command = kGraphics;
    packet.Instruction = instruction;
    std::copy(data.begin(), data.end(), packet.PacketData.begin());
    return packet;
}

// Entry 1 is red, 2 is green, 3 is blue, the others of the low half are black.
inline CdgPacket PrimaryColours()
{
    return Packet(30, {0, 0, 0x3C, 0, 0x03, 0x30, 0, 0x0F});
}

inline CdgPacket Fill(std::uint8_t colour)
{
    return Packet(1, {colour});
}

// A block of one colour at a row and column of the grid of 18 by 50.
inline CdgPacket Block(std::uint8_t colour, std::uint8_t row, std::uint8_t column)
{
    return Packet(6, {colour, colour, row, column});
}

inline std::string Bytes(const std::vector<CdgPacket>& packets)
{
    return {reinterpret_cast<const char*>(packets.data()), packets.size() * kPacketSize};
}

inline std::string SilentWav(std::size_t frames)
{
    const auto header = WavHeader(static_cast<std::uint32_t>(frames * kDiscFrameBytes));
    return std::string(header.begin(), header.end()) + std::string(frames * kDiscFrameBytes, '\0');
}

class LanternToolTest : public ::testing::Test {
protected:
    struct Result {
        int code = -1;
        std::string output;
        std::string error;
    };

    Result Run(const Words& words, const std::string& before = "exec",
               const test::EnvironmentChanges& environment = {})
    {
        Words all = {"sh", "-c", before + R"( "$0" "$@" >"$OUT" 2>"$ERR")", LANTERN_TOOL};
        all.insert(all.end(), words.begin(), words.end());
        test::Process::Command command{.arguments = all, .environment = environment};
        command.environment.emplace_back("OUT", In("out"));
        command.environment.emplace_back("ERR", In("err"));
        Result result;
        result.code = test::Process(command).WaitForExit(60s).value_or(-1);
        result.output = test::ReadFile(In("out"));
        result.error = test::ReadFile(In("err"));
        return result;
    }
    QJsonObject Info(const std::string& path)
    {
        const Result result = Run({"info", path});
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_EQ(result.error, "");
        const QJsonDocument json =
            QJsonDocument::fromJson(QByteArray::fromStdString(result.output));
        EXPECT_TRUE(json.isObject()) << result.output;
        return json.object();
    }
    QImage Frame(const std::string& path, const std::string& packet)
    {
        const Result result = Run({"frame", path, "--packet", packet, "--out", In("frame.png")});
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_EQ(result.output + result.error, "");
        return QImage(QString::fromStdString(In("frame.png")), "PNG");
    }
    // The last picture of the blocks, drawn at a size.
    QImage FrameOf(const std::string& size, const Words& more)
    {
        Words words = {"frame",  MakeBlocks(), "--packet", "14",
                       "--size", size,         "--out",    In("sized.png")};
        words.insert(words.end(), more.begin(), more.end());
        const Result result = Run(words);
        EXPECT_EQ(result.code, 0) << result.error;
        EXPECT_EQ(result.output + result.error, "");
        return QImage(QString::fromStdString(In("sized.png")), "PNG");
    }
    void ExpectFailure(const Words& words, const std::string& error)
    {
        const Result result = Run(words);
        EXPECT_EQ(result.code, 1) << error;
        EXPECT_EQ(result.output, "") << error;
        EXPECT_EQ(result.error, "lantern-tool: " + error + "\n");
    }

    std::string In(const std::string& name) const { return (m_folder / name).native(); }
    std::string Make(const std::string& name, const std::string& bytes)
    {
        test::WriteFile(In(name), bytes);
        return In(name);
    }
    // An archive of files in the folder, in that order.
    std::string Zip(const std::string& name, const Words& words)
    {
        Words all = {"sh", "-c", R"(cd "$0" && exec zip -q "$@")", m_folder.Path().native(), name};
        all.insert(all.end(), words.begin(), words.end());
        test::OutputOf({.arguments = all});
        return In(name);
    }
    // Red, then a green block in the visible corner, then a blue one beside it; 10 empty packets.
    static std::vector<CdgPacket> Blocks(std::size_t count = 14)
    {
        std::vector<CdgPacket> packets = {PrimaryColours(), Fill(1), Block(2, 1, 1),
                                          Block(3, 1, 2)};
        packets.resize(count);
        return packets;
    }
    std::string MakeBlocks() { return Make("blocks.cdg", Bytes(Blocks())); }

    test::ScratchFolder m_folder;
};

// Sectors as a disc has them: silence, with four packets behind each of its stretches.
inline std::string Sectors(const std::vector<CdgPacket>& packets)
{
    constexpr std::size_t kSilentBytes = 2352;
    std::string sectors;
    for (std::size_t i = 0; i + 4 <= packets.size(); i += 4) {
        sectors += std::string(kSilentBytes, '\0');
        sectors += Bytes({packets.begin() + static_cast<std::ptrdiff_t>(i),
                          packets.begin() + static_cast<std::ptrdiff_t>(i + 4)});
    }
    return sectors;
}

inline constexpr QRgb kBlackPixel = 0xFF000000;
inline constexpr QRgb kRed = 0xFFFF0000;
inline constexpr QRgb kGreen = 0xFF00FF00;
inline constexpr QRgb kBlue = 0xFF0000FF;

// The whole picture: everything but the two blocks has one colour.
inline void ExpectBlocks(const QImage& image, QRgb first, QRgb second, QRgb rest)
{
    ASSERT_EQ(image.size(), QSize(288, 192));
    int wrong = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb block = x < 6 ? first : second;
            const QRgb expected = y < 12 && x < 12 ? block : rest;
            wrong += image.pixel(x, y) == expected ? 0 : 1;
        }
    }
    EXPECT_EQ(wrong, 0);
}

} // namespace lantern
