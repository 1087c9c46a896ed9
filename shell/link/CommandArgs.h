// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QStringList>

#include <span>

// From the arguments of a start to the text that names a track. All are free functions, since a
// later instance runs them before there is any object of the player.
namespace lantern {

// The arguments as one command line: the program's name in quotation marks, then each argument,
// in quotation marks if it holds a blank. An empty argument says nothing and is left out.
QString JoinedCommandLine(std::span<const char* const> arguments);

// What stands behind the program's name in a command line. Without a delimiter behind the name,
// that is the whole line.
QString ParseCommandArgs(const QString& commandLine);

// The arguments with a relative path put below the folder where it was typed. The player works
// from a folder of its own, and a running instance doesn't know where a later one was started.
QString ResolveTypedPath(const QString& commandArgs, const QString& folder);

// What a start was given, taken at once: the player changes its current folder soon after.
struct ProgramArguments {
    QString CommandLine;
    QString Folder; // the current folder of the start; empty if there was none
    // One by one, without the program's name and a leading "--".
    QStringList Each = {};

    static ProgramArguments Of(std::span<const char* const> arguments);
};

// The text that names a track, with its full path. That is the first file that is named, exactly as
// it stands or as an address "file://", by all the arguments together, which may be one path that
// the shell split, or by one of them. If they name none, it is what was typed, quotation marks
// included.
QString GetCommandArgs(const ProgramArguments& arguments);

} // namespace lantern
