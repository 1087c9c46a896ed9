// SPDX-License-Identifier: GPL-3.0-or-later
#include "modPlayer.h"

#include <QFile>
#include <QTemporaryDir>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace lantern {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class Recorder : public StartUpHost, private ZipComponent {
public:
    explicit Recorder(QString folder) : m_folder(std::move(folder)) {}

    void ExecuteDDE(const QString& commandArgs) override
    {
        Note(QStringLiteral("ExecuteDDE ") + commandArgs);
    }
    void StartToolkit() override { Note(QStringLiteral("StartToolkit")); }
    QString ProgramFile() override { return programFile; }
    void SetCurrentFolder(const QString& folder) override
    {
        Note(QStringLiteral("SetCurrentFolder ") + folder);
    }
    QString UserFolderRoot() override { return m_folder; }
    QString StateFolderRoot() override { return QStringLiteral("/state"); }
    void CreateFolders(const QString& folder) override
    {
        Note(QStringLiteral("CreateFolders ") + folder);
        if (makesFolders)
            QDir().mkpath(folder);
    }
    ZipComponent& Zip() override { return *this; }
    void ShowWarning(const QString& text) override { Note(QStringLiteral("ShowWarning ") + text); }
    TwipsPerPixel ReadTwips() override
    {
        Note(QStringLiteral("ReadTwips"));
        return {12, 13};
    }
    bool ShowMainWindow() override
    {
        Note(QStringLiteral("ShowMainWindow"));
        QFile file(m_folder + QStringLiteral("/Lyric Lantern/data_player.ini"));
        if (file.open(QFile::ReadOnly))
            fileAtTheWindow = file.readAll().toStdString();
        return hasSound;
    }
    void ShowFileError(const QString&, const QString&, const QString& title) override
    {
        Note(QStringLiteral("ShowFileError ") + title);
    }

    bool zipWorks = true;
    bool hasSound = true;
    bool makesFolders = true;
    QString programFile = QStringLiteral("/opt/player/lyric-lantern");
    std::vector<std::string> steps;
    std::string fileAtTheWindow;

private:
    bool Works() override
    {
        Note(QStringLiteral("Works"));
        return zipWorks;
    }
    QString LibraryName() override { return QStringLiteral("libzip.so"); }
    void Load(const QString& libraryPath) override { Note(QStringLiteral("Load ") + libraryPath); }
    void Note(const QString& step)
    {
        QString text = step;
        steps.push_back(text.replace(m_folder, QStringLiteral("~")).toStdString());
    }

    QString m_folder;
};

class StartUpTest : public ::testing::Test {
protected:
    QByteArray Native() const { return m_folder.path().toUtf8(); }
    ProgramState State() const
    {
        return ProgramState(Native(),
                            {QStringLiteral("\"p\" \"My Song.cdg\""), QStringLiteral("/home/me")});
    }

    QTemporaryDir m_folder;
    Recorder m_host{m_folder.path()};
};

TEST_F(StartUpTest, TheStepsRunInTheirOrder)
{
    ProgramState state = State();
    EXPECT_EQ(StartUp(state, m_host), StartUpResult::Running);
    EXPECT_THAT(m_host.steps, ElementsAre("StartToolkit", "SetCurrentFolder /opt/player/",
                                          "CreateFolders ~/Lyric Lantern/", "Works", "ReadTwips",
                                          "ShowMainWindow"));
    EXPECT_FALSE(state.DebugRun);
    EXPECT_TRUE(state.InstanceMutex.IsHeld());
    EXPECT_EQ(state.AppPath, QStringLiteral("/opt/player/"));
    EXPECT_EQ(state.UserDataPath, m_folder.path() + QStringLiteral("/Lyric Lantern/"));
    EXPECT_EQ(state.SongsFile, QStringLiteral("/state/Lyric Lantern/songs.db"));
    EXPECT_EQ(state.TwipsX, 12);
    EXPECT_EQ(state.TwipsY, 13);
}

TEST_F(StartUpTest, TheSettingsAreSavedBeforeThereIsAWindow)
{
    ProgramState state = State();
    StartUp(state, m_host);
    EXPECT_EQ(m_host.fileAtTheWindow, "playerpath\t/opt/player/lyric-lantern.exe\r\n");
}

TEST_F(StartUpTest, WhatWasSavedIsLoadedAndKept)
{
    QDir().mkpath(m_folder.filePath(QStringLiteral("Lyric Lantern")));
    QFile file(m_folder.filePath(QStringLiteral("Lyric Lantern/data_player.ini")));
    ASSERT_TRUE(file.open(QFile::WriteOnly));
    file.write("zoom\t3\r\n");
    file.close();
    ProgramState state = State();
    StartUp(state, m_host);
    EXPECT_EQ(state.Settings->GetSetting(QStringLiteral("Zoom"), {}), QStringLiteral("3"));
    EXPECT_EQ(m_host.fileAtTheWindow, "playerpath\t/opt/player/lyric-lantern.exe\r\nzoom\t3\r\n");
}

TEST_F(StartUpTest, ALaterInstanceHandsOverAndDoesNothingElse)
{
    InstanceLock first(Native());
    ASSERT_EQ(first.Take(), LockResult::Taken);
    ProgramState state = State();
    EXPECT_EQ(StartUp(state, m_host), StartUpResult::HandedOver);
    EXPECT_THAT(m_host.steps, ElementsAre("ExecuteDDE \"/home/me/My Song.cdg\""));
    EXPECT_FALSE(QFile::exists(m_folder.filePath(QStringLiteral("Lyric Lantern"))));
}

TEST_F(StartUpTest, ALaterInstanceWithoutArgumentsHandsOverNothing)
{
    InstanceLock first(Native());
    ASSERT_EQ(first.Take(), LockResult::Taken);
    ProgramState state(Native(), {QStringLiteral("\"p\""), QStringLiteral("/home/me")});
    StartUp(state, m_host);
    EXPECT_THAT(m_host.steps, ElementsAre("ExecuteDDE "));
}

TEST_F(StartUpTest, WithoutTheZipServiceItEndsBeforeTheSettings)
{
    m_host.zipWorks = false;
    ProgramState state = State();
    EXPECT_EQ(StartUp(state, m_host), StartUpResult::ComponentMissing);
    EXPECT_EQ(m_host.steps.back(),
              "ShowWarning A component of Lyric Lantern CDG Player could not be found.\n"
              "Please re-install Lyric Lantern CDG Player to correct this fault.");
    EXPECT_FALSE(state.Settings.has_value());
    EXPECT_TRUE(QFile::exists(m_folder.filePath(QStringLiteral("Lyric Lantern"))));
}

TEST_F(StartUpTest, ALibraryBesideTheProgramGetsOneChance)
{
    m_host.zipWorks = false;
    m_host.programFile = m_folder.filePath(QStringLiteral("player"));
    QFile library(m_folder.filePath(QStringLiteral("libzip.so")));
    ASSERT_TRUE(library.open(QFile::WriteOnly));
    ProgramState state = State();
    EXPECT_EQ(StartUp(state, m_host), StartUpResult::Running);
    EXPECT_THAT(m_host.steps, ::testing::IsSupersetOf({"Works", "Load ~/libzip.so"}));
}

TEST_F(StartUpTest, AFolderOfTheLibrarysNameIsNoLibrary)
{
    m_host.zipWorks = false;
    m_host.programFile = m_folder.filePath(QStringLiteral("player"));
    QDir().mkpath(m_folder.filePath(QStringLiteral("libzip.so")));
    ProgramState state = State();
    EXPECT_EQ(StartUp(state, m_host), StartUpResult::ComponentMissing);
}

TEST_F(StartUpTest, AFolderThatCannotBeMadeIsToldOnlyByTheSettings)
{
    m_host.makesFolders = false;
    ProgramState state = State();
    EXPECT_EQ(StartUp(state, m_host), StartUpResult::Running);
    EXPECT_THAT(m_host.steps,
                ElementsAre("StartToolkit", "SetCurrentFolder /opt/player/",
                            "CreateFolders ~/Lyric Lantern/", "Works", "ReadTwips",
                            "ShowFileError Cannot Write to Settings File", "ShowMainWindow"));
}

TEST_F(StartUpTest, AWindowThatCannotBeLoadedIsReported)
{
    m_host.hasSound = false;
    ProgramState state = State();
    EXPECT_EQ(StartUp(state, m_host), StartUpResult::NoMainWindow);
}

TEST_F(StartUpTest, WhereThereCanBeNoLockEachStartIsAFirstOne)
{
    for (int i = 0; i < 2; ++i) {
        ProgramState state({}, {});
        EXPECT_FALSE(InstanceRunning(state));
        ReleaseInstance(state);
    }
}

TEST_F(StartUpTest, TheLockIsNotTouchedInADebugRun)
{
    ProgramState first = State();
    EXPECT_FALSE(InstanceRunning(first));
    ProgramState debug = State();
    debug.DebugRun = true;
    EXPECT_FALSE(InstanceRunning(debug));
    EXPECT_FALSE(debug.InstanceMutex.IsHeld());

    ReleaseInstance(first);
    ProgramState next = State();
    EXPECT_FALSE(InstanceRunning(next));
    EXPECT_TRUE(next.InstanceMutex.IsHeld());
}

TEST(ProgramPaths, TheFolderEndsInOneSlash)
{
    EXPECT_EQ(AppPathOf(QStringLiteral("/usr/bin/lyric-lantern")), QStringLiteral("/usr/bin/"));
    EXPECT_EQ(AppPathOf(QStringLiteral("/lyric-lantern")), QStringLiteral("/"));
}

TEST(ProgramPaths, ThePlayersPathHasTheNameThatTheUserGave)
{
    EXPECT_EQ(PlayerPathOf(QStringLiteral("/opt/my.apps/player")),
              QStringLiteral("/opt/my.apps/player.exe"));
    EXPECT_EQ(PlayerPathOf(QStringLiteral("/opt/Sing.bin")), QStringLiteral("/opt/Sing.exe"));
    EXPECT_EQ(PlayerPathOf(QStringLiteral("/player")), QStringLiteral("/player.exe"));
}

TEST(ProgramPaths, TheUsersFolderComesFromTheFirstVariableThatIsSet)
{
    EXPECT_EQ(UserFolderRootOf("/a", "/b", "/c"), QStringLiteral("/a"));
    EXPECT_EQ(UserFolderRootOf("", "/b", "/c"), QStringLiteral("/b"));
    EXPECT_EQ(UserFolderRootOf("", "b", "/c"), QStringLiteral("/c/.config"));
    EXPECT_EQ(UserFolderRootOf("", "", "/c"), QStringLiteral("/c/.config"));
}

TEST(ProgramPaths, WhatIsRememberedLiesInTheFolderOfStatesOrInTheHome)
{
    EXPECT_EQ(StateFolderRootOf("/b", "/c"), QStringLiteral("/b"));
    EXPECT_EQ(StateFolderRootOf("b", "/c"), QStringLiteral("/c/.local/state"));
    EXPECT_EQ(StateFolderRootOf("", "/c"), QStringLiteral("/c/.local/state"));
}

TEST(BitMasks, AreTheValuesOfTheBitsByNumber)
{
    for (std::size_t bit = 0; bit < BitMasks.size(); ++bit)
        EXPECT_EQ(BitMasks[bit], 1 << bit);
}

} // namespace
} // namespace lantern
