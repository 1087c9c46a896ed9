// SPDX-License-Identifier: GPL-3.0-or-later
#include "clsOpenSaveDialog.h"
#include "modAPI.h"

#include <QCoreApplication>
#include <QPaintEvent>
#include <QWidget>

#include <gtest/gtest.h>

#include <memory>

namespace lantern {
namespace {

class Owner : public QWidget {
public:
    int paintCount = 0;

protected:
    void paintEvent(QPaintEvent*) override { ++paintCount; }
};

class ShowFileDialogTest : public ::testing::Test {
protected:
    ShowFileDialogTest()
    {
        owner->show();
        QCoreApplication::processEvents();
        owner->paintCount = 0;
    }

    QString Show(std::int32_t flags, bool isSave)
    {
        return ShowFileDialog(owner.get(), QStringLiteral("cdg"), QStringLiteral("CDG|*.cdg;*.zip"),
                              QStringLiteral("Select a Karaoke File"), fileName, flags, 1, isSave,
                              service);
    }

    bool IsOwnerRefreshed()
    {
        QCoreApplication::processEvents();
        return owner->paintCount > 0;
    }

    const FileDialogService service = [this](const FileDialogRequest& shown) {
        request = shown;
        return answer;
    };
    std::unique_ptr<Owner> owner = std::make_unique<Owner>();
    QString fileName = QStringLiteral("/music/song.cdg");
    FileDialogRequest request; // as the dialog was shown last
    FileDialogAnswer answer;   // what the user does with the next one
};

TEST_F(ShowFileDialogTest, AskToOpenAFileThatIsThere)
{
    answer = {.paths = {QStringLiteral("/music/other.cdg")}, .filterIndex = 2};
    EXPECT_EQ(Show(1, false), QStringLiteral("/music/other.cdg"));
    EXPECT_EQ(request, (FileDialogRequest{
                           .owner = owner.get(),
                           .title = QStringLiteral("Select a Karaoke File"),
                           .filters = {{QStringLiteral("CDG"), QStringLiteral("*.cdg;*.zip")},
                                       {QStringLiteral("All Files (*.*)"), QStringLiteral("*.*")}},
                           .initialPath = QStringLiteral("/music/song.cdg"),
                           .defaultExtension = QStringLiteral("cdg"),
                           .fileMustExist = true,
                           .pathMustExist = true}));
    EXPECT_TRUE(IsOwnerRefreshed());
}

TEST_F(ShowFileDialogTest, TheFlagsOfOneAndTwoChangeNothingInAnOpen)
{
    Show(0, false);
    const FileDialogRequest plain = request;
    for (const std::int32_t flags : {1, 2}) {
        Show(flags, false);
        EXPECT_EQ(request, plain);
    }
}

TEST_F(ShowFileDialogTest, AskBeforeASaveOverwrites)
{
    Show(0, true);
    EXPECT_TRUE(request.isSave);
    EXPECT_TRUE(request.overwritePrompt);
    EXPECT_TRUE(request.pathMustExist);
    EXPECT_FALSE(request.fileMustExist);
    EXPECT_FALSE(request.multipleSelection);
}

TEST_F(ShowFileDialogTest, TheFlagsOfTheCallerJoin)
{
    Show(kMultipleSelectionFlag, false);
    EXPECT_TRUE(request.multipleSelection);
    EXPECT_TRUE(request.fileMustExist);
}

TEST_F(ShowFileDialogTest, AnOpenIsTheSameWithoutTheSave)
{
    Show(1, false);
    const FileDialogRequest plain = request;
    request = {};
    answer = {.paths = {QStringLiteral("/a")}};
    EXPECT_EQ(ShowOpenDialog(owner.get(), QStringLiteral("cdg"), QStringLiteral("CDG|*.cdg;*.zip"),
                             QStringLiteral("Select a Karaoke File"), fileName, 1, 7, service),
              QStringLiteral("/a"));
    EXPECT_EQ(request, plain);
}

TEST_F(ShowFileDialogTest, ACancelGivesNothingAndRefreshesTheOwner)
{
    EXPECT_EQ(Show(0, false), QString());
    EXPECT_TRUE(IsOwnerRefreshed());
}

TEST_F(ShowFileDialogTest, AFailureIsToTheUserAsACancel)
{
    for (const std::int32_t code : {1, 11, 12290, 12291, 65535}) {
        answer = {.errorCode = code};
        owner->paintCount = 0;
        EXPECT_EQ(Show(0, code == 1), QString());
        EXPECT_TRUE(IsOwnerRefreshed());
    }
}

TEST_F(ShowFileDialogTest, EveryPathThatTheSystemAllowsFits)
{
    const QString path = u'/' + QString(4094, QChar(u'x'));
    answer = {.paths = {path}};
    EXPECT_EQ(Show(0, false), path);
    fileName = path + QStringLiteral("yz");
    EXPECT_EQ(Show(0, false), path);
    EXPECT_EQ(request.initialPath, fileName);
}

TEST_F(ShowFileDialogTest, AnOwnerThatGoesMeanwhileIsLeftAlone)
{
    const QString path = ShowFileDialog(owner.get(), {}, {}, {}, {}, 0, 0, false,
                                        [this](const FileDialogRequest&) -> FileDialogAnswer {
                                            owner.reset();
                                            return {};
                                        });
    EXPECT_EQ(path, QString());
}

} // namespace
} // namespace lantern
