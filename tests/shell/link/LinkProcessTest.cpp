// SPDX-License-Identifier: GPL-3.0-or-later

// The lock and the link between real processes.
#include "LinkPartner.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <memory>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>
#include <vector>

namespace {

class LinkProcessTest : public ::testing::Test {
protected:
    std::unique_ptr<QProcess> Start(const QStringList& arguments = {})
    {
        auto process = std::make_unique<QProcess>();
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_runtimeFolder);
        environment.insert(QLatin1String(lantern::kLinkPartner), QStringLiteral("1"));
        process->setProcessEnvironment(environment);
        // A test that fails must not leave an instance behind.
        process->setChildProcessModifier([hasInput = m_hasInput] {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            if (!hasInput)
                close(STDIN_FILENO);
        });
        process->start(QCoreApplication::applicationFilePath(), arguments);
        EXPECT_TRUE(process->waitForStarted());
        return process;
    }

    std::unique_ptr<QProcess> StartFirst()
    {
        auto process = Start();
        EXPECT_EQ(Line(*process), "first");
        return process;
    }

    static std::string Line(QProcess& process)
    {
        QElapsedTimer timer;
        timer.start();
        while (!process.canReadLine() && timer.elapsed() < 5000) {
            if (!process.waitForReadyRead(100) && process.state() == QProcess::NotRunning)
                break;
        }
        return process.readLine().trimmed().toStdString();
    }

    static void Signal(const QProcess& process, int signal)
    {
        kill(static_cast<pid_t>(process.processId()), signal);
    }

    static void End(QProcess& process)
    {
        process.kill();
        process.waitForFinished();
    }

    QTemporaryDir m_folder;
    QString m_runtimeFolder = m_folder.path();
    bool m_hasInput = true;
};

TEST_F(LinkProcessTest, ALaterStartHandsItsArgumentOverAndEnds)
{
    const auto first = StartFirst();
    const auto later = Start({QStringLiteral("/m/My Song.cdg")});
    ASSERT_TRUE(later->waitForFinished());
    EXPECT_EQ(later->exitCode(), 0);
    EXPECT_EQ(later->readAllStandardOutput(), QByteArray());
    EXPECT_EQ(Line(*first), "focus");
    EXPECT_EQ(Line(*first), "open \"/m/My Song.cdg\"");
    End(*first);
}

TEST_F(LinkProcessTest, ALaterStartWithoutArgumentsBringsTheFirstForward)
{
    const auto first = StartFirst();
    Start()->waitForFinished();
    EXPECT_EQ(Line(*first), "focus");
    EXPECT_FALSE(first->waitForReadyRead(200));
    End(*first);
}

TEST_F(LinkProcessTest, ARelativePathIsResolvedWhereItWasTyped)
{
    const auto first = StartFirst();
    const QString folder = QDir::currentPath();
    Start({QStringLiteral("My Song.cdg")})->waitForFinished();
    EXPECT_EQ(Line(*first), "focus");
    EXPECT_EQ(Line(*first), "open \"" + folder.toStdString() + "/My Song.cdg\"");
    End(*first);
}

// Then the first file that is opened has the number 0.
TEST_F(LinkProcessTest, StartsWithoutAStandardInputFindEachOther)
{
    m_hasInput = false;
    const auto first = StartFirst();
    Start({QStringLiteral("/a.cdg")})->waitForFinished();
    EXPECT_EQ(Line(*first), "focus");
    EXPECT_EQ(Line(*first), "open /a.cdg");
    m_hasInput = true;
    Start({QStringLiteral("/b.cdg")})->waitForFinished();
    EXPECT_EQ(Line(*first), "focus");
    EXPECT_EQ(Line(*first), "open /b.cdg");
    End(*first);
}

TEST_F(LinkProcessTest, OfManyStartsAtOnceOneIsTheFirst)
{
    for (int round = 0; round < 5; ++round) {
        std::vector<std::unique_ptr<QProcess>> starts;
        for (int i = 0; i < 8; ++i)
            starts.push_back(Start({QStringLiteral("a.cdg")}));
        int firsts = 0;
        for (const auto& process : starts) {
            if (Line(*process) == "first")
                ++firsts;
        }
        EXPECT_EQ(firsts, 1);
        // The winner dies without a word, and leaves lock file and socket behind.
        for (const auto& process : starts)
            End(*process);
    }
}

TEST_F(LinkProcessTest, AfterTheFirstWasKilledTheNextStartIsTheFirst)
{
    const auto killed = StartFirst();
    End(*killed);
    const auto next = StartFirst();
    Start({QStringLiteral("/a.cdg")})->waitForFinished();
    EXPECT_EQ(Line(*next), "focus");
    EXPECT_EQ(Line(*next), "open /a.cdg");
    End(*next);
}

TEST_F(LinkProcessTest, ARuntimeFolderThatComesWithTheFirstStartServesTheNextOnesToo)
{
    m_runtimeFolder += QStringLiteral("/later");
    const auto first = StartFirst();
    QDir().mkdir(m_runtimeFolder); // as a toolkit does
    Start({QStringLiteral("/a.cdg")})->waitForFinished();
    EXPECT_EQ(Line(*first), "focus");
    EXPECT_EQ(Line(*first), "open /a.cdg");
    End(*first);
}

TEST_F(LinkProcessTest, FoldersInThePlacesOfLockAndLinkDoNotKeepStartsApart)
{
    for (const char* name :
         {"Lyric Lantern CDG Player", "Lyric Lantern CDG Player|SendCommand/somebody's"})
        ASSERT_TRUE(QDir(m_runtimeFolder).mkpath(QLatin1String(name)));
    const auto first = StartFirst();
    Start({QStringLiteral("/a.cdg")})->waitForFinished();
    EXPECT_EQ(Line(*first), "focus");
    EXPECT_EQ(Line(*first), "open /a.cdg");
    End(*first);
}

TEST_F(LinkProcessTest, AStoppedFirstInstanceDoesNotHoldUpTheSenderAndGetsTheCommandLater)
{
    const auto first = StartFirst();
    Signal(*first, SIGSTOP);
    QElapsedTimer timer;
    timer.start();
    const auto later = Start({QStringLiteral("/a.cdg")});
    EXPECT_TRUE(later->waitForFinished(5000));
    EXPECT_LT(timer.elapsed(), 1500);
    Signal(*first, SIGCONT);
    EXPECT_EQ(Line(*first), "focus");
    EXPECT_EQ(Line(*first), "open /a.cdg");
    End(*first);
}

TEST_F(LinkProcessTest, WithTheQueueOfAStoppedInstanceFullTheSenderGivesUpInTime)
{
    const auto first = StartFirst();
    Signal(*first, SIGSTOP);
    std::vector<std::unique_ptr<QProcess>> starts;
    qint64 slowestMs = 0;
    for (int i = 0; i < 60 && slowestMs < 400; ++i) {
        QElapsedTimer timer;
        timer.start();
        EXPECT_TRUE(Start({QStringLiteral("/a.cdg")})->waitForFinished(5000));
        slowestMs = std::max(slowestMs, timer.elapsed());
    }
    EXPECT_GE(slowestMs, 400) << "the queue never filled";
    EXPECT_LT(slowestMs, 2000);
    Signal(*first, SIGCONT);
    EXPECT_EQ(Line(*first), "focus");
    End(*first);
}

#ifdef __SANITIZE_ADDRESS__
constexpr qint64 kQuickMs = 1000;
#else
constexpr qint64 kQuickMs = 100;
#endif

TEST_F(LinkProcessTest, TheSenderIsQuick)
{
    const auto first = StartFirst();
    qint64 fastestMs = 1000;
    for (int i = 0; i < 10; ++i) {
        QElapsedTimer timer;
        timer.start();
        Start({QStringLiteral("/a.cdg")})->waitForFinished();
        fastestMs = std::min(fastestMs, timer.elapsed());
    }
    RecordProperty("fastestMs", static_cast<int>(fastestMs));
    EXPECT_LT(fastestMs, kQuickMs);
    End(*first);
}

} // namespace
