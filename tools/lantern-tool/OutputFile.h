// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "OwnedDescriptor.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

namespace lantern::tool {

// What becomes of an output that is there already.
enum class IfExists { Keep, Replace };

// An output that is there whole or not at all: it is written beside its place, under a hidden name,
// and takes its place as it is put there. What is not put there goes away with the object, and by
// Ctrl+C. Only what is no regular file, such as a pipe, is written where it is, and so is a file in
// a folder that takes no other.
//
// Each function that gives a text gives an error message, empty on success. Used by one thread.
class OutputFile {
public:
    OutputFile() = default;
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // Fails at once if the output exists and is to be kept.
    [[nodiscard]] QString Open(const QString& path, IfExists ifExists);

    // For what writes by itself, at any place of the file.
    int Descriptor() const { return m_file.Number(); }
    [[nodiscard]] QString Write(QByteArrayView bytes);

    // Before this nobody sees the file under its name. An output that has come there meanwhile and
    // is to be kept is kept.
    [[nodiscard]] QString Put();

private:
    bool MakeBeside();
    QString ErrorNow() const; // of the system's last failure
    void Remove();

    QString m_path;      // as it was given
    QByteArray m_target; // at the end of symbolic links
    QByteArray m_beside; // empty if the file is written where it is
    OwnedDescriptor m_file;
    IfExists m_ifExists = IfExists::Keep;
};

// The same for bytes that are all there.
[[nodiscard]] QString WriteOutput(const QString& path, QByteArrayView bytes, IfExists ifExists);

} // namespace lantern::tool
