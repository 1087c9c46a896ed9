// SPDX-License-Identifier: GPL-3.0-or-later
#include "Journey.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>
#include <functional>

using testing::Each;

namespace lantern::test {
namespace {

constexpr std::size_t kWavHeaderBytes = 44; // of the demo song's sound
constexpr std::size_t kSectorAudioBytes = 2352;
constexpr std::size_t kSectorPacketBytes = 96;
constexpr Clock::duration kListening = 4s;
constexpr std::ptrdiff_t kTenthSamples = Recording::kRate / 10 * 2;
constexpr int kComparedTenths = 30;
constexpr float kAudible = 0.01F;
constexpr float kSampleStep = 1.0F / 32768.0F;

// The interleaved 16-bit samples.
std::vector<float> SamplesOf(const std::string& wav)
{
    std::vector<float> stereo;
    for (std::size_t i = kWavHeaderBytes; i + 1 < wav.size(); i += 2) {
        const auto low = static_cast<std::uint8_t>(wav[i]);
        stereo.push_back(static_cast<float>(wav[i + 1] * 256 + low) * kSampleStep);
    }
    return stereo;
}

std::size_t FirstAudibleFrame(const std::vector<float>& stereo)
{
    const auto first =
        std::ranges::find_if(stereo, [](float sample) { return std::abs(sample) > kAudible; });
    return static_cast<std::size_t>(first - stereo.begin()) / 2;
}

// Notes which tenths of a second of the song's beginning were heard to the sample, in their order,
// and tells how many came right behind the one before. A machine that stalls leaves a hole in one
// or the other, and what is behind it comes later; but not much later, where the song says it
// again.
int NoteHeard(const std::vector<float>& heard, const std::vector<float>& song,
              std::vector<bool>& isTenthHeard)
{
    constexpr std::ptrdiff_t kLongestHoles = 5 * kTenthSamples;
    const auto isSame = [](float a, float b) { return std::abs(a - b) <= kSampleStep; };
    auto tenth = song.begin() + 2 * static_cast<std::ptrdiff_t>(FirstAudibleFrame(song));
    auto place = heard.begin() + 2 * static_cast<std::ptrdiff_t>(FirstAudibleFrame(heard));
    std::ptrdiff_t reach = kLongestHoles;
    int followed = 0;
    for (std::size_t i = 0; i < isTenthHeard.size(); ++i, tenth += kTenthSamples) {
        reach += kTenthSamples;
        const auto end = place + std::min(reach, heard.end() - place);
        const auto found = std::search(place, end, tenth, tenth + kTenthSamples, isSame);
        if (found == end)
            continue;
        isTenthHeard[i] = true;
        followed += found == place ? 1 : 0;
        place = found + kTenthSamples;
        reach = kLongestHoles;
    }
    return followed;
}

class Forms : public Journey {
protected:
    // The demo song as a disc has it, its last sector filled up with nothing.
    std::filesystem::path WriteBin() const
    {
        std::string audio = ReadFile(folder / "demo.wav").substr(kWavHeaderBytes);
        std::string packets = ReadFile(folder / "demo.cdg");
        const std::size_t sectors = (packets.size() + kSectorPacketBytes - 1) / kSectorPacketBytes;
        audio.resize(sectors * kSectorAudioBytes);
        packets.resize(sectors * kSectorPacketBytes);
        std::string bytes;
        for (std::size_t i = 0; i < sectors; ++i) {
            bytes += audio.substr(i * kSectorAudioBytes, kSectorAudioBytes);
            bytes += packets.substr(i * kSectorPacketBytes, kSectorPacketBytes);
        }
        WriteFile(folder / "bin/disc.bin", bytes);
        return folder / "bin/disc.bin";
    }

    std::vector<std::filesystem::path> WriteForms() const
    {
        for (const char* name : {"demo.cdg", "demo.wav"})
            std::filesystem::copy(std::filesystem::path(LANTERN_DEMO_FOLDER) / name, folder / name);
        std::filesystem::create_directory(folder / "bin");
        OutputOf({.arguments = {"zip", "-q", "-j", (folder / "song.zip").string(),
                                (folder / "demo.wav").string(), (folder / "demo.cdg").string()}});
        return {folder / "demo.cdg", WriteBin(), folder / "song.zip"};
    }

    // The pictures at some packets, there and back again.
    std::vector<std::string> Pictures(const std::filesystem::path& track) const
    {
        const std::vector<std::string> packets = {"1", "300", "4500", "18000", "9000", "3001"};
        std::string list;
        for (const std::string& packet : packets)
            list += (list.empty() ? "" : ",") + packet;
        const std::string out = (folder / "frame%d").string();
        OutputOf({.arguments = {LANTERN_TOOL_PATH, "frame", track.string(), "--packet", list,
                                "--raw", "--out", out}});
        std::vector<std::string> pictures;
        pictures.reserve(packets.size());
        for (const std::string& packet : packets) {
            pictures.push_back(ReadFile(folder / ("frame" + packet)) +
                               ReadFile(folder / ("frame" + packet + ".colours")));
        }
        return pictures;
    }

    // What the player lets hear of a track from its start.
    std::vector<float> Sound(const std::filesystem::path& track, Clock::duration howLong)
    {
        const std::size_t before = ears.Heard().stereo.size();
        StartPlayer({track.string()});
        EXPECT_TRUE(AwaitSound(10s));
        std::this_thread::sleep_for(howLong);
        std::vector<float> heard = ears.Heard().stereo;
        heard.erase(heard.begin(), heard.begin() + static_cast<std::ptrdiff_t>(before));
        Leave();
        EXPECT_TRUE(AwaitSilence());
        return heard;
    }
};

TEST_F(Forms, ASongLooksAndSoundsTheSameInEveryForm)
{
    const std::vector<std::filesystem::path> forms = WriteForms();
    const std::vector<float> song = SamplesOf(ReadFile(folder / "demo.wav"));
    const std::vector<std::string> pictures = Pictures(forms[0]);
    for (std::size_t i = 1; i < pictures.size(); ++i)
        EXPECT_NE(pictures[i], pictures[i - 1]);

    for (const std::filesystem::path& form : forms) {
        EXPECT_EQ(Pictures(form), pictures) << form;
        std::vector<bool> isTenthHeard(kComparedTenths);
        int followed = 0;
        for (int i = 1; i <= 4 && !std::ranges::all_of(isTenthHeard, std::identity{}); ++i)
            followed =
                std::max(followed, NoteHeard(Sound(form, i * kListening), song, isTenthHeard));
        EXPECT_THAT(isTenthHeard, Each(true)) << form;
        EXPECT_GE(followed, kComparedTenths / 2) << form;
    }
}

} // namespace
} // namespace lantern::test
