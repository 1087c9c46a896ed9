// SPDX-License-Identifier: GPL-3.0-or-later
#include "modAPI.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTimer>
#include <QUrl>

#include <gtest/gtest.h>

namespace lantern {
namespace {

// With a desktop of our own making: what shows documents is a script of the test's.
class OpenWebSiteTest : public ::testing::Test {
protected:
    OpenWebSiteTest() { qputenv("PATH", QFile::encodeName(m_folder.path())); }
    ~OpenWebSiteTest() override { qputenv("PATH", m_path); }

    // It notes what it is given, and ends with that exit code.
    void ShowDocumentsBy(int exitCode)
    {
        QFile script(m_folder.filePath(QStringLiteral("xdg-open")));
        ASSERT_TRUE(script.open(QIODevice::WriteOnly));
        script.write("#!/bin/sh\necho \"$#:$1\" >>'" + QFile::encodeName(Note()) + "'\nexit " +
                     QByteArray::number(exitCode) + '\n');
        script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    }
    QString Note() const { return m_folder.filePath(QStringLiteral("note")); }
    QByteArray Noted() const
    {
        QFile note(Note());
        return note.open(QIODevice::ReadOnly) ? note.readAll() : QByteArray();
    }

    // Handles events until it is so, ten seconds at most.
    template <typename Condition>
    static bool Await(Condition isSo)
    {
        QElapsedTimer timer;
        timer.start();
        while (!isSo() && timer.elapsed() < 10'000)
            QApplication::processEvents(QEventLoop::WaitForMoreEvents | QEventLoop::AllEvents, 20);
        return isSo();
    }
    // The text of the message that stands, which is closed; empty if there is none.
    static QString CloseMessage()
    {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        if (!box)
            return {};
        box->close();
        return box->text();
    }
    // Goes there, and gives the text of the message that comes of it.
    static QString MessageOfGoing()
    {
        QString text;
        QTimer watch;
        watch.callOnTimeout([&] {
            if (text.isEmpty())
                text = CloseMessage();
        });
        watch.start(10);
        OpenWebSite();
        Await([&] { return !text.isEmpty(); });
        return text;
    }

    const QTemporaryDir m_folder;
    const QByteArray m_path = qgetenv("PATH");
};

TEST_F(OpenWebSiteTest, ItIsThePageThatCameWithTheProgram)
{
    ShowDocumentsBy(0);
    OpenWebSite();
    ASSERT_TRUE(Await([&] { return Noted().endsWith('\n'); }));
    const QByteArray note = Noted().trimmed();
    ASSERT_TRUE(note.startsWith("1:file:///")) << note.constData();
    const QString page = QUrl::fromEncoded(note.mid(2)).toLocalFile();
    EXPECT_EQ(page, QDir(QCoreApplication::applicationDirPath() +
                         QStringLiteral("/../share/lyric-lantern/help"))
                        .absoluteFilePath(QStringLiteral("index.html"))
                        .replace(QStringLiteral("/tests/.."), QString()));
    EXPECT_TRUE(QFile::exists(page)) << page.toStdString();
    EXPECT_EQ(CloseMessage(), QString());
}

TEST_F(OpenWebSiteTest, WhereNoProgramShowsItTheUserIsToldWhereItIs)
{
    ShowDocumentsBy(3);
    const QString text = MessageOfGoing();
    EXPECT_TRUE(text.contains(QStringLiteral("/share/lyric-lantern/help/index.html")))
        << text.toStdString();
    EXPECT_EQ(Noted().count('\n'), 1);
}

TEST_F(OpenWebSiteTest, WhereNothingCouldEvenTryTheUserIsToldToo)
{
    const QString text = MessageOfGoing();
    EXPECT_TRUE(text.contains(QStringLiteral("/share/lyric-lantern/help/index.html")))
        << text.toStdString();
}

TEST_F(OpenWebSiteTest, WhatShowsItMayTakeItsTime)
{
    QFile script(m_folder.filePath(QStringLiteral("xdg-open")));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write("#!/bin/sh\n/bin/sleep 2\necho shown >>'" + QFile::encodeName(Note()) + "'\n");
    script.setPermissions(QFile::ReadOwner | QFile::ExeOwner);
    script.close();
    QElapsedTimer timer;
    timer.start();
    OpenWebSite();
    EXPECT_LT(timer.elapsed(), 1000);
    EXPECT_EQ(CloseMessage(), QString());
    // Were its folder gone before it has read its script, it would fail, and the message of that
    // stand in the way of whatever comes next.
    EXPECT_TRUE(Await([&] { return Noted() == "shown\n"; }));
}

} // namespace
} // namespace lantern
