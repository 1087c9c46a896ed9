// SPDX-License-Identifier: GPL-3.0-or-later
#include "Complaint.h"

#include "PathText.h"
#include "Process.h"

#include <gtest/gtest.h>

namespace lantern {
namespace {

TEST(Complaint, OnlyANameThatIsNoFileIsComplainedOf)
{
    const test::ScratchFolder folder;
    test::WriteFile(folder / "a b.cdg", "");
    const QString path = TextFromNative((folder / "a b.cdg").native().c_str());
    EXPECT_EQ(NameComplaint(path), QString());
    EXPECT_EQ(NameComplaint(u'"' + path + u'"'), QString());
    EXPECT_EQ(NameComplaint(QString()), QString());
    EXPECT_EQ(NameComplaint(QStringLiteral("\"/no/a b.cdg\"")),
              QStringLiteral("File not found: /no/a b.cdg"));
    EXPECT_EQ(NameComplaint(QStringLiteral("/")), QStringLiteral("File not found: /"));
}

TEST(Complaint, ATrackThatCannotBeHandedOverIsToldWithItsPath)
{
    EXPECT_EQ(LinkComplaint(QStringLiteral("\"/m/a b.cdg\"")),
              QStringLiteral("The running player can't be reached: /m/a b.cdg"));
    EXPECT_EQ(LinkComplaint(QString()), QString()) << "a start without a track loses none";
}

TEST(Complaint, AMessageIsToldWithItsPath)
{
    const QString track = QStringLiteral("\"/m/a b.cdg\"");
    EXPECT_EQ(OpeningComplaint(QStringLiteral("Invalid file format"), track),
              QStringLiteral("Invalid file format: /m/a b.cdg"));
    EXPECT_EQ(OpeningComplaint(QStringLiteral("File not found: /m/a b.cdg"), track),
              QStringLiteral("File not found: /m/a b.cdg"));
    EXPECT_EQ(OpeningComplaint(QString(), track), QStringLiteral("Nothing to play: /m/a b.cdg"));
}

TEST(Complaint, ItIsOneLineWithTheBytesOfTheName)
{
    EXPECT_EQ(ComplaintLine(TextFromNative("File not found: /a\nb\r\t\x1B[1m caf\xE9 \xC3\xA9")),
              QByteArray("lyric-lantern: File not found: /a?b???[1m caf\xE9 \xC3\xA9\n"));
}

TEST(Complaint, ItIsWrittenOnceAndNothingIsNoLine)
{
    const auto written = [](const QString& complaint) {
        testing::internal::CaptureStderr();
        Complain(complaint);
        return testing::internal::GetCapturedStderr();
    };
    EXPECT_EQ(written(QStringLiteral("File not found: /a.cdg")),
              "lyric-lantern: File not found: /a.cdg\n");
    EXPECT_EQ(written({}), "");
}

} // namespace
} // namespace lantern
