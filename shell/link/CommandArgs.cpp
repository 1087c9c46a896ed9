// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandArgs.h"

#include "Blanks.h"
#include "PathHelpers.h"
#include "PathText.h"

#include <filesystem>
#include <system_error>

namespace lantern {
namespace {

constexpr QChar kQuote = u'"';

QString Quoted(const QString& text)
{
    return kQuote + text + kQuote;
}

} // namespace

QString JoinedCommandLine(std::span<const char* const> arguments)
{
    if (arguments.empty())
        return {};
    // A quotation mark in the program's name would end it early.
    QString line = Quoted(TextFromNative(arguments.front()).remove(kQuote));
    for (const char* argument : arguments.subspan(1)) {
        const QString text = TextFromNative(argument);
        if (!text.isEmpty())
            line += u' ' + (text.contains(u' ') ? Quoted(text) : text);
    }
    return line;
}

QString ParseCommandArgs(const QString& commandLine)
{
    const QChar delimiter = commandLine.startsWith(kQuote) ? kQuote : QChar(u' ');
    const qsizetype position = commandLine.indexOf(delimiter, 1);
    return TrimBlanks(QStringView(commandLine).sliced(position + 1));
}

QString ResolveTypedPath(const QString& commandArgs, const QString& folder)
{
    QString path = commandArgs;
    path = TrimBlanks(path.remove(kQuote));
    if (path.isEmpty() || folder.isEmpty())
        return commandArgs;
    const QString base = folder.endsWith(u'/') ? folder : folder + u'/';
    const QString absolute = AbsolutePath(base, path);
    if (absolute == path)
        return commandArgs;
    return commandArgs.startsWith(kQuote) ? Quoted(absolute) : absolute;
}

ProgramArguments ProgramArguments::Of(std::span<const char* const> arguments)
{
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::current_path(error);
    return {JoinedCommandLine(arguments), TextFromNative(folder.native())};
}

QString GetCommandArgs(const ProgramArguments& arguments)
{
    return ResolveTypedPath(ParseCommandArgs(arguments.CommandLine), arguments.Folder);
}

} // namespace lantern
