// SPDX-License-Identifier: GPL-3.0-or-later
#include "modAPI.h"

#include <QApplication>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>
#include <QWidget>
#include <QWindow>

#include <functional>
#include <gtest/gtest.h>

namespace lantern {
namespace {

class modAPITest : public ::testing::Test {
protected:
    // Runs while the next message stands.
    static void WhileMessageStands(std::function<void(QMessageBox&)> look)
    {
        QTimer::singleShot(0, qApp, [look = std::move(look)] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            look(*box);
            box->close();
        });
    }
};

TEST_F(modAPITest, AMessageHasTheProgramsTitleUnlessItIsGivenOne)
{
    WhileMessageStands([](QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Lyric Lantern CDG Player"));
        EXPECT_EQ(box.text(), QStringLiteral("<b>text</b>"));
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
        EXPECT_TRUE(box.isModal());
        EXPECT_TRUE(box.windowFlags().testFlag(Qt::WindowStaysOnTopHint));
    });
    EXPECT_EQ(ShowMessage(QStringLiteral("<b>text</b>"), WarningIcon), MessageAnswer::Ok);
    WhileMessageStands(
        [](QMessageBox& box) { EXPECT_EQ(box.windowTitle(), QStringLiteral("Title")); });
    ShowMessage(QStringLiteral("text"), WarningIcon, QStringLiteral("Title"));
}

TEST_F(modAPITest, TheAnswerIsTheButtonThatWasPressed)
{
    WhileMessageStands([](QMessageBox& box) {
        EXPECT_EQ(box.icon(), QMessageBox::Question);
        box.button(QMessageBox::No)->click();
    });
    EXPECT_EQ(ShowMessage(QStringLiteral("?"), YesNoCancel | QuestionIcon), MessageAnswer::No);
    WhileMessageStands([](QMessageBox& box) { box.button(QMessageBox::Retry)->click(); });
    EXPECT_EQ(ShowMessage(QStringLiteral("?"), RetryCancel), MessageAnswer::Retry);
}

TEST_F(modAPITest, AMessageBeforeThereIsAMainWindowDoesNotEndTheProgram)
{
    WhileMessageStands([](QMessageBox&) {});
    ShowMessage(QStringLiteral("text"), WarningIcon);
    QTimer::singleShot(50, qApp, [] { QApplication::exit(7); });
    EXPECT_EQ(QApplication::exec(), 7);
}

TEST_F(modAPITest, AFileErrorShowsHeadEmptyLineAndDetail)
{
    WhileMessageStands([](QMessageBox& box) {
        EXPECT_EQ(box.text(), QStringLiteral("/a/file\n\ndetail\nmore"));
        EXPECT_EQ(box.windowTitle(), QStringLiteral("Title"));
        EXPECT_EQ(box.icon(), QMessageBox::Warning);
        EXPECT_EQ(box.standardButtons(), QMessageBox::Ok);
    });
    ShowFileError(QStringLiteral("detail\nmore"), QStringLiteral("/a/file"),
                  QStringLiteral("Title"));
}

TEST_F(modAPITest, AWindowGoesIntoTheTopmostBandAndOutAgainInItsPlace)
{
    QWidget window;
    window.setGeometry(30, 40, 200, 100);
    window.show();
    const QWindow* handle = window.windowHandle();
    SetTopMost(window, true);
    EXPECT_TRUE(handle->flags().testFlag(Qt::WindowStaysOnTopHint));
    SetTopMost(window, false);
    EXPECT_FALSE(handle->flags().testFlag(Qt::WindowStaysOnTopHint));
    EXPECT_EQ(window.windowHandle(), handle) << "it is still the same window";
    EXPECT_TRUE(window.isVisible());
    EXPECT_EQ(window.geometry(), QRect(30, 40, 200, 100));
}

TEST_F(modAPITest, TheIconGoesToTheTopmostOwnerIfItIsWanted)
{
    QWidget owner;
    QWidget window(&owner, Qt::Window);
    QWidget dialog(&window, Qt::Dialog);
    SetWindowIcons(dialog, QStringLiteral("test"), false);
    EXPECT_TRUE(owner.windowIcon().isNull());
    EXPECT_EQ(dialog.windowIcon().pixmap(16, 16).toImage().pixelColor(8, 8), QColor(Qt::red));
    EXPECT_EQ(dialog.windowIcon().pixmap(64, 64).toImage().pixelColor(60, 60), QColor(Qt::red));
    SetWindowIcons(dialog, QStringLiteral("test"), true);
    EXPECT_FALSE(owner.windowIcon().isNull());
    EXPECT_TRUE(window.isWindow());
}

} // namespace
} // namespace lantern
