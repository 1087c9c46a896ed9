// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <cstdint>
#include <functional>
#include <vector>

class QWidget;

namespace lantern {

// One line of the choice of file types. Patterns are separated by ";"; letter case never counts,
// and "*.*" means every file.
struct FileFilter {
    QString label;
    QString patterns;

    bool operator==(const FileFilter&) const = default;
};

// Paths are text as PathText.h has it: any file name rides through without loss.
struct FileDialogRequest {
    QWidget* owner = nullptr; // borrowed; the dialog stands above it, and is modal
    bool isSave = false;
    QString title = {};
    std::vector<FileFilter> filters = {}; // none: every file
    std::int32_t filterIndex = 0;  // of the filter to begin with, from 1; otherwise the first
    QString initialFolder = {};    // only looked at if the path names no folder
    QString initialPath = {};      // the name to begin with, with or without its folder
    QString defaultExtension = {}; // for a typed name that has none
    bool fileMustExist = false;
    bool pathMustExist = false;
    bool overwritePrompt = false;
    bool multipleSelection = false;

    bool operator==(const FileDialogRequest&) const = default;
};

struct FileDialogAnswer {
    std::vector<QString> paths = {}; // absolute, all in one folder; none: cancelled, or failed
    std::int32_t filterIndex = 0; // of the filter that was on at the end, from 1; 0: there is none
    std::int32_t errorCode = 0;   // why it failed, as a common dialog tells; 0 otherwise
};

// Shows the desktop's own dialog where there is one, and the toolkit's otherwise. Returns when the
// user has chosen or cancelled; until then events, and with them timers, go on. For the user
// interface thread.
FileDialogAnswer RunFileDialog(const FileDialogRequest& request);

using FileDialogService = std::function<FileDialogAnswer(const FileDialogRequest&)>;

} // namespace lantern
