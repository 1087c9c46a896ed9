// SPDX-License-Identifier: GPL-3.0-or-later
#include "CommandArgs.h"

#include "Blanks.h"
#include "PathHelpers.h"
#include "PathText.h"
#include "UriList.h"

#include <QSysInfo>

#include <filesystem>
#include <string_view>
#include <system_error>
#include <vector>

namespace lantern {
namespace {

constexpr QChar kQuote = u'"';

QString Quoted(const QString& text)
{
    return kQuote + text + kQuote;
}

QString AsArgument(const QString& text)
{
    return text.contains(u' ') ? Quoted(text) : text;
}

// The local file of an address; empty if the text is none.
QString PathOfAddress(const QString& text)
{
    const QByteArray ownHost = QSysInfo::machineHostName().toUtf8();
    return TextFromNative(FileNameOfUri(NativeFromText(text), ownHost).value_or(QByteArray()));
}

// A name is left as it was typed, for the way through command lines that can't change it. Marks
// and outer blanks of a name would get lost there, and it goes by itself.
QString TrackNamedBy(const QString& text, const QString& folder)
{
    const bool isAbsolute = text.startsWith(u'/') || folder.isEmpty();
    const QString path = isAbsolute ? text : folder + u'/' + text;
    if (FileCheck(path) == QStringLiteral("FILE")) {
        const bool isPlain = TrimBlanks(QString(text).remove(kQuote)) == text;
        return isPlain ? ResolveTypedPath(AsArgument(text), folder) : ResolveName(path);
    }
    const QString address = PathOfAddress(text);
    return FileCheck(address) == QStringLiteral("FILE") ? ResolveName(address) : QString();
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
            line += u' ' + AsArgument(text);
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
    ProgramArguments given = {{}, TextFromNative(folder.native()), {}};
    std::vector<const char*> line(arguments.begin(), arguments.end());
    // It only says that what follows is a name.
    if (line.size() > 1 && std::string_view(line[1]) == "--")
        line.erase(line.begin() + 1);
    given.CommandLine = JoinedCommandLine(line);
    for (std::size_t i = 1; i < line.size(); ++i)
        given.Each += TextFromNative(line[i]);
    return given;
}

QString GetCommandArgs(const ProgramArguments& arguments)
{
    const QStringList texts = QStringList{arguments.Each.join(u' ')} + arguments.Each;
    for (const QString& text : texts) {
        if (const QString track = TrackNamedBy(text, arguments.Folder); !track.isEmpty())
            return track;
    }
    const QString address = PathOfAddress(texts.front());
    if (!address.isEmpty())
        return address;
    return ResolveTypedPath(ParseCommandArgs(arguments.CommandLine), arguments.Folder);
}

} // namespace lantern
