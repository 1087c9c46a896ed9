// SPDX-License-Identifier: GPL-3.0-or-later
#include "LanternToolFixture.h"
#include "Version.h"

#include <sys/stat.h>

namespace lantern {
namespace {

using ::testing::HasSubstr;
using ::testing::StartsWith;

TEST_F(LanternToolTest, InfoTellsPacketsAndClips)
{
    const std::string packets = Make("a.cdg", Bytes(std::vector<CdgPacket>(400)));
    const std::string audio = Make("a.wav", SilentWav(44100));
    const QJsonObject info = Info(packets);
    EXPECT_EQ(info[u"packets"].toInt(), 400);
    EXPECT_EQ(info[u"length_ms"].toInt(), 1333);
    const QJsonArray clips = info[u"clips"].toArray();
    ASSERT_EQ(clips.size(), 2);
    EXPECT_EQ(clips[0].toObject(),
              (QJsonObject{{QStringLiteral("kind"), QStringLiteral("FILE")},
                           {QStringLiteral("start_ms"), 0},
                           {QStringLiteral("length_ms"), 1000},
                           {QStringLiteral("path"), QString::fromStdString(audio)}}));
    EXPECT_EQ(clips[1].toObject(), (QJsonObject{{QStringLiteral("kind"), QStringLiteral("DATA")},
                                                {QStringLiteral("start_ms"), 1000},
                                                {QStringLiteral("length_ms"), 333}}));
}

TEST_F(LanternToolTest, InfoMeasuresWhatAnEncoderMade)
{
    const std::string wav = Make("a.wav", SilentWav(66150));
    test::OutputOf({.arguments = {"flac", "--silent", "-f", wav, "-o", In("b.flac")}});
    const QJsonObject info = Info(In("b.flac"));
    EXPECT_EQ(info[u"length_ms"].toInt(), 1500);
    EXPECT_EQ(info[u"packets"].toInt(), 450);
}

TEST_F(LanternToolTest, InfoFindsCompanionsWhateverTheirLetterCase)
{
    Make("Song.CDG", Bytes(std::vector<CdgPacket>(300)));
    const std::string audio = Make("Song.Wav", SilentWav(44100));
    const QJsonArray clips = Info(In("song.cdg"))[u"clips"].toArray();
    ASSERT_EQ(clips.size(), 1);
    EXPECT_EQ(clips[0].toObject()[u"path"].toString().toStdString(), audio);
}

TEST_F(LanternToolTest, BytesOfAPathThatAreNoTextAppearAsEscapes)
{
    const std::string audio = Make("\xE9 \xC3\xA9 \"\n\xFF.wav", SilentWav(44100));
    const Result result = Run({"info", audio});
    EXPECT_EQ(result.code, 0);
    EXPECT_THAT(result.output, HasSubstr("/\\udce9 \xC3\xA9 \\\"\\n\\udcff.wav\""));
}

TEST_F(LanternToolTest, AllFourFormsOfATrackAreTheSame)
{
    Make("a.cdg", Bytes(Blocks(300)));
    Make("a.wav", SilentWav(44100));
    Make("b.bin", Sectors(Blocks(300)));
    Zip("c.zip", {"a.wav", "a.cdg"});
    for (const char* name : {"a.cdg", "a.wav", "b.bin", "c.zip"}) {
        const QJsonObject info = Info(In(name));
        EXPECT_EQ(info[u"packets"].toInt(), 300) << name;
        EXPECT_EQ(info[u"length_ms"].toInt(), 1000) << name;
        EXPECT_EQ(info[u"clips"].toArray().size(), 1) << name;
        EXPECT_EQ(info[u"skipped"], QJsonArray()) << name;
        ExpectBlocks(Frame(In(name), "3"), kGreen, kRed, kRed);
        ExpectBlocks(Frame(In(name), "300"), kGreen, kBlue, kRed);
    }
}

TEST_F(LanternToolTest, SoundInAnArchiveIsAsLongAsBesideThePackets)
{
    const std::string wav = Make("a.wav", SilentWav(100'000));
    const std::vector<Words> encoders = {
        {"flac", "--silent", "-f", wav, "-o", In("b.flac")},
        {"lame", "--quiet", "--abr", "100", wav, In("b.mp3")},
        {"oggenc", "-Q", "-o", In("b.ogg"), wav},
        {"ffmpeg", "-v", "error", "-i", wav, In("b.mp4")},
    };
    for (const Words& encoder : encoders)
        test::OutputOf({.arguments = encoder});
    for (const char* name : {"b.flac", "b.mp3", "b.ogg", "b.mp4"}) {
        const QJsonObject file = Info(In(name));
        const QJsonObject member = Info(Zip(std::string(name) + ".zip", {name}));
        EXPECT_NEAR(file[u"length_ms"].toInt(), 2268, 60) << name;
        EXPECT_EQ(member[u"length_ms"], file[u"length_ms"]) << name;
        EXPECT_EQ(member[u"packets"], file[u"packets"]) << name;
    }
}

TEST_F(LanternToolTest, InfoTellsWhyAMemberIsNoPartOfTheTrack)
{
    Make("a.cdg", Bytes(Blocks(300)));
    Make("\xE9.cdg", "another");
    Make("a.mp3", "no sound at all");
    Make("read me.txt", "text");
    const std::string zip = Zip("a.zip", {"a.cdg", "\xE9.cdg", "a.mp3", "read me.txt"});
    const auto skipped = [](const char16_t* name, const char* reason) {
        return QJsonObject{{QStringLiteral("name"), QString::fromUtf16(name)},
                           {QStringLiteral("reason"), QString::fromUtf8(reason)}};
    };
    const QJsonArray found = Info(zip)[u"skipped"].toArray();
    ASSERT_EQ(found.size(), 3);
    EXPECT_EQ(found[0][u"reason"], QStringLiteral("another one of its kind comes before it"));
    EXPECT_EQ(found[1].toObject(), skipped(u"a.mp3", "no usable sound"));
    EXPECT_EQ(found[2].toObject(), skipped(u"read me.txt", "not of the types asked for"));
    EXPECT_THAT(Run({"info", zip}).output, HasSubstr("\"\\udce9.cdg\""));
}

TEST_F(LanternToolTest, AFrameIsTheVisiblePictureAfterThePacket)
{
    const std::string track = MakeBlocks();
    ExpectBlocks(Frame(track, "0"), kBlackPixel, kBlackPixel, kBlackPixel);
    ExpectBlocks(Frame(track, "1"), kBlackPixel, kBlackPixel, kBlackPixel);
    ExpectBlocks(Frame(track, "2"), kRed, kRed, kRed);
    ExpectBlocks(Frame(track, "3"), kGreen, kRed, kRed);
    ExpectBlocks(Frame(track, "4"), kGreen, kBlue, kRed);
    ExpectBlocks(Frame(track, "14"), kGreen, kBlue, kRed);
}

TEST_F(LanternToolTest, AFrameIsAPngOfEightBitsEachOfRedGreenAndBlue)
{
    Frame(MakeBlocks(), "4");
    constexpr std::size_t kDepthAndColourType = 24;
    EXPECT_EQ(test::ReadFile(In("frame.png")).substr(kDepthAndColourType, 2), "\x08\x02");
}

// Byte by byte: scripts compare pictures by their sums.
TEST_F(LanternToolTest, AFrameIsTheSameFileAsEver)
{
    QImage expected(288, 192, QImage::Format_RGB888);
    expected.fill(kRed);
    for (int y = 0; y < 12; ++y) {
        for (int x = 0; x < 12; ++x)
            expected.setPixel(x, y, x < 6 ? kGreen : kBlue);
    }
    constexpr int littleEffort = 80;
    expected.save(QString::fromStdString(In("expected.png")), "PNG", littleEffort);
    Frame(MakeBlocks(), "4");
    EXPECT_EQ(test::ReadFile(In("frame.png")), test::ReadFile(In("expected.png")));
}

TEST_F(LanternToolTest, APacketBeyondTheEndShowsTheLastPicture)
{
    ExpectBlocks(Frame(MakeBlocks(), "2147483647"), kGreen, kBlue, kRed);
}

TEST_F(LanternToolTest, SeveralPacketsAreVisitedInTheOrderGiven)
{
    const Result result =
        Run({"frame", MakeBlocks(), "--packet", "4,2,14,0,3", "--out", In("f%d of %d.png")});
    EXPECT_EQ(result.code, 0) << result.error;
    const auto frame = [&](const std::string& number) {
        return QImage(QString::fromStdString(In("f" + number + " of " + number + ".png")));
    };
    ExpectBlocks(frame("4"), kGreen, kBlue, kRed);
    ExpectBlocks(frame("2"), kRed, kRed, kRed);
    ExpectBlocks(frame("14"), kGreen, kBlue, kRed);
    ExpectBlocks(frame("0"), kBlackPixel, kBlackPixel, kBlackPixel);
    ExpectBlocks(frame("3"), kGreen, kRed, kRed);
}

// Far enough for the snapshots that shorten a way back.
TEST_F(LanternToolTest, AVisitBackOverSnapshotsShowsWhatAFirstVisitShows)
{
    std::vector<CdgPacket> packets = {PrimaryColours(), Fill(1)};
    packets.resize(9500);
    packets[2999] = Block(2, 1, 1);
    packets[6500] = Block(3, 1, 2);
    const std::string track = Make("long.cdg", Bytes(packets));
    Run({"frame", track, "--packet", "9500,6501,6500,3000,2999", "--out", In("%d.png")});
    const auto frame = [&](const std::string& number) {
        return QImage(QString::fromStdString(In(number + ".png")));
    };
    ExpectBlocks(frame("9500"), kGreen, kBlue, kRed);
    ExpectBlocks(frame("6501"), kGreen, kBlue, kRed);
    ExpectBlocks(frame("6500"), kGreen, kRed, kRed);
    ExpectBlocks(frame("3000"), kGreen, kRed, kRed);
    ExpectBlocks(frame("2999"), kRed, kRed, kRed);
}

TEST_F(LanternToolTest, SecondsCountAsPackets)
{
    const std::string track = MakeBlocks();
    const Result result =
        Run({"frame", track, "--at", "0.01,0.0134,3600", "--out", In("at %d.png")});
    EXPECT_EQ(result.code, 0) << result.error;
    ExpectBlocks(QImage(QString::fromStdString(In("at 3.png"))), kGreen, kRed, kRed);
    EXPECT_TRUE(std::filesystem::exists(In("at 1080000.png")));
}

TEST_F(LanternToolTest, RawWritesTheWholePicturesIndexesAndTheColours)
{
    const Result result =
        Run({"frame", MakeBlocks(), "--packet", "4", "--raw", "--out", In("f.pgm")});
    EXPECT_EQ(result.code, 0) << result.error;
    const std::string head = "P5\n300 216\n15\n";
    const std::string pgm = test::ReadFile(In("f.pgm"));
    ASSERT_EQ(pgm.size(), head.size() + 300UL * 216);
    EXPECT_THAT(pgm, StartsWith(head));
    const auto index = [&](std::size_t x, std::size_t y) {
        return static_cast<int>(pgm[head.size() + y * 300 + x]);
    };
    EXPECT_EQ(index(0, 0), 1);
    EXPECT_EQ(index(6, 12), 2);
    EXPECT_EQ(index(11, 23), 2);
    EXPECT_EQ(index(12, 12), 3);
    EXPECT_EQ(index(18, 12), 1);
    std::string colours = "#000000\n#ff0000\n#00ff00\n#0000ff\n";
    for (int entry = 4; entry < 16; ++entry)
        colours += "#000000\n";
    EXPECT_EQ(test::ReadFile(In("f.pgm.colours")), colours);
}

TEST_F(LanternToolTest, AScaledFrameIsTheSamePictureLarger)
{
    const QImage frame = Frame(MakeBlocks(), "4");
    const QImage same = FrameOf("288x192", {});
    EXPECT_EQ(same, frame);
    EXPECT_EQ(FrameOf("864x576", {}), frame.scaled(864, 576));
    // Not as large as it takes to smooth.
    EXPECT_EQ(FrameOf("431x287", {"--smooth"}), FrameOf("431x287", {}));
    EXPECT_EQ(FrameOf("1x1", {"--smooth"}).size(), QSize(1, 1));
}

TEST_F(LanternToolTest, ASmoothFrameHasRoundCornersAndStraightEdges)
{
    const QImage smooth = FrameOf("2880x1920", {"--smooth"});
    ASSERT_EQ(smooth.size(), QSize(2880, 1920));
    EXPECT_EQ(smooth.pixel(20, 20), kGreen);
    EXPECT_EQ(smooth.pixel(56, 60), kGreen);
    EXPECT_EQ(smooth.pixel(63, 60), kBlue);
    EXPECT_EQ(smooth.pixel(63, 20), kBlue);
    EXPECT_EQ(smooth.pixel(116, 60), kBlue);
    EXPECT_EQ(smooth.pixel(123, 60), kRed);
    EXPECT_EQ(smooth.pixel(119, 119), kRed); // the corner of the block, which was blue
    EXPECT_EQ(smooth.pixel(115, 115), kBlue);
}

TEST_F(LanternToolTest, AFrameOfAnotherSizeLeavesTheNextOnesAlone)
{
    const std::string track = MakeBlocks();
    EXPECT_EQ(Run({"frame", track, "--packet", "2,4", "--size", "576x384", "--smooth", "--out",
                   In("%d.png")})
                  .code,
              0);
    EXPECT_EQ(QImage(QString::fromStdString(In("4.png"))), FrameOf("576x384", {"--smooth"}));
    EXPECT_EQ(QImage(QString::fromStdString(In("2.png"))).pixel(5, 5), kRed);
}

TEST_F(LanternToolTest, NeedsNeitherADisplayNorASoundServer)
{
    const std::string track = MakeBlocks();
    const test::EnvironmentChanges nothing = {{"DISPLAY", std::nullopt},
                                              {"WAYLAND_DISPLAY", std::nullopt},
                                              {"QT_QPA_PLATFORM", "none at all"},
                                              {"PULSE_SERVER", "unix:/none at all"},
                                              {"HOME", std::nullopt}};
    EXPECT_EQ(Run({"info", track}, "exec", nothing).code, 0);
    const Result frame =
        Run({"frame", track, "--packet", "1", "--out", In("f.png")}, "exec", nothing);
    EXPECT_EQ(frame.code, 0) << frame.error;
}

TEST_F(LanternToolTest, HelpAndVersionGoToStandardOutput)
{
    const Result help = Run({"--help"});
    EXPECT_EQ(help.code, 0);
    EXPECT_THAT(help.output, StartsWith("usage: lantern-tool info TRACK... [--json]\n"));
    const Result version = Run({"--version"});
    EXPECT_EQ(version.code, 0);
    EXPECT_EQ(version.output, "lantern-tool " LANTERN_VERSION "\n");
    EXPECT_EQ(help.error + version.error, "");
}

TEST_F(LanternToolTest, ABadCommandLineIsOneLine)
{
    ExpectFailure({}, "no command; try --help");
    ExpectFailure({"sing"}, "Unknown command 'sing'");
    ExpectFailure({"--sing"}, "Unknown option 'sing'.");
    ExpectFailure({"info"}, "no track");
    ExpectFailure({"info", "a", "--raw"}, "--raw is not for info");
    ExpectFailure({"info", "a", "--force"}, "--force is not for info");
    ExpectFailure({"frame", "a", "--json"}, "--json is not for frame");
    for (const char* jobs : {"", "0", "-1", "x", "65", "1.5"}) {
        ExpectFailure({"info", "a", std::string("--jobs=") + jobs},
                      std::string("Bad value for --jobs: '") + jobs + "'");
    }
    ExpectFailure({"frame", "a", "--out", "b"}, "frame needs either --packet or --at");
    ExpectFailure({"frame", "a", "--packet", "1", "--at", "1", "--out", "b"},
                  "frame needs either --packet or --at");
    ExpectFailure({"frame", "a", "--packet", "1"}, "frame needs --out FILE");
    ExpectFailure({"frame", "a", "--packet"}, "Missing value after '--packet'.");
    ExpectFailure({"frame", "a", "--packet", "1,2", "--out", "b"},
                  "several frames need a %d in --out");
    ExpectFailure({"frame", "a", "--packet", "1", "--smooth", "--out", "b"},
                  "--smooth needs --size");
    ExpectFailure({"frame", "a", "--packet", "1", "--raw", "--size", "9x9", "--out", "b"},
                  "--raw has a size of its own");
    ExpectFailure({"thumbnail", "a", "--smooth", "--out", "b"}, "--smooth is not for thumbnail");
    for (const char* size : {"", "x", "9", "9x", "x9", "0x9", "9x0", "-9x9", "9x8193", "8193x9",
                             "9x9x9", "9X9", "1e3x9", "99999999999x9"}) {
        ExpectFailure({"frame", "a", "--packet", "1", std::string("--size=") + size, "--out", "b"},
                      std::string("Bad value for --size: '") + size + "'");
    }
    for (const char* number : {"-1", "x", "", "1 2", "2147483648", "1.5"}) {
        ExpectFailure({"frame", "a", std::string("--packet=") + number, "--out", "b"},
                      std::string("Bad value for --packet: '") + number + "'");
    }
    for (const char* number : {"-1", "x", "nan", "inf", "2147484"}) {
        ExpectFailure({"frame", "a", std::string("--at=") + number, "--out", "b"},
                      std::string("Bad value for --at: '") + number + "'");
    }
}

TEST_F(LanternToolTest, ABadFileIsOneLine)
{
    ExpectFailure({"info", In("none.cdg")}, "File not found: " + In("none.cdg"));
    ExpectFailure({"info", ""}, "Nothing to play: ");
    ExpectFailure({"info", Make("a.txt", "x")}, "Invalid file format: " + In("a.txt"));
    ExpectFailure({"info", Make("a.mp3", "no sound at all")}, "Nothing to play: " + In("a.mp3"));
    ExpectFailure({"info", Make("b.cdg", "")}, "Nothing to play: " + In("b.cdg"));
    ExpectFailure({"info", In("\xFF\n\x1B.cdg")}, "File not found: " + In("\xFF??.cdg"));
    for (const char* name : {"fifo.wav", "fifo.bin"}) {
        ASSERT_EQ(mkfifo(In(name).c_str(), 0600), 0);
        ExpectFailure({"info", In(name)}, "Nothing to play: " + In(name));
    }
}

TEST_F(LanternToolTest, AnArchiveWithNothingToPlayTellsWhyInOneLine)
{
    const std::string none = Make("none.zip", "no archive");
    ExpectFailure({"info", none}, "Nothing to play: " + none + " (Not a zip archive)");
    ASSERT_EQ(mkfifo(In("fifo.zip").c_str(), 0600), 0);
    ExpectFailure({"info", In("fifo.zip")},
                  "Nothing to play: " + In("fifo.zip") + " (not a readable file)");

    Make("a\nb.cdg", "");
    Make("c.mp3", "no sound");
    const std::string zip = Zip("a.zip", {"a\nb.cdg", "c.mp3"});
    ExpectFailure({"frame", zip, "--packet", "1", "--out", In("f")},
                  "Nothing to play: " + zip + " (a?b.cdg: empty; c.mp3: no usable sound)");

    Words many;
    for (int i = 0; i < 9; ++i) {
        many.push_back(std::to_string(i));
        Make(many.back(), "x");
    }
    EXPECT_THAT(Run({"info", Zip("many.zip", many)}).error,
                ::testing::EndsWith("4: not of the types asked for; ...)\n"));
}

// A library has more to say of it.
TEST_F(LanternToolTest, WhatIsPackedWrongIsOneLine)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "what watches for faults must be heard";
#endif
    std::string bytes = test::ReadFile(std::string(LANTERN_CORPUS) + "/fuzz_zip/deflate64");
    constexpr std::size_t kInThePackedData = 45;
    bytes.at(kInThePackedData) ^= 0x55;
    const std::string zip = Make("a.zip", bytes);
    ExpectFailure({"info", zip},
                  "Nothing to play: " + zip + " (a.cdg: damaged; b.mp3: no usable sound)");
    EXPECT_EQ(Run({"check", zip}).error, "");
}

TEST_F(LanternToolTest, AnOutputThatCannotBeWrittenIsOneLine)
{
    const std::string track = MakeBlocks();
    ExpectFailure({"frame", track, "--packet", "1", "--out", In("no/f.png")},
                  "Cannot write " + In("no/f.png") + ": No such file or directory");
    ExpectFailure({"frame", track, "--packet", "1", "--out", "/dev/full"},
                  "Cannot write /dev/full: No space left on device");
    const Result full = Run({"info", track}, "OUT=/dev/full; exec");
    EXPECT_EQ(full.code, 1);
    EXPECT_EQ(full.error, "lantern-tool: Cannot write to standard output\n");
}

TEST_F(LanternToolTest, WithoutItsPartForSoundItSaysSoInOneLine)
{
    const std::string track = MakeBlocks();
    std::filesystem::copy_file(LANTERN_TOOL, In("tool"));
    const auto copy = [&](const Words& words) {
        Words all = {In("tool")};
        all.insert(all.end(), words.begin(), words.end());
        return test::Process({.arguments = all, .log = In("log")}).WaitForExit(60s);
    };
    EXPECT_EQ(copy({"info", track}), 1);
    const std::string error = test::ReadFile(In("log"));
    EXPECT_TRUE(error.starts_with("lantern-tool: Cannot load what measures sounds: ")) << error;
    EXPECT_EQ(std::ranges::count(error, '\n'), 1) << error;
    std::filesystem::remove(In("log"));
    EXPECT_EQ(copy({"thumbnail", track, "--out", In("b.png")}), 0);
    EXPECT_EQ(test::ReadFile(In("log")), "");
}

TEST_F(LanternToolTest, ATrackThatDoesNotFitInMemoryIsOneLine)
{
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
    GTEST_SKIP() << "a sanitizer needs more address space than the limit gives";
#else
    const std::string track = Make("a.cdg", "");
    std::filesystem::resize_file(track, 200U << 20U);
    const Result result = Run({"info", track}, "ulimit -v 1000000; exec");
    EXPECT_EQ(result.code, 1);
    EXPECT_EQ(result.error, "lantern-tool: Out of memory: " + track + "\n");
#endif
}

} // namespace
} // namespace lantern
