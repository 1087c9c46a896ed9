// SPDX-License-Identifier: GPL-3.0-or-later
#include "modAPI.h"

#include "InstalledFiles.h"
#include "ShowDocument.h"
#include "clsOpenSaveDialog.h"

#include <QApplication>
#include <QIcon>
#include <QMessageBox>
#include <QPointer>
#include <QWidget>
#include <QWindow>

#include <algorithm>
#include <array>
#include <cstddef>

namespace lantern {
namespace {

constexpr int kButtonBits = 0xF;
constexpr int kIconBits = 0x70;

// By the numbers of the button sets.
constexpr std::array<QMessageBox::StandardButtons::Int, 6> kButtonSets = {
    QMessageBox::Ok,
    QMessageBox::Ok | QMessageBox::Cancel,
    QMessageBox::Abort | QMessageBox::Retry | QMessageBox::Ignore,
    QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel,
    QMessageBox::Yes | QMessageBox::No,
    QMessageBox::Retry | QMessageBox::Cancel,
};

struct AnswerRow {
    QMessageBox::StandardButton button;
    MessageAnswer answer;
};
constexpr std::array<AnswerRow, 7> kAnswers = {{
    {QMessageBox::Ok, MessageAnswer::Ok},
    {QMessageBox::Cancel, MessageAnswer::Cancel},
    {QMessageBox::Abort, MessageAnswer::Abort},
    {QMessageBox::Retry, MessageAnswer::Retry},
    {QMessageBox::Ignore, MessageAnswer::Ignore},
    {QMessageBox::Yes, MessageAnswer::Yes},
    {QMessageBox::No, MessageAnswer::No},
}};

QMessageBox::StandardButtons ButtonsOf(int flags)
{
    const auto set = static_cast<std::size_t>(flags & kButtonBits);
    return QMessageBox::StandardButtons(kButtonSets[set < kButtonSets.size() ? set : 0]);
}

QMessageBox::Icon IconOf(int flags)
{
    switch (flags & kIconBits) {
    case CriticalIcon:
        return QMessageBox::Critical;
    case QuestionIcon:
        return QMessageBox::Question;
    case WarningIcon:
        return QMessageBox::Warning;
    case InformationIcon:
        return QMessageBox::Information;
    default:
        return QMessageBox::NoIcon;
    }
}

// A box that is closed without a choice counts as cancelled, or as read where that is all it
// offers.
MessageAnswer AnswerOf(int button)
{
    const auto* found = std::ranges::find(
        kAnswers, button, [](const AnswerRow& row) { return static_cast<int>(row.button); });
    return found == kAnswers.end() ? MessageAnswer::Cancel : found->answer;
}

constexpr std::int32_t kSaveFlags =
    kExplorerFlag | kPathMustExistFlag | kOverwritePromptFlag | kHideReadOnlyFlag;
constexpr std::int32_t kOpenFlags =
    kExplorerFlag | kFileMustExistFlag | kPathMustExistFlag | kHideReadOnlyFlag;
// Of the system, with the zero at its end.
constexpr std::int32_t kLongestPath = 4096;
static_assert(kSaveFlags == 526342 && kOpenFlags == 530436);

QWidget& TopmostOwner(QWidget& window)
{
    QWidget* owner = window.window();
    while (owner->parentWidget())
        owner = owner->parentWidget()->window();
    return *owner;
}

} // namespace

MessageAnswer ShowMessage(const QString& text, int flags, const QString& title)
{
    QMessageBox box(IconOf(flags), title, text, ButtonsOf(flags), QApplication::activeWindow());
    // A path may look like markup.
    box.setTextFormat(Qt::PlainText);
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    return AnswerOf(box.exec());
}

void ShowFileError(const QString& detail, const QString& head, const QString& title)
{
    ShowMessage(head + QStringLiteral("\n\n") + detail, WarningIcon, title);
}

void SetTopMost(QWidget& window, bool isTopMost)
{
    // Through the window behind the widget: QWidget::setWindowFlag would make it anew, which
    // flickers and gives up the focus.
    window.winId();
    if (QWindow* handle = window.windowHandle())
        handle->setFlag(Qt::WindowStaysOnTopHint, isTopMost);
}

void SetWindowIcons(QWidget& window, const QString& resourceName, bool withOwner)
{
    const QIcon icon(QStringLiteral(":/icon/") + resourceName + QStringLiteral(".svg"));
    window.setWindowIcon(icon);
    if (withOwner)
        TopmostOwner(window).setWindowIcon(icon);
}

QString ShowFileDialog(QWidget* owner, const QString& defaultExtension, const QString& filter,
                       const QString& title, const QString& fileName, std::int32_t flags,
                       std::int32_t, bool isSave, const FileDialogService& service)
{
    const QPointer<QWidget> ownerAfterwards = owner;
    QString path;
    try {
        clsOpenSaveDialog dialog(service);
        dialog.SetCancelError(true);
        dialog.SetMaxFileSize(kLongestPath);
        dialog.SetFilter(EncodeFilter(filter + QStringLiteral("|All Files (*.*)|*.*")));
        dialog.SetDialogTitle(title);
        dialog.SetFileName(fileName);
        dialog.SetDefaultExt(defaultExtension);
        dialog.SetFlags(flags | (isSave ? kSaveFlags : kOpenFlags));
        if (isSave ? dialog.ShowSave(owner) : dialog.ShowOpen(owner))
            path = dialog.FileName();
    } catch (const DialogError&) {
        path.clear(); // to the user, a dialog that failed is one that was cancelled
    }
    if (ownerAfterwards)
        ownerAfterwards->update();
    return path;
}

QString ShowOpenDialog(QWidget* owner, const QString& defaultExtension, const QString& filter,
                       const QString& title, const QString& fileName, std::int32_t flags,
                       std::int32_t spare, const FileDialogService& service)
{
    return ShowFileDialog(owner, defaultExtension, filter, title, fileName, flags, spare, false,
                          service);
}

void OpenWebSite()
{
    const QString page = InstalledFile(QStringLiteral("help/index.html"));
    ShowDocument(page, [page] {
        ShowMessage(QStringLiteral("No program could show the page of the player.\nIt is the file "
                                   "%1")
                        .arg(page),
                    InformationIcon);
    });
}

} // namespace lantern
