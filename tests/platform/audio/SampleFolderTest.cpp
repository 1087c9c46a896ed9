// SPDX-License-Identifier: GPL-3.0-or-later
#include "DecodedSound.h"
#include "TestSounds.h"

#include <QDir>

#include <cstdlib>

namespace lantern {
namespace {

// Any folder of sounds, to see how files fare that others made: the variable LANTERN_SAMPLES.
TEST(SampleFolder, EverySoundLastsAsLongAsItPlays)
{
    const char* const folder = std::getenv("LANTERN_SAMPLES");
    if (folder == nullptr)
        GTEST_SKIP() << "LANTERN_SAMPLES names no folder.";
    int sounds = 0;
    const QStringList types =
        QStringLiteral("mp3,wav,ogg,wma,flac,mp4,mod,xm,it,aif,aac,au,ape,mpc").split(u',');
    for (const QFileInfo& file : QDir(QString::fromLocal8Bit(folder)).entryInfoList(QDir::Files)) {
        if (!types.contains(file.suffix()))
            continue;
        const std::string name = file.fileName().toStdString();
        const std::int32_t duration = SoundDecoder::FileDurationMs(file.filePath());
        const auto decoder = SoundDecoder::OpenFile(file.filePath());
        ASSERT_TRUE(decoder) << name;
        const std::int64_t atOpen = decoder->FrameCount();
        const std::vector<float> all = ReadAll(*decoder);
        EXPECT_GT(duration, 0) << name;
        EXPECT_EQ(ToMs(decoder->FrameCount(), decoder->SampleRate()), duration) << name;
        EXPECT_EQ(decoder->FrameCount(), atOpen) << name;
        const Bytes image = ReadFile(file.filePath());
        const auto fromMemory = SoundDecoder::OpenMemory(image);
        ASSERT_TRUE(fromMemory) << name;
        EXPECT_TRUE(ReadAll(*fromMemory) == all) << name;
        ++sounds;
    }
    EXPECT_GT(sounds, 0);
}

} // namespace
} // namespace lantern
