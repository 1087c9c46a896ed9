// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "HandMadeZip.h"
#include "MakeZipHandler.h"
#include "PathText.h"
#include "Process.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

namespace lantern::test {

using Words = std::vector<std::string>;
using Pairs = std::vector<std::pair<std::string, std::string>>;

inline std::string Native(const QString& text)
{
    return NativeFromText(text).toStdString();
}

// Bytes that hardly compress.
inline std::string Noise(std::size_t size, std::uint32_t seed = 1)
{
    std::string bytes;
    for (std::size_t i = 0; i < size; ++i) {
        seed = seed * 1664525 + 1013904223;
        bytes += static_cast<char>(seed >> 24);
    }
    return bytes;
}

// Archives in a folder of the test, and what becomes of them.
class ZipHandlerFixture : public ::testing::Test {
protected:
    struct Outcome {
        std::int32_t result = -1;
        Words offered;
        Pairs members; // names with their bytes
        Pairs skipped; // names with the reason
    };

    static constexpr std::int64_t kLargest = 1 << 20;

    // What became of an archive, of which the excluded member isn't wanted.
    Outcome Unpack(const std::filesystem::path& archive, const std::string& excluded = {},
                   std::int64_t largest = kLargest)
    {
        Outcome outcome;
        const auto handler = MakeZipHandler(largest);
        handler->UnzipPreprocessingFile = [&](const QString& name, bool& exclude,
                                              ZipDestination& destination) {
            EXPECT_FALSE(exclude);
            outcome.offered.push_back(Native(name));
            exclude = Native(name) == excluded;
            destination = ZipDestination::Memory;
        };
        handler->UnzippingMemoryFile = [&](const QString& name, std::vector<std::uint8_t> bytes) {
            outcome.members.emplace_back(Native(name), std::string(bytes.begin(), bytes.end()));
        };
        handler->MemberSkipped = [&](const QString& name, const QString& reason) {
            outcome.skipped.emplace_back(Native(name), Native(reason));
        };
        handler->ZipOpenArchive(TextFromNative(archive.native().c_str()));
        handler->ZipSetFilter(QStringLiteral("*.cdg|*.mp3|*.wav"));
        handler->ZipSetFolder(TextFromNative(m_folder.Path().c_str()));
        handler->ZipRun(outcome.result);
        return outcome;
    }
    Outcome UnpackBytes(const std::string& bytes)
    {
        WriteFile(m_folder / "a.zip", bytes);
        return Unpack(m_folder / "a.zip");
    }
    Outcome UnpackOne(const HandMadeMember& member) { return UnpackBytes(HandMadeZip({member})); }

    // By the system's archiver, in the folder of the test.
    std::filesystem::path Zip(const std::string& archive, const Words& words)
    {
        const std::string script = R"(cd "$0" && exec zip -q "$@")";
        Words all = {"sh", "-c", script, m_folder.Path().native()};
        all.insert(all.end(), words.begin(), words.end());
        OutputOf({.arguments = all});
        return m_folder / archive;
    }
    void Make(const std::string& name, const std::string& bytes)
    {
        std::filesystem::create_directories((m_folder / name).parent_path());
        WriteFile(m_folder / name, bytes);
    }

    // The member is skipped for the reason; the sound one beside it isn't.
    void ExpectSkipped(const HandMadeMember& member, const std::string& reason)
    {
        const Outcome outcome =
            UnpackBytes(HandMadeZip({member, {.name = "good.mp3", .contents = "good"}}));
        EXPECT_EQ(outcome.result, 0);
        EXPECT_EQ(outcome.members, (Pairs{{"good.mp3", "good"}})) << reason;
        EXPECT_THAT(outcome.skipped, ::testing::ElementsAre(::testing::Pair(
                                         member.name, ::testing::StartsWith(reason))));
    }
    void ExpectUnreadable(const std::filesystem::path& archive)
    {
        const Outcome outcome = Unpack(archive);
        EXPECT_NE(outcome.result, 0);
        EXPECT_THAT(outcome.offered, ::testing::IsEmpty());
        ASSERT_EQ(outcome.skipped.size(), 1U);
        EXPECT_EQ(outcome.skipped[0].first, "");
        EXPECT_NE(outcome.skipped[0].second, "");
    }

    ScratchFolder m_folder;
};

} // namespace lantern::test
