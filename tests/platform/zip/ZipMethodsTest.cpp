// SPDX-License-Identifier: GPL-3.0-or-later
// Archives as other programs make them.
#include "ZipHandlerFixture.h"

#include <cstring>

namespace lantern {
namespace {

using namespace test;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Pair;
using ::testing::StartsWith;

class ZipMethodsTest : public ZipHandlerFixture {
protected:
    // What packets and sound are like: some of it repeats, some doesn't.
    static std::string Song(std::uint32_t seed)
    {
        std::string song;
        for (std::uint32_t i = 0; i < 40; ++i)
            song += Noise(3000, seed + i % 7) + Noise(500, seed + 100 + i);
        return song;
    }

    void MakeSong()
    {
        Make("a.cdg", m_packets);
        Make("b.mp3", m_sound);
    }
    void Run(const Words& command)
    {
        Words words = {"sh", "-c", R"(cd "$0" && exec "$@" >/dev/null)", m_folder.Path().native()};
        words.insert(words.end(), command.begin(), command.end());
        OutputOf({.arguments = words});
    }
    // One stream of the compressor's own form.
    std::string Compressed(const Words& command, const std::string& name)
    {
        Words words = {"sh", "-c", R"(cd "$0" && exec "$@")", m_folder.Path().native()};
        words.insert(words.end(), command.begin(), command.end());
        words.push_back(name);
        return OutputOf({.arguments = words});
    }
    void ExpectSong(const std::filesystem::path& archive)
    {
        const Outcome outcome = Unpack(archive);
        EXPECT_EQ(outcome.result, 0);
        EXPECT_TRUE(outcome.members == (Pairs{{"a.cdg", m_packets}, {"b.mp3", m_sound}}))
            << ::testing::PrintToString(outcome.skipped);
    }

    const std::string m_packets = Song(1);
    const std::string m_sound = Song(1000);
};

TEST_F(ZipMethodsTest, EachMethodOfACommonArchiverIsRead)
{
    MakeSong();
    for (const char* method : {"Copy", "Deflate", "Deflate64", "BZip2", "LZMA", "PPMd"}) {
        SCOPED_TRACE(method);
        Run({"7z", "a", "-tzip", std::string("-mm=") + method, "a.zip", "a.cdg", "b.mp3"});
        ASSERT_LT(ReadFile(m_folder / "a.zip").size(),
                  m_packets.size() + m_sound.size() + (method == std::string("Copy") ? 1000 : 0));
        ExpectSong(m_folder / "a.zip");
        std::filesystem::remove(m_folder / "a.zip");
    }
}

TEST_F(ZipMethodsTest, NewerMethodsAreRead)
{
    MakeSong();
    const auto packed = [&](const Words& command, std::uint16_t method) {
        const std::string bytes = Compressed(command, "a.cdg");
        EXPECT_LT(bytes.size(), m_packets.size());
        // The checksum and the size are those of what was packed.
        const std::string whole = HandMadeZip({{.name = "a.cdg", .contents = m_packets}});
        std::uint32_t checksum = 0;
        std::memcpy(&checksum, whole.data() + 14, 4);
        return UnpackOne({.name = "a.cdg",
                          .contents = bytes,
                          .method = method,
                          .size = static_cast<std::uint32_t>(m_packets.size()),
                          .checksum = checksum});
    };
    EXPECT_TRUE(packed({"zstd", "-c", "-q"}, 93).members == (Pairs{{"a.cdg", m_packets}}));
    EXPECT_TRUE(packed({"xz", "-c"}, 95).members == (Pairs{{"a.cdg", m_packets}}));
}

TEST_F(ZipMethodsTest, ADamagedStreamOfEachMethodIsSkipped)
{
    MakeSong();
    for (const char* method : {"Deflate", "Deflate64", "BZip2", "LZMA", "PPMd"}) {
        SCOPED_TRACE(method);
        Run({"7z", "a", "-tzip", std::string("-mm=") + method, "a.zip", "a.cdg", "b.mp3"});
        std::string bytes = ReadFile(m_folder / "a.zip");
        for (std::size_t i = 10'000; i < 10'050; ++i)
            bytes[i] = static_cast<char>(bytes[i] ^ 0x55);
        const Outcome outcome = UnpackBytes(bytes);
        EXPECT_TRUE(outcome.members == (Pairs{{"b.mp3", m_sound}}));
        EXPECT_THAT(outcome.skipped,
                    ElementsAre(Pair(
                        "a.cdg", ::testing::AnyOf(StartsWith("damaged"), StartsWith("wrong ")))));
        std::filesystem::remove(m_folder / "a.zip");
    }
}

TEST_F(ZipMethodsTest, AStreamThatClaimsToNeedGigabytesIsSkipped)
{
    // Version, the size of what follows, properties with a dictionary of 3 GiB, and a stream.
    const std::string lzma = std::string("\x10\x02\x05\0\x5D\0\0\0\xC0", 9) + std::string(50, '\0');
    ExpectSkipped({.name = "a.cdg", .contents = lzma, .method = 14, .size = 480},
                  "damaged: it claims to need too much memory");
    Make("a.cdg", m_packets);
    std::string xz = Compressed({"xz", "-c", "--lzma2=dict=1GiB"}, "a.cdg");
    ExpectSkipped({.name = "a.cdg",
                   .contents = xz,
                   .method = 95,
                   .size = static_cast<std::uint32_t>(m_packets.size())},
                  "damaged: it claims to need too much memory");
}

TEST_F(ZipMethodsTest, ASelfExtractorIsRead)
{
    MakeSong();
    Run({"7z", "a", "-tzip", "a.zip", "a.cdg", "b.mp3"});
    WriteFile(m_folder / "b.zip", std::string(150'000, 'M') + ReadFile(m_folder / "a.zip"));
    ExpectSong(m_folder / "b.zip");
    Run({"zip", "-q", "-A", "b.zip"}); // the offsets corrected
    ExpectSong(m_folder / "b.zip");
}

TEST_F(ZipMethodsTest, BytesBehindTheArchiveDoNotMatter)
{
    MakeSong();
    Run({"7z", "a", "-tzip", "a.zip", "a.cdg", "b.mp3"});
    WriteFile(m_folder / "b.zip", ReadFile(m_folder / "a.zip") + std::string(70'000, '\0'));
    ExpectSong(m_folder / "b.zip");
}

TEST_F(ZipMethodsTest, TheTwinsThatAMacAddsTakeNobodysPlace)
{
    MakeSong();
    Make("__MACOSX/._a.cdg", "icons");
    Make("__MACOSX/b/._b.mp3", "icons");
    const auto archive =
        Zip("a.zip", {"a.zip", "__MACOSX/._a.cdg", "__MACOSX/b/._b.mp3", "a.cdg", "b.mp3"});
    const Outcome outcome = Unpack(archive);
    EXPECT_THAT(outcome.offered, ElementsAre("a.cdg", "b.mp3"));
    EXPECT_TRUE(outcome.members == (Pairs{{"a.cdg", m_packets}, {"b.mp3", m_sound}}));
    EXPECT_THAT(outcome.skipped, ElementsAre(Pair("__MACOSX/._a.cdg", HasSubstr("Mac")),
                                             Pair("__MACOSX/b/._b.mp3", HasSubstr("Mac"))));
}

TEST_F(ZipMethodsTest, AHundredThousandOthersDoNotHideASong)
{
    std::vector<HandMadeMember> members(100'000);
    for (std::size_t i = 0; i < members.size(); ++i)
        members[i] = {.name = "scans/" + std::to_string(i) + ".png", .contents = ""};
    members.push_back({.name = "song.cdg", .contents = "packets"});
    std::string archive = HandMadeZip(members);
    EXPECT_THAT(UnpackBytes(archive).members, ElementsAre(Pair("song.cdg", "packets")));
}

} // namespace
} // namespace lantern
