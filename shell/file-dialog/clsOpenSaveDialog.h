// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "DialogError.h"
#include "FileDialog.h"
#include "ZeroedText.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace lantern {

// What a dialog does, as one number.
enum DialogFlag : std::int32_t {
    kReadOnlyFlag = 1,
    kOverwritePromptFlag = 2,
    kHideReadOnlyFlag = 4,
    kMultipleSelectionFlag = 512,
    kOtherExtensionFlag = 1024, // only an answer of the dialog
    kPathMustExistFlag = 2048,
    kFileMustExistFlag = 4096,
    kExplorerFlag = 524288,
};

// The flags that a dialog gets for those that were asked for.
std::int32_t EffectiveFlags(std::int32_t asked, DialogKind kind);

// A filter is written as label|patterns|label|patterns and kept with zero characters for the "|"
// and one more at its end.
QString EncodeFilter(const QString& filter);
QString DecodeFilter(const QString& stored);
// The pairs in a stored filter, which ends at its first empty text. A label alone is left out.
std::vector<FileFilter> FilterPairs(const QString& stored);

// What a dialog writes into its caller's buffer for the files that were chosen.
struct ChosenText {
    QString text; // one path; for several files their folder and the names, each with a zero behind
    std::int32_t fileOffset = 0; // characters before the first file's name
    // Characters before the extension; 0 for several files, and for a name without any.
    std::int32_t extensionOffset = 0;
};
// For at least one absolute path; several lie in one folder.
ChosenText TextOfChosen(const std::vector<QString>& paths);

// The system's dialog for files as an object: properties that describe it and hold its answer, and
// two commands that show it. Every failure is thrown as a DialogError.
//
// Several files come as a text that the answer's zero characters divide: the folder, then each
// name. Nothing that a setter is given is checked beyond what is told here.
class clsOpenSaveDialog {
public:
    static constexpr std::int32_t kDefaultFileSize = 520;
    static constexpr std::int32_t kDefaultFileTitleSize = 260;

    explicit clsOpenSaveDialog(FileDialogService service = RunFileDialog);

    // True if the user has chosen. A quiet cancel is false; with CancelError it is thrown, too.
    bool ShowOpen(QWidget* owner);
    bool ShowSave(QWidget* owner);

    // All that describes the request, and with it the answer, becomes zero or empty. The flags as
    // asked, CancelError and MinimumBufferSizeRequired are the object's own, and stay.
    void Clear();

    bool CancelError() const { return m_cancelError; }
    void SetCancelError(bool isError) { m_cancelError = isError; }

    // The buffer grows to a text that is longer, and is then without a zero at its end. What was
    // behind a shorter text stays there.
    QString FileName() const;
    void SetFileName(const QString& text);
    QString FileTitle() const { return m_request.fileTitle.LeftOfNull(); }
    void SetFileTitle(const QString& text);

    // The folder to begin in; it ends in a separator. FilePath gives the folder of the chosen file,
    // without one, and sets the same as InitDir.
    QString InitDir() const { return m_request.initialDir; }
    void SetInitDir(const QString& folder);
    QString FilePath() const;
    void SetFilePath(const QString& folder) { SetInitDir(folder); }
    QString FileExtension() const; // of the chosen file

    QString DialogTitle() const { return m_request.title; }
    void SetDialogTitle(const QString& title) { m_request.title = title; }
    QString Filter() const { return DecodeFilter(m_request.filter); }
    void SetFilter(const QString& filter);

    std::int32_t Flags() const { return m_askedFlags; }
    void SetFlags(std::int32_t flags); // negative ones are ignored
    std::int32_t FlagsEx() const { return m_request.flagsEx; }
    void SetFlagsEx(std::int32_t flags) { m_request.flagsEx = flags; }

    // Sizes are in characters. Setting one empties its buffer; below 1 it is set back to the
    // default, which the next dialog makes a buffer for.
    std::int32_t MaxFileSize() const;
    void SetMaxFileSize(std::int32_t size);
    std::int32_t MaxFileTitleSize() const;
    void SetMaxFileTitleSize(std::int32_t size);

    std::int32_t FilterIndex() const { return m_request.filterIndex; }
    void SetFilterIndex(std::int32_t index); // negative becomes 0
    QString DefaultExt() const { return m_request.defaultExt; }
    void SetDefaultExt(const QString& extension) { m_request.defaultExt = extension; }

    // Nothing here calls a hook or keeps a custom filter; the values are the caller's.
    std::int32_t CustomHookData() const { return m_request.hookData; }
    void SetCustomHookData(std::int32_t data) { m_request.hookData = data; }
    std::int32_t CustomHookProc() const { return m_request.hookProc; }
    void SetCustomHookProc(std::int32_t procedure) { m_request.hookProc = procedure; }
    std::int32_t CustomFilterSize() const { return m_request.customFilterSize; }
    void SetCustomFilterSize(std::int32_t size);

    // Set when the chosen name was too long for the buffer: the size that it needs, up to 65535;
    // -1 if the buffer could not even hold that.
    std::int32_t MinimumBufferSizeRequired() const { return m_minimumBufferSizeRequired; }

private:
    struct Request {
        QWidget* owner = nullptr;
        QString filter; // encoded
        std::int32_t customFilterSize = 0;
        std::int32_t filterIndex = 0;
        ZeroedText file;
        std::int32_t fileSize = 0;
        ZeroedText fileTitle;
        std::int32_t fileTitleSize = 0;
        QString initialDir;
        QString title;
        std::int32_t flags = 0;
        std::int32_t fileOffset = 0;
        std::int32_t extensionOffset = 0;
        QString defaultExt;
        std::int32_t hookData = 0;
        std::int32_t hookProc = 0;
        std::int32_t flagsEx = 0;
    };

    bool Show(DialogKind kind, QWidget* owner);
    void PrepareRequest(DialogKind kind, QWidget* owner);
    FileDialogRequest ServiceRequest(DialogKind kind) const;
    bool TakeAnswer(const FileDialogAnswer& answer);
    [[noreturn]] void RaiseDialogError(std::int32_t code, DialogKind kind);

    FileDialogService m_service;
    Request m_request;
    std::int32_t m_askedFlags = 0;
    bool m_cancelError = false;
    std::int32_t m_minimumBufferSizeRequired = 0;
};

} // namespace lantern
