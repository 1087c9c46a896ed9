// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "FakeAudioEngine.h"
#include "MakeZipHandler.h"
#include "MediaLoader.h"
#include "PathText.h"
#include "Process.h"
#include "WavHeader.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <span>
#include <string>
#include <utility>
#include <vector>

namespace lantern {

// Writes down what is asked of it, into the same log as the engine's calls.
class RecordingHost : public MediaHost {
public:
    RecordingHost(std::vector<std::string>& log, const Track& track) : m_log(log), m_track(track) {}

    void SetTicker(int seconds, bool running) override
    {
        Record("SetTicker " + std::to_string(seconds) + (running ? " running" : " still"));
        loadingAtTicker.push_back(m_track.MediaLoading);
    }
    void SetSliderValues(std::int32_t minimum, std::int32_t maximum, std::int32_t value) override
    {
        Record("SetSliderValues " + std::to_string(minimum) + ' ' + std::to_string(maximum) + ' ' +
               std::to_string(value));
    }
    void HideMessage() override { Record("HideMessage"); }
    void ForgetPicture() override { Record("ForgetPicture"); }
    void Play(std::int32_t positionMs) override
    {
        Record("Play " + std::to_string(positionMs));
        clipsAtPlay = m_track.ClipCount();
        loadingAtPlay = m_track.MediaLoading;
    }
    void RememberLastPlayed(const QString& path) override
    {
        Record("RememberLastPlayed " + path.toStdString());
    }
    void MemberSkipped(const QString& name, const QString& reason) override
    {
        skipped.emplace_back(NativeFromText(name).toStdString(), reason.toStdString());
    }

    std::vector<bool> loadingAtTicker;
    std::vector<std::pair<std::string, std::string>> skipped; // members and reasons
    std::int32_t clipsAtPlay = -1;
    bool loadingAtPlay = false;

private:
    void Record(const std::string& call) { m_log.push_back(call); }

    std::vector<std::string>& m_log;
    const Track& m_track;
};

// A loader with an engine without sound, and files in a folder of their own.
class MediaLoaderFixture : public ::testing::Test {
protected:
    QString In(const std::string& name) const
    {
        return TextFromNative((m_folder / name).native().c_str());
    }
    QString Make(const std::string& name, const std::string& bytes = {})
    {
        test::WriteFile(m_folder / name, bytes);
        return In(name);
    }
    // A file of packets that tell their own number.
    QString MakePackets(const std::string& name, int count, int extraBytes = 0)
    {
        std::string bytes;
        for (int i = 1; i <= count; ++i) {
            std::string packet(kPacketSize, '\0');
            packet[0] = 9;
            packet[4] = static_cast<char>(i & 0xFF);
            packet[5] = static_cast<char>(i >> 8);
            bytes += packet;
        }
        return Make(name, bytes + std::string(static_cast<std::size_t>(extraBytes), '\xAA'));
    }
    QString MakeAudio(const std::string& name, std::int32_t lengthMs)
    {
        QString path = Make(name, "sound");
        m_engine.FileDurations[path] = lengthMs;
        return path;
    }
    std::vector<std::string> Asked() const
    {
        std::vector<std::string> paths;
        for (const std::string& call : m_engine.Log) {
            if (call.starts_with("GetFileDuration "))
                paths.push_back(std::filesystem::path(call.substr(16)).filename());
        }
        return paths;
    }
    void ExpectSilence(const AudioClip& clip, std::int32_t lengthMs, std::size_t audioBytes)
    {
        EXPECT_EQ(clip.Kind, ClipKind::Data);
        EXPECT_EQ(clip.Path, QString());
        EXPECT_EQ(clip.LengthMs, lengthMs);
        const std::span<const std::uint8_t> data = clip.Data.Bytes();
        ASSERT_EQ(data.size(), kWavHeaderSize + audioBytes);
        const auto header = WavHeader(static_cast<std::uint32_t>(audioBytes));
        EXPECT_TRUE(std::equal(header.begin(), header.end(), data.begin()));
        EXPECT_TRUE(std::all_of(data.begin() + kWavHeaderSize, data.end(),
                                [](std::uint8_t byte) { return byte == 0; }));
    }

    MediaLoader LoaderWith(const MediaLimits& limits)
    {
        return {m_track, m_engine, m_host, m_zip, limits};
    }

    test::ScratchFolder m_folder;
    FakeAudioEngine m_engine;
    Track m_track;
    RecordingHost m_host{m_engine.Log, m_track};
    const ZipAccess m_zip{[] { return MakeZipHandler(); }, QStringLiteral("/program/")};
    MediaLoader m_loader{m_track, m_engine, m_host, m_zip};
};

} // namespace lantern
