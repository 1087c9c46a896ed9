// SPDX-License-Identifier: GPL-3.0-or-later
#include "Track.h"

#include <QByteArray>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <map>

namespace lantern {
namespace {

constexpr int kWavHeaderSize = 44;
constexpr int kBytesPerSecond = 44100 * 4;

class DemoSongTest : public ::testing::Test {
protected:
    static int Make(const QString& folder)
    {
        return QProcess::execute(QStringLiteral(DEMO_SONG), {folder});
    }
    static QByteArray Read(const QString& path)
    {
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
        return file.readAll();
    }
    QString In(const QString& name) const { return m_folder.filePath(name); }

    QTemporaryDir m_folder;
};

TEST_F(DemoSongTest, EveryRunMakesTheSameBytes)
{
    ASSERT_EQ(Make(In(QStringLiteral("one"))), 0);
    ASSERT_EQ(Make(In(QStringLiteral("two"))), 0);
    for (const QString& name : {QStringLiteral("/demo.cdg"), QStringLiteral("/demo.wav")}) {
        const QByteArray first = Read(In(QStringLiteral("one")) + name);
        EXPECT_FALSE(first.isEmpty());
        EXPECT_EQ(first, Read(In(QStringLiteral("two")) + name));
    }
}

TEST_F(DemoSongTest, ThePictureIsAsLongAsTheSound)
{
    ASSERT_EQ(Make(m_folder.path()), 0);
    const qint64 packets = Read(In(QStringLiteral("demo.cdg"))).size() / qint64{kPacketSize};
    const qint64 soundBytes = Read(In(QStringLiteral("demo.wav"))).size() - kWavHeaderSize;
    EXPECT_EQ(packets * kBytesPerSecond, soundBytes * kPacketsPerSecond);
}

TEST_F(DemoSongTest, ThePictureShowsWhatADiscCanDo)
{
    ASSERT_EQ(Make(m_folder.path()), 0);
    const QByteArray disc = Read(In(QStringLiteral("demo.cdg")));
    std::map<int, int> counts;
    for (qsizetype i = 0; i < disc.size(); i += qsizetype{kPacketSize}) {
        if (disc[i] == 9)
            ++counts[disc[i + 1]];
    }
    EXPECT_GE(counts[1], 3);    // pages
    EXPECT_GE(counts[2], 4);    // borders
    EXPECT_GE(counts[6], 500);  // drawing
    EXPECT_GE(counts[20], 100); // a scroll, pixel by pixel
    EXPECT_GE(counts[30], 40);  // fades, low half
    EXPECT_EQ(counts[30], counts[31]);
    EXPECT_GE(counts[38], 2000); // wipes
}

TEST_F(DemoSongTest, AFolderThatCannotBeMadeIsAnError)
{
    QFile file(In(QStringLiteral("taken")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    EXPECT_EQ(Make(In(QStringLiteral("taken/inside"))), 1);
}

} // namespace
} // namespace lantern
