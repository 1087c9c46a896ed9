// SPDX-License-Identifier: GPL-3.0-or-later
// What the player remembers of songs, and how loud it plays them.
#include "WindowHand.h"
#include "frmStage.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QMessageBox>
#include <QTest>
#include <QTimer>

namespace lantern {
namespace {

class WindowSongsTest : public WindowHand {
protected:
    enum SongSwitch { Tunes, Loudness };

    QString SongsFolder() const { return folder.filePath(QStringLiteral("state")); }
    void WriteStage(const char* lines)
    {
        QFile file(folder.filePath(QStringLiteral("data_stage.ini")));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(lines);
    }
    QString MakeSong(std::uint8_t row)
    {
        return MakeTrack({packets::Tile({.colour1 = 1, .row = row, .rows = {1, 2}})});
    }
    frmStage& SongStage()
    {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* stage = dynamic_cast<frmStage*>(widget))
                return *stage;
        }
        window.ShowStage();
        return SongStage();
    }
    void Sing(int key, float speed)
    {
        window.SetWheelType(WheelMode::KeyPitch);
        while (engine.Pitch != key)
            window.MouseWheel(0, engine.Pitch < key ? 1 : -1, 0, 0);
        window.SetWheelType(WheelMode::Speed);
        while (engine.Tempo != speed)
            window.MouseWheel(0, engine.Tempo < speed ? 1 : -1, 0, 0);
    }
    // The file is read and written beside the window.
    void SettleSongs() { QTest::qWait(100); }
    // To the question that comes next.
    void Answer(QMessageBox::StandardButton answer)
    {
        QTimer::singleShot(50, [answer] {
            auto* const box = dynamic_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            box->button(answer)->click();
        });
    }
};

TEST_F(WindowSongsTest, OffNothingIsRememberedAndNoFileIsMade)
{
    Load(MakeSong(1));
    Sing(-2, 10);
    window.OpenMedia(MakeSong(2));
    EXPECT_EQ(engine.Pitch, -2);
    EXPECT_EQ(engine.Tempo, 10);
    window.close();
    EXPECT_FALSE(QDir(SongsFolder()).exists());
    EXPECT_FALSE(engine.Meter.IsMeasuring());
    for (const std::string& call : engine.Log)
        EXPECT_FALSE(call.starts_with("SetSoundGain")) << call;
}

TEST_F(WindowSongsTest, EachSongOpensWithItsOwnKeyAndSpeedBeforeItSounds)
{
    const QString first = MakeSong(1);
    const QString second = MakeSong(2);
    Load(first);
    SongStage().Switch(Tunes).Press();
    SettleSongs();
    Sing(-2, 10);
    window.OpenMedia(second);
    EXPECT_EQ(engine.Pitch, 0);
    EXPECT_EQ(engine.Tempo, 0);
    engine.Log.clear();
    window.OpenMedia(first);
    EXPECT_EQ(engine.Pitch, -2);
    EXPECT_EQ(engine.Tempo, 10);
    const auto place = [&](const char* call) {
        return std::ranges::find(engine.Log, call) - engine.Log.begin();
    };
    EXPECT_LT(place("SetEnginePitch -2"), place("StartSound"));
    EXPECT_LT(place("SetEngineTempo 10"), place("StartSound"));
}

TEST_F(WindowSongsTest, ASongsOwnKeyAndSpeedLeaveTheWheelAsItIs)
{
    WriteStage("remembertunes\tY\r\n");
    const QString first = MakeSong(1);
    Load(first);
    SettleSongs();
    Sing(-2, 10);
    window.UpdatePlayer();
    window.SetWheelType(WheelMode::Volume);
    window.OpenMedia(MakeSong(2));
    window.UpdatePlayer();
    window.OpenMedia(first);
    window.UpdatePlayer();
    const float before = engine.Volume;
    window.MouseWheel(0, -1, 0, 0);
    EXPECT_LT(engine.Volume, before);
    EXPECT_EQ(engine.Pitch, -2);
    EXPECT_EQ(engine.Tempo, 10);
}

TEST_F(WindowSongsTest, TheNextRunKnowsTheSongsUnderWhateverName)
{
    const QString song = MakeSong(1);
    WriteStage("remembertunes\tY\r\n");
    Load(song);
    SettleSongs();
    Sing(3, -4);
    window.close();
    EXPECT_TRUE(QFile::exists(SongsFolder() + QStringLiteral("/songs.db")));

    const QString renamed = folder.filePath(QStringLiteral("renamed.cdg"));
    ASSERT_TRUE(QFile::rename(song, renamed));
    auto made = std::make_unique<FakeAudioEngine>();
    FakeAudioEngine& nextEngine = *made;
    state.Arguments.CommandLine = QStringLiteral("\"lyric-lantern\" ") + renamed;
    f101 next(state, std::move(made), [](const QString&) {});
    ASSERT_TRUE(next.Load());
    EXPECT_TRUE(QTest::qWaitFor([&] { return nextEngine.Pitch == 3; }));
    EXPECT_EQ(nextEngine.Tempo, -4);
    next.OpenMedia(MakeSong(9));
    EXPECT_EQ(nextEngine.Pitch, 0);
}

TEST_F(WindowSongsTest, AForgottenSongIsNeutralAndAllAreAfterAQuestion)
{
    const QString first = MakeSong(1);
    const QString second = MakeSong(2);
    WriteStage("remembertunes\tY\r\n");
    Load(first);
    SettleSongs();
    Sing(3, 0);
    window.OpenMedia(second);
    Sing(5, 0);
    SongStage().Button(0).Press();
    EXPECT_EQ(engine.Pitch, 0);
    Answer(QMessageBox::No);
    SongStage().Button(1).Press();
    window.OpenMedia(first);
    EXPECT_EQ(engine.Pitch, 3);
    Answer(QMessageBox::Yes);
    SongStage().Button(1).Press();
    EXPECT_EQ(engine.Pitch, 0);
    window.OpenMedia(second);
    window.OpenMedia(first);
    EXPECT_EQ(engine.Pitch, 0);
}

TEST_F(WindowSongsTest, AFileOfNoUseIsToldOnTheMessageLine)
{
    WriteStage("remembertunes\tY\r\n");
    ASSERT_TRUE(QDir().mkpath(state.SongsFile)); // a folder in its place
    Load(MakeSong(1));
    EXPECT_TRUE(QTest::qWaitFor(
        [this] { return Status() == QStringLiteral("Songs: the file can't be used"); }));
}

TEST_F(WindowSongsTest, LoudnessIsEvenFromTheStartAndOffByAFade)
{
    WriteStage("evenloudness\tY\r\n");
    const QString song = MakeSong(1);
    const QString sound = QString(song).replace(QStringLiteral(".cdg"), QStringLiteral(".mp3"));
    QFile file(sound);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("sound");
    file.close();
    engine.FileDurations[sound] = 10000;
    Load(song);
    ASSERT_TRUE(engine.Meter.IsMeasuring());
    EXPECT_EQ(engine.Meter.Sounds.at(0).path, sound);
    engine.Meter.Tell({.lufs = -10, .truePeak = 1, .isWhole = true});
    EXPECT_NEAR(engine.SoundGain, 0.501, 0.001);
    // Once it is in the file, all that was there has been read; before, a song would be measured
    // anew.
    ASSERT_TRUE(QTest::qWaitFor([this] { return QFile::exists(state.SongsFile); }));

    window.OpenMedia(MakeSong(2)); // without a sound
    EXPECT_EQ(engine.SoundGain, 1);
    engine.Log.clear();
    window.OpenMedia(song);
    EXPECT_EQ(engine.Meter.Measurements, 1); // it is known
    EXPECT_NEAR(engine.SoundGain, 0.501, 0.001);
    SongStage().Switch(Loudness).Press();
    EXPECT_EQ(engine.SoundGain, 1);
}

} // namespace
} // namespace lantern
