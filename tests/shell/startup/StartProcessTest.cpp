// SPDX-License-Identifier: GPL-3.0-or-later

// The start of the player in processes of its own, around an empty main window.
#include "StartPartner.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <memory>
#include <signal.h>
#include <string>
#include <sys/prctl.h>

namespace {

class StartProcessTest : public ::testing::Test {
protected:
    StartProcessTest()
    {
        m_environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder.path());
        m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("offscreen"));
        m_environment.insert(QStringLiteral("QT_FONT_DPI"), QStringLiteral("96"));
        m_environment.insert(QStringLiteral("appdata"), In("roaming"));
        m_environment.insert(QLatin1String(lantern::kStartPartner), QStringLiteral("1"));
    }

    QString In(const char* name) const { return m_folder.path() + u'/' + QLatin1String(name); }

    std::unique_ptr<QProcess>
    Start(const QStringList& arguments = {},
          const QString& program = QCoreApplication::applicationFilePath())
    {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(m_environment);
        process->setWorkingDirectory(m_folder.path());
        process->setChildProcessModifier([ignored = m_ignoredSignal] {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            if (ignored != 0)
                signal(ignored, SIG_IGN);
        });
        process->start(program, arguments);
        EXPECT_TRUE(process->waitForStarted());
        return process;
    }

    static std::string Line(QProcess& process)
    {
        QElapsedTimer timer;
        timer.start();
        while (!process.canReadLine() && timer.elapsed() < 10000) {
            if (!process.waitForReadyRead(100) && process.state() == QProcess::NotRunning)
                break;
        }
        return process.readLine().trimmed().toStdString();
    }

    // The window's lines up to its arguments; what follows the last one's name.
    static std::string ArgsOf(QProcess& process)
    {
        for (int i = 0; i < 5; ++i) {
            const std::string line = Line(process);
            if (line.starts_with("Args"))
                return line;
        }
        return "none";
    }

    // Whether it has set up what it does at a request to end.
    static bool CatchesRequests(const QProcess& process)
    {
        QFile status(QStringLiteral("/proc/%1/status").arg(process.processId()));
        if (!status.open(QFile::ReadOnly))
            return false;
        for (const QByteArray& line : status.readAll().split('\n')) {
            if (line.startsWith("SigCgt:"))
                return (line.mid(7).trimmed().toULongLong(nullptr, 16) >> (SIGTERM - 1) & 1) != 0;
        }
        return false;
    }

    static int Quit(QProcess& process)
    {
        process.write("quit\n");
        EXPECT_TRUE(process.waitForFinished(10000));
        return process.exitCode();
    }

    std::string SettingsFile() const
    {
        QFile file(In("roaming/Lyric Lantern/data_player.ini"));
        return file.open(QFile::ReadOnly) ? file.readAll().toStdString() : "missing";
    }

    QTemporaryDir m_folder;
    int m_ignoredSignal = 0; // of those to start; 0 for none
    QProcessEnvironment m_environment = QProcessEnvironment::systemEnvironment();
};

TEST_F(StartProcessTest, TheStateIsThereWhenTheWindowComes)
{
    const auto player = Start({QStringLiteral("My Song.cdg")});
    const QString program = QCoreApplication::applicationFilePath();
    const QString folder = QFileInfo(program).path();
    EXPECT_EQ(Line(*player), "AppPath " + folder.toStdString() + "/");
    EXPECT_EQ(Line(*player), "UserDataPath " + In("roaming/Lyric Lantern/").toStdString());
    EXPECT_EQ(Line(*player), "TwipsX 15");
    EXPECT_EQ(Line(*player), "Current " + folder.toStdString());
    EXPECT_EQ(Line(*player), "Args \"" + In("My Song.cdg").toStdString() + "\"");
    EXPECT_EQ(SettingsFile(), "playerpath\t" + program.toStdString() + ".exe\r\n");
    EXPECT_EQ(Quit(*player), 0);
}

TEST_F(StartProcessTest, AProgramOfAnotherNameRecordsThatName)
{
    const QString renamed = In("Sing Along");
    ASSERT_TRUE(QFile::copy(QCoreApplication::applicationFilePath(), renamed));
    const auto player = Start({}, renamed);
    EXPECT_EQ(ArgsOf(*player), "Args");
    EXPECT_EQ(SettingsFile(), "playerpath\t" + renamed.toStdString() + ".exe\r\n");
    EXPECT_EQ(Quit(*player), 0);
}

TEST_F(StartProcessTest, ALaterStartHandsOverWithoutEverTouchingTheWindowSystem)
{
    const auto first = Start();
    EXPECT_EQ(ArgsOf(*first), "Args");
    // A process that starts the toolkit on this platform aborts.
    m_environment.insert(QStringLiteral("QT_QPA_PLATFORM"), QStringLiteral("none"));
    m_environment.insert(QStringLiteral("appdata"), In("later"));
    const auto later = Start({QStringLiteral("a.cdg")});
    EXPECT_TRUE(later->waitForFinished());
    EXPECT_EQ(later->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(later->exitCode(), 0);
    EXPECT_EQ(Line(*first), "Focus");
    EXPECT_EQ(Line(*first), "Open " + In("a.cdg").toStdString());
    EXPECT_FALSE(QFile::exists(In("later"))) << "it makes no folder";
    EXPECT_EQ(Quit(*first), 0);
}

TEST_F(StartProcessTest, ALaterStartHandsItsActivationTokenOver)
{
    const auto first = Start();
    EXPECT_EQ(ArgsOf(*first), "Args");
    const QString variable = QStringLiteral("XDG_ACTIVATION_TOKEN");
    m_environment.insert(variable, QStringLiteral("launcher 12_TIME345"));
    EXPECT_TRUE(Start()->waitForFinished());
    EXPECT_EQ(Line(*first), "Focus launcher 12_TIME345");
    m_environment.insert(variable, QStringLiteral("two\nlines"));
    EXPECT_TRUE(Start()->waitForFinished());
    EXPECT_EQ(Line(*first), "Focus");
    EXPECT_EQ(Quit(*first), 0);
}

// As when a cleaner of old files has been at the folder for run-time files.
TEST_F(StartProcessTest, ALaterStartThatReachesNobodyTellsOfItsTrack)
{
    const auto first = Start();
    EXPECT_EQ(ArgsOf(*first), "Args");
    const QString link = In("Lyric Lantern CDG Player|SendCommand");
    ASSERT_TRUE(QFile::remove(link));
    ASSERT_TRUE(QDir().mkdir(link));
    const QString track = In("a.cdg");
    ASSERT_TRUE(QFile(track).open(QFile::WriteOnly));

    const auto later = Start({QStringLiteral("a.cdg")});
    EXPECT_TRUE(later->waitForFinished());
    EXPECT_EQ(later->exitCode(), 0);
    EXPECT_EQ(later->readAllStandardError().toStdString(),
              "lyric-lantern: The running player can't be reached: " + track.toStdString() + "\n");
    const auto withoutTrack = Start();
    EXPECT_TRUE(withoutTrack->waitForFinished());
    EXPECT_EQ(withoutTrack->readAllStandardError().toStdString(), "");
    EXPECT_EQ(Quit(*first), 0);
}

TEST_F(StartProcessTest, ANewStartAfterTheEndIsTheFirstAgain)
{
    const auto first = Start();
    ArgsOf(*first);
    EXPECT_EQ(Quit(*first), 0);
    EXPECT_EQ(Line(*first), "Closed");
    const auto next = Start({QStringLiteral("b.cdg")});
    EXPECT_EQ(ArgsOf(*next), "Args " + In("b.cdg").toStdString());
    EXPECT_EQ(Quit(*next), 0);
}

TEST_F(StartProcessTest, ARequestToEndClosesTheWindow)
{
    const auto player = Start();
    ArgsOf(*player);
    player->terminate();
    EXPECT_TRUE(player->waitForFinished(10000));
    EXPECT_EQ(Line(*player), "Closed");
    EXPECT_EQ(player->exitCode(), 0);
}

// Settings that can't be written are told while the window closes.
TEST_F(StartProcessTest, ARequestToEndEndsACloseThatWaitsForTheUser)
{
    const auto player = Start();
    ArgsOf(*player);
    const QString settings = In("roaming/Lyric Lantern/data_player.ini");
    ASSERT_TRUE(QFile::remove(settings));
    ASSERT_TRUE(QDir().mkdir(settings));
    player->write("quit\n");
    ASSERT_EQ(Line(*player), "Message");
    player->terminate();
    EXPECT_TRUE(player->waitForFinished(10000));
    EXPECT_EQ(Line(*player), "Closed");
    EXPECT_EQ(player->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(player->exitCode(), 0);
}

TEST_F(StartProcessTest, ARequestToEndEndsAStartThatWaitsForTheUser)
{
    ASSERT_TRUE(QDir().mkpath(In("roaming/Lyric Lantern/data_player.ini")));
    const auto player = Start();
    while (player->state() == QProcess::Running && !CatchesRequests(*player))
        player->waitForReadyRead(10);
    player->terminate();
    EXPECT_TRUE(player->waitForFinished(10000));
    EXPECT_EQ(player->exitStatus(), QProcess::NormalExit) << "by its own";
    EXPECT_EQ(player->exitCode(), 1);
    EXPECT_EQ(Line(*player), "") << "without a window";
}

TEST_F(StartProcessTest, AHangUpThatTheStarterHasIgnoredEndsNothing)
{
    m_ignoredSignal = SIGHUP;
    const auto player = Start();
    ArgsOf(*player);
    kill(static_cast<pid_t>(player->processId()), SIGHUP);
    EXPECT_FALSE(player->waitForFinished(300));
    EXPECT_FALSE(player->canReadLine());
    EXPECT_EQ(Quit(*player), 0);
}

} // namespace
