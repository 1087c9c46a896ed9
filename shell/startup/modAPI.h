// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Application.h"
#include "FileDialog.h"

#include <QString>

#include <cstdint>

class QWidget;

// The helpers that the shell's windows share. Their peers below the shell are in PathHelpers.h,
// MediaTypes.h, LastErrorText.h, clsFileIO.h (ReadTextFile) and CommandArgs.h (GetCommandArgs).
namespace lantern {

// The flags of a message: one of the sets of buttons plus one of the icons. Whatever they say, it
// stands above all other windows.
enum MessageFlag {
    OkOnly = 0,
    OkCancel = 1,
    AbortRetryIgnore = 2,
    YesNoCancel = 3,
    YesNo = 4,
    RetryCancel = 5,
    CriticalIcon = 16,
    QuestionIcon = 32,
    WarningIcon = 48,
    InformationIcon = 64,
};

enum class MessageAnswer {
    Ok = 1,
    Cancel = 2,
    Abort = 3,
    Retry = 4,
    Ignore = 5,
    Yes = 6,
    No = 7,
};

// A message box owned by the active window; it returns when it is closed, and events go on behind
// it. It needs the toolkit: a later instance, which has none, never shows a message.
MessageAnswer ShowMessage(const QString& text, int flags, const QString& title = kApplicationTitle);

// Head, an empty line and the detail, with the warning icon.
void ShowFileError(const QString& detail, const QString& head, const QString& title);

// In or out of the topmost band; size and position stay.
void SetTopMost(QWidget& window, bool isTopMost);

// The named icon of the program's resources, in all sizes that the system asks for; with the flag,
// also for the topmost owner of the window.
void SetWindowIcons(QWidget& window, const QString& resourceName, bool withOwner);

// Lets the user choose a file, and gives its path; empty if nothing came of it, for whatever
// reason. The filter is "label|patterns|label|patterns" and gets one for all files behind it. The
// flags (DialogFlag) join those that every dialog of the kind has. Events go on meanwhile. The
// spare number is never looked at.
QString ShowFileDialog(QWidget* owner, const QString& defaultExtension, const QString& filter,
                       const QString& title, const QString& fileName, std::int32_t flags,
                       std::int32_t spare, bool isSave,
                       const FileDialogService& service = RunFileDialog);
// The same for a file to open.
QString ShowOpenDialog(QWidget* owner, const QString& defaultExtension, const QString& filter,
                       const QString& title, const QString& fileName, std::int32_t flags,
                       std::int32_t spare, const FileDialogService& service = RunFileDialog);

// Shows the maker's web site in the user's browser.
void OpenWebSite();

} // namespace lantern
